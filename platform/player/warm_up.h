#pragma once

namespace host {

/// Returns when GStreamer can be used. Starts it when warm_up_player() hasn't. Any thread.
void wait_for_warm_up();

}  // namespace host
