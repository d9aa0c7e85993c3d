#pragma once

#include <Elementary.h>

#include <memory>
#include <vector>

#include "circle/progressbar.h"

namespace host::circle {

/// Lies over a layout and keeps its circle objects in the layout's place. Goes with its last
/// object, or with the layout when it has none. Main loop.
class Surface {
public:
    /// @return a surface that lives as stated; never null
    [[nodiscard]] static Surface *add(Evas_Object *layout);
    /// Whether this is a surface that lives.
    [[nodiscard]] static bool lives(const Surface *surface);

    ~Surface();
    Surface(const Surface &) = delete;
    Surface &operator=(const Surface &) = delete;

    /// A bar that goes with the parent.
    Evas_Object *add_progressbar(Evas_Object *parent);

private:
    explicit Surface(Evas_Object *layout);

    static void layout_changed(void *data, Evas *evas, Evas_Object *layout, void *info);
    static void layout_deleted(void *data, Evas *evas, Evas_Object *layout, void *info);
    static void object_deleted(void *data, Evas *evas, Evas_Object *object, void *info);

    void end();
    void follow_layout();

    Evas_Object *layout_;
    Eina_Rect area_;
    std::vector<std::unique_ptr<Progressbar>> bars_;
};

/// The record behind a circle object; null for any other object.
[[nodiscard]] Progressbar *progressbar_of(const Evas_Object *object);

}  // namespace host::circle
