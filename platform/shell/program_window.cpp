#include "shell/program_window.h"

#include "shell/window_calls.h"

#include <Ecore.h>
#include <Evas.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace host {

namespace {

constexpr std::uint32_t kAlphaMask = 0xff000000U;
constexpr int kFinger = 1;

unsigned int event_time() {
    return static_cast<unsigned int>(static_cast<long long>(ecore_time_get() * 1000.0));
}

/// The one layout that a new window has on its canvas.
Evas_Object *content_of(Evas_Object *window) {
    Evas_Object *object = evas_object_bottom_get(evas_object_evas_get(window));
    while (object != nullptr && std::strcmp(evas_object_type_get(object), "edje") != 0) {
        object = evas_object_above_get(object);
    }
    return object;
}

/// The smallest rectangle that holds all pixels of an image that aren't transparent.
Rect bounds_of_visible(const std::uint32_t *pixels, int w, int h, int row) {
    const auto is_visible = [](std::uint32_t pixel) { return (pixel & kAlphaMask) != 0; };
    int left = w;
    int right = 0;
    int top = h;
    int bottom = 0;
    for (int y = 0; y < h; ++y) {
        const std::uint32_t *begin = pixels + static_cast<std::ptrdiff_t>(y) * row;
        const std::uint32_t *end = begin + w;
        const std::uint32_t *first = std::find_if(begin, end, is_visible);
        if (first == end) {
            continue;
        }
        const std::uint32_t *last = end;
        while (!is_visible(last[-1])) {
            --last;
        }
        left = std::min(left, static_cast<int>(first - begin));
        right = std::max(right, static_cast<int>(last - begin));
        top = std::min(top, y);
        bottom = y + 1;
    }
    return right > left ? Rect{left, top, right - left, bottom - top} : Rect{};
}

}  // namespace

ProgramWindow::ProgramWindow(Evas_Object *parent, Evas_Object *above, const char *name,
                             const Rect &screen, int rotation,
                             std::function<void(ProgramWindow *)> deleted)
    : deleted_(std::move(deleted)),
      clip_(evas_object_rectangle_add(evas_object_evas_get(above))),
      screen_(screen),
      rotation_(rotation) {
    window_ = __real_elm_win_add(parent, name, ELM_WIN_INLINED_IMAGE);
    if (window_ == nullptr) {
        return;
    }
    image_ = elm_win_inlined_image_object_get(window_);
    canvas_ = evas_object_evas_get(window_);
    content_ = content_of(window_);
    elm_win_alpha_set(window_, EINA_TRUE);
    // The shell gives it its input, so that it can be felt where it is transparent.
    evas_object_pass_events_set(image_, EINA_TRUE);
    evas_object_stack_below(image_, above);
    evas_object_clip_set(image_, clip_.get());
    evas_object_event_callback_add(window_, EVAS_CALLBACK_DEL, window_deleted, this);
    evas_object_event_callback_add(window_, EVAS_CALLBACK_RESIZE, window_resized, this);
    evas_event_callback_add(canvas_, EVAS_CALLBACK_RENDER_POST, rendered, this);
    lay_out();
}

ProgramWindow::~ProgramWindow() {
    if (window_ != nullptr) {
        evas_event_callback_del_full(canvas_, EVAS_CALLBACK_RENDER_POST, rendered, this);
        evas_object_event_callback_del_full(window_, EVAS_CALLBACK_RESIZE, window_resized, this);
        evas_object_event_callback_del_full(window_, EVAS_CALLBACK_DEL, window_deleted, this);
    }
}

void ProgramWindow::window_deleted(void *data, Evas * /*evas*/, Evas_Object * /*obj*/,
                                   void * /*info*/) {
    auto *self = static_cast<ProgramWindow *>(data);
    const auto deleted = self->deleted_;
    deleted(self);
}

void ProgramWindow::window_resized(void *data, Evas * /*evas*/, Evas_Object *obj, void * /*info*/) {
    // A window that grows with its content would be cut by the screen: here as on a device the
    // screen is its size.
    auto *self = static_cast<ProgramWindow *>(data);
    int w = 0;
    int h = 0;
    evas_object_geometry_get(obj, nullptr, nullptr, &w, &h);
    if (w != self->canvas_width() || h != self->canvas_height()) {
        evas_object_resize(obj, self->canvas_width(), self->canvas_height());
    }
}

int ProgramWindow::canvas_width() const {
    return rotation_ % 180 == 0 ? screen_.w : screen_.h;
}

int ProgramWindow::canvas_height() const {
    return rotation_ % 180 == 0 ? screen_.h : screen_.w;
}

void ProgramWindow::place(const Rect &screen) {
    screen_ = screen;
    lay_out();
}

void ProgramWindow::set_covered(bool covered) {
    covered_ = covered;
    clip_to_visible_part();
}

void ProgramWindow::lay_out() {
    const int w = canvas_width();
    const int h = canvas_height();
    evas_object_resize(window_, w, h);
    // Of a window inside another the toolkit looks after the first size alone.
    evas_object_resize(content_, w, h);
    evas_object_geometry_set(image_, screen_.x, screen_.y, w, h);
    if (rotation_ == 0) {
        evas_object_map_enable_set(image_, EINA_FALSE);
    } else {
        // The screen's corners in the order of the picture's own, top left first, clockwise.
        const int corners[4][2] = {{screen_.x, screen_.y},
                                   {screen_.x + screen_.w, screen_.y},
                                   {screen_.x + screen_.w, screen_.y + screen_.h},
                                   {screen_.x, screen_.y + screen_.h}};
        const int picture[4][2] = {{0, 0}, {w, 0}, {w, h}, {0, h}};
        const int quarters = rotation_ / 90;
        Evas_Map *map = evas_map_new(4);
        for (int i = 0; i < 4; ++i) {
            const int *corner = corners[(i + 4 - quarters) % 4];
            evas_map_point_coord_set(map, i, corner[0], corner[1], 0);
            evas_map_point_image_uv_set(map, i, picture[i][0], picture[i][1]);
        }
        evas_map_smooth_set(map, EINA_FALSE);
        evas_map_alpha_set(map, EINA_TRUE);
        evas_object_map_set(image_, map);
        evas_map_free(map);
        evas_object_map_enable_set(image_, EINA_TRUE);
    }
    clip_to_visible_part();
}

void ProgramWindow::rendered(void *data, Evas * /*evas*/, void *info) {
    const auto *post = static_cast<const Evas_Event_Render_Post *>(info);
    if (post != nullptr && post->updated_area != nullptr) {
        static_cast<ProgramWindow *>(data)->find_visible_part();
    }
}

void ProgramWindow::find_visible_part() {
    int w = 0;
    int h = 0;
    evas_object_image_size_get(image_, &w, &h);
    const int row = evas_object_image_stride_get(image_) / static_cast<int>(sizeof(std::uint32_t));
    void *pixels = evas_object_image_data_get(image_, EINA_FALSE);
    visible_ = pixels == nullptr
                   ? Rect{}
                   : bounds_of_visible(static_cast<std::uint32_t *>(pixels), w, h, row);
    if (pixels != nullptr) {
        evas_object_image_data_set(image_, pixels);
    }
    clip_to_visible_part();
}

/// A video frame redraws all that lies above it: what is transparent there must cost nothing. The
/// image itself can't be hidden, for then it would never be drawn again.
void ProgramWindow::clip_to_visible_part() {
    if (visible_.w == 0 || covered_) {
        evas_object_hide(clip_.get());
        return;
    }
    const Rect part = rotation_ == 0 ? visible_ : Rect{0, 0, screen_.w, screen_.h};
    evas_object_geometry_set(clip_.get(), screen_.x + part.x, screen_.y + part.y, part.w, part.h);
    evas_object_show(clip_.get());
}

void ProgramWindow::set_available_rotations(std::vector<int> rotations) {
    available_ = std::move(rotations);
}

void ProgramWindow::turn(int degrees) {
    const bool allowed = available_.empty() || std::find(available_.begin(), available_.end(),
                                                         degrees) != available_.end();
    if (!allowed || degrees == rotation_) {
        return;
    }
    rotation_ = degrees;
    lay_out();
    const std::weak_ptr<bool> alive = alive_;
    evas_object_smart_callback_call(window_, "rotation,changed", nullptr);
    if (!alive.expired()) {
        evas_object_smart_callback_call(window_, "wm,rotation,changed", nullptr);
    }
}

Rect ProgramWindow::place_of(const Rect &part) const {
    Rect turned = part;
    switch (rotation_) {
    case 90:
        turned = {part.y, screen_.h - part.x - part.w, part.h, part.w};
        break;
    case 180:
        turned = {screen_.w - part.x - part.w, screen_.h - part.y - part.h, part.w, part.h};
        break;
    case 270:
        turned = {screen_.w - part.y - part.h, part.x, part.h, part.w};
        break;
    default:
        break;
    }
    return {screen_.x + turned.x, screen_.y + turned.y, turned.w, turned.h};
}

void ProgramWindow::feed_position(int x, int y) {
    int px = x;
    int py = y;
    switch (rotation_) {
    case 90:
        px = screen_.h - 1 - y;
        py = x;
        break;
    case 180:
        px = screen_.w - 1 - x;
        py = screen_.h - 1 - y;
        break;
    case 270:
        px = y;
        py = screen_.w - 1 - x;
        break;
    default:
        break;
    }
    evas_event_feed_mouse_move(canvas_, px, py, event_time(), nullptr);
}

void ProgramWindow::finger_down(int x, int y) {
    if (finger_is_down_) {
        return;
    }
    finger_is_down_ = true;
    const std::weak_ptr<bool> alive = alive_;
    evas_event_feed_mouse_in(canvas_, event_time(), nullptr);
    if (!alive.expired()) {
        feed_position(x, y);
    }
    if (!alive.expired()) {
        evas_event_feed_mouse_down(canvas_, kFinger, EVAS_BUTTON_NONE, event_time(), nullptr);
    }
}

void ProgramWindow::finger_move(int x, int y) {
    if (finger_is_down_) {
        feed_position(x, y);
    }
}

void ProgramWindow::finger_up(int x, int y) {
    if (!finger_is_down_) {
        return;
    }
    finger_is_down_ = false;
    const std::weak_ptr<bool> alive = alive_;
    feed_position(x, y);
    if (!alive.expired()) {
        evas_event_feed_mouse_up(canvas_, kFinger, EVAS_BUTTON_NONE, event_time(), nullptr);
    }
    if (!alive.expired()) {
        evas_event_feed_mouse_out(canvas_, event_time(), nullptr);
    }
}

}  // namespace host
