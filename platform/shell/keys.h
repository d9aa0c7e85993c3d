#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// What a key of the keyboard does to the watch.
enum class KeyAction { back, more, home, clockwise, counter_clockwise, turn_watch, focus, press };

/// @param name of the key, as the toolkit has it
/// @return nothing when the key isn't for the watch
[[nodiscard]] std::optional<KeyAction> key_action(std::string_view name);

/// One line for each action: its keys by name, and what they do. Made of the table that
/// key_action() reads.
[[nodiscard]] std::string describe_keys();

}  // namespace host
