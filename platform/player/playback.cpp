#include "player/playback.h"

#include <gst/pbutils/pbutils.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <string_view>
#include <utility>

#include "player/network_limits.h"
#include "player/resources.h"
#include "sound/output.h"

namespace host {
namespace {

using namespace std::chrono_literals;

constexpr auto kWatchInterval = 200ms;
/// A file that ends more than this before its duration may have been cut short.
constexpr int kEarlyEndMs = 1000;
/// The last moment that still has a picture.
constexpr int kBeforeEndMs = 1;

constexpr char kNoMemory[] = "there is no memory for a picture";
constexpr char kSilentOutput[] = "fakesink";

std::optional<player_missed_plugin_type_e> missed_type(GstMessage *message) {
    const GstStructure *structure = gst_message_get_structure(message);
    const GstCaps *caps = nullptr;
    const GValue *detail = gst_structure_get_value(structure, "detail");
    if (detail == nullptr || !GST_VALUE_HOLDS_CAPS(detail)) {
        return std::nullopt;
    }
    caps = gst_value_get_caps(detail);
    if (caps == nullptr || gst_caps_is_empty(caps) || gst_caps_is_any(caps)) {
        return std::nullopt;
    }
    const std::string_view name = gst_structure_get_name(gst_caps_get_structure(caps, 0));
    if (name.starts_with("audio/")) {
        return PLAYER_MISSED_PLUGIN_AUDIO;
    }
    if (name.starts_with("video/") || name.starts_with("image/")) {
        return PLAYER_MISSED_PLUGIN_VIDEO;
    }
    return std::nullopt;
}

}  // namespace

Playback::Playback(Setup setup, TaskThread &thread, Forward forward, PlaybackListener &listener)
    : source_(std::move(setup.source)),
      volume_(setup.volume),
      video_(std::move(setup.video)),
      settings_(std::move(setup.settings)),
      taps_(std::move(setup.taps)),
      thread_(thread),
      forward_(std::move(forward)),
      listener_(listener) {}

Playback::~Playback() {
    thread_.clear_alarm();
    video_->close();
    // The last reference may be one that a getter holds for a moment on the main loop, which must
    // not be the one to stop the streaming threads.
    if (pipeline_) {
        pipeline_->shut_down();
        listener_.on_pipeline(nullptr);
    }
}

void Playback::prepare() {
    if (!has_descriptors_for_playback()) {
        fail(fault_of_errno(EMFILE));
        return;
    }
    if (const auto fault = source_.examine()) {
        fail(*fault);
        return;
    }
    failed_allocations_before_ = failed_allocations();
    begin_wait(Wait::preparing);
    open(sound_sink_element());
}

void Playback::open(const char *sound_output) {
    static std::atomic<unsigned> pipelines = 0;
    pipeline_number_ = ++pipelines;
    const auto on_message = [forward = forward_,
                             number = pipeline_number_](GstMiniPtr<GstMessage> message) {
        forward(number, std::move(message));
    };
    pipeline_ = std::make_shared<Pipeline>(Pipeline::Setup{
        .uri = source_.uri(),
        .remote = source_.remote(),
        .sound_output = sound_output,
        .volume = volume_,
        .video = video_,
        .settings = settings_,
        .taps = taps_,
        .on_message = on_message,
    });
    if (!pipeline_->complete()) {
        pipeline_.reset();
        fail({PLAYER_ERROR_INVALID_OPERATION, "a part of GStreamer is missing"});
        return;
    }
    listener_.on_pipeline(pipeline_);
    // A restart begins with the first picture of the medium, which nobody is to see again.
    if (waiting_ != Wait::restarting) {
        video_->open();
    }
    asked_ = GST_STATE_PAUSED;
    switch (pipeline_->set_state(GST_STATE_PAUSED)) {
    case GST_STATE_CHANGE_NO_PREROLL:
        live_ = true;
        break;
    case GST_STATE_CHANGE_FAILURE: {
        // Its message, which says why, is on its way and comes before this.
        GstMessage *last =
            gst_message_new_application(nullptr, gst_structure_new_empty("state-change-failed"));
        on_message(GstMiniPtr<GstMessage>(last));
        break;
    }
    default:
        break;
    }
}

void Playback::handle(unsigned pipeline, GstMessage *message) {
    if (!failed_ && pipeline == pipeline_number_) {
        dispatch(message);
        return_sound();
    }
}

void Playback::dispatch(GstMessage *message) {
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ERROR:
        handle_error(message);
        break;
    case GST_MESSAGE_APPLICATION:
        fail({PLAYER_ERROR_INVALID_OPERATION, "the playback can't be started"});
        break;
    case GST_MESSAGE_ASYNC_DONE:
        handle_async_done();
        break;
    case GST_MESSAGE_EOS:
        handle_end();
        break;
    case GST_MESSAGE_BUFFERING:
        handle_buffering(message);
        break;
    case GST_MESSAGE_TAG:
        handle_tags(message);
        break;
    case GST_MESSAGE_ELEMENT:
        handle_element(message);
        break;
    case GST_MESSAGE_PROGRESS:
        handle_progress(message);
        break;
    case GST_MESSAGE_CLOCK_LOST:
        handle_clock_lost();
        break;
    case GST_MESSAGE_LATENCY:
        pipeline_->recalculate_latency();
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        if (prepared_) {
            duration_ms_ = pipeline_->duration_ms().value_or(duration_ms_);
            pipeline_->set_end_of_subtitles(duration_ms_);
            listener_.on_duration(duration_ms_);
        }
        break;
    default:
        break;
    }
}

void Playback::set_playing(bool playing) {
    playing_ = playing;
    apply_state();
}

void Playback::apply_state() {
    if (failed_ || !prepared_ || waiting_ == Wait::restarting) {
        return;
    }
    // A live stream can't be held back until the buffers are full.
    const bool run = playing_ && (live_ || !starving());
    const GstState wanted = run ? GST_STATE_PLAYING : GST_STATE_PAUSED;
    if (wanted == asked_) {
        return;
    }
    asked_ = wanted;
    const GstStateChangeReturn result = pipeline_->set_state(wanted);
    if (result == GST_STATE_CHANGE_ASYNC && wanted == GST_STATE_PAUSED && !waiting_) {
        begin_wait(Wait::pausing);
    }
}

void Playback::seek(const SeekRequest &request, double rate) {
    rate_ = rate;
    int target = request.target_ms;
    if (request.accurate && duration_ms_ > 0) {
        target = std::min(target, std::max(0, duration_ms_ - kBeforeEndMs));
    }
    begin_wait(Wait::seeking);
    if (!pipeline_->seek(target, request.accurate, rate)) {
        end_wait();
        listener_.on_seek_done();
        listener_.on_settled();
    }
}

void Playback::set_volume(const StreamVolume &volume) {
    volume_ = volume;
    if (pipeline_) {
        pipeline_->set_volume(volume);
    }
}

void Playback::set_subtitle_offset(int milliseconds) {
    settings_.subtitle_offset_ms = milliseconds;
    if (pipeline_) {
        pipeline_->set_subtitle_offset(milliseconds);
    }
}

void Playback::handle_error(GstMessage *message) {
    if (pipeline_->from_sound(message) && !sound_lost_) {
        sound_lost_ = true;
        restart(kSilentOutput);
        return;
    }
    if (prepared_) {
        if (const auto fault = source_.examine_again()) {
            fail(*fault);
            return;
        }
    }
    PlaybackFault fault = fault_of_message(message, source_.remote());
    if (lacks_memory()) {
        // The message names what went wrong after that.
        fault = {PLAYER_ERROR_OUT_OF_MEMORY, kNoMemory, fault.detail};
    }
    fail(fault);
}

bool Playback::lacks_memory() const {
    return failed_allocations() != failed_allocations_before_;
}

void Playback::handle_async_done() {
    if (!waiting_) {
        return;
    }
    const Wait done = *waiting_;
    if (done == Wait::preparing || done == Wait::restarting) {
        finish_opening();
        return;
    }
    end_wait();
    if (done == Wait::seeking) {
        listener_.on_seek_done();
    }
    listener_.on_settled();
}

void Playback::finish_opening() {
    const bool again = waiting_ == Wait::restarting;
    end_wait();
    if (again) {
        pipeline_->set_end_of_subtitles(duration_ms_);
        video_->open();
    } else {
        finish_preparing();
    }
    if (failed_) {
        return;
    }
    listener_.on_settled();
    apply_state();
}

void Playback::finish_preparing() {
    // A stream that begins with its end counts as prepared, too.
    if (!live_ && !pipeline_->has_data()) {
        const bool memory = lacks_memory();
        fail({memory ? PLAYER_ERROR_OUT_OF_MEMORY : PLAYER_ERROR_NOT_SUPPORTED_FILE,
              memory ? kNoMemory : "nothing of the medium could be read"});
        return;
    }
    prepared_ = true;
    duration_ms_ = pipeline_->duration_ms().value_or(0);
    pipeline_->set_end_of_subtitles(duration_ms_);
    MediaFacts facts;
    facts.duration_ms = duration_ms_;
    facts.seekable = pipeline_->seekable();
    facts.video_size = video_->upright(pipeline_->video_size().value_or(PixelSize{}));
    listener_.on_prepared(facts);
    report_missed();
}

void Playback::handle_end() {
    if (lacks_memory()) {
        fail({PLAYER_ERROR_OUT_OF_MEMORY, kNoMemory});
        return;
    }
    const int reached = pipeline_->reached_ms().value_or(duration_ms_);
    if (duration_ms_ > 0 && reached + kEarlyEndMs < duration_ms_) {
        if (const auto fault = source_.examine_again()) {
            fail(*fault);
            return;
        }
    }
    listener_.on_completed();
}

void Playback::handle_buffering(GstMessage *message) {
    const bool was_starving = starving();
    gst_message_parse_buffering(message, &buffered_percent_);
    listener_.on_buffering(buffered_percent_);
    if (was_starving != starving()) {
        apply_state();
        if (starving() && !waiting_) {
            waiting_since_ = Pipeline::Clock::now();
            arm_watch();
        }
    }
}

void Playback::handle_tags(GstMessage *message) {
    GstTagList *list = nullptr;
    gst_message_parse_tag(message, &list);
    const GstMiniPtr<GstTagList> tags(list);
    for (const bool video : {false, true}) {
        gchar *name = nullptr;
        if (gst_tag_list_get_string(tags.get(), video ? GST_TAG_VIDEO_CODEC : GST_TAG_AUDIO_CODEC,
                                    &name)) {
            const GText owned(name);
            listener_.on_codec(video, name);
        }
    }
}

void Playback::handle_element(GstMessage *message) {
    if (gst_message_has_name(message, Pipeline::kDownloadMessage)) {
        handle_download(message);
        return;
    }
    if (!gst_is_missing_plugin_message(message)) {
        return;
    }
    const auto type = missed_type(message);
    if (!type) {
        return;
    }
    const GText detail(gst_missing_plugin_message_get_description(message));
    missed_.push_back({*type, detail ? detail.get() : ""});
    // Before that it may yet turn out that nothing of the medium can be played.
    if (prepared_) {
        report_missed();
    }
}

void Playback::handle_download(GstMessage *message) {
    gint event = 0;
    gst_structure_get_int(gst_message_get_structure(message), Pipeline::kDownloadEvent, &event);
    switch (static_cast<Download::Event>(event)) {
    case Download::Event::begun:
        listener_.on_download(PLAYER_PD_STARTED);
        break;
    case Download::Event::complete:
        listener_.on_download(PLAYER_PD_COMPLETED);
        break;
    case Download::Event::no_space:
        fail({PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE, "there is no room for the download"});
        break;
    case Download::Event::not_writable:
        fail({PLAYER_ERROR_INVALID_OPERATION, "the file of the download can't be written"});
        break;
    }
}

void Playback::report_missed() {
    for (const Missed &missed : std::exchange(missed_, {})) {
        listener_.on_missed_plugin(missed.type, missed.detail);
    }
}

void Playback::handle_progress(GstMessage *message) {
    GstProgressType type = GST_PROGRESS_TYPE_CONTINUE;
    gchar *code = nullptr;
    gst_message_parse_progress(message, &type, &code, nullptr);
    const GText owned(code);
    if (live_ && type == GST_PROGRESS_TYPE_COMPLETE && std::string_view(code) == "open" &&
        (waiting_ == Wait::preparing || waiting_ == Wait::restarting)) {
        finish_opening();
    }
}

void Playback::handle_clock_lost() {
    if (asked_ == GST_STATE_PLAYING) {
        pipeline_->set_state(GST_STATE_PAUSED);
        pipeline_->set_state(GST_STATE_PLAYING);
    }
}

void Playback::bring_sound_back() {
    sound_returns_ = true;
    return_sound();
}

void Playback::return_sound() {
    if (!sound_returns_ || failed_ || !settled()) {
        return;
    }
    sound_returns_ = false;
    if (!pipeline_->has_sound() || (!live_ && !pipeline_->seekable())) {
        return;
    }
    sound_lost_ = false;
    restart(sound_sink_element());
}

void Playback::restart(const char *sound_output) {
    if (prepared_) {
        begin_wait(Wait::restarting);
        video_->close();
        // Before the pipeline ends: on the way to that it gives wrong positions.
        const auto position = pipeline_->position_ms();
        listener_.on_restart(position.value_or(pipeline_->reached_ms().value_or(0)));
    } else {
        begin_wait(Wait::preparing);
    }
    pipeline_->shut_down();
    open(sound_output);
}

void Playback::fail(const PlaybackFault &fault) {
    failed_ = true;
    end_wait();
    if (pipeline_) {
        pipeline_->shut_down();
    }
    listener_.on_fault(fault);
}

void Playback::begin_wait(Wait wait) {
    waiting_ = wait;
    waiting_since_ = Pipeline::Clock::now();
    arm_watch();
}

void Playback::end_wait() {
    waiting_.reset();
    if (!starving()) {
        thread_.clear_alarm();
    }
}

void Playback::arm_watch() {
    thread_.set_alarm(Pipeline::Clock::now() + kWatchInterval, [this] { watch(); });
}

void Playback::watch() {
    if (failed_ || (!waiting_ && !starving())) {
        return;
    }
    if (waiting_ == Wait::preparing && !source_.remote()) {
        // Twice in a row, as its first look into the file may be about to begin.
        if (std::exchange(found_nothing_, pipeline_->found_nothing()) && found_nothing_) {
            fail({PLAYER_ERROR_NOT_SUPPORTED_FILE, "the file contains no playable streams"});
            return;
        }
    }
    const auto data = pipeline_->last_data();
    const auto silent_since = std::max(waiting_since_, data.value_or(waiting_since_));
    const bool connecting = source_.remote() && !data;
    const auto silence = Pipeline::Clock::now() - silent_since;
    const NetworkLimits limits = network_limits();
    if (silence < (connecting ? limits.connect : limits.stall)) {
        arm_watch();
        return;
    }
    if (connecting) {
        fail({PLAYER_ERROR_INVALID_OPERATION, "the server doesn't answer"});
    } else {
        fail({PLAYER_ERROR_INVALID_OPERATION, "no more data comes"});
    }
}

}  // namespace host
