#pragma once

#include <functional>

namespace host {

/// The one crossing from any thread to the toolkit's main loop.
///
/// Runs `call` on a later turn of the main loop, in the order of posting. May be called from any
/// thread, the main one included, once the toolkit has been initialised. A call posted after the
/// main loop has ended is dropped.
void post_to_main_loop(std::function<void()> call);

/// Drops, on the calling thread, what still waits, and from now on whatever is posted. The life
/// cycle calls it on the main thread before it shuts the toolkit down.
void close_main_loop();

}  // namespace host
