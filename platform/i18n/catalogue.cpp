#include "i18n/catalogue.h"

#include <dlog.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kMagic = 0x950412DE;
constexpr std::uint32_t kSwappedMagic = 0xDE120495;
constexpr std::size_t kHeadSize = 28;
constexpr std::size_t kEntrySize = 8;
constexpr std::size_t kNumberSize = 4;
/// The lookup uses no smaller hash table.
constexpr std::uint32_t kLeastHashSize = 3;

class Catalogue {
public:
    explicit Catalogue(std::string_view content) : content_(content) {}

    [[nodiscard]] bool is_sound() {
        if (content_.size() < kHeadSize) {
            return false;
        }
        const std::uint32_t magic = number_at(0);
        swapped_ = magic == kSwappedMagic;
        if (magic != kMagic && !swapped_) {
            return false;
        }
        const std::uint32_t revision = number_at(4);
        count_ = number_at(8);
        return revision == 0 && texts_are_sound(number_at(12)) && texts_are_sound(number_at(16)) &&
               hashes_are_sound(number_at(24), number_at(20));
    }

private:
    [[nodiscard]] std::uint32_t number_at(std::size_t place) const {
        std::uint32_t number = 0;
        std::memcpy(&number, content_.data() + place, sizeof number);
        return swapped_ ? __builtin_bswap32(number) : number;
    }

    [[nodiscard]] bool holds(std::uint64_t place, std::uint64_t count, std::uint64_t size) const {
        return place % kNumberSize == 0 && place + count * size <= content_.size();
    }

    [[nodiscard]] bool texts_are_sound(std::uint32_t table) const {
        if (!holds(table, count_, kEntrySize)) {
            return false;
        }
        for (std::size_t index = 0; index < count_; ++index) {
            const std::uint64_t length = number_at(table + index * kEntrySize);
            const std::uint64_t place = number_at(table + index * kEntrySize + kNumberSize);
            if (place + length >= content_.size() || content_[place + length] != '\0') {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] bool hashes_are_sound(std::uint32_t table, std::uint32_t size) const {
        if (size < kLeastHashSize) {
            return true;
        }
        if (!holds(table, size, kNumberSize) || !is_prime(size)) {
            return false;
        }
        bool has_room = false;
        for (std::size_t index = 0; index < size; ++index) {
            const std::uint32_t text = number_at(table + index * kNumberSize);
            has_room = has_room || text == 0;
            if (text > count_) {
                return false;
            }
        }
        return has_room;
    }

    /// Only then each step of the lookup comes through all of the table.
    static bool is_prime(std::uint32_t number) {
        for (std::uint64_t divisor = 2; divisor * divisor <= number; ++divisor) {
            if (number % divisor == 0) {
                return false;
            }
        }
        return true;
    }

    std::string_view content_;
    bool swapped_ = false;
    std::uint32_t count_ = 0;
};

bool is_damaged(const fs::path &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return false;
    }
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    if (is_sound_catalogue(content)) {
        return false;
    }
    __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The damaged catalogue %s is left out",
                 file.c_str());
    return true;
}

/// The lookup tries "fr_CA.UTF-8" and, with and without the codeset, "fr_CA" and "fr".
bool has_damaged_catalogue(const std::string &language, const fs::path &folder,
                           const std::string &domain) {
    std::string name = language;
    for (const char *const part : {"@", ".", "_"}) {
        if (is_damaged(folder / name / "LC_MESSAGES" / (domain + ".mo"))) {
            return true;
        }
        const std::string shorter = language.substr(0, language.find(part));
        if (shorter.size() < name.size()) {
            name = shorter;
        }
    }
    return is_damaged(folder / name / "LC_MESSAGES" / (domain + ".mo"));
}

}  // namespace

std::string languages_with_sound_catalogues(const std::string &list, const fs::path &folder,
                                            const std::string &domain) {
    std::string sound;
    std::istringstream languages(list);
    for (std::string language; std::getline(languages, language, ':');) {
        if (!has_damaged_catalogue(language, folder, domain)) {
            sound += (sound.empty() ? "" : ":") + language;
        }
    }
    return sound.empty() ? "C" : sound;
}

bool is_sound_catalogue(std::string_view content) {
    return Catalogue(content).is_sound();
}

}  // namespace host
