#pragma once

#include <optional>
#include <string>
#include <variant>

namespace host {

/// A value of one of the four types that a preference can have.
using PreferenceValue = std::variant<int, double, std::string, bool>;

/// The value as it stands in the file: "int:5", "double:0.5", "boolean:true", string:"a\nb" with
/// the escapes of C. It is one line, and exact.
[[nodiscard]] std::string encode_preference(const PreferenceValue &value);
/// The way back; none for a text that isn't one of these.
[[nodiscard]] std::optional<PreferenceValue> decode_preference(const std::string &text);

}  // namespace host
