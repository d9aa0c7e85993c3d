#include "player/media_player.h"

#include <dlog.h>
#include <gst/video/video.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "app/lifecycle.h"
#include "player/warm_up.h"
#include "shell/shell.h"
#include "sound/output.h"

namespace host {
namespace {

constexpr float kLowestRate = 0.5F;
constexpr float kHighestRate = 1.5F;

bool prepared(player_state_e state) {
    return state >= PLAYER_STATE_READY;
}

void complete(const SeekRequest &request) {
    if (request.callback != nullptr) {
        request.callback(request.user_data);
    }
}

/// Tells the user in one line, whatever the name holds.
void report_failure(std::string what, const std::string &why) {
    std::replace_if(
        what.begin(), what.end(), [](unsigned char character) { return character < ' '; }, '?');
    report_playback_failure("cannot play \"" + what + "\": " + why);
}

}  // namespace

MediaPlayer::MediaPlayer() {
    shared_.volume.gain = stream_gain();
}

MediaPlayer::~MediaPlayer() {
    completed.reset();
    interrupted.reset();
    error.reset();
    buffering.reset();
    missed_plugin.reset();
    download_message.reset();
    subtitle.reset();
    picture.reset();
    thread_.run([this] { close_playback(); });
    video_->clear();
    drop_display();
}

// Preparing

int MediaPlayer::set_uri(const char *uri) {
    if (uri == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_IDLE || shared_.preparing) {
            return PLAYER_ERROR_INVALID_STATE;
        }
    }
    std::string why;
    source_ = MediaSource::parse(uri, why);
    if (!source_) {
        __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "HOST", "The medium is refused with %d (0x%x): %s",
                     PLAYER_ERROR_INVALID_URI, static_cast<unsigned>(PLAYER_ERROR_INVALID_URI),
                     why.c_str());
        report_failure(uri, why);
        return PLAYER_ERROR_INVALID_URI;
    }
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::begin_preparing() {
    const std::lock_guard lock(mutex_);
    if (shared_.state != PLAYER_STATE_IDLE) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    if (!source_ || shared_.preparing) {
        return PLAYER_ERROR_INVALID_OPERATION;
    }
    shared_.preparing = true;
    last_position_ = 0;
    shared_.failed = false;
    shared_.rewind = false;
    shared_.fixed_position.reset();
    shared_.facts = {};
    shared_.audio_codec.clear();
    shared_.video_codec.clear();
    shared_.rate = 1.0;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::prepare_async(player_prepared_cb callback, void *user_data) {
    if (callback == nullptr) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    const int result = begin_preparing();
    if (result != PLAYER_ERROR_NONE) {
        return result;
    }
    thread_.post([this, source = *source_, settings = settings_, callback, user_data] {
        prepared_ = callback;
        prepared_data_ = user_data;
        open_playback(source, settings);
    });
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::prepare() {
    const int result = begin_preparing();
    if (result != PLAYER_ERROR_NONE) {
        return result;
    }
    std::promise<int> answer;
    thread_.post([this, &answer, source = *source_, settings = settings_] {
        prepare_answer_ = &answer;
        open_playback(source, settings);
    });
    return answer.get_future().get();
}

int MediaPlayer::unprepare() {
    {
        const std::lock_guard lock(mutex_);
        if (!prepared(shared_.state) && !shared_.preparing) {
            return PLAYER_ERROR_INVALID_STATE;
        }
    }
    thread_.run([this] { close_playback(); });
    video_->clear();
    return PLAYER_ERROR_NONE;
}

void MediaPlayer::open_playback(const MediaSource &source, const StreamSettings &settings) {
    wait_for_warm_up();
    StreamVolume volume;
    {
        const std::lock_guard lock(mutex_);
        volume = shared_.volume;
    }
    const auto forward = [this](unsigned pipeline, GstMiniPtr<GstMessage> message) {
        thread_.post([this, pipeline, kept = std::shared_ptr<GstMessage>(std::move(message))] {
            if (playback_) {
                playback_->handle(pipeline, kept.get());
            }
        });
    };
    playback_ = std::make_unique<Playback>(
        Playback::Setup{source, volume, video_, settings, taps()}, thread_, forward, *this);
    playback_->prepare();
}

void MediaPlayer::close_playback() {
    complete_seeks();
    playback_.reset();
    prepared_ = nullptr;
    const std::lock_guard lock(mutex_);
    shared_.state = PLAYER_STATE_IDLE;
    shared_.preparing = false;
    shared_.pipeline.reset();
}

void MediaPlayer::on_prepared(const MediaFacts &facts) {
    {
        const std::lock_guard lock(mutex_);
        shared_.facts = facts;
        shared_.preparing = false;
        shared_.state = PLAYER_STATE_READY;
    }
    if (prepare_answer_ != nullptr) {
        std::exchange(prepare_answer_, nullptr)->set_value(PLAYER_ERROR_NONE);
    }
    if (const auto callback = std::exchange(prepared_, nullptr)) {
        callback(prepared_data_);
    }
}

// Transport

int MediaPlayer::start() {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_READY && shared_.state != PLAYER_STATE_PAUSED) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        if (shared_.failed) {
            return PLAYER_ERROR_INVALID_OPERATION;
        }
        if (std::exchange(shared_.rewind, false)) {
            accept_seek({.target_ms = 0, .accurate = true});
        }
        shared_.state = PLAYER_STATE_PLAYING;
    }
    follow_state();
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::pause() {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_PLAYING) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        shared_.state = PLAYER_STATE_PAUSED;
    }
    follow_state();
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::stop() {
    {
        const std::lock_guard lock(mutex_);
        if (shared_.state != PLAYER_STATE_PLAYING && shared_.state != PLAYER_STATE_PAUSED) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        shared_.state = PLAYER_STATE_READY;
        shared_.rewind = true;
        shared_.fixed_position = 0;
    }
    follow_state();
    return PLAYER_ERROR_NONE;
}

void MediaPlayer::follow_state() {
    thread_.post([this] {
        if (!playback_) {
            return;
        }
        start_next_seek();
        playback_->set_playing(state() == PLAYER_STATE_PLAYING);
    });
}

void MediaPlayer::on_completed() {
    {
        const std::lock_guard lock(mutex_);
        // A seek that waits leads away from the end, or to it once more.
        if (shared_.state != PLAYER_STATE_PLAYING || !shared_.seeks.empty()) {
            return;
        }
        shared_.state = PLAYER_STATE_PAUSED;
        shared_.rewind = true;
        shared_.fixed_position = shared_.facts.duration_ms;
    }
    playback_->set_playing(false);
    report_playback_completed();
    completed();
}

void MediaPlayer::on_fault(const PlaybackFault &fault) {
    {
        const std::lock_guard lock(mutex_);
        shared_.preparing = false;
        shared_.failed = true;
    }
    __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "HOST", "Playback fails with %d (0x%x): %s %s",
                 fault.code, static_cast<unsigned>(fault.code), fault.why.c_str(),
                 fault.detail.c_str());
    report_failure(playback_->given(), fault.why);
    complete_seeks();
    prepared_ = nullptr;
    if (prepare_answer_ != nullptr) {
        std::exchange(prepare_answer_, nullptr)->set_value(fault.code);
    } else {
        error(fault.code);
    }
}

// Seeking

int MediaPlayer::seek(int target_ms, bool accurate, player_seek_completed_cb callback,
                      void *user_data) {
    if (target_ms < 0) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    {
        const std::lock_guard lock(mutex_);
        if (!prepared(shared_.state)) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        if (shared_.failed || !shared_.facts.seekable) {
            return PLAYER_ERROR_SEEK_FAILED;
        }
        if (shared_.facts.duration_ms > 0) {
            target_ms = std::min(target_ms, shared_.facts.duration_ms);
        }
        shared_.rewind = false;
        accept_seek({target_ms, accurate, callback, user_data});
    }
    thread_.post([this] { start_next_seek(); });
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::set_rate(float rate) {
    // Written so that a value that is no number fails.
    if (!(rate >= kLowestRate && rate <= kHighestRate)) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    {
        const std::lock_guard lock(mutex_);
        if (!prepared(shared_.state)) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        if (shared_.failed || !shared_.facts.seekable) {
            return PLAYER_ERROR_INVALID_OPERATION;
        }
    }
    const int position = current_position().value_or(0);
    {
        const std::lock_guard lock(mutex_);
        if (shared_.rate == static_cast<double>(rate)) {
            return PLAYER_ERROR_NONE;
        }
        shared_.rate = static_cast<double>(rate);
        if (!shared_.rewind) {
            accept_seek({.target_ms = position, .accurate = true});
        }
    }
    thread_.post([this] { start_next_seek(); });
    return PLAYER_ERROR_NONE;
}

void MediaPlayer::accept_seek(const SeekRequest &request) {
    shared_.fixed_position.reset();
    shared_.seeks.accept(request);
}

void MediaPlayer::start_next_seek() {
    if (!playback_ || !playback_->settled()) {
        return;
    }
    std::vector<SeekRequest> superseded;
    std::optional<SeekRequest> next;
    double rate = 1.0;
    {
        const std::lock_guard lock(mutex_);
        superseded = shared_.seeks.take_superseded();
        next = shared_.seeks.begin();
        rate = shared_.rate;
    }
    std::for_each(superseded.begin(), superseded.end(), complete);
    if (next) {
        playback_->seek(*next, rate);
    }
}

void MediaPlayer::on_seek_done() {
    std::optional<SeekRequest> done;
    {
        const std::lock_guard lock(mutex_);
        done = shared_.seeks.finish();
    }
    if (done) {
        complete(*done);
    }
}

void MediaPlayer::on_settled() {
    start_next_seek();
}

void MediaPlayer::on_restart(int position_ms) {
    const std::lock_guard lock(mutex_);
    shared_.seeks.put_back();
    const bool leads_back = shared_.facts.seekable && !shared_.fixed_position;
    if (leads_back && shared_.seeks.empty()) {
        accept_seek({.target_ms = position_ms, .accurate = true});
    }
}

void MediaPlayer::complete_seeks() {
    std::vector<SeekRequest> waiting;
    {
        const std::lock_guard lock(mutex_);
        waiting = shared_.seeks.take_all();
    }
    std::for_each(waiting.begin(), waiting.end(), complete);
}

// What is known

player_state_e MediaPlayer::state() const {
    const std::lock_guard lock(mutex_);
    return shared_.state;
}

std::optional<int> MediaPlayer::current_position() const {
    std::shared_ptr<Pipeline> pipeline;
    {
        const std::lock_guard lock(mutex_);
        if (const auto target = shared_.seeks.target()) {
            return target;
        }
        if (shared_.fixed_position) {
            return shared_.fixed_position;
        }
        pipeline = shared_.pipeline;
    }
    return pipeline ? pipeline->position_ms() : std::nullopt;
}

int MediaPlayer::get_position(int &position_ms) const {
    int duration_ms = 0;
    {
        const std::lock_guard lock(mutex_);
        if (!prepared(shared_.state)) {
            return PLAYER_ERROR_INVALID_STATE;
        }
        duration_ms = shared_.facts.duration_ms;
    }
    const int position = current_position().value_or(last_position_);
    last_position_ = duration_ms > 0 ? std::clamp(position, 0, duration_ms) : position;
    position_ms = last_position_;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::get_duration(int &duration_ms) const {
    const std::lock_guard lock(mutex_);
    if (!prepared(shared_.state)) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    duration_ms = shared_.facts.duration_ms;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::get_video_size(PixelSize &size) const {
    const std::lock_guard lock(mutex_);
    if (!prepared(shared_.state)) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    size = shared_.facts.video_size;
    return PLAYER_ERROR_NONE;
}

int MediaPlayer::get_codecs(std::string &audio, std::string &video) const {
    const std::lock_guard lock(mutex_);
    if (!prepared(shared_.state)) {
        return PLAYER_ERROR_INVALID_STATE;
    }
    audio = shared_.audio_codec;
    video = shared_.video_codec;
    return PLAYER_ERROR_NONE;
}

PlayerStatus MediaPlayer::status() const {
    PlayerStatus status;
    status.display_mode = video_->mode();
    status.rotation = video_->rotation();
    status.uri = source_ ? source_->given() : "";
    if (get_position(status.position_ms) != PLAYER_ERROR_NONE) {
        status.position_ms = 0;
    }
    std::shared_ptr<Pipeline> pipeline;
    {
        const std::lock_guard lock(mutex_);
        status.state = shared_.state;
        status.duration_ms = shared_.facts.duration_ms;
        status.video_width = shared_.facts.video_size.width;
        status.video_height = shared_.facts.video_size.height;
        pipeline = shared_.pipeline;
    }
    const VideoOutput::Counts counts = video_->counts();
    status.frames_shown = counts.shown;
    if (pipeline) {
        status.frames_decoded = pipeline->frames_decoded();
        status.frames_dropped = pipeline->frames_late() + counts.replaced;
    }
    return status;
}

void MediaPlayer::on_pipeline(std::shared_ptr<Pipeline> pipeline) {
    const std::lock_guard lock(mutex_);
    shared_.pipeline.swap(pipeline);
}

void MediaPlayer::on_duration(int duration_ms) {
    const std::lock_guard lock(mutex_);
    shared_.facts.duration_ms = duration_ms;
}

void MediaPlayer::on_codec(bool video, const std::string &name) {
    const std::lock_guard lock(mutex_);
    (video ? shared_.video_codec : shared_.audio_codec) = name;
}

void MediaPlayer::on_buffering(int percent) {
    buffering(percent);
}

void MediaPlayer::on_download(player_pd_message_type_e type) {
    download_message(type);
}

void MediaPlayer::on_missed_plugin(player_missed_plugin_type_e type, const std::string &detail) {
    missed_plugin(type, detail.c_str());
}

void MediaPlayer::inject_error(int code) {
    thread_.post([this, code] {
        if (ends_playback(code)) {
            report_failure(playback_ ? playback_->given() : "", "an error was delivered");
        }
        error(code);
    });
}

void MediaPlayer::inject_interruption(player_interrupted_code_e code) {
    thread_.post([this, code] { interrupted(code); });
}

void MediaPlayer::inject_missed_plugin(player_missed_plugin_type_e type) {
    thread_.post([this, type] { missed_plugin(type, ""); });
}

// Sound

int MediaPlayer::set_volume(float left, float right) {
    const auto valid = [](float volume) { return volume >= 0.0F && volume <= 1.0F; };
    if (!valid(left) || !valid(right)) {
        return PLAYER_ERROR_INVALID_PARAMETER;
    }
    change_volume([left, right](StreamVolume &volume) {
        volume.left = left;
        volume.right = right;
    });
    return PLAYER_ERROR_NONE;
}

void MediaPlayer::get_volume(float &left, float &right) const {
    const std::lock_guard lock(mutex_);
    left = shared_.volume.left;
    right = shared_.volume.right;
}

void MediaPlayer::apply_stream_gain(double gain) {
    change_volume([gain](StreamVolume &volume) { volume.gain = gain; });
}

void MediaPlayer::bring_sound_back() {
    thread_.post([this] {
        if (playback_) {
            playback_->bring_sound_back();
        }
    });
}

void MediaPlayer::change_volume(const std::function<void(StreamVolume &)> &change) {
    {
        const std::lock_guard lock(mutex_);
        change(shared_.volume);
    }
    thread_.post([this] {
        StreamVolume volume;
        {
            const std::lock_guard lock(mutex_);
            volume = shared_.volume;
        }
        if (playback_) {
            playback_->set_volume(volume);
        }
    });
}

}  // namespace host
