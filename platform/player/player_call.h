#pragma once

#include <player.h>

#include <new>
#include <system_error>

#include "player/player_registry.h"

namespace host {

/// `call` on the player of a handle; no exception leaves the interface.
template <typename Call>
int with(player_h handle, Call call) {
    MediaPlayer *player = PlayerRegistry::instance().find(handle);
    if (player == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    try {
        return call(*player);
    } catch (const std::bad_alloc &) {
        return PLAYER_ERROR_OUT_OF_MEMORY;
    } catch (const std::system_error &) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
}

/// As with(), when the pointer that the result goes to is there.
template <typename Result, typename Call>
int with_result(player_h handle, Result *result, Call call) {
    return result == nullptr ? PLAYER_ERROR_INVALID_PARAMETER : with(handle, call);
}

template <typename Slot, typename Function>
int set_callback(player_h handle, Slot MediaPlayer::*slot, Function function, void *user_data) {
    if (function == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return with(handle, [&](MediaPlayer &player) {
        (player.*slot).set(function, user_data);
        return PLAYER_ERROR_NONE;
    });
}

template <typename Slot>
int unset_callback(player_h handle, Slot MediaPlayer::*slot) {
    return with(handle, [&](MediaPlayer &player) {
        (player.*slot).reset();
        return PLAYER_ERROR_NONE;
    });
}

}  // namespace host
