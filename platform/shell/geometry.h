#pragma once

namespace host {

struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;

    bool operator==(const Rect &) const = default;
    [[nodiscard]] bool contains(int px, int py) const {
        return px >= x && py >= y && px < x + w && py < y + h;
    }
};

/// Where the parts of the watch are in the shell's window, all in pixels of that window.
class Geometry {
public:
    /// What a point belongs to.
    enum class Place { screen, ring, back_key, home_key, elsewhere };

    /// A watch with its ring and keys around a screen of the given size.
    [[nodiscard]] static Geometry watch(int screen_w, int screen_h);
    /// A round screen of the given size, with nothing around it.
    [[nodiscard]] static Geometry bare(int screen_w, int screen_h);
    /// The largest circle in the middle of a window of the given size, with nothing around it.
    [[nodiscard]] static Geometry filling(int window_w, int window_h);
    /// The largest watch in the middle of a window of the given size.
    [[nodiscard]] static Geometry watch_filling(int window_w, int window_h);

    /// A widget: a screen with corners that fills its window.
    [[nodiscard]] static Geometry card(int w, int h);

    /// The same in the middle of a window of another size.
    [[nodiscard]] Geometry centred_in(int window_w, int window_h) const;

    [[nodiscard]] Place at(int x, int y) const;
    /// Distance from the screen's edge, negative inside.
    [[nodiscard]] float edge_distance(float x, float y) const;
    /// Direction of a point seen from the middle, in turns clockwise from the top, 0 to 1.
    [[nodiscard]] float direction(float x, float y) const;
    /// Distance from the edge of one of the two keys, negative inside.
    [[nodiscard]] float key_distance(Place key, float x, float y) const;

    int window_w = 0;
    int window_h = 0;
    Rect screen;
    bool framed = false;
    bool round = true;  ///< the screen's ends, or else it has corners
    float glass = 0;    ///< width of the dark rim around the screen
    float ring = 0;     ///< distance from the screen's edge to the ring's outer edge
    float body = 0;     ///< distance from the screen's edge to the case's outer edge

    bool operator==(const Geometry &) const = default;
};

}  // namespace host
