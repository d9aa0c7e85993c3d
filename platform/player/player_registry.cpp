#include "player/player_registry.h"

#include <algorithm>
#include <utility>

#include "sound/output.h"

namespace host {

// Never destroyed: the sound backend may report a gain while the process exits.
PlayerRegistry &PlayerRegistry::instance() {
    static auto *const registry = new PlayerRegistry;
    return *registry;
}

player_h PlayerRegistry::create() {
    if (!std::exchange(follows_sound_, true)) {
        on_stream_gain_changed([this](double gain) {
            for_each([gain](MediaPlayer &player) { player.apply_stream_gain(gain); });
        });
        on_sound_output_returned(
            [this] { for_each([](MediaPlayer &player) { player.bring_sound_back(); }); });
    }
    auto player = std::make_unique<player_s>();
    player_h handle = player.get();
    const std::lock_guard lock(mutex_);
    players_.push_back(std::move(player));
    return handle;
}

bool PlayerRegistry::destroy(player_h handle) {
    std::unique_ptr<player_s> taken;
    {
        const std::lock_guard lock(mutex_);
        const auto found =
            std::find_if(players_.begin(), players_.end(),
                         [handle](const auto &player) { return player.get() == handle; });
        if (found == players_.end()) {
            return false;
        }
        taken = std::move(*found);
        players_.erase(found);
    }
    return true;
}

MediaPlayer *PlayerRegistry::find(player_h handle) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(players_.begin(), players_.end(), [handle](const auto &player) {
        return player.get() == handle;
    });
    return found == players_.end() ? nullptr : &(*found)->player;
}

MediaPlayer *PlayerRegistry::newest() {
    const std::lock_guard lock(mutex_);
    return players_.empty() ? nullptr : &players_.back()->player;
}

void PlayerRegistry::for_each(const std::function<void(MediaPlayer &)> &call) {
    const std::lock_guard lock(mutex_);
    for (const auto &player : players_) {
        call(player->player);
    }
}

// The door for the control socket

PlayerStatus player_status() {
    const MediaPlayer *player = PlayerRegistry::instance().newest();
    return player == nullptr ? PlayerStatus{} : player->status();
}

bool inject_player_error(int error_code) {
    MediaPlayer *player = PlayerRegistry::instance().newest();
    if (player != nullptr) {
        player->inject_error(error_code);
    }
    return player != nullptr;
}

bool inject_player_interruption(player_interrupted_code_e code) {
    MediaPlayer *player = PlayerRegistry::instance().newest();
    if (player != nullptr) {
        player->inject_interruption(code);
    }
    return player != nullptr;
}

bool inject_missed_plugin(player_missed_plugin_type_e type) {
    MediaPlayer *player = PlayerRegistry::instance().newest();
    if (player != nullptr) {
        player->inject_missed_plugin(type);
    }
    return player != nullptr;
}

}  // namespace host
