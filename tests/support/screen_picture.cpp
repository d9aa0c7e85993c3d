#include "screen_picture.h"

#include <Ecore_Evas.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string_view>

namespace support {
namespace {

constexpr double full = 255.0;
// A stroke's edge and shadow are half ground; what reads is its middle.
constexpr double core_share = 0.95;

double channel(std::uint32_t pixel, int shift) {
    return static_cast<double>(pixel >> shift & 0xffU);
}

double alpha(std::uint32_t pixel) {
    return channel(pixel, 24);
}

double to_linear(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

struct EinaListFree {
    void operator()(Eina_List *list) const { eina_list_free(list); }
};

bool is_visible(Evas_Object *object) {
    for (Evas_Object *part = object; part != nullptr; part = evas_object_smart_parent_get(part)) {
        if (!evas_object_visible_get(part)) {
            return false;
        }
    }
    for (Evas_Object *clip = evas_object_clip_get(object); clip != nullptr;
         clip = evas_object_clip_get(clip)) {
        int visible = 0;
        evas_object_color_get(clip, nullptr, nullptr, nullptr, &visible);
        if (visible == 0 || !evas_object_visible_get(clip)) {
            return false;
        }
    }
    const Box box = box_of(object);
    return box.width > 0 && box.height > 0;
}

SeenText see_line(Evas_Object *object, std::string text) {
    const Box place = box_of(object);
    const Box needed{place.x, place.y, evas_object_text_horiz_advance_get(object), place.height};
    // Without an ellipsis the object is as wide as its text.
    const bool cut = evas_object_text_ellipsis_get(object) >= 0.0 && place.width < needed.width;
    return {object, std::move(text), {place}, place, needed, cut};
}

SeenText see_block(Evas_Object *object) {
    const std::unique_ptr<Evas_Textblock_Cursor, decltype(&evas_textblock_cursor_free)> cursor(
        evas_object_textblock_cursor_new(object), &evas_textblock_cursor_free);
    const Box place = box_of(object);
    std::vector<Box> lines;
    for (int line = 0; evas_textblock_cursor_line_set(cursor.get(), line); ++line) {
        Box box{};
        evas_textblock_cursor_line_geometry_get(cursor.get(), &box.x, &box.y, &box.width,
                                                &box.height);
        lines.push_back({place.x + box.x, place.y + box.y, box.width, box.height});
    }
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(object, &width, &height);
    const bool is_wider = std::any_of(lines.begin(), lines.end(), [&place](const Box &line) {
        return line.x < place.x || line.x + line.width > place.x + place.width;
    });
    const char *markup = evas_object_textblock_text_markup_get(object);
    return {object, markup != nullptr ? markup : "",   lines,
            place,  {place.x, place.y, width, height}, is_wider || height > place.height};
}

void see(Evas_Object *object, SeenScreen &seen) {
    const char *type_name = evas_object_type_get(object);
    const std::string_view type = type_name != nullptr ? type_name : "";
    if (is_visible(object)) {
        if (type == "text") {
            const char *text = evas_object_text_text_get(object);
            if (text != nullptr && *text != '\0') {
                seen.texts.push_back(see_line(object, text));
            }
        } else if (type == "textblock") {
            SeenText text = see_block(object);
            if (!text.text.empty()) {
                seen.texts.push_back(std::move(text));
            }
        } else if (type == "elm_button") {
            seen.buttons.push_back(object);
        } else if (type == "image") {
            seen.images.push_back(object);
        }
    }
    const std::unique_ptr<Eina_List, EinaListFree> members(evas_object_smart_members_get(object));
    for (const Eina_List *node = members.get(); node != nullptr; node = node->next) {
        see(static_cast<Evas_Object *>(node->data), seen);
    }
}

}  // namespace

Ground white_ground() {
    return [](int, int) { return Colour{1.0, 1.0, 1.0}; };
}

Ground black_ground() {
    return [](int, int) { return Colour{0.0, 0.0, 0.0}; };
}

Ground busy_ground() {
    return [](int x, int y) {
        const auto mix = [](unsigned int a, unsigned int b) {
            unsigned int value = a * 2654435761U + b * 40503U;
            value ^= value >> 15;
            value *= 2246822519U;
            return value ^ value >> 13;
        };
        const unsigned int block =
            mix(static_cast<unsigned int>(x) / 6, static_cast<unsigned int>(y) / 6);
        const unsigned int speck = mix(static_cast<unsigned int>(x), static_cast<unsigned int>(y));
        const unsigned int value = speck % 4 == 0 ? speck : block;
        // Full and empty channels, as in a picture of saturated colours with white and black.
        return Colour{value & 0x100U ? 1.0 : 0.0, value & 0x200U ? 1.0 : 0.0,
                      value & 0x400U ? 1.0 : 0.0};
    };
}

ScreenPicture::ScreenPicture(Evas_Object *window) {
    Evas *canvas = evas_object_evas_get(window);
    evas_render(canvas);
    Ecore_Evas *surface = ecore_evas_ecore_evas_get(canvas);
    ecore_evas_geometry_get(surface, nullptr, nullptr, &m_width, &m_height);
    const auto *pixels = static_cast<const std::uint32_t *>(ecore_evas_buffer_pixels_get(surface));
    if (pixels != nullptr) {
        m_pixels.assign(pixels, pixels + static_cast<std::ptrdiff_t>(m_width) * m_height);
    }
}

bool ScreenPicture::is_empty() const {
    return std::all_of(m_pixels.begin(), m_pixels.end(),
                       [](std::uint32_t pixel) { return alpha(pixel) == 0.0; });
}

double ScreenPicture::difference(const ScreenPicture &other, std::size_t place) const {
    double most = 0.0;
    for (const int shift : {0, 8, 16}) {
        most = std::max(most, std::abs(channel(m_pixels[place], shift) -
                                       channel(other.m_pixels[place], shift)));
    }
    return most;
}

double ScreenPicture::luminance(std::size_t place, const Colour &below) const {
    const std::uint32_t pixel = m_pixels[place];
    const double through = 1.0 - alpha(pixel) / full;
    const auto linear = [&](int shift, std::size_t index) {
        return to_linear(std::min(1.0, channel(pixel, shift) / full + below[index] * through));
    };
    return 0.2126 * linear(16, 0) + 0.7152 * linear(8, 1) + 0.0722 * linear(0, 2);
}

std::optional<double> ScreenPicture::contrast_against(const ScreenPicture &ground_only,
                                                      const Ground &ground, const Box &area) const {
    const int left = std::max(area.x, 0);
    const int top = std::max(area.y, 0);
    const int right = std::min(area.x + area.width, m_width);
    const int bottom = std::min(area.y + area.height, m_height);
    const auto for_each_place = [&](const auto &visit) {
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                visit(x, y, static_cast<std::size_t>(y * m_width + x));
            }
        }
    };
    // How far pixels were changed doesn't depend on what lies below, and so neither does what
    // counts as the middle of a stroke.
    double most = 0.0;
    for_each_place([&](int, int, std::size_t place) {
        most = std::max(most, difference(ground_only, place));
    });
    if (most == 0.0) {
        return std::nullopt;
    }
    double least = std::numeric_limits<double>::max();
    for_each_place([&](int x, int y, std::size_t place) {
        if (difference(ground_only, place) < core_share * most) {
            return;
        }
        const Colour below = ground(x, y);
        const double one = luminance(place, below) + 0.05;
        const double other = ground_only.luminance(place, below) + 0.05;
        least = std::min(least, std::max(one, other) / std::min(one, other));
    });
    return least;
}

bool Box::overlaps(const Box &other) const {
    return x < other.x + other.width && other.x < x + width && y < other.y + other.height &&
           other.y < y + height;
}

bool Box::is_in_circle(int side) const {
    const double radius = side / 2.0;
    for (const int corner_x : {x, x + width}) {
        for (const int corner_y : {y, y + height}) {
            if (std::hypot(corner_x - radius, corner_y - radius) > radius) {
                return false;
            }
        }
    }
    return true;
}

Box box_of(const Evas_Object *object) {
    Box box{};
    evas_object_geometry_get(object, &box.x, &box.y, &box.width, &box.height);
    return box;
}

SeenScreen look_at(Evas_Object *window) {
    SeenScreen seen;
    for (Evas_Object *object = evas_object_bottom_get(evas_object_evas_get(window));
         object != nullptr; object = evas_object_above_get(object)) {
        if (evas_object_smart_parent_get(object) == nullptr) {
            see(object, seen);
        }
    }
    return seen;
}

}  // namespace support
