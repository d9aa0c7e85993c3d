#pragma once

namespace host {

/// Whether so many more descriptors can be opened that a playback won't run out of them half-way,
/// where the libraries below would end the process. Any thread.
[[nodiscard]] bool has_descriptors_for_playback();

/// Makes GStreamer's memory for pictures and file contents come from an allocator that can fail.
/// GLib's, which is the usual one, ends the process instead. Once, after gst_init().
void allow_allocations_to_fail();

/// How many such allocations have failed so far. Any thread.
[[nodiscard]] unsigned failed_allocations();

}  // namespace host
