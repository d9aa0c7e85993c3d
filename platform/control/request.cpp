#include "control/request.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>

namespace host::control {
namespace {

bool is_utf8(const std::string &text) {
    try {
        (void)Json(text).dump();
        return true;
    } catch (const Json::type_error &) {
        return false;
    }
}

Words parse_array(std::string_view line) {
    // No exceptions: the parser's own texts quote the input, which may be anything.
    const Json array = Json::parse(line, nullptr, false);
    if (!array.is_array()) {
        throw UsageError("the request is not a JSON array of texts");
    }
    Words words;
    for (const Json &word : array) {
        if (!word.is_string()) {
            throw UsageError("the request is not a JSON array of texts");
        }
        words.push_back(word.get<std::string>());
    }
    return words;
}

Words split_at_blanks(std::string_view line) {
    constexpr std::string_view kBlanks = " \t";
    Words words;
    for (auto begin = line.find_first_not_of(kBlanks); begin != std::string_view::npos;) {
        const auto end = std::min(line.find_first_of(kBlanks, begin), line.size());
        words.emplace_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(kBlanks, end);
    }
    return words;
}

}  // namespace

Words parse_request(std::string_view line) {
    // Replies quote words, so all of it has to be text.
    if (!is_utf8(std::string(line))) {
        throw UsageError("the request is not UTF-8");
    }
    Words words = line.starts_with('[') ? parse_array(line) : split_at_blanks(line);
    if (words.empty()) {
        throw UsageError("the request is empty");
    }
    for (const std::string &word : words) {
        if (word.find('\0') != std::string::npos) {
            throw UsageError("the request has a NUL character");
        }
    }
    return words;
}

int parse_number(const std::string &word, const char *what, int lowest, int highest) {
    int number = 0;
    const char *first = word.data();
    const char *last = first + word.size();
    const auto [stop, code] = std::from_chars(first, last, number);
    if (code != std::errc() || stop != last || number < lowest || number > highest) {
        throw UsageError(std::string(what) + " must be a whole number from " +
                         std::to_string(lowest) + " to " + std::to_string(highest) + ", not '" +
                         word + "'");
    }
    return number;
}

int parse_name(const std::string &word, const char *what, const std::vector<Name> &names) {
    char *end = nullptr;
    errno = 0;
    const long long number = std::strtoll(word.c_str(), &end, 0);
    const bool is_number = !word.empty() && *end == '\0' && errno == 0;
    std::string choices;
    for (const Name &name : names) {
        // A code may be written as the 32 bits that the log shows.
        if (word == name.text ||
            (is_number &&
             (number == name.value ||
              number == static_cast<long long>(static_cast<std::uint32_t>(name.value))))) {
            return name.value;
        }
        choices += (choices.empty() ? "" : ", ") + std::string(name.text);
    }
    throw UsageError(std::string(what) + " must be one of " + choices + ", not '" + word + "'");
}

}  // namespace host::control
