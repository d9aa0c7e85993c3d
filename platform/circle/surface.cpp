#include "circle/surface.h"

#include <algorithm>

namespace host::circle {
namespace {

constexpr char kProgressbarKey[] = "tessel.circle.progressbar";

std::vector<std::unique_ptr<Surface>> &surfaces() {
    static std::vector<std::unique_ptr<Surface>> instance;
    return instance;
}

}  // namespace

Surface *Surface::add(Evas_Object *layout) {
    surfaces().push_back(std::unique_ptr<Surface>(new Surface(layout)));
    return surfaces().back().get();
}

bool Surface::lives(const Surface *surface) {
    return std::any_of(surfaces().begin(), surfaces().end(),
                       [surface](const auto &known) { return known.get() == surface; });
}

Surface::Surface(Evas_Object *layout) : layout_(layout), area_() {
    evas_object_event_callback_add(layout_, EVAS_CALLBACK_MOVE, layout_changed, this);
    evas_object_event_callback_add(layout_, EVAS_CALLBACK_RESIZE, layout_changed, this);
    evas_object_event_callback_add(layout_, EVAS_CALLBACK_DEL, layout_deleted, this);
    follow_layout();
}

Surface::~Surface() {
    if (layout_ != nullptr) {
        evas_object_event_callback_del_full(layout_, EVAS_CALLBACK_MOVE, layout_changed, this);
        evas_object_event_callback_del_full(layout_, EVAS_CALLBACK_RESIZE, layout_changed, this);
        evas_object_event_callback_del_full(layout_, EVAS_CALLBACK_DEL, layout_deleted, this);
    }
}

void Surface::end() {
    const auto self = std::find_if(surfaces().begin(), surfaces().end(),
                                   [this](const auto &known) { return known.get() == this; });
    surfaces().erase(self);
}

void Surface::follow_layout() {
    evas_object_geometry_get(layout_, &area_.x, &area_.y, &area_.w, &area_.h);
    if (layout_ == elm_object_top_widget_get(layout_)) {
        // A window gives its place on the display, and its canvas begins at 0.
        area_.x = 0;
        area_.y = 0;
    }
    for (const auto &bar : bars_) {
        bar->place(area_);
    }
}

void Surface::layout_changed(void *data, Evas * /*evas*/, Evas_Object * /*layout*/,
                             void * /*info*/) {
    static_cast<Surface *>(data)->follow_layout();
}

void Surface::layout_deleted(void *data, Evas * /*evas*/, Evas_Object * /*layout*/,
                             void * /*info*/) {
    auto *self = static_cast<Surface *>(data);
    self->layout_ = nullptr;
    if (self->bars_.empty()) {
        self->end();
    }
}

Evas_Object *Surface::add_progressbar(Evas_Object *parent) {
    bars_.push_back(std::make_unique<Progressbar>(parent));
    Evas_Object *object = bars_.back()->object();
    bars_.back()->place(area_);
    evas_object_data_set(object, kProgressbarKey, bars_.back().get());
    evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, object_deleted, this);
    return object;
}

void Surface::object_deleted(void *data, Evas * /*evas*/, Evas_Object *object, void * /*info*/) {
    auto *self = static_cast<Surface *>(data);
    evas_object_data_del(object, kProgressbarKey);
    std::erase_if(self->bars_, [object](const auto &bar) { return bar->object() == object; });
    if (self->bars_.empty()) {
        self->end();
    }
}

Progressbar *progressbar_of(const Evas_Object *object) {
    return static_cast<Progressbar *>(evas_object_data_get(object, kProgressbarKey));
}

}  // namespace host::circle
