#include "host_seams.h"

#include <Ecore_Evas.h>
#include <Elementary.h>

#include <cstring>
#include <utility>

#include "app/lifecycle.h"
#include "app/options.h"
#include "sound/output.h"

namespace seams {
namespace {

struct Reports {
    std::mutex mutex;
    std::vector<std::string> failures;
    int completions = 0;
    std::string sound_sink = "fakesink";
    int sound_sinks_asked_for = 0;
    std::function<void()> on_sound_returned;
};

Reports &reports() {
    static auto *const instance = new Reports;
    return *instance;
}

Evas_Object *current_window = nullptr;
std::unique_ptr<RecordingPlane> current_plane;

}  // namespace

void RecordingPlane::show(std::unique_ptr<host::VideoFrame> frame, int x, int y) {
    frame_ = std::move(frame);
    x_ = x;
    y_ = y;
    ++frames_;
    if (shown_) {
        shown_();
    }
}

void RecordingPlane::clear() {
    frame_.reset();
}

void RecordingPlane::resize(int width, int height) {
    width_ = width;
    height_ = height;
    if (changed_) {
        changed_();
    }
}

std::uint32_t RecordingPlane::pixel(int column, int row) const {
    const int frame_column = column - x_;
    const int frame_row = row - y_;
    if (!frame_ || frame_column < 0 || frame_row < 0 || frame_column >= frame_->width() ||
        frame_row >= frame_->height()) {
        return 0;
    }
    std::uint32_t value = 0;
    const auto *bytes = static_cast<const unsigned char *>(frame_->pixels());
    std::memcpy(&value, bytes + frame_row * frame_->stride() + frame_column * 4, sizeof value);
    return value & 0xFFFFFFU;
}

Evas_Object *window() {
    if (current_window == nullptr) {
        current_window = elm_win_add(nullptr, "player-contract", ELM_WIN_BASIC);
    }
    return current_window;
}

void delete_window() {
    if (current_window != nullptr) {
        evas_object_del(std::exchange(current_window, nullptr));
    }
}

RecordingPlane &plane() {
    if (!current_plane) {
        current_plane = std::make_unique<RecordingPlane>();
    }
    return *current_plane;
}

std::vector<std::string> failures() {
    const std::lock_guard lock(reports().mutex);
    return reports().failures;
}

int completions() {
    const std::lock_guard lock(reports().mutex);
    return reports().completions;
}

void set_sound_sink(const char *element) {
    const std::lock_guard lock(reports().mutex);
    reports().sound_sink = element;
}

int sound_sinks_asked_for() {
    const std::lock_guard lock(reports().mutex);
    return reports().sound_sinks_asked_for;
}

void return_sound() {
    reports().on_sound_returned();
}

void reset() {
    delete_window();
    current_plane.reset();
    const std::lock_guard lock(reports().mutex);
    reports().failures.clear();
    reports().completions = 0;
    reports().sound_sink = "fakesink";
    reports().sound_sinks_asked_for = 0;
}

}  // namespace seams

namespace host {

VideoPlane *video_plane_of(Evas_Object *window) {
    return window != nullptr && window == seams::window() ? &seams::plane() : nullptr;
}

void report_playback_failure(const std::string &why) {
    const std::lock_guard lock(seams::reports().mutex);
    seams::reports().failures.push_back(why);
}

void report_playback_completed() {
    const std::lock_guard lock(seams::reports().mutex);
    ++seams::reports().completions;
}

const char *sound_sink_element() {
    const std::lock_guard lock(seams::reports().mutex);
    ++seams::reports().sound_sinks_asked_for;
    return seams::reports().sound_sink == "fakesink" ? "fakesink" : "pulsesink";
}

double stream_gain() {
    return 1.0;
}

void on_stream_gain_changed(std::function<void(double)>) {}

void on_sound_output_returned(std::function<void()> returned) {
    seams::reports().on_sound_returned = std::move(returned);
}

const Options &options() {
    static const Options defaults;
    return defaults;
}

}  // namespace host
