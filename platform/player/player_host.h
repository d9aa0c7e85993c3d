#pragma once

#include <player.h>

#include <chrono>
#include <cstdint>
#include <string>

namespace host {

/// Starts GStreamer and loads what playback needs, beside the toolkit's start. Returns at once; the
/// player waits for its end where it must. Any thread.
void warm_up_player();

/// What a person at the control socket may know of the newest player. Thread: main loop.
struct PlayerStatus {
    player_state_e state = PLAYER_STATE_NONE;
    int position_ms = 0;
    int duration_ms = 0;
    player_display_mode_e display_mode = PLAYER_DISPLAY_MODE_LETTER_BOX;
    player_display_rotation_e rotation = PLAYER_DISPLAY_ROTATION_NONE;
    int video_width = 0;
    int video_height = 0;
    std::uint64_t frames_decoded = 0;
    std::uint64_t frames_shown = 0;
    std::uint64_t frames_dropped = 0;
    std::string uri;
};
[[nodiscard]] PlayerStatus player_status();

/// How long a server may be silent before a playback is given up.
struct NetworkLimits {
    std::chrono::milliseconds connect{10'000};  ///< before its first data
    std::chrono::milliseconds stall{20'000};    ///< after that
};
/// Holds for waits that are under way, too. Any thread.
void set_network_limits(const NetworkLimits &limits);

/// Delivers an error, an interruption or a missing plug-in through the newest player's callbacks,
/// on a thread of the platform, as the real ones come. @return false when there is no player.
bool inject_player_error(int error_code);
bool inject_player_interruption(player_interrupted_code_e code);
bool inject_missed_plugin(player_missed_plugin_type_e type);

}  // namespace host
