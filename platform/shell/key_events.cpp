#include "shell/key_events.h"

#include <Ecore_Input.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

namespace host {

namespace {

constexpr std::array<std::string_view, 3> kReaderKeys{"Insert", "KP_Insert", "Caps_Lock"};

/// A press on its way through the toolkit's queue, which frees it as C does.
struct Press {
    KeyAction action;
    bool shifted;
};

std::optional<Press> press_of(const Ecore_Event_Key &key) {
    constexpr unsigned int kChords =
        ECORE_EVENT_MODIFIER_CTRL | ECORE_EVENT_MODIFIER_ALT | ECORE_EVENT_MODIFIER_WIN;
    if (key.keyname == nullptr || (key.modifiers & kChords) != 0) {
        return std::nullopt;
    }
    // With Shift the key has another name on some desktops.
    const bool back_tab = std::string_view(key.keyname) == "ISO_Left_Tab";
    const std::optional<KeyAction> action = key_action(back_tab ? "Tab" : key.keyname);
    if (!action) {
        return std::nullopt;
    }
    return Press{*action, back_tab || (key.modifiers & ECORE_EVENT_MODIFIER_SHIFT) != 0};
}

}  // namespace

KeyEvents::KeyEvents(Handler handler)
    : handler_(std::move(handler)),
      press_(ecore_event_type_new()),
      filter_(ecore_event_filter_add(nullptr, before_toolkit, nullptr, this)),
      press_handler_(ecore_event_handler_add(press_, pressed, this)),
      key_handler_(ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, keep_from_others, nullptr)) {}

KeyEvents::~KeyEvents() {
    ecore_event_handler_del(key_handler_);
    ecore_event_handler_del(press_handler_);
    ecore_event_filter_del(filter_);
}

/// Only puts the press into the queue, in its turn: to act on it may end what is being filtered.
Eina_Bool KeyEvents::before_toolkit(void *data, void * /*loop_data*/, int type, void *event) {
    if (type != ECORE_EVENT_KEY_DOWN && type != ECORE_EVENT_KEY_UP) {
        return ECORE_CALLBACK_PASS_ON;
    }
    auto *self = static_cast<KeyEvents *>(data);
    const auto &key = *static_cast<const Ecore_Event_Key *>(event);
    if (key.keyname != nullptr) {
        self->follow_reader_key(key.keyname, type == ECORE_EVENT_KEY_DOWN);
    }
    const std::optional<Press> press = press_of(key);
    if (type == ECORE_EVENT_KEY_DOWN && press && self->reader_keys_.empty()) {
        if (void *const memory = std::malloc(sizeof(Press)); memory != nullptr) {
            ecore_event_add(self->press_, new (memory) Press(*press), nullptr, nullptr);
        }
    }
    return ECORE_CALLBACK_PASS_ON;
}

void KeyEvents::follow_reader_key(const std::string &name, bool down) {
    if (std::ranges::find(kReaderKeys, name) == kReaderKeys.end()) {
        return;
    }
    std::erase(reader_keys_, name);
    if (down) {
        reader_keys_.push_back(name);
    }
}

Eina_Bool KeyEvents::pressed(void *data, int /*type*/, void *event) {
    const Press press = *static_cast<const Press *>(event);
    static_cast<KeyEvents *>(data)->handler_(press.action, press.shifted);
    return ECORE_CALLBACK_DONE;
}

/// The toolkit would move its own focus by some of them.
Eina_Bool KeyEvents::keep_from_others(void * /*data*/, int /*type*/, void *event) {
    return press_of(*static_cast<const Ecore_Event_Key *>(event)) ? ECORE_CALLBACK_DONE
                                                                  : ECORE_CALLBACK_PASS_ON;
}

}  // namespace host
