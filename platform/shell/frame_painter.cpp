#include "shell/frame_painter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace host {

namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr int kDetentsPerTurn = 24;

struct Colour {
    float r = 0;
    float g = 0;
    float b = 0;
};

Colour mix(const Colour &a, const Colour &b, float share) {
    return {a.r + (b.r - a.r) * share, a.g + (b.g - a.g) * share, a.b + (b.b - a.b) * share};
}

Colour lit(const Colour &c, float light) {
    return {c.r * light, c.g * light, c.b * light};
}

/// How much of a pixel lies inside an edge at this distance.
float coverage(float distance) {
    return std::clamp(0.5F - distance, 0.0F, 1.0F);
}

float bump(float x, float centre, float half_width) {
    const float t = (x - centre) / half_width;
    return std::max(0.0F, 1.0F - t * t);
}

std::uint32_t pack(const Colour &c, float alpha) {
    const auto byte = [alpha](float v) {
        // Rounded once it is cut off; std::lround() would take as long as the rest of a pixel.
        const float raised =
            std::clamp(v, 0.0F, 1.0F) * std::clamp(alpha, 0.0F, 1.0F) * 255.0F + 0.5F;
        return static_cast<std::uint32_t>(raised);
    };
    return byte(1.0F) << 24U | byte(c.r) << 16U | byte(c.g) << 8U | byte(c.b);
}

constexpr Colour kBackdropTop{0.165F, 0.180F, 0.208F};
constexpr Colour kBackdropBottom{0.075F, 0.082F, 0.098F};
constexpr Colour kGlassRim{0.008F, 0.009F, 0.012F};
constexpr Colour kMetal{0.300F, 0.315F, 0.340F};
constexpr Colour kCase{0.150F, 0.158F, 0.175F};
constexpr Colour kMarkColour{0.286F, 0.733F, 1.000F};

constexpr int kSheenSteps = 1024;

std::array<float, kSheenSteps> make_sheen() {
    std::array<float, kSheenSteps> table{};
    for (int i = 0; i < kSheenSteps; ++i) {
        const float a = 2.0F * kPi * (static_cast<float>(i) / kSheenSteps) + kPi / 5.0F;
        const float first = std::pow(std::max(0.0F, std::cos(a)), 3.0F);
        const float second = std::pow(std::max(0.0F, -std::cos(a)), 5.0F);
        table[static_cast<std::size_t>(i)] = 0.62F + 0.85F * first + 0.40F * second;
    }
    return table;
}

/// Light on a turned metal surface: it varies with the direction, as from two lamps. From a table,
/// since the frame is painted before the first picture can be seen.
float sheen(float turns) {
    static const std::array<float, kSheenSteps> table = make_sheen();
    return table[static_cast<unsigned int>(turns * kSheenSteps) % kSheenSteps];
}

Colour ring_colour(const Geometry &g, float distance, float turns) {
    const float width = g.ring - g.glass;
    const float t = (distance - g.glass) / width;
    // A flat top between two bevels that catch the light from opposite sides.
    float light = sheen(turns);
    if (t < 0.16F) {
        light = 0.35F + 0.55F * sheen(turns < 0.5F ? turns + 0.5F : turns - 0.5F) * (t / 0.16F);
    } else if (t > 0.86F) {
        light *= 1.0F + 0.55F * bump(t, 0.91F, 0.05F) - 0.6F * std::max(0.0F, t - 0.91F) / 0.09F;
    }
    // One fine groove for each detent, on the outer half.
    if (g.screen.w == g.screen.h && t > 0.52F && t < 0.84F) {
        const float radius = static_cast<float>(g.screen.w) / 2.0F + distance;
        const float step = turns * kDetentsPerTurn;
        const float off = std::abs(step - std::round(step)) * 2.0F * kPi * radius / kDetentsPerTurn;
        light *= 1.0F - 0.55F * std::clamp(1.3F - off, 0.0F, 1.0F);
        light += 0.16F * std::clamp(1.0F - std::abs(off - 1.9F), 0.0F, 1.0F);
    }
    return lit(kMetal, light);
}

Colour case_colour(const Geometry &g, float distance, float turns) {
    const float t = (distance - g.ring) / (g.body - g.ring);
    return lit(kCase, (0.45F + 0.75F * sheen(turns)) * (1.05F - 0.75F * t));
}

Colour key_colour(const Geometry &g, float distance, float turns) {
    const float depth = std::clamp(-distance / (g.body - g.ring), 0.0F, 1.0F);
    return lit(kMetal, (0.5F + 0.55F * sheen(turns)) * (0.55F + 0.45F * depth));
}

Colour backdrop_colour(const Geometry &g, float y, float distance) {
    Colour c = mix(kBackdropTop, kBackdropBottom, y / static_cast<float>(g.window_h));
    const float reach = g.body * 0.6F;
    const float shade = std::clamp(1.0F - (distance - g.body) / reach, 0.0F, 1.0F);
    return lit(c, 1.0F - 0.65F * shade * shade);
}

/// The watch at a point outside the screen, or on its edge.
Colour watch_colour(const Geometry &g, float x, float y, float distance) {
    if (distance < g.glass - 1.0F) {
        return kGlassRim;
    }
    const bool is_case = distance < g.body + 1.0F;
    Colour c = distance > g.ring ? backdrop_colour(g, y, distance) : kCase;
    if (distance > g.ring &&
        x > static_cast<float>(g.screen.x) + static_cast<float>(g.screen.w) / 2.0F) {
        for (const auto key : {Geometry::Place::back_key, Geometry::Place::home_key}) {
            const float from_key = g.key_distance(key, x, y);
            if (from_key < 1.0F) {
                c = mix(c, key_colour(g, from_key, g.direction(x, y)), coverage(from_key));
            }
        }
    }
    if (!is_case) {
        return c;
    }
    const float turns = g.direction(x, y);
    c = mix(c, case_colour(g, distance, turns), coverage(distance - g.body));
    if (distance < g.ring + 1.0F) {
        c = mix(c, ring_colour(g, distance, turns), coverage(distance - g.ring));
    }
    return mix(c, kGlassRim, coverage(distance - g.glass));
}

}  // namespace

Picture paint_frame(const Geometry &g) {
    Picture picture{g.window_w, g.window_h, {}};
    picture.pixels.resize(static_cast<std::size_t>(g.window_w) * g.window_h);
    auto *pixel = picture.pixels.data();
    for (int row = 0; row < g.window_h; ++row, pixel += g.window_w) {
        for (int column = 0; column < g.window_w;) {
            const float x = static_cast<float>(column) + 0.5F;
            const float y = static_cast<float>(row) + 0.5F;
            const float distance = g.edge_distance(x, y);
            if (distance > -0.5F) {
                const Colour c = g.framed ? watch_colour(g, x, y, distance) : Colour{};
                pixel[column] = pack(c, 1.0F - coverage(distance));
                ++column;
            } else {
                // The edge is at least that far away.
                column += std::max(1, static_cast<int>(-distance));
            }
        }
    }
    return picture;
}

Picture paint_mark(const Geometry &g) {
    const float radius = std::max(2.0F, (g.ring - g.glass) * 0.075F);
    const float glow = radius * 2.6F;
    const int size = 2 * static_cast<int>(std::ceil(glow));
    Picture picture{size, size, {}};
    picture.pixels.reserve(static_cast<std::size_t>(size) * size);
    const float middle = static_cast<float>(size) / 2.0F;
    for (int row = 0; row < size; ++row) {
        for (int column = 0; column < size; ++column) {
            const float r = std::hypot(static_cast<float>(column) + 0.5F - middle,
                                       static_cast<float>(row) + 0.5F - middle);
            const float halo = std::clamp(1.0F - r / glow, 0.0F, 1.0F);
            picture.pixels.push_back(
                pack(kMarkColour, std::max(coverage(r - radius), 0.55F * halo * halo)));
        }
    }
    return picture;
}

}  // namespace host
