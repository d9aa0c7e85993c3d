#pragma once

#include <sound_manager.h>

namespace host::control {

/// Another program that wants the sound: a stream that takes the audio focus from whoever holds it.
/// Thread: main loop.
class Rival {
public:
    Rival() = default;
    /// Gives back what it holds.
    ~Rival();
    Rival(const Rival &) = delete;
    Rival &operator=(const Rival &) = delete;

    /// @param behavior  bits of sound_behavior_e that it states, also when it gives the focus back
    /// @throws RequestError when it doesn't get the focus
    void take(int behavior);
    /// @throws RequestError when it doesn't hold the focus
    void give_back();
    /// Whether the program holds the focus now.
    [[nodiscard]] bool program_holds_focus() const;

private:
    sound_stream_info_h stream_ = nullptr;
    int behavior_ = SOUND_BEHAVIOR_NONE;
};

}  // namespace host::control
