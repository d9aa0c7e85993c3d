#include <player.h>

#include <cstddef>
#include <string_view>

#include "player/player_call.h"

// What the interface has for streams, subtitles and single pictures.

using host::MediaPlayer;
using host::set_callback;
using host::unset_callback;
using host::with;
using host::with_result;

namespace {

/// A text of so many bytes, which need not end in a zero.
template <typename Set>
int set_text(player_h player, const char *text, int size, Set set) {
    if (text == nullptr || size < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const std::string_view given(text, static_cast<std::size_t>(size));
    return with(player, [given, set](MediaPlayer &found) { return (found.*set)(given); });
}

}  // namespace

int player_set_memory_buffer(player_h player, const void *data, int size) {
    if (data == nullptr || size < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(player,
                [data, size](MediaPlayer &found) { return found.set_memory_buffer(data, size); });
}

int player_set_streaming_cookie(player_h player, const char *cookie, int size) {
    return set_text(player, cookie, size, &MediaPlayer::set_cookie);
}

int player_set_streaming_user_agent(player_h player, const char *user_agent, int size) {
    return set_text(player, user_agent, size, &MediaPlayer::set_user_agent);
}

int player_get_streaming_download_progress(player_h player, int *start, int *current) {
    if (start == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with_result(player, current, [start, current](MediaPlayer &found) {
        return found.get_buffered(*start, *current);
    });
}

int player_set_progressive_download_path(player_h player, const char *path) {
    if (path == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(player, [path](MediaPlayer &found) { return found.set_download_path(path); });
}

int player_get_progressive_download_status(player_h player, unsigned long *current,
                                           unsigned long *total_size) {
    if (current == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with_result(player, total_size, [current, total_size](MediaPlayer &found) {
        return found.get_download(*current, *total_size);
    });
}

int player_set_subtitle_path(player_h player, const char *path) {
    return with(player, [path](MediaPlayer &found) { return found.set_subtitle_path(path); });
}

int player_set_subtitle_position_offset(player_h player, int millisecond) {
    return with(player, [millisecond](MediaPlayer &found) {
        return found.set_subtitle_offset(millisecond);
    });
}

int player_has_closed_caption(player_h player, bool *exist) {
    return with_result(player, exist,
                       [exist](MediaPlayer &found) { return found.has_captions(*exist); });
}

int player_set_progressive_download_message_cb(player_h player, player_pd_message_cb callback,
                                               void *user_data) {
    return set_callback(player, &MediaPlayer::download_message, callback, user_data);
}

int player_unset_progressive_download_message_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::download_message);
}

int player_set_media_packet_video_frame_decoded_cb(player_h player,
                                                   player_media_packet_video_decoded_cb callback,
                                                   void *user_data) {
    return set_callback(player, &MediaPlayer::picture, callback, user_data);
}

int player_unset_media_packet_video_frame_decoded_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::picture);
}

int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                   void *user_data) {
    return set_callback(player, &MediaPlayer::subtitle, callback, user_data);
}

int player_unset_subtitle_updated_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::subtitle);
}
