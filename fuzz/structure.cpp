#include "structure.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace fuzz {
namespace {

std::uint64_t number_at(std::string_view data, std::size_t place, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < width && place + index < data.size(); ++index) {
        value = value << 8U | static_cast<unsigned char>(data[place + index]);
    }
    return value;
}

std::uint64_t little_number_at(std::string_view data, std::size_t place, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t index = width; index-- > 0;) {
        value =
            value << 8U |
            (place + index < data.size() ? static_cast<unsigned char>(data[place + index]) : 0U);
    }
    return value;
}

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

class Walk {
public:
    explicit Walk(std::string_view data) : data_(data) {}

    std::vector<Region> take() { return std::move(regions_); }

    void boxes(std::size_t begin, std::size_t end, const std::vector<std::size_t> &sizes) {
        constexpr std::size_t kHead = 8;
        constexpr std::size_t kTableHead = 16;
        while (begin + kHead <= end) {
            std::size_t size = number_at(data_, begin, 4);
            const std::string_view type = data_.substr(begin + 4, 4);
            size = size < kHead ? end - begin : std::min(size, end - begin);
            add(begin, begin + kHead, Part::head, sizes);
            add(begin, begin + size, Part::element, sizes);
            if (is_one_of(type, {"moov", "trak", "mdia", "minf", "stbl", "edts", "moof", "traf",
                                 "mvex", "mfra", "dinf", "udta"})) {
                std::vector<std::size_t> inner{begin};
                inner.insert(inner.end(), sizes.begin(), sizes.end());
                boxes(begin + kHead, begin + size, inner);
            } else if (is_one_of(type, {"stts", "stsz", "stco", "stsc", "ctts", "stss", "co64",
                                        "elst", "sidx", "trun", "tfra"})) {
                add(begin + kHead, begin + std::min(size, kTableHead), Part::fields, {});
                add(begin + std::min(size, kTableHead), begin + size, Part::table, {});
            } else if (type != "mdat") {
                add(begin + kHead, begin + size, Part::fields, {});
            }
            begin += size;
        }
    }

    void ebml(std::size_t begin, std::size_t end) {
        constexpr std::size_t kBlockHead = 4;
        while (begin < end) {
            const std::size_t id_length = vint_length(begin, 4);
            const std::size_t size_length = vint_length(begin + id_length, 8);
            const std::size_t content = begin + id_length + size_length;
            if (id_length == 0 || size_length == 0 || content > end) {
                return;
            }
            const std::uint64_t id = number_at(data_, begin, id_length);
            const std::uint64_t mask = (std::uint64_t{1} << (7 * size_length)) - 1;
            const std::uint64_t told = number_at(data_, begin + id_length, size_length) & mask;
            const std::size_t size = std::min<std::uint64_t>(told, end - content);
            add(begin, content, Part::head, {});
            add(begin, content + size, Part::element, {});
            if (is_master(id)) {
                ebml(content, content + size);
            } else {
                const bool block = id == 0xA3 || id == 0xA1;
                add(content, content + (block ? std::min(size, kBlockHead) : size), Part::fields,
                    {});
            }
            begin = content + size;
        }
    }

    void pages() {
        constexpr std::size_t kHead = 27;
        constexpr std::size_t kSequence = 18;
        constexpr std::uint64_t kHeaderPages = 2;
        std::size_t place = 0;
        while (place + kHead <= data_.size() && data_.substr(place, 4) == "OggS") {
            const std::size_t segments = number_at(data_, place + kHead - 1, 1);
            std::size_t size = kHead + segments;
            for (std::size_t index = 0; index < segments; ++index) {
                size += number_at(data_, place + kHead + index, 1);
            }
            size = std::min(size, data_.size() - place);
            const bool header = little_number_at(data_, place + kSequence, 4) < kHeaderPages;
            add(place, place + std::min(size, kHead + segments), Part::head, {});
            add(place, place + size, Part::element, {});
            if (header) {
                add(place + kHead, place + size, Part::fields, {});
            }
            place += size;
        }
    }

    void chunks(std::size_t begin, std::size_t end) {
        constexpr std::size_t kHead = 8;
        constexpr std::size_t kListHead = 12;
        while (begin + kHead <= end) {
            const std::string_view name = data_.substr(begin, 4);
            std::size_t size = kHead + little_number_at(data_, begin + 4, 4);
            size = std::min(size + size % 2, end - begin);
            add(begin, begin + kHead, Part::head, {});
            add(begin, begin + size, Part::element, {});
            if (is_one_of(name, {"RIFF", "LIST"})) {
                chunks(begin + std::min(size, kListHead), begin + size);
            } else if (name == "idx1") {
                add(begin + kHead, begin + size, Part::table, {});
            } else if (!is_one_of(name, {"00dc", "01wb", "data"})) {
                add(begin + kHead, begin + size, Part::fields, {});
            }
            begin += size;
        }
    }

    void packets() {
        constexpr std::size_t kPacket = 188;
        constexpr std::size_t kHead = 4;
        for (std::size_t place = 0; place + kPacket <= data_.size(); place += kPacket) {
            const bool adaptation = (number_at(data_, place + 3, 1) & 0x20U) != 0;
            const std::size_t extra = adaptation ? 1 + number_at(data_, place + 4, 1) : 0;
            add(place, place + std::min(kPacket, kHead + extra), Part::head, {});
            add(place, place + kPacket, Part::element, {});
            if (is_table(data_, place)) {
                add(place + kHead, place + kPacket, Part::table, {});
            }
        }
    }

    void beginning() { add(0, std::min<std::size_t>(data_.size(), 256), Part::fields, {}); }

    /// Of the associations and maps of programs, whose packets begin a section.
    static bool is_table(std::string_view data, std::size_t place) {
        constexpr std::uint64_t kFirstMap = 0x1000;
        const std::uint64_t pid = number_at(data, place + 1, 2) & 0x1FFFU;
        const bool begins = (number_at(data, place + 1, 1) & 0x40U) != 0;
        return begins && (pid == 0 || pid == kFirstMap);
    }

private:
    void add(std::size_t begin, std::size_t end, Part part, const std::vector<std::size_t> &sizes) {
        if (begin < end) {
            regions_.push_back({begin, end, part, sizes});
        }
    }

    std::size_t vint_length(std::size_t place, std::size_t longest) const {
        const std::uint64_t first = place < data_.size() ? number_at(data_, place, 1) : 0;
        for (std::size_t length = 1; length <= longest; ++length) {
            if ((first & (0x100U >> length)) != 0) {
                return length;
            }
        }
        return 0;
    }

    static bool is_master(std::uint64_t id) {
        static constexpr std::array<std::uint64_t, 14> kMasters = {
            0x1A45DFA3, 0x18538067, 0x114D9B74, 0x4DBB, 0x1549A966, 0x1654AE6B, 0xAE,
            0xE0,       0xE1,       0x1C53BB6B, 0xBB,   0xB7,       0x1F43B675, 0xA0};
        return std::find(kMasters.begin(), kMasters.end(), id) != kMasters.end();
    }

    std::string_view data_;
    std::vector<Region> regions_;
};

void put(std::string &data, std::size_t place, std::uint32_t value, bool little) {
    for (std::size_t index = 0; index < 4; ++index) {
        const std::size_t shift = 8 * (little ? index : 3 - index);
        data[place + index] = static_cast<char>(value >> shift);
    }
}

std::uint32_t checksum(std::string_view bytes, std::uint32_t begin) {
    constexpr std::uint32_t kPolynomial = 0x04C11DB7;
    std::uint32_t sum = begin;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint32_t>(static_cast<unsigned char>(byte)) << 24U;
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 0x80000000U) != 0 ? sum << 1U ^ kPolynomial : sum << 1U;
        }
    }
    return sum;
}

void mend_pages(std::string &data) {
    constexpr std::size_t kSum = 22;
    Walk walk(data);
    walk.pages();
    for (const Region &page : walk.take()) {
        if (page.part == Part::element) {
            put(data, page.begin + kSum, 0, true);
            const std::string_view whole(data.data() + page.begin, page.end - page.begin);
            put(data, page.begin + kSum, checksum(whole, 0), true);
        }
    }
}

void mend_sections(std::string &data) {
    constexpr std::size_t kPacket = 188;
    constexpr std::size_t kSection = 5;
    constexpr std::size_t kSectionHead = 3;
    for (std::size_t place = 0; place + kPacket <= data.size(); place += kPacket) {
        if (!Walk::is_table(data, place)) {
            continue;
        }
        const std::size_t begin = place + kSection;
        const std::size_t size = kSectionHead + (number_at(data, begin + 1, 2) & 0xFFFU);
        if (size > kSectionHead + 4 && kSection + size <= kPacket) {
            const std::string_view counted(data.data() + begin, size - 4);
            put(data, begin + size - 4, checksum(counted, 0xFFFFFFFFU), false);
        }
    }
}

}  // namespace

std::vector<Region> structure_of(const std::string &data) {
    Walk walk(data);
    if (data.compare(0, 4, "\x1A\x45\xDF\xA3") == 0) {
        walk.ebml(0, data.size());
    } else if (data.compare(0, 4, "OggS") == 0) {
        walk.pages();
    } else if (data.compare(0, 4, "RIFF") == 0) {
        walk.chunks(0, data.size());
    } else if (!data.empty() && data.front() == 'G') {
        walk.packets();
    } else if (data.size() > 8 && is_one_of(data.substr(4, 4), {"ftyp", "moov", "styp", "moof"})) {
        walk.boxes(0, data.size(), {});
    } else {
        walk.beginning();
    }
    return walk.take();
}

void mend_checksums(std::string &data) {
    if (data.compare(0, 4, "OggS") == 0) {
        mend_pages(data);
    } else if (!data.empty() && data.front() == 'G') {
        mend_sections(data);
    }
}

}  // namespace fuzz
