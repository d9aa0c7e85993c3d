#include "mutation.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace fuzz {
namespace {

/// The size of what surrounds a change grows or shrinks with it.
void resize(std::string &data, const std::vector<std::size_t> &sizes, std::int64_t difference) {
    for (const std::size_t place : sizes) {
        std::uint32_t size = 0;
        for (std::size_t index = 0; index < 4; ++index) {
            size = size << 8U | static_cast<unsigned char>(data[place + index]);
        }
        size = static_cast<std::uint32_t>(size + difference);
        for (std::size_t index = 0; index < 4; ++index) {
            data[place + index] = static_cast<char>(size >> (24 - 8 * index));
        }
    }
}

}  // namespace

void Mutator::change_region(std::string &data, const Region &region,
                            const std::vector<Region> &regions) {
    switch (region.part) {
    case Part::head:
    case Part::table:
        change_number(data, region.begin, region.end);
        break;
    case Part::element:
        change_element(data, region, regions);
        break;
    case Part::fields:
        if (below(2) == 0) {
            change_number(data, region.begin, region.end);
            break;
        }
        [[fallthrough]];
    case Part::text:
        change_bytes(data, region.begin, region.end);
        break;
    }
}

void Mutator::change_element(std::string &data, const Region &element,
                             const std::vector<Region> &regions) {
    const std::string whole = data.substr(element.begin, element.end - element.begin);
    std::int64_t difference = 0;
    switch (below(4)) {
    case 0:
        data.erase(element.begin, whole.size());
        difference = -static_cast<std::int64_t>(whole.size());
        break;
    case 1:
        data.insert(element.begin, whole);
        difference = static_cast<std::int64_t>(whole.size());
        break;
    case 2: {
        const Region &other = regions[below(regions.size())];
        data.replace(element.begin, whole.size(),
                     data.substr(other.begin, other.end - other.begin));
        difference = static_cast<std::int64_t>(other.end - other.begin) -
                     static_cast<std::int64_t>(whole.size());
        break;
    }
    default:
        // Seldom cut off, since little is left to look at then.
        if (below(4) == 0) {
            data.resize(element.begin + below(whole.size()));
        } else {
            change_number(data, element.begin, element.end);
        }
        return;
    }
    if (below(2) == 0) {
        resize(data, element.sizes, difference);
    }
}

void Mutator::change_number(std::string &data, std::size_t begin, std::size_t end) {
    const std::array<std::size_t, 4> widths = {1, 2, 4, 8};
    const std::size_t width = std::min(widths[below(widths.size())], end - begin);
    // Where a number of that width is likely to stand.
    const std::size_t place = begin + below((end - begin) / width) * width;
    const bool little = below(4) == 0;
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < width; ++index) {
        const std::size_t from = little ? width - 1 - index : index;
        value = value << 8U | static_cast<unsigned char>(data[place + from]);
    }
    const std::uint64_t top = std::uint64_t{1} << (8 * width - 1);
    const std::array<std::uint64_t, 10> values = {
        0,         1,         top - 1,   top,       ~0ULL,
        value + 1, value - 1, value * 2, value / 2, data.size() + below(16)};
    value = values[below(values.size())];
    for (std::size_t index = 0; index < width; ++index) {
        const std::size_t to = little ? index : width - 1 - index;
        data[place + to] = static_cast<char>(value >> (8 * index));
    }
}

void Mutator::change_bytes(std::string &data, std::size_t begin, std::size_t end) {
    static constexpr unsigned char kOdd[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, '%', '"', '\n'};
    const std::size_t place = begin + below(end - begin);
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
        if (below(4) == 0) {
            data.resize(place);
        }
        break;
    }
}

}  // namespace fuzz
