#pragma once

#include <cmath>
#include <functional>
#include <optional>

/// The number that the test clips carry in each of their pictures.
///
/// A strip of sixteen square cells, black and white, lies level in the picture. With S the shorter
/// side of the picture the strip is 0.6 S wide, centred from left to right, and its middle is 0.28
/// S above the middle of the picture: inside the circle that the picture's middle square holds, so
/// it survives cropping to that. From left to right: white, black, twelve bits of the number with
/// the highest first (white is 1), a bit that makes the count of ones among the thirteen even,
/// white. Above and below it half a cell is black.
namespace support {

struct FrameStrip {
    static constexpr int kCells = 16;
    static constexpr int kFirstBit = 2;
    static constexpr int kBits = 12;
    static constexpr int kParity = 14;
    static constexpr double kWidth = 0.6;
    static constexpr double kAbove = 0.28;

    /// Of a picture `width` by `height`: the middle of a cell.
    struct Point {
        double x;
        double y;
    };
    static Point middle_of(int cell, double width, double height) {
        const double side = std::fmin(width, height);
        const double cell_width = side * kWidth / kCells;
        return {width / 2 + (cell + 0.5 - kCells / 2.0) * cell_width, height / 2 - side * kAbove};
    }
};

/// Where a picture lies on a screen, in pixels; parts may be outside it.
struct PictureArea {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    /// A picture of this shape that covers a screen, as display mode 3 does.
    static PictureArea covering(double screen, double picture_width, double picture_height) {
        const double scale = screen / std::fmin(picture_width, picture_height);
        return centred(screen, picture_width * scale, picture_height * scale);
    }
    /// A picture of this shape that fits into a screen, as display mode 0 does.
    static PictureArea inside(double screen, double picture_width, double picture_height) {
        const double scale = screen / std::fmax(picture_width, picture_height);
        return centred(screen, picture_width * scale, picture_height * scale);
    }
    static PictureArea centred(double screen, double width, double height) {
        return {(screen - width) / 2, (screen - height) / 2, width, height};
    }
};

/// Reads the number of a picture. `luma` gives the brightness, 0 to 255, at a pixel of the screen.
/// @return none when there is no strip: a marker is wrong, a cell is neither dark nor bright, or
/// the check bit doesn't fit.
inline std::optional<int> read_frame_number(const PictureArea &area,
                                            const std::function<int(int x, int y)> &luma) {
    constexpr int kDark = 90;
    constexpr int kBright = 165;
    int number = 0;
    int ones = 0;
    for (int cell = 0; cell < FrameStrip::kCells; ++cell) {
        const auto point = FrameStrip::middle_of(cell, area.width, area.height);
        const int value = luma(static_cast<int>(std::floor(area.x + point.x)),
                               static_cast<int>(std::floor(area.y + point.y)));
        if (value > kDark && value < kBright) {
            return std::nullopt;
        }
        const bool white = value >= kBright;
        if (cell < FrameStrip::kFirstBit || cell > FrameStrip::kParity) {
            if (white != (cell != 1)) {
                return std::nullopt;
            }
            continue;
        }
        ones += white ? 1 : 0;
        if (cell < FrameStrip::kParity) {
            number = number * 2 + (white ? 1 : 0);
        }
    }
    return ones % 2 == 0 ? std::optional(number) : std::nullopt;
}

}  // namespace support
