#include "circle/progressbar.h"

#include <algorithm>
#include <cmath>

namespace host::circle {
namespace {

constexpr double kFullTurn = 360.0;
constexpr Color kBarColor{92, 196, 255, 255};
constexpr Color kGroundColor{255, 255, 255, 46};
constexpr std::string_view kBarItem = "default";
constexpr std::string_view kGroundItem = "bg";

Evas_Object *add_vector_object(Evas_Object *parent) {
    Evas_Object *object = evas_object_vg_add(evas_object_evas_get(parent));
    evas_object_pass_events_set(object, EINA_TRUE);
    return object;
}

Efl_VG *add_root(Evas_Object *object) {
    Efl_VG *root = evas_vg_container_add(object);
    evas_object_vg_root_node_set(object, root);
    return root;
}

}  // namespace

Progressbar::Progressbar(Evas_Object *parent)
    : parent_(parent),
      object_(add_vector_object(parent)),
      root_(add_root(object_)),
      ground_(root_),
      bar_(root_),
      color_(kBarColor) {
    ground_.set_sweep(kFullTurn);
    ground_.set_color(kGroundColor);
    bar_.set_color(color_);
    evas_object_event_callback_add(parent_, EVAS_CALLBACK_DEL, parent_deleted, this);
    evas_object_show(object_);
}

Progressbar::~Progressbar() {
    if (parent_ != nullptr) {
        evas_object_event_callback_del_full(parent_, EVAS_CALLBACK_DEL, parent_deleted, this);
    }
}

void Progressbar::parent_deleted(void *data, Evas * /*evas*/, Evas_Object * /*parent*/,
                                 void * /*info*/) {
    auto *self = static_cast<Progressbar *>(data);
    self->parent_ = nullptr;
    // Ends this record.
    evas_object_del(self->object_);
}

void Progressbar::place(const Eina_Rect &area) {
    evas_object_geometry_set(object_, area.x, area.y, area.w, area.h);
    ground_.set_size(area.w, area.h);
    bar_.set_size(area.w, area.h);
}

void Progressbar::set_range(double min, double max) {
    if (!std::isfinite(min) || !std::isfinite(max) || min >= max) {
        return;
    }
    min_ = min;
    max_ = max;
    value_ = std::clamp(value_, min_, max_);
}

void Progressbar::set_value(double value) {
    if (std::isnan(value)) {
        return;
    }
    value_ = std::clamp(value, min_, max_);
    set_angle((value_ - min_) / (max_ - min_) * kFullTurn);
}

void Progressbar::set_angle(double degrees) {
    if (!std::isfinite(degrees)) {
        return;
    }
    angle_ = degrees;
    bar_.set_sweep(degrees);
}

void Progressbar::set_color(const Color &color) {
    color_ = color;
    bar_.set_color(color);
}

void Progressbar::set_item_color(std::string_view item, const Color &color) {
    if (item == kBarItem) {
        set_color(color);
    } else if (item == kGroundItem) {
        ground_.set_color(color);
    }
}

}  // namespace host::circle
