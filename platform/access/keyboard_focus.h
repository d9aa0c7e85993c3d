#pragma once

#include <Evas.h>

namespace host {

/// Tells assistive technologies that a button has got the keyboard's focus, or has lost it. They
/// learn of it from here alone: the toolkit's own focus of a button is where no key goes. Main
/// thread.
void report_keyboard_focus(Evas_Object *button, bool has_focus);

}  // namespace host
