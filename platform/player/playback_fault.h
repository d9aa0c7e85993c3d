#pragma once

#include <gst/gst.h>
#include <player.h>

#include <string>

namespace host {

/// Why a playback can't go on: the platform's number, one that the program acts on, and a few words
/// for the user.
struct PlaybackFault {
    int code = PLAYER_ERROR_NONE;
    std::string why;
    std::string detail{};  ///< for the log; may be empty
};

/// For a call of the operating system on a file that failed with `error` of errno.
[[nodiscard]] PlaybackFault fault_of_errno(int error);

/// For an error message of the pipeline. @param remote  the medium comes over a network
[[nodiscard]] PlaybackFault fault_of_message(GstMessage *message, bool remote);

/// Whether the program ends the playback on this number.
[[nodiscard]] bool ends_playback(int code);

}  // namespace host
