#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host::control {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

/// A request that can't be carried out; the text goes to whoever made it.
class RequestError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A request that can't be understood, and never could.
class UsageError : public RequestError {
public:
    using RequestError::RequestError;
};

/// The words of a request line: a JSON array of texts, or words between blanks. Never empty.
/// @throws UsageError for anything else, text that isn't UTF-8 and NUL characters
[[nodiscard]] Words parse_request(std::string_view line);

/// A whole decimal number of a range, both ends included.
/// @throws UsageError that names `what`
[[nodiscard]] int parse_number(const std::string &word, const char *what, int lowest, int highest);

/// A row of a table of names for numbers.
struct Name {
    const char *text;
    int value;
};

/// The number of a name, or of a decimal or 0x number that stands in the table.
/// @throws UsageError that names `what` and the choices
[[nodiscard]] int parse_name(const std::string &word, const char *what,
                             const std::vector<Name> &names);

}  // namespace host::control
