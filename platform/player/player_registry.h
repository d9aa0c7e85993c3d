#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "player/media_player.h"

struct player_s {
    host::MediaPlayer player;
};

namespace host {

/// The players behind the handles that are given out. Thread: main loop, but for what the sound
/// reports.
class PlayerRegistry {
public:
    static PlayerRegistry &instance();

    player_h create();
    /// @return false when it is no live handle.
    bool destroy(player_h handle);
    /// Null when it is no live handle.
    [[nodiscard]] MediaPlayer *find(player_h handle);
    /// Null when there is no player.
    [[nodiscard]] MediaPlayer *newest();

private:
    void for_each(const std::function<void(MediaPlayer &)> &call);

    std::mutex mutex_;
    std::vector<std::unique_ptr<player_s>> players_;
    bool follows_sound_ = false;
};

}  // namespace host
