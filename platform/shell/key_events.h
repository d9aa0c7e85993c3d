#pragma once

#include <Ecore.h>

#include <functional>
#include <string>
#include <vector>

#include "shell/keys.h"

namespace host {

/// The keys that are pressed on the desktop's keyboard for the watch. Nothing else gets those.
/// While assistive technologies are connected the toolkit holds every key back for them and, here,
/// never lets go of it: so keys are taken before it does. Thread: main loop.
class KeyEvents {
public:
    /// What a key does, and whether Shift was held.
    using Handler = std::function<void(KeyAction action, bool shifted)>;

    explicit KeyEvents(Handler handler);
    ~KeyEvents();
    KeyEvents(const KeyEvents &) = delete;
    KeyEvents &operator=(const KeyEvents &) = delete;

private:
    static Eina_Bool before_toolkit(void *data, void *loop_data, int type, void *event);
    static Eina_Bool pressed(void *data, int type, void *event);
    static Eina_Bool keep_from_others(void *data, int type, void *event);
    void follow_reader_key(const std::string &name, bool down);

    const Handler handler_;
    const int press_;  ///< the toolkit's number for a press that has been taken
    Ecore_Event_Filter *const filter_;
    Ecore_Event_Handler *const press_handler_;
    Ecore_Event_Handler *const key_handler_;
    /// Those held that make of any other a command for the screen reader.
    std::vector<std::string> reader_keys_;
};

}  // namespace host
