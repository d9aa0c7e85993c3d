#include <player.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <system_error>

#include "player/player_call.h"

using host::MediaPlayer;
using host::PlayerRegistry;
using host::set_callback;
using host::unset_callback;
using host::with;
using host::with_result;

namespace {

constexpr int kLastDisplayMode = PLAYER_DISPLAY_MODE_DST_ROI;
constexpr int kLastRotation = PLAYER_DISPLAY_ROTATION_270;

}  // namespace

// Life

int player_create(player_h *player) {
    if (player == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    try {
        *player = PlayerRegistry::instance().create();
    } catch (const std::bad_alloc &) {
        return PLAYER_ERROR_OUT_OF_MEMORY;
    } catch (const std::system_error &) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
    return PLAYER_ERROR_NONE;
}

int player_destroy(player_h player) {
    return PlayerRegistry::instance().destroy(player) ? PLAYER_ERROR_NONE
                                                      : PLAYER_ERROR_INVALID_PARAMETER;
}

int player_set_uri(player_h player, const char *uri) {
    return with(player, [uri](MediaPlayer &found) { return found.set_uri(uri); });
}

int player_prepare(player_h player) {
    return with(player, [](MediaPlayer &found) { return found.prepare(); });
}

int player_prepare_async(player_h player, player_prepared_cb callback, void *user_data) {
    return with(player, [callback, user_data](MediaPlayer &found) {
        return found.prepare_async(callback, user_data);
    });
}

int player_unprepare(player_h player) {
    return with(player, [](MediaPlayer &found) { return found.unprepare(); });
}

int player_get_state(player_h player, player_state_e *state) {
    return with_result(player, state, [state](MediaPlayer &found) {
        *state = found.state();
        return PLAYER_ERROR_NONE;
    });
}

// Transport

int player_start(player_h player) {
    return with(player, [](MediaPlayer &found) { return found.start(); });
}

int player_stop(player_h player) {
    return with(player, [](MediaPlayer &found) { return found.stop(); });
}

int player_pause(player_h player) {
    return with(player, [](MediaPlayer &found) { return found.pause(); });
}

int player_set_play_position(player_h player, int millisecond, bool accurate,
                             player_seek_completed_cb callback, void *user_data) {
    return with(player, [=](MediaPlayer &found) {
        return found.seek(millisecond, accurate, callback, user_data);
    });
}

int player_get_play_position(player_h player, int *millisecond) {
    return with_result(player, millisecond, [millisecond](MediaPlayer &found) {
        return found.get_position(*millisecond);
    });
}

int player_get_duration(player_h player, int *millisecond) {
    return with_result(player, millisecond, [millisecond](MediaPlayer &found) {
        return found.get_duration(*millisecond);
    });
}

int player_set_playback_rate_ex(player_h player, float rate) {
    return with(player, [rate](MediaPlayer &found) { return found.set_rate(rate); });
}

// Sound

int player_set_volume(player_h player, float left, float right) {
    return with(player,
                [left, right](MediaPlayer &found) { return found.set_volume(left, right); });
}

int player_get_volume(player_h player, float *left, float *right) {
    if (left == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with_result(player, right, [left, right](MediaPlayer &found) {
        found.get_volume(*left, *right);
        return PLAYER_ERROR_NONE;
    });
}

// Display

int player_set_display(player_h player, player_display_type_e type, player_display_h display) {
    return with(player,
                [type, display](MediaPlayer &found) { return found.set_display(type, display); });
}

int player_set_display_mode(player_h player, player_display_mode_e mode) {
    if (static_cast<int>(mode) < 0 || static_cast<int>(mode) > kLastDisplayMode) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(player, [mode](MediaPlayer &found) {
        found.video().set_mode(mode);
        return PLAYER_ERROR_NONE;
    });
}

int player_get_display_mode(player_h player, player_display_mode_e *mode) {
    return with_result(player, mode, [mode](MediaPlayer &found) {
        *mode = found.video().mode();
        return PLAYER_ERROR_NONE;
    });
}

int player_set_display_visible(player_h player, bool visible) {
    return with(player, [visible](MediaPlayer &found) {
        found.video().set_visible(visible);
        return PLAYER_ERROR_NONE;
    });
}

int player_is_display_visible(player_h player, bool *visible) {
    return with_result(player, visible, [visible](MediaPlayer &found) {
        *visible = found.video().visible();
        return PLAYER_ERROR_NONE;
    });
}

int player_set_display_rotation(player_h player, player_display_rotation_e rotation) {
    if (static_cast<int>(rotation) < 0 || static_cast<int>(rotation) > kLastRotation) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(player, [rotation](MediaPlayer &found) {
        found.video().set_rotation(rotation);
        return PLAYER_ERROR_NONE;
    });
}

int player_get_display_rotation(player_h player, player_display_rotation_e *rotation) {
    return with_result(player, rotation, [rotation](MediaPlayer &found) {
        *rotation = found.video().rotation();
        return PLAYER_ERROR_NONE;
    });
}

// What the medium is

int player_get_codec_info(player_h player, char **audio_codec, char **video_codec) {
    if (audio_codec == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with_result(player, video_codec, [audio_codec, video_codec](MediaPlayer &found) {
        std::string audio;
        std::string video;
        const int result = found.get_codecs(audio, video);
        if (result == PLAYER_ERROR_NONE) {
            *audio_codec = strdup(audio.c_str());
            *video_codec = strdup(video.c_str());
        }
        return result;
    });
}

int player_get_video_size(player_h player, int *width, int *height) {
    if (width == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with_result(player, height, [width, height](MediaPlayer &found) {
        host::PixelSize size;
        const int result = found.get_video_size(size);
        if (result == PLAYER_ERROR_NONE) {
            *width = size.width;
            *height = size.height;
        }
        return result;
    });
}

int player_capture_video(player_h player, player_video_captured_cb callback, void *user_data) {
    if (callback == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(player, [callback, user_data](MediaPlayer &found) {
        return found.capture(callback, user_data);
    });
}

// Callbacks

int player_set_completed_cb(player_h player, player_completed_cb callback, void *user_data) {
    return set_callback(player, &MediaPlayer::completed, callback, user_data);
}

int player_unset_completed_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::completed);
}

int player_set_interrupted_cb(player_h player, player_interrupted_cb callback, void *user_data) {
    return set_callback(player, &MediaPlayer::interrupted, callback, user_data);
}

int player_unset_interrupted_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::interrupted);
}

int player_set_error_cb(player_h player, player_error_cb callback, void *user_data) {
    return set_callback(player, &MediaPlayer::error, callback, user_data);
}

int player_unset_error_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::error);
}

int player_set_buffering_cb(player_h player, player_buffering_cb callback, void *user_data) {
    return set_callback(player, &MediaPlayer::buffering, callback, user_data);
}

int player_unset_buffering_cb(player_h player) {
    return unset_callback(player, &MediaPlayer::buffering);
}

int player_set_missed_plugin_info_cb(player_h player, player_missed_plugin_info_cb callback,
                                     void *user_data) {
    return set_callback(player, &MediaPlayer::missed_plugin, callback, user_data);
}
