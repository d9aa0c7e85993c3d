#include "settings/preference_value.h"

#include <glib.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "common/gobject.h"

namespace host {
namespace {

constexpr std::string_view kInt = "int:";
constexpr std::string_view kDouble = "double:";
constexpr std::string_view kString = "string:";
constexpr std::string_view kBoolean = "boolean:";

/// The bytes beyond ASCII, which stay readable where they are letters.
std::string letters_beyond_ascii() {
    std::string bytes;
    for (int byte = 0x80; byte <= 0xff; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string quoted(const std::string &text) {
    const bool letters = g_utf8_validate(text.c_str(), -1, nullptr) != FALSE;
    const GText escaped(
        g_strescape(text.c_str(), letters ? letters_beyond_ascii().c_str() : nullptr));
    return std::string("\"") + escaped.get() + "\"";
}

std::optional<std::string> unquoted(std::string_view text) {
    if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
        return std::nullopt;
    }
    const std::string inner(text.substr(1, text.size() - 2));
    const std::size_t last = inner.find_last_not_of('\\');
    const std::size_t backslashes = inner.size() - (last == std::string::npos ? 0 : last + 1);
    if (backslashes % 2 != 0) {
        return std::nullopt;
    }
    const GText plain(g_strcompress(inner.c_str()));
    return std::string(plain.get());
}

std::optional<PreferenceValue> number(const std::string &text) {
    gint64 value = 0;
    if (!g_ascii_string_to_signed(text.c_str(), 10, G_MININT32, G_MAXINT32, &value, nullptr)) {
        return std::nullopt;
    }
    return static_cast<int>(value);
}

std::optional<PreferenceValue> real(const std::string &text) {
    char *end = nullptr;
    const double value = g_ascii_strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0') {
        return std::nullopt;
    }
    return value;
}

struct Encoder {
    std::string operator()(int value) const { return std::string(kInt) + std::to_string(value); }
    std::string operator()(double value) const {
        std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
        return std::string(kDouble) + g_ascii_dtostr(text.data(), text.size(), value);
    }
    std::string operator()(const std::string &value) const {
        return std::string(kString) + quoted(value);
    }
    std::string operator()(bool value) const {
        return std::string(kBoolean) + (value ? "true" : "false");
    }
};

}  // namespace

std::string encode_preference(const PreferenceValue &value) {
    return std::visit(Encoder(), value);
}

std::optional<PreferenceValue> decode_preference(const std::string &text) {
    if (text.starts_with(kInt)) {
        return number(text.substr(kInt.size()));
    }
    if (text.starts_with(kDouble)) {
        return real(text.substr(kDouble.size()));
    }
    if (text.starts_with(kString)) {
        return unquoted(text.substr(kString.size()));
    }
    if (text == std::string(kBoolean) + "true" || text == std::string(kBoolean) + "false") {
        return text.ends_with("true");
    }
    return std::nullopt;
}

}  // namespace host
