#include "shell/keys.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

struct Shortcut {
    KeyAction action;
    std::array<std::string_view, 3> keys;  ///< by the toolkit's names
    std::string_view meaning;
};

constexpr std::array kShortcuts{
    Shortcut{KeyAction::back, {"Escape", "XF86Back"}, "back: ends the player, closes a message"},
    Shortcut{KeyAction::more, {"Menu", "F10"}, "the more key"},
    Shortcut{
        KeyAction::home, {"Home", "XF86HomePage"}, "leaves the foreground, which ends the player"},
    Shortcut{KeyAction::clockwise, {"Right"}, "turns the bezel clockwise by a detent"},
    Shortcut{KeyAction::counter_clockwise, {"Left"}, "turns the bezel back by a detent"},
    Shortcut{KeyAction::turn_watch, {"F9"}, "turns the watch by a quarter"},
    Shortcut{KeyAction::focus, {"Tab"}, "goes to the next button, with Shift to the one before"},
    Shortcut{KeyAction::press,
             {"Return", "KP_Enter", "space"},
             "presses that button; where none is shown, taps the screen"},
};

constexpr std::size_t kMeaningColumn = 29;

}  // namespace

std::optional<KeyAction> key_action(std::string_view name) {
    for (const Shortcut &shortcut : kShortcuts) {
        if (!name.empty() && std::ranges::find(shortcut.keys, name) != shortcut.keys.end()) {
            return shortcut.action;
        }
    }
    return std::nullopt;
}

std::string describe_keys() {
    std::string text;
    for (const Shortcut &shortcut : kShortcuts) {
        std::string line = "  ";
        for (const std::string_view key : shortcut.keys) {
            if (!key.empty()) {
                line.append(line.size() > 2 ? ", " : "").append(key);
            }
        }
        line.resize(std::max(kMeaningColumn, line.size() + 2), ' ');
        text.append(line).append(shortcut.meaning).append("\n");
    }
    return text;
}

}  // namespace host
