#include "fake_player.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <optional>
#include <utility>

#include "slot.h"

namespace {

template <typename Function>
struct Callback {
    Function function = nullptr;
    void *user_data = nullptr;
};

struct Seek {
    player_seek_completed_cb callback;
    void *user_data;
};

bool is_one_of(player_state_e state, std::initializer_list<player_state_e> states) {
    return std::find(states.begin(), states.end(), state) != states.end();
}

}  // namespace

struct player_s {
    player_state_e state = PLAYER_STATE_IDLE;
    unsigned generation = 0;  // of the preparation: what belongs to an old one is dropped
    bool preparing = false;
    std::string uri;
    bool has_source = false;
    int base_position = 0;
    FakePlayer::Clock::time_point started;
    std::optional<support::PlatformThread::Ticket> end_ticket;
    std::deque<Seek> seeks;
    float left = 1.0F;
    float right = 1.0F;
    float rate = 1.0F;
    player_display_type_e display_type = PLAYER_DISPLAY_TYPE_NONE;
    player_display_h display = nullptr;
    player_display_mode_e display_mode = PLAYER_DISPLAY_MODE_LETTER_BOX;
    player_display_rotation_e display_rotation = PLAYER_DISPLAY_ROTATION_NONE;
    bool visible = true;
    std::string subtitle_path;

    Callback<player_completed_cb> completed;
    Callback<player_interrupted_cb> interrupted;
    Callback<player_error_cb> error;
    Callback<player_buffering_cb> buffering;
    Callback<player_pd_message_cb> pd_message;
    Callback<player_media_packet_video_decoded_cb> video_frame;
    Callback<player_subtitle_updated_cb> subtitle;
    Callback<player_missed_plugin_info_cb> missed_plugin;
};

namespace mock {

FakePlayer &fake_player() {
    static Slot<FakePlayer> slot;
    return slot.get();
}

}  // namespace mock

FakePlayer::FakePlayer() = default;
FakePlayer::~FakePlayer() = default;

// ---- lookups

player_s *FakePlayer::find(player_h player) {
    for (const auto &item : m_players) {
        if (item.get() == player) {
            return item.get();
        }
    }
    return nullptr;
}

player_s *FakePlayer::newest() {
    return m_players.empty() ? nullptr : m_players.back().get();
}

int FakePlayer::check_state(player_h player, std::initializer_list<player_state_e> states) {
    const auto *item = find(player);
    if (item == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return is_one_of(item->state, states) ? PLAYER_ERROR_NONE : PLAYER_ERROR_INVALID_STATE;
}

int FakePlayer::position_of(const player_s &player) const {
    int position = player.base_position;
    if (player.state == PLAYER_STATE_PLAYING && !m_clock_stopped) {
        const std::chrono::duration<double, std::milli> elapsed = Clock::now() - player.started;
        position += static_cast<int>(elapsed.count() * player.rate);
    }
    return std::min(position, m_media.duration);
}

void FakePlayer::settle_clock(player_s &player, int position) {
    player.base_position = std::clamp(position, 0, m_media.duration);
    player.started = Clock::now();
}

void FakePlayer::cancel_end(player_s &player) {
    if (player.end_ticket) {
        m_thread.cancel(*player.end_ticket);
        player.end_ticket.reset();
    }
}

void FakePlayer::schedule_end(player_s &player) {
    cancel_end(player);
    if (m_clock_stopped || player.state != PLAYER_STATE_PLAYING) {
        return;
    }
    const double left = (m_media.duration - player.base_position) / player.rate;
    const auto when = player.started + std::chrono::duration_cast<Clock::duration>(
                                           std::chrono::duration<double, std::milli>(left));
    player.end_ticket =
        m_thread.post_at(when, [this, handle = &player, generation = player.generation] {
            deliver_end(handle, generation);
        });
}

// ---- delivery

template <typename Callback, typename Call>
void FakePlayer::deliver(Callback player_s::*slot, Call call) {
    m_thread.run([&] {
        const std::lock_guard delivery(m_delivery);
        Callback callback;
        {
            const std::lock_guard lock(m_mutex);
            if (auto *player = newest()) {
                callback = player->*slot;
            }
        }
        if (callback.function != nullptr) {
            call(callback);
        }
    });
}

void FakePlayer::deliver_end(player_h player, unsigned generation) {
    const std::lock_guard delivery(m_delivery);
    Callback<player_completed_cb> callback;
    {
        const std::lock_guard lock(m_mutex);
        auto *item = find(player);
        if (item == nullptr || item->generation != generation ||
            item->state != PLAYER_STATE_PLAYING || position_of(*item) < m_media.duration) {
            return;
        }
        item->end_ticket.reset();
        callback = item->completed;
    }
    if (callback.function != nullptr) {
        callback.function(callback.user_data);
    }
}

void FakePlayer::complete_seeks(player_h player) {
    const std::lock_guard delivery(m_delivery);
    for (;;) {
        Seek seek{};
        {
            const std::lock_guard lock(m_mutex);
            auto *item = find(player);
            if (item == nullptr || item->seeks.empty()) {
                return;
            }
            seek = item->seeks.front();
            item->seeks.pop_front();
        }
        if (seek.callback != nullptr) {
            seek.callback(seek.user_data);
        }
    }
}

void FakePlayer::finish_prepare(player_h player, unsigned generation, player_prepared_cb callback,
                                void *user_data) {
    const std::lock_guard delivery(m_delivery);
    Callback<player_error_cb> error;
    int error_code = 0;
    {
        const std::lock_guard lock(m_mutex);
        auto *item = find(player);
        if (item == nullptr || item->generation != generation) {
            return;
        }
        item->preparing = false;
        error_code = m_prepare_error;
        error = item->error;
        if (error_code == 0) {
            item->state = PLAYER_STATE_READY;
        }
    }
    if (error_code == 0) {
        callback(user_data);
    } else if (error.function != nullptr) {
        error.function(error_code, error.user_data);
    }
}

// ---- controls

void FakePlayer::set_duration(int milliseconds) {
    const std::lock_guard lock(m_mutex);
    m_media.duration = milliseconds;
}

void FakePlayer::set_video_size(int width, int height) {
    const std::lock_guard lock(m_mutex);
    m_media.width = width;
    m_media.height = height;
}

void FakePlayer::set_codecs(std::string audio, std::string video) {
    const std::lock_guard lock(m_mutex);
    m_media.audio_codec = std::move(audio);
    m_media.video_codec = std::move(video);
}

void FakePlayer::set_closed_caption(bool exists) {
    const std::lock_guard lock(m_mutex);
    m_media.closed_caption = exists;
}

void FakePlayer::stop_clock() {
    const std::lock_guard lock(m_mutex);
    for (const auto &player : m_players) {
        settle_clock(*player, position_of(*player));
        cancel_end(*player);
    }
    m_clock_stopped = true;
}

void FakePlayer::set_position(int milliseconds) {
    const std::lock_guard lock(m_mutex);
    if (auto *player = newest()) {
        settle_clock(*player, milliseconds);
        schedule_end(*player);
    }
}

void FakePlayer::fail_prepare(int error_code) {
    const std::lock_guard lock(m_mutex);
    m_prepare_error = error_code;
}

void FakePlayer::hold_prepare() {
    const std::lock_guard lock(m_mutex);
    m_hold_prepare = true;
}

void FakePlayer::release_prepare() {
    std::vector<std::function<void()>> held;
    {
        const std::lock_guard lock(m_mutex);
        m_hold_prepare = false;
        held.swap(m_held_preparations);
    }
    for (auto &preparation : held) {
        m_thread.post(std::move(preparation));
    }
}

void FakePlayer::hold_seeks() {
    const std::lock_guard lock(m_mutex);
    m_hold_seeks = true;
}

void FakePlayer::release_seeks() {
    player_h player = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        m_hold_seeks = false;
        player = newest();
    }
    m_thread.post([this, player] { complete_seeks(player); });
}

void FakePlayer::deliver_completed() {
    deliver(&player_s::completed, [](const auto &cb) { cb.function(cb.user_data); });
}

void FakePlayer::deliver_error(int error_code) {
    deliver(&player_s::error, [&](const auto &cb) { cb.function(error_code, cb.user_data); });
}

void FakePlayer::deliver_interrupted(player_interrupted_code_e code) {
    deliver(&player_s::interrupted, [&](const auto &cb) { cb.function(code, cb.user_data); });
}

void FakePlayer::deliver_missed_plugin(player_missed_plugin_type_e type, const char *detail) {
    deliver(&player_s::missed_plugin,
            [&](const auto &cb) { cb.function(type, detail, cb.user_data); });
}

void FakePlayer::deliver_buffering(int percent) {
    deliver(&player_s::buffering, [&](const auto &cb) { cb.function(percent, cb.user_data); });
}

void FakePlayer::deliver_pd_message(player_pd_message_type_e type) {
    deliver(&player_s::pd_message, [&](const auto &cb) { cb.function(type, cb.user_data); });
}

void FakePlayer::deliver_subtitle(unsigned long duration, const char *text) {
    std::string copy = text;
    deliver(&player_s::subtitle,
            [&](const auto &cb) { cb.function(duration, copy.data(), cb.user_data); });
}

void FakePlayer::deliver_video_frame() {
    deliver(&player_s::video_frame, [](const auto &cb) { cb.function(nullptr, cb.user_data); });
}

void FakePlayer::on_thread(const std::function<void()> &function) {
    m_thread.run(function);
}

void FakePlayer::drain() {
    m_thread.drain();
}

player_state_e FakePlayer::state() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? PLAYER_STATE_NONE : player->state;
}

int FakePlayer::players() {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_players.size());
}

std::string FakePlayer::uri() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? std::string() : player->uri;
}

std::string FakePlayer::subtitle_path() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? std::string() : player->subtitle_path;
}

float FakePlayer::rate() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? 0.0F : player->rate;
}

player_display_type_e FakePlayer::display_type() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? PLAYER_DISPLAY_TYPE_NONE : player->display_type;
}

player_display_h FakePlayer::display() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? nullptr : player->display;
}

player_display_mode_e FakePlayer::display_mode() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? PLAYER_DISPLAY_MODE_LETTER_BOX : player->display_mode;
}

player_display_rotation_e FakePlayer::display_rotation() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? PLAYER_DISPLAY_ROTATION_NONE : player->display_rotation;
}

std::thread::id FakePlayer::thread_id() {
    std::thread::id id;
    m_thread.run([&id] { id = std::this_thread::get_id(); });
    return id;
}

int FakePlayer::pending_seeks() {
    const std::lock_guard lock(m_mutex);
    const auto *player = newest();
    return player == nullptr ? 0 : static_cast<int>(player->seeks.size());
}

// ---- life and preparation

int FakePlayer::player_create(player_h *player) {
    if (player == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const std::lock_guard lock(m_mutex);
    m_players.push_back(std::make_unique<player_s>());
    *player = m_players.back().get();
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_destroy(player_h player) {
    m_thread.run([&] { complete_seeks(player); });
    const std::lock_guard delivery(m_delivery);
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    cancel_end(*item);
    std::erase_if(m_players, [item](const auto &other) { return other.get() == item; });
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_prepare(player_h player) {
    const std::lock_guard lock(m_mutex);
    if (const int result = check_state(player, {PLAYER_STATE_IDLE}); result != 0) {
        return result;
    }
    auto *item = find(player);
    if (!item->has_source || item->preparing) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
    if (m_prepare_error != 0) {
        return m_prepare_error;
    }
    item->generation = ++m_generation;
    settle_clock(*item, 0);
    item->state = PLAYER_STATE_READY;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_prepare_async(player_h player, player_prepared_cb callback,
                                     void *user_data) {
    const std::lock_guard lock(m_mutex);
    if (callback == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    if (const int result = check_state(player, {PLAYER_STATE_IDLE}); result != 0) {
        return result;
    }
    auto *item = find(player);
    if (!item->has_source || item->preparing) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
    item->generation = ++m_generation;
    settle_clock(*item, 0);
    item->preparing = true;
    auto finish = [this, player, generation = item->generation, callback, user_data] {
        finish_prepare(player, generation, callback, user_data);
    };
    if (m_hold_prepare) {
        m_held_preparations.emplace_back(std::move(finish));
    } else {
        m_thread.post(std::move(finish));
    }
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_unprepare(player_h player) {
    {
        const std::lock_guard lock(m_mutex);
        const int result =
            check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
        if (result != 0) {
            return result;
        }
    }
    // What waits is completed first; then nothing of this preparation runs any more.
    m_thread.run([&] { complete_seeks(player); });
    const std::lock_guard delivery(m_delivery);
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    cancel_end(*item);
    item->generation = ++m_generation;
    item->state = PLAYER_STATE_IDLE;
    settle_clock(*item, 0);
    item->rate = 1.0F;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_uri(player_h player, const char *uri) {
    const std::lock_guard lock(m_mutex);
    if (uri == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    if (const int result = check_state(player, {PLAYER_STATE_IDLE}); result != 0) {
        return result;
    }
    if (*uri == '\0') {
        return PLAYER_ERROR_INVALID_URI;
    }
    auto *item = find(player);
    item->uri = uri;
    item->has_source = true;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_memory_buffer(player_h player, const void *data, int size) {
    const std::lock_guard lock(m_mutex);
    if (data == nullptr || size < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    if (const int result = check_state(player, {PLAYER_STATE_IDLE}); result != 0) {
        return result;
    }
    find(player)->has_source = true;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_state(player_h player, player_state_e *state) {
    const std::lock_guard lock(m_mutex);
    const auto *item = find(player);
    if (item == nullptr || state == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    *state = item->state;
    return PLAYER_ERROR_NONE;
}

// ---- transport

int FakePlayer::player_start(player_h player) {
    const std::lock_guard lock(m_mutex);
    if (const int result = check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PAUSED});
        result != 0) {
        return result;
    }
    auto *item = find(player);
    settle_clock(*item, item->base_position);
    item->state = PLAYER_STATE_PLAYING;
    schedule_end(*item);
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_stop(player_h player) {
    const std::lock_guard lock(m_mutex);
    if (const int result = check_state(player, {PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
        result != 0) {
        return result;
    }
    auto *item = find(player);
    cancel_end(*item);
    item->state = PLAYER_STATE_READY;
    settle_clock(*item, 0);
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_pause(player_h player) {
    const std::lock_guard lock(m_mutex);
    if (const int result = check_state(player, {PLAYER_STATE_PLAYING}); result != 0) {
        return result;
    }
    auto *item = find(player);
    settle_clock(*item, position_of(*item));
    cancel_end(*item);
    item->state = PLAYER_STATE_PAUSED;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_play_position(player_h player, int millisecond, bool,
                                         player_seek_completed_cb callback, void *user_data) {
    const std::lock_guard lock(m_mutex);
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result != 0) {
        return result;
    }
    if (millisecond < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    auto *item = find(player);
    settle_clock(*item, millisecond);
    schedule_end(*item);
    item->seeks.push_back({callback, user_data});
    if (!m_hold_seeks) {
        m_thread.post([this, player] { complete_seeks(player); });
    }
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_play_position(player_h player, int *millisecond) {
    const std::lock_guard lock(m_mutex);
    if (millisecond == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *millisecond = position_of(*find(player));
    }
    return result;
}

int FakePlayer::player_get_duration(player_h player, int *millisecond) {
    const std::lock_guard lock(m_mutex);
    if (millisecond == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *millisecond = m_media.duration;
    }
    return result;
}

int FakePlayer::player_set_playback_rate_ex(player_h player, float rate) {
    const std::lock_guard lock(m_mutex);
    if (rate < 0.5F || rate > 1.5F) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        auto *item = find(player);
        settle_clock(*item, position_of(*item));
        item->rate = rate;
        schedule_end(*item);
    }
    return result;
}

// ---- settings

int FakePlayer::player_set_volume(player_h player, float left, float right) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr || left < 0.0F || left > 1.0F || right < 0.0F || right > 1.0F) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->left = left;
    item->right = right;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_volume(player_h player, float *left, float *right) {
    const std::lock_guard lock(m_mutex);
    const auto *item = find(player);
    if (item == nullptr || left == nullptr || right == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    *left = item->left;
    *right = item->right;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_display(player_h player, player_display_type_e type,
                                   player_display_h display) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr || (type == PLAYER_DISPLAY_TYPE_OVERLAY && display == nullptr)) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->display_type = type;
    item->display = display;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_display_mode(player_h player, player_display_mode_e mode) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr || mode > PLAYER_DISPLAY_MODE_DST_ROI) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->display_mode = mode;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_display_mode(player_h player, player_display_mode_e *mode) {
    const std::lock_guard lock(m_mutex);
    const auto *item = find(player);
    if (item == nullptr || mode == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    *mode = item->display_mode;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_display_visible(player_h player, bool visible) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->visible = visible;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_is_display_visible(player_h player, bool *visible) {
    const std::lock_guard lock(m_mutex);
    const auto *item = find(player);
    if (item == nullptr || visible == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    *visible = item->visible;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_display_rotation(player_h player, player_display_rotation_e rotation) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr || rotation > PLAYER_DISPLAY_ROTATION_270) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->display_rotation = rotation;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_display_rotation(player_h player, player_display_rotation_e *rotation) {
    const std::lock_guard lock(m_mutex);
    const auto *item = find(player);
    if (item == nullptr || rotation == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    *rotation = item->display_rotation;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_get_codec_info(player_h player, char **audio_codec, char **video_codec) {
    const std::lock_guard lock(m_mutex);
    if (audio_codec == nullptr || video_codec == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *audio_codec = strdup(m_media.audio_codec.c_str());
        *video_codec = strdup(m_media.video_codec.c_str());
    }
    return result;
}

int FakePlayer::player_get_video_size(player_h player, int *width, int *height) {
    const std::lock_guard lock(m_mutex);
    if (width == nullptr || height == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *width = m_media.width;
        *height = m_media.height;
    }
    return result;
}

int FakePlayer::player_capture_video(player_h player, player_video_captured_cb callback,
                                     void *user_data) {
    const std::lock_guard lock(m_mutex);
    if (callback == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result = check_state(player, {PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        m_thread.post([this, callback, user_data, width = m_media.width, height = m_media.height] {
            std::vector<unsigned char> pixels(static_cast<std::size_t>(width) * height * 3);
            const std::lock_guard delivery(m_delivery);
            callback(pixels.data(), width, height, static_cast<unsigned>(pixels.size()), user_data);
        });
    }
    return result;
}

int FakePlayer::player_set_streaming_cookie(player_h player, const char *cookie, int size) {
    const std::lock_guard lock(m_mutex);
    if (cookie == nullptr || size < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return check_state(player, {PLAYER_STATE_IDLE});
}

int FakePlayer::player_set_streaming_user_agent(player_h player, const char *user_agent, int size) {
    const std::lock_guard lock(m_mutex);
    if (user_agent == nullptr || size < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    return check_state(player, {PLAYER_STATE_IDLE});
}

int FakePlayer::player_get_streaming_download_progress(player_h player, int *start, int *current) {
    const std::lock_guard lock(m_mutex);
    if (start == nullptr || current == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result = check_state(player, {PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *start = 0;
        *current = 100;
    }
    return result;
}

int FakePlayer::player_set_progressive_download_path(player_h player, const char *path) {
    const std::lock_guard lock(m_mutex);
    return path == nullptr ? PLAYER_ERROR_INVALID_PARAMETER
                           : check_state(player, {PLAYER_STATE_IDLE});
}

int FakePlayer::player_get_progressive_download_status(player_h player, unsigned long *current,
                                                       unsigned long *total_size) {
    const std::lock_guard lock(m_mutex);
    if (current == nullptr || total_size == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result = check_state(player, {PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *current = 0;
        *total_size = 0;
    }
    return result;
}

int FakePlayer::player_set_subtitle_path(player_h player, const char *path) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->subtitle_path = path == nullptr ? "" : path;
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_subtitle_position_offset(player_h player, int) {
    const std::lock_guard lock(m_mutex);
    return check_state(player, {PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
}

int FakePlayer::player_has_closed_caption(player_h player, bool *exist) {
    const std::lock_guard lock(m_mutex);
    if (exist == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result =
        check_state(player, {PLAYER_STATE_READY, PLAYER_STATE_PLAYING, PLAYER_STATE_PAUSED});
    if (result == 0) {
        *exist = m_media.closed_caption;
    }
    return result;
}

int FakePlayer::player_set_rich_audio(player_h player) {
    const std::lock_guard lock(m_mutex);
    return find(player) == nullptr ? PLAYER_ERROR_INVALID_PARAMETER : PLAYER_ERROR_NONE;
}

int FakePlayer::player_enable_sync_handler(player_h player, bool) {
    const std::lock_guard lock(m_mutex);
    return find(player) == nullptr ? PLAYER_ERROR_INVALID_PARAMETER : PLAYER_ERROR_NONE;
}

// ---- callbacks

template <typename Callback, typename Function>
int FakePlayer::set_callback(player_h player, Callback player_s::*slot, Function function,
                             void *user_data) {
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr || function == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->*slot = {function, user_data};
    return PLAYER_ERROR_NONE;
}

template <typename Callback>
int FakePlayer::unset_callback(player_h player, Callback player_s::*slot) {
    const std::lock_guard delivery(m_delivery);
    const std::lock_guard lock(m_mutex);
    auto *item = find(player);
    if (item == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    item->*slot = {};
    return PLAYER_ERROR_NONE;
}

int FakePlayer::player_set_completed_cb(player_h player, player_completed_cb callback,
                                        void *user_data) {
    return set_callback(player, &player_s::completed, callback, user_data);
}

int FakePlayer::player_unset_completed_cb(player_h player) {
    return unset_callback(player, &player_s::completed);
}

int FakePlayer::player_set_interrupted_cb(player_h player, player_interrupted_cb callback,
                                          void *user_data) {
    return set_callback(player, &player_s::interrupted, callback, user_data);
}

int FakePlayer::player_unset_interrupted_cb(player_h player) {
    return unset_callback(player, &player_s::interrupted);
}

int FakePlayer::player_set_error_cb(player_h player, player_error_cb callback, void *user_data) {
    return set_callback(player, &player_s::error, callback, user_data);
}

int FakePlayer::player_unset_error_cb(player_h player) {
    return unset_callback(player, &player_s::error);
}

int FakePlayer::player_set_buffering_cb(player_h player, player_buffering_cb callback,
                                        void *user_data) {
    return set_callback(player, &player_s::buffering, callback, user_data);
}

int FakePlayer::player_unset_buffering_cb(player_h player) {
    return unset_callback(player, &player_s::buffering);
}

int FakePlayer::player_set_progressive_download_message_cb(player_h player,
                                                           player_pd_message_cb callback,
                                                           void *user_data) {
    return set_callback(player, &player_s::pd_message, callback, user_data);
}

int FakePlayer::player_unset_progressive_download_message_cb(player_h player) {
    return unset_callback(player, &player_s::pd_message);
}

int FakePlayer::player_set_media_packet_video_frame_decoded_cb(
    player_h player, player_media_packet_video_decoded_cb callback, void *user_data) {
    return set_callback(player, &player_s::video_frame, callback, user_data);
}

int FakePlayer::player_unset_media_packet_video_frame_decoded_cb(player_h player) {
    return unset_callback(player, &player_s::video_frame);
}

int FakePlayer::player_set_subtitle_updated_cb(player_h player, player_subtitle_updated_cb callback,
                                               void *user_data) {
    return set_callback(player, &player_s::subtitle, callback, user_data);
}

int FakePlayer::player_unset_subtitle_updated_cb(player_h player) {
    return unset_callback(player, &player_s::subtitle);
}

int FakePlayer::player_set_missed_plugin_info_cb(player_h player,
                                                 player_missed_plugin_info_cb callback,
                                                 void *user_data) {
    return set_callback(player, &player_s::missed_plugin, callback, user_data);
}
