#include "control/recorder.h"

#include <Ecore.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <utility>

#include "control/pointer.h"

namespace host::control {
namespace {

constexpr double kPeriodSeconds = 0.02;
/// Nobody fetches more than this at once.
constexpr std::size_t kMostRecorded = 10'000;
/// A finger that moves less stands still.
constexpr int kSlackPixels = 10;
constexpr int kLongestTapMs = 300;

const char *name_of(Key key) {
    switch (key) {
    case Key::back:
        return "back";
    case Key::more:
        return "more";
    case Key::home:
        break;
    }
    return "home";
}

}  // namespace

Recorder::~Recorder() {
    if (recording_) {
        observe_input({});
    }
}

void Recorder::wait(int deadline_ms, const Responder &responder) {
    if (waiting_ && !waiting_->gone()) {
        throw RequestError("the input is being recorded already");
    }
    if (!std::exchange(recording_, true)) {
        observe_input([this](const InputEvent &event) { take(event); });
    }
    waiting_ = responder;
    end_ = ecore_time_get() + deadline_ms / 1000.0;
    if (!timer_.running()) {
        timer_.start(kPeriodSeconds, [this] { return check(); });
    }
}

bool Recorder::check() {
    if (waiting_ && waiting_->gone()) {
        waiting_.reset();
        observe_input({});
        recording_ = false;
        recorded_.clear();
        return false;
    }
    if (waiting_ && (!recorded_.empty() || ecore_time_get() >= end_)) {
        answer();
    }
    return true;
}

void Recorder::answer() {
    // The requester may be back with the next request before this returns.
    const Responder responder = *std::exchange(waiting_, std::nullopt);
    responder.done({{"input", std::exchange(recorded_, Json::array())}});
}

void Recorder::take(const InputEvent &event) {
    switch (event.kind) {
    case InputEvent::Kind::finger_down:
        finger_ = Finger{event.x, event.y, ecore_time_get()};
        break;
    case InputEvent::Kind::finger_up:
        lifted(event);
        break;
    case InputEvent::Kind::detent:
        add(ecore_time_get(), 0, {"bezel", event.clockwise ? "1" : "-1"});
        break;
    case InputEvent::Kind::key:
        add(ecore_time_get(), 0, {"key", name_of(event.key)});
        break;
    case InputEvent::Kind::focus_moved:
        // What is pressed there comes as a tap.
        break;
    case InputEvent::Kind::turned:
        add(ecore_time_get(), 0, {"rotate", std::to_string(event.degrees)});
        break;
    }
}

void Recorder::lifted(const InputEvent &event) {
    const auto finger = std::exchange(finger_, std::nullopt);
    if (!finger) {
        return;
    }
    const auto held = std::lround((ecore_time_get() - finger->since) * 1000.0);
    const std::string x = std::to_string(finger->x);
    const std::string y = std::to_string(finger->y);
    const bool still = std::abs(event.x - finger->x) < kSlackPixels &&
                       std::abs(event.y - finger->y) < kSlackPixels;
    if (!still) {
        add(finger->since, held,
            {"drag", x, y, std::to_string(event.x), std::to_string(event.y), std::to_string(held)});
    } else if (held > kLongestTapMs) {
        add(finger->since, held, {"press", x, y, std::to_string(held)});
    } else {
        add(finger->since, kTapMs, {"tap", x, y});
    }
}

void Recorder::add(double at, long takes_ms, Json command) {
    if (recorded_.size() < kMostRecorded) {
        recorded_.push_back({{"at", std::lround(at * 1000.0)},
                             {"takes", takes_ms},
                             {"command", std::move(command)}});
    }
    // At once: what is done now may end the program.
    if (waiting_) {
        answer();
    }
}

}  // namespace host::control
