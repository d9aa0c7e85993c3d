#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <tuple>
#include <utility>

#include "player/media_packet.h"
#include "player/media_player.h"

namespace host {

int MediaPlayer::change_setting(std::string StreamSettings::*setting, std::string_view value) {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_IDLE || shared_.preparing) {
            return PLAYER_ERROR_INVALID_STATE;
        }
    }
    settings_.*setting = value;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::set_memory_buffer(const void *data, int size) {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_IDLE || shared_.preparing) {
            return PLAYER_ERROR_INVALID_STATE;
        }
    }
    source_ = MediaSource::from_memory(data, static_cast<std::size_t>(size));
    return source_ ? PLAYER_ERROR_NONE : PLAYER_ERROR_OUT_OF_MEMORY;
}

int MediaPlayer::set_cookie(std::string_view cookie) {
    return change_setting(&StreamSettings::cookie, cookie);
}

int MediaPlayer::set_user_agent(std::string_view user_agent) {
    return change_setting(&StreamSettings::user_agent, user_agent);
}

int MediaPlayer::set_download_path(const char *path) {
    return change_setting(&StreamSettings::download_path, path);
}

int MediaPlayer::set_subtitle_path(const char *path) {
    if (path != nullptr && *path != '\0' && access(path, R_OK) != 0) {
        return fault_of_errno(errno).code;
    }
    settings_.subtitle_path = path == nullptr ? "" : path;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::set_subtitle_offset(int milliseconds) {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_PLAYING && shared_.state != PLAYER_STATE_PAUSED) {
            return PLAYER_ERROR_INVALID_STATE;
        }
    }
    thread_.post([this, milliseconds] {
        if (playback_) {
            playback_->set_subtitle_offset(milliseconds);
        }
    });
    return PLAYER_ERROR_NONE;
}

std::shared_ptr<Pipeline> MediaPlayer::playing_pipeline(int &result) const {
    const std::lock_guard lock(mutex_);
    if (shared_.state != PLAYER_STATE_PLAYING && shared_.state != PLAYER_STATE_PAUSED) {
        result = PLAYER_ERROR_INVALID_STATE;
        return nullptr;
    }
    result = shared_.pipeline ? PLAYER_ERROR_NONE : PLAYER_ERROR_INVALID_OPERATION;
    return shared_.pipeline;
}

int MediaPlayer::get_buffered(int &from_percent, int &to_percent) const {
    int result = PLAYER_ERROR_NONE;
    if (const auto pipeline = playing_pipeline(result)) {
        const auto percents = pipeline->buffered_percents();
        if (!percents) {
            return PLAYER_ERROR_INVALID_OPERATION;
        }
        std::tie(from_percent, to_percent) = *percents;
    }
    return result;
}

int MediaPlayer::get_download(unsigned long &bytes, unsigned long &total_bytes) const {
    int result = PLAYER_ERROR_NONE;
    if (const auto pipeline = playing_pipeline(result)) {
        const auto known = pipeline->download().bytes();
        if (!known) {
            return PLAYER_ERROR_INVALID_OPERATION;
        }
        std::tie(bytes, total_bytes) = *known;
    }
    return result;
}

int MediaPlayer::has_captions(bool &exist) const {
    const std::lock_guard lock(mutex_);
    if (shared_.state < PLAYER_STATE_READY) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    exist = shared_.pipeline && shared_.pipeline->has_captions();
    return PLAYER_ERROR_NONE;
}

StreamTaps MediaPlayer::taps() {
    return {
        .subtitle =
            [this](unsigned long duration_ms, const std::string &text) {
                std::string copy = text;
                subtitle(duration_ms, copy.data());
            },
        .picture =
            [this](GstSample *sample) {
                if (!picture.is_set()) {
                    return;
                }
                media_packet_s packet(sample);
                if (packet.readable()) {
                    picture(&packet);
                }
            },
    };
}

}  // namespace host
