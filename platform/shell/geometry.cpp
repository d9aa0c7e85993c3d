#include "shell/geometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace host {

namespace {

// Shares of the screen's shorter side.
constexpr float kGlass = 0.025F;
constexpr float kRing = 0.135F;
constexpr float kBody = 0.165F;
constexpr float kMargin = 0.07F;
constexpr int kTile = 8;  ///< pixels

constexpr float kKeyAngle = std::numbers::pi_v<float> / 6.5F;
constexpr float kKeyHalfLength = 0.075F;
constexpr float kKeyHalfDepth = 0.03F;

float round_box_distance(float x, float y, float half_w, float half_h, float radius) {
    const float qx = std::abs(x) - half_w + radius;
    const float qy = std::abs(y) - half_h + radius;
    const float ox = std::max(qx, 0.0F);
    const float oy = std::max(qy, 0.0F);
    return std::sqrt(ox * ox + oy * oy) + std::min(std::max(qx, qy), 0.0F) - radius;
}

}  // namespace

Geometry Geometry::watch(int screen_w, int screen_h) {
    const auto side = static_cast<float>(std::min(screen_w, screen_h));
    Geometry result;
    result.framed = true;
    result.glass = side * kGlass;
    result.ring = side * kRing;
    result.body = side * kBody;
    // The toolkit redraws whole tiles: on their grid the screen is no more than itself.
    const int around =
        kTile * static_cast<int>(std::ceil(side * (kBody + kMargin) / static_cast<float>(kTile)));
    result.window_w = screen_w + 2 * around;
    result.window_h = screen_h + 2 * around;
    result.screen = {around, around, screen_w, screen_h};
    return result;
}

Geometry Geometry::bare(int screen_w, int screen_h) {
    Geometry result;
    result.window_w = screen_w;
    result.window_h = screen_h;
    result.screen = {0, 0, screen_w, screen_h};
    return result;
}

Geometry Geometry::filling(int window_w, int window_h) {
    const int side = std::min(window_w, window_h);
    return bare(side, side).centred_in(window_w, window_h);
}

Geometry Geometry::watch_filling(int window_w, int window_h) {
    const int room = std::min(window_w, window_h);
    int side = room;
    while (side > 1 && watch(side, side).window_w > room) {
        --side;
    }
    return watch(side, side).centred_in(window_w, window_h);
}

Geometry Geometry::card(int w, int h) {
    Geometry result;
    result.window_w = w;
    result.window_h = h;
    result.screen = {0, 0, w, h};
    result.round = false;
    return result;
}

Geometry Geometry::centred_in(int w, int h) const {
    Geometry result = *this;
    result.window_w = w;
    result.window_h = h;
    result.screen.x = (w - screen.w) / 2;
    result.screen.y = (h - screen.h) / 2;
    return result;
}

float Geometry::edge_distance(float x, float y) const {
    const float half_w = static_cast<float>(screen.w) / 2.0F;
    const float half_h = static_cast<float>(screen.h) / 2.0F;
    return round_box_distance(x - static_cast<float>(screen.x) - half_w,
                              y - static_cast<float>(screen.y) - half_h, half_w, half_h,
                              round ? std::min(half_w, half_h) : 0.0F);
}

float Geometry::direction(float x, float y) const {
    const float dx = x - static_cast<float>(screen.x) - static_cast<float>(screen.w) / 2.0F;
    const float dy = y - static_cast<float>(screen.y) - static_cast<float>(screen.h) / 2.0F;
    const float turns = std::atan2(dx, -dy) / (2.0F * std::numbers::pi_v<float>);
    return turns < 0.0F ? turns + 1.0F : turns;
}

float Geometry::key_distance(Place key, float x, float y) const {
    const auto side = static_cast<float>(std::min(screen.w, screen.h));
    static const float cosine = std::cos(kKeyAngle);
    static const float sine_down = std::sin(kKeyAngle);
    const float sine = key == Place::back_key ? -sine_down : sine_down;
    // The keys sit on the case's edge, seen from the middle of the right round end.
    const float cx = static_cast<float>(screen.x + screen.w) - side / 2.0F;
    const float cy = static_cast<float>(screen.y) + static_cast<float>(screen.h) / 2.0F;
    const float radius = side / 2.0F + body;
    const float dx = x - cx;
    const float dy = y - cy;
    const float along = dx * cosine + dy * sine - radius;
    const float across = -dx * sine + dy * cosine;
    return round_box_distance(along, across, side * kKeyHalfDepth, side * kKeyHalfLength,
                              side * 0.015F);
}

Geometry::Place Geometry::at(int x, int y) const {
    const float px = static_cast<float>(x) + 0.5F;
    const float py = static_cast<float>(y) + 0.5F;
    const float distance = edge_distance(px, py);
    if (distance < 0.0F) {
        return Place::screen;
    }
    if (!framed) {
        return Place::elsewhere;
    }
    // What a finger can do with the ring it can do with the case beside it.
    if (distance <= body) {
        return Place::ring;
    }
    for (const Place key : {Place::back_key, Place::home_key}) {
        if (key_distance(key, px, py) <= 0.0F) {
            return key;
        }
    }
    return Place::elsewhere;
}

}  // namespace host
