#pragma once

#include <Elementary.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What a window shows, as pixels and as boxes: for tests that judge how the screens look.
namespace support {

/// What lies below the window, for a place of it: red, green, blue, 0 to 1, as they are stored.
using Colour = std::array<double, 3>;
using Ground = std::function<Colour(int x, int y)>;

Ground white_ground();
Ground black_ground();
/// Small blocks and specks of all colours, the same at each call.
Ground busy_ground();

struct Box {
    int x;
    int y;
    int width;
    int height;

    [[nodiscard]] bool overlaps(const Box &other) const;
    /// All corners in the circle that fills a square of that side.
    [[nodiscard]] bool is_in_circle(int side) const;
};

/// The pixels of a window with alpha.
class ScreenPicture {
public:
    /// Draws what has changed and takes the picture.
    explicit ScreenPicture(Evas_Object *window);

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }
    [[nodiscard]] bool is_empty() const;
    [[nodiscard]] bool operator==(const ScreenPicture &other) const = default;

    /// The least contrast of something drawn, by WCAG's formula, where it covers most;
    /// `ground_only` is the same screen without it, `area` where to look.
    /// @return none when the two pictures don't differ there
    [[nodiscard]] std::optional<double> contrast_against(const ScreenPicture &ground_only,
                                                         const Ground &ground,
                                                         const Box &area) const;

private:
    [[nodiscard]] double difference(const ScreenPicture &other, std::size_t place) const;
    [[nodiscard]] double luminance(std::size_t place, const Colour &below) const;

    int m_width = 0;
    int m_height = 0;
    std::vector<std::uint32_t> m_pixels;
};

Box box_of(const Evas_Object *object);

/// A text as it stands on the screen: the boxes of its lines, and whether some of it is missing.
struct SeenText {
    Evas_Object *object;
    std::string text;
    std::vector<Box> lines;
    Box place;   ///< what it may take
    Box needed;  ///< what all of it takes
    bool cut;
};

struct SeenScreen {
    std::vector<SeenText> texts;
    std::vector<Evas_Object *> buttons;
    std::vector<Evas_Object *> images;
};

/// The texts, buttons and pictures that can be seen in a window.
SeenScreen look_at(Evas_Object *window);

}  // namespace support
