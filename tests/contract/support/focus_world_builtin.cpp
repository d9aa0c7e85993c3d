#include "focus_world.h"
#include "sound/focus.h"

namespace focus_world {

void begin() {
    host::sound::use_focus(host::sound::create_builtin_focus);
}

void end() {}

}  // namespace focus_world
