#include <player.h>

#include "player/player_registry.h"

// Operations of the interface that this host doesn't have. Registrations of what is never called
// are accepted all the same, since a program makes them without knowing.

namespace {

using host::PlayerRegistry;

int refuse(player_h player) {
    return PlayerRegistry::instance().find(player) == nullptr
               ? PLAYER_ERROR_INVALID_PARAMETER
               : PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE;
}

int accept(player_h player) {
    return PlayerRegistry::instance().find(player) == nullptr ? PLAYER_ERROR_INVALID_PARAMETER
                                                              : PLAYER_ERROR_NONE;
}

template <typename Function>
int accept(player_h player, Function callback) {
    return callback == nullptr ? PLAYER_ERROR_INVALID_PARAMETER : accept(player);
}

}  // namespace

int player_set_memory_buffer(player_h player, const void *, int) {
    return refuse(player);
}

int player_set_streaming_cookie(player_h player, const char *, int) {
    return refuse(player);
}

int player_set_streaming_user_agent(player_h player, const char *, int) {
    return refuse(player);
}

int player_get_streaming_download_progress(player_h player, int *, int *) {
    return refuse(player);
}

int player_set_progressive_download_path(player_h player, const char *) {
    return refuse(player);
}

int player_get_progressive_download_status(player_h player, unsigned long *, unsigned long *) {
    return refuse(player);
}

int player_set_subtitle_path(player_h player, const char *) {
    return refuse(player);
}

int player_set_subtitle_position_offset(player_h player, int) {
    return refuse(player);
}

int player_has_closed_caption(player_h player, bool *) {
    return refuse(player);
}

int player_set_rich_audio(player_h player) {
    return refuse(player);
}

int player_enable_sync_handler(player_h player, bool) {
    return refuse(player);
}

int player_set_progressive_download_message_cb(player_h player, player_pd_message_cb callback,
                                               void *) {
    return accept(player, callback);
}

int player_unset_progressive_download_message_cb(player_h player) {
    return accept(player);
}

int player_set_media_packet_video_frame_decoded_cb(player_h player,
                                                   player_media_packet_video_decoded_cb callback,
                                                   void *) {
    return callback == nullptr ? PLAYER_ERROR_INVALID_PARAMETER : refuse(player);
}

int player_unset_media_packet_video_frame_decoded_cb(player_h player) {
    return accept(player);
}

int player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback, void *) {
    return accept(player, callback);
}

int player_unset_subtitle_updated_cb(player_h player) {
    return accept(player);
}
