#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace fuzz {

enum class Part {
    head,     ///< the name and size of an element
    fields,   ///< its numbers
    table,    ///< many numbers of one kind: sample tables, indexes
    element,  ///< all of it
    text      ///< what is read by lines
};

/// A part of an input, and what lies there.
struct Region {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::size_t begin = 0;
    std::size_t end = 0;
    Part part = Part::fields;
    /// Where the 32-bit sizes stand that count this one, the innermost first.
    std::vector<std::size_t> sizes;
};

/// Where the headers and indexes of a medium lie: all of it but its pictures and sounds. ISO boxes,
/// EBML, Ogg pages, RIFF and transport streams are known; of others the beginning is a header.
[[nodiscard]] std::vector<Region> structure_of(const std::string &data);

/// Makes the checksums right again by which a demuxer knows a damaged header and leaves it out.
void mend_checksums(std::string &data);

}  // namespace fuzz
