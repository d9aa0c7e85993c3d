#include "control/rival.h"

#include "control/request.h"
#include "sound/focus.h"

namespace host::control {

Rival::~Rival() {
    if (stream_ != nullptr) {
        sound_manager_destroy_stream_information(stream_);
    }
}

void Rival::take(int behavior) {
    if (stream_ == nullptr &&
        sound_manager_create_stream_information(SOUND_STREAM_TYPE_MEDIA, nullptr, nullptr,
                                                &stream_) != SOUND_MANAGER_ERROR_NONE) {
        throw RequestError("there is no stream to take the focus for");
    }
    if (sound_manager_acquire_focus(stream_, SOUND_STREAM_FOCUS_FOR_PLAYBACK, behavior, nullptr) !=
        SOUND_MANAGER_ERROR_NONE) {
        throw RequestError("the focus is refused");
    }
    behavior_ = behavior;
}

void Rival::give_back() {
    if (stream_ == nullptr ||
        sound_manager_release_focus(stream_, SOUND_STREAM_FOCUS_FOR_PLAYBACK, behavior_, nullptr) !=
            SOUND_MANAGER_ERROR_NONE) {
        throw RequestError("the focus is not held");
    }
}

bool Rival::program_holds_focus() const {
    return sound::is_focus_held(stream_);
}

}  // namespace host::control
