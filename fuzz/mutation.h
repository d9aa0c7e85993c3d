#pragma once

#include <random>
#include <string>

#include "structure.h"

namespace fuzz {

/// What was done to an input.
struct Changes {
    int all = 0;
    int in_headers = 0;
};

/// Changes of an input that follow from one number alone.
class Mutator {
public:
    explicit Mutator(unsigned seed) : dice_(seed) {}

    /// One to three changes; seven of eight are made in a part that `regions_of` gives, as what
    /// stands there asks for.
    template <typename RegionsOf>
    Changes mutate(std::string &data, RegionsOf regions_of) {
        Changes changes;
        const std::size_t count = 1 + below(3);
        for (std::size_t index = 0; index < count && !data.empty(); ++index) {
            const std::vector<Region> regions = regions_of(data);
            ++changes.all;
            if (!regions.empty() && below(8) != 0) {
                const Region &region = regions[below(regions.size())];
                changes.in_headers += region.part == Part::text ? 0 : 1;
                change_region(data, region, regions);
            } else {
                change_bytes(data, 0, data.size());
            }
        }
        return changes;
    }

    [[nodiscard]] std::size_t below(std::size_t end) { return dice_() % end; }

private:
    void change_region(std::string &data, const Region &region, const std::vector<Region> &regions);
    void change_element(std::string &data, const Region &element,
                        const std::vector<Region> &regions);
    void change_number(std::string &data, std::size_t begin, std::size_t end);
    void change_bytes(std::string &data, std::size_t begin, std::size_t end);

    std::mt19937 dice_;
};

}  // namespace fuzz
