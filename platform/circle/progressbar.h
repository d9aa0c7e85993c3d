#pragma once

#include <Elementary.h>

#include <string_view>

#include "circle/ring.h"

namespace host::circle {

/// A ring and the bar that runs on it, drawn as one object of the canvas, which goes with its
/// parent. This record doesn't outlive the object. Main loop.
class Progressbar {
public:
    explicit Progressbar(Evas_Object *parent);
    ~Progressbar();
    Progressbar(const Progressbar &) = delete;
    Progressbar &operator=(const Progressbar &) = delete;

    [[nodiscard]] Evas_Object *object() const { return object_; }
    void place(const Eina_Rect &area);

    void set_range(double min, double max);
    void set_value(double value);
    void set_angle(double degrees);
    void set_color(const Color &color);
    void set_item_color(std::string_view item, const Color &color);

    [[nodiscard]] double min() const { return min_; }
    [[nodiscard]] double max() const { return max_; }
    [[nodiscard]] double angle() const { return angle_; }
    [[nodiscard]] const Color &color() const { return color_; }

private:
    static void parent_deleted(void *data, Evas *evas, Evas_Object *parent, void *info);

    Evas_Object *parent_;
    Evas_Object *object_;
    Efl_VG *root_;
    Ring ground_;
    Ring bar_;
    double min_ = 0.0;
    double max_ = 100.0;
    double value_ = 0.0;
    double angle_ = 0.0;
    Color color_;
};

}  // namespace host::circle
