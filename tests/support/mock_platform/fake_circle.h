#pragma once

#include <efl_extension.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Circle objects as records behind rectangles that draw nothing.
class FakeCircle {
public:
    using Rgba = std::array<int, 4>;

    /// What a new bar has: the platform's colour of the item "default".
    static constexpr Rgba platform_color{10, 20, 30, 40};

    struct Bar {
        double min = 0.0;
        double max = 100.0;
        double angle = 0.0;
        /// By item; "default" is the bar itself.
        std::map<std::string, Rgba> colors{{"default", platform_color}};
        /// What set the angle, frame by frame.
        std::vector<double> angles;
    };

    FakeCircle();
    ~FakeCircle();
    FakeCircle(const FakeCircle &) = delete;
    FakeCircle &operator=(const FakeCircle &) = delete;

    /// The bar that was made last; null when it is gone.
    Evas_Object *last_bar() const { return m_last; }
    /// The record of a live bar. An object that is no bar fails the test and gives an empty one.
    const Bar &bar(const Evas_Object *obj) const;
    int live() const { return static_cast<int>(m_bars.size()); }
    /// What the surfaces were made over, oldest first.
    const std::vector<Evas_Object *> &layouts() const { return m_layouts; }

    Eext_Circle_Surface *eext_circle_surface_layout_add(Evas_Object *layout);
    Evas_Object *eext_circle_object_progressbar_add(Evas_Object *parent,
                                                    Eext_Circle_Surface *surface);
    void eext_circle_object_value_min_max_set(Evas_Object *obj, double min, double max);
    void eext_circle_object_value_min_max_get(const Evas_Object *obj, double *min, double *max);
    void eext_circle_object_value_set(Evas_Object *obj, double value);
    void eext_circle_object_angle_set(Evas_Object *obj, double angle);
    double eext_circle_object_angle_get(const Evas_Object *obj);
    void eext_circle_object_color_set(Evas_Object *obj, int r, int g, int b, int a);
    void eext_circle_object_color_get(const Evas_Object *obj, int *r, int *g, int *b, int *a);
    void eext_circle_object_item_color_set(Evas_Object *obj, const char *item, int r, int g, int b,
                                           int a);

private:
    static void object_deleted(void *data, Evas *e, Evas_Object *obj, void *event_info);
    Bar *find(const Evas_Object *obj);

    std::map<const Evas_Object *, Bar> m_bars;
    std::vector<std::unique_ptr<char>> m_surfaces;  ///< their addresses are the handles
    std::vector<Evas_Object *> m_layouts;
    Evas_Object *m_last = nullptr;
};

namespace mock {
FakeCircle &fake_circle();
}
