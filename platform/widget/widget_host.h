#pragma once

#include "messaging/bundle_host.h"

namespace host {

/// What a home screen does with the widgets of this process. The one that came last is shown, alone
/// and in a window of its size; those below it are paused. Each returns false when this process
/// isn't showing widgets, and when the widget reports a failure. Thread: main loop.

/// Shows one more widget, of so many pixels.
[[nodiscard]] bool add_widget(int width, int height, const bundle &content);
/// Gives the shown widget another size.
[[nodiscard]] bool resize_widget(int width, int height);
/// Tells the shown widget something.
[[nodiscard]] bool update_widget(const bundle &content, bool force);
/// Removes the shown widget for good; with the last one the application ends.
[[nodiscard]] bool remove_widget();

}  // namespace host
