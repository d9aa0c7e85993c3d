#pragma once

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace fuzz {

/// A part of an input: where it begins and ends.
using Region = std::pair<std::size_t, std::size_t>;

/// Where the headers and indexes of a medium lie: all of a file but its pictures and sounds.
[[nodiscard]] inline std::vector<Region> header_regions(const std::string &data) {
    constexpr std::size_t kBoxHead = 8;
    constexpr std::size_t kHead = 1024;
    std::vector<Region> regions;
    if (data.size() > kBoxHead && data.compare(4, 4, "ftyp") == 0) {
        for (std::size_t place = 0; place + kBoxHead <= data.size();) {
            std::size_t size = 0;
            for (std::size_t index = 0; index < 4; ++index) {
                size = size << 8U | static_cast<unsigned char>(data[place + index]);
            }
            size = std::max(size, kBoxHead);
            const bool pictures = data.compare(place + 4, 4, "mdat") == 0;
            regions.emplace_back(place,
                                 std::min(data.size(), pictures ? place + kBoxHead : place + size));
            place += size;
        }
    } else {
        // Others begin with their headers, and keep an index at the end.
        regions.emplace_back(0, std::min(kHead, data.size()));
        if (data.size() > 2 * kHead) {
            regions.emplace_back(data.size() - kHead / 4, data.size());
        }
    }
    return regions;
}

/// Changes of an input that follow from one number alone.
class Mutator {
public:
    explicit Mutator(unsigned seed) : dice_(seed) {}

    /// @param regions  where three of four changes are made; empty: anywhere
    /// @return whether a change was made there
    bool mutate(std::string &data, const std::vector<Region> &regions) {
        bool in_region = false;
        const std::size_t changes = 1 + below(3);
        for (std::size_t index = 0; index < changes && !data.empty(); ++index) {
            Region part{0, data.size()};
            if (!regions.empty() && below(4) != 0) {
                const Region chosen = regions[below(regions.size())];
                if (chosen.first < std::min(chosen.second, data.size())) {
                    part = {chosen.first, std::min(chosen.second, data.size())};
                    in_region = true;
                }
            }
            change(data, part);
        }
        return in_region;
    }

private:
    [[nodiscard]] std::size_t below(std::size_t end) { return dice_() % end; }

    void change(std::string &data, const Region &part) {
        static constexpr unsigned char kOdd[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, '%', '"', '\n'};
        const std::size_t place = part.first + below(part.second - part.first);
        const std::size_t length = std::min<std::size_t>(1 + below(8), data.size() - place);
        switch (below(7)) {
        case 0:
            data[place] = static_cast<char>(data[place] ^ (1 << below(8)));
            break;
        case 1:
            data[place] = static_cast<char>(below(256));
            break;
        case 2:
            data[place] = static_cast<char>(kOdd[below(sizeof kOdd)]);
            break;
        case 3:
            std::fill_n(data.begin() + static_cast<std::ptrdiff_t>(place), length,
                        below(2) != 0 ? '\xFF' : '\0');
            break;
        case 4:
            data.erase(place, length);
            break;
        case 5:
            data.insert(place, data.substr(below(data.size()), length));
            break;
        default:
            // Seldom, since little is left to look at then.
            data.resize(below(4) == 0 ? place : data.size());
            break;
        }
    }

    std::mt19937 dice_;
};

}  // namespace fuzz
