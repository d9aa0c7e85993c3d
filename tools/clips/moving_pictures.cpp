// Writes numbered moving pictures to standard output: raw 4:2:0, one after another.
// Usage: moving-pictures WIDTH HEIGHT COUNT

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "frame_number.h"

namespace {

using support::FrameStrip;

constexpr std::uint8_t kBlack = 16;
constexpr std::uint8_t kWhite = 235;

struct Picture {
    int width;
    int height;
    std::vector<std::uint8_t> bytes;

    Picture(int w, int h) : width(w), height(h), bytes(luma_size() + 2 * chroma_size()) {}
    [[nodiscard]] int chroma_width() const { return (width + 1) / 2; }
    [[nodiscard]] int chroma_height() const { return (height + 1) / 2; }
    [[nodiscard]] std::size_t luma_size() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    [[nodiscard]] std::size_t chroma_size() const {
        return static_cast<std::size_t>(chroma_width()) * static_cast<std::size_t>(chroma_height());
    }
    std::uint8_t &luma(int x, int y) {
        return bytes[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(x)];
    }
};

/// Slanted stripes that wander, in a colour that stays within a quarter of the picture: the upper
/// left is reddish, the lower right bluish, so that turning and cutting show.
void paint_ground(Picture &picture, int number) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            picture.luma(x, y) =
                static_cast<std::uint8_t>(90 + (x + y / 2 + number * 3) / 8 % 8 * 8);
        }
    }
    std::uint8_t *blue = picture.bytes.data() + picture.luma_size();
    std::uint8_t *red = blue + picture.chroma_size();
    for (int y = 0; y < picture.chroma_height(); ++y) {
        for (int x = 0; x < picture.chroma_width(); ++x) {
            *blue++ = x * 2 < picture.chroma_width() ? 110 : 170;
            *red++ = y * 2 < picture.chroma_height() ? 170 : 110;
        }
    }
}

void fill(Picture &picture, double left, double top, double right, double bottom,
          std::uint8_t value) {
    for (long y = std::lround(top); y < std::lround(bottom); ++y) {
        for (long x = std::lround(left); x < std::lround(right); ++x) {
            if (x >= 0 && y >= 0 && x < picture.width && y < picture.height) {
                picture.luma(static_cast<int>(x), static_cast<int>(y)) = value;
            }
        }
    }
}

bool is_white(int cell, int number) {
    if (cell < FrameStrip::kFirstBit || cell > FrameStrip::kParity) {
        return cell != 1;
    }
    int ones = 0;
    for (int bit = 0; bit < FrameStrip::kBits; ++bit) {
        ones += number >> bit & 1;
    }
    if (cell == FrameStrip::kParity) {
        return ones % 2 != 0;
    }
    return (number >> (FrameStrip::kBits - 1 - (cell - FrameStrip::kFirstBit)) & 1) != 0;
}

void paint_strip(Picture &picture, int number) {
    const auto first = FrameStrip::middle_of(0, picture.width, picture.height);
    const auto second = FrameStrip::middle_of(1, picture.width, picture.height);
    const double half = (second.x - first.x) / 2;
    const auto last = FrameStrip::middle_of(FrameStrip::kCells - 1, picture.width, picture.height);
    fill(picture, first.x - 2 * half, first.y - 2 * half, last.x + 2 * half, first.y + 2 * half,
         kBlack);
    for (int cell = 0; cell < FrameStrip::kCells; ++cell) {
        const auto middle = FrameStrip::middle_of(cell, picture.width, picture.height);
        fill(picture, middle.x - half, middle.y - half, middle.x + half, middle.y + half,
             is_white(cell, number) ? kWhite : kBlack);
    }
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 4) {
        std::fputs("usage: moving-pictures WIDTH HEIGHT COUNT\n", stderr);
        return 2;
    }
    Picture picture(std::atoi(argv[1]), std::atoi(argv[2]));
    const int count = std::atoi(argv[3]);
    for (int number = 0; number < count; ++number) {
        paint_ground(picture, number);
        paint_strip(picture, number);
        if (std::fwrite(picture.bytes.data(), picture.bytes.size(), 1, stdout) != 1) {
            std::perror("moving-pictures");
            return 1;
        }
    }
    return 0;
}
