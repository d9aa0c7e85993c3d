#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <utils_i18n.h>

#include <cstdint>
#include <cstring>

// Not ICU's own copies of these names: they take a narrow text for one in the code set of the
// process.

i18n_uchar *i18n_ustring_copy_ua_n(i18n_uchar *dest, const char *src, int32_t n) {
    if (dest == nullptr || src == nullptr || n < 0) {
        return nullptr;
    }
    const auto length = static_cast<int32_t>(std::strlen(src));
    int32_t read = 0;
    int32_t written = 0;
    while (read < length) {
        UChar32 letter = 0;
        U8_NEXT_OR_FFFD(src, read, length, letter);
        if (written + U16_LENGTH(letter) > n) {
            break;
        }
        U16_APPEND_UNSAFE(dest, written, letter);
    }
    if (written < n) {
        dest[written] = 0;
    }
    return dest;
}

char *i18n_ustring_copy_au_n(char *dest, const i18n_uchar *src, int32_t n) {
    if (dest == nullptr || src == nullptr || n < 0) {
        return nullptr;
    }
    const int32_t length = u_strlen(src);
    auto *const bytes = reinterpret_cast<std::uint8_t *>(dest);
    int32_t read = 0;
    int32_t written = 0;
    while (read < length) {
        UChar32 letter = 0;
        U16_NEXT_OR_FFFD(src, read, length, letter);
        if (written + U8_LENGTH(letter) > n) {
            break;
        }
        U8_APPEND_UNSAFE(bytes, written, letter);
    }
    if (written < n) {
        dest[written] = '\0';
    }
    return dest;
}

int32_t i18n_ustring_get_length(const i18n_uchar *s) {
    return s != nullptr ? u_strlen(s) : 0;
}
