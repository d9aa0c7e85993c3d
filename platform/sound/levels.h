#pragma once

#include <sound_manager.h>

#include <array>

namespace host::sound {

/// Every type has the levels 0 to this.
inline constexpr int kMaxLevel = 15;

/// The levels of all types, where they live in the process. They begin at full.
class Levels {
public:
    Levels() { levels_.fill(kMaxLevel); }

    [[nodiscard]] int get(sound_type_e type) const { return levels_.at(type); }
    /// @return whether that changed the level
    bool set(sound_type_e type, int level) {
        const bool changed = levels_.at(type) != level;
        levels_.at(type) = level;
        return changed;
    }

private:
    std::array<int, SOUND_TYPE_VOICE + 1> levels_{};
};

}  // namespace host::sound
