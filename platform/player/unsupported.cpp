#include <player.h>

#include "player/player_registry.h"

// Operations of the interface that this host doesn't have. Why stands in the interface's header.

namespace {

int refuse(player_h player) {
    return host::PlayerRegistry::instance().find(player) == nullptr
               ? PLAYER_ERROR_INVALID_PARAMETER
               : PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE;
}

}  // namespace

int player_set_rich_audio(player_h player) {
    return refuse(player);
}

int player_enable_sync_handler(player_h player, bool) {
    return refuse(player);
}
