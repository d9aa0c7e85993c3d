#include "control/waits.h"

#include <Ecore.h>

#include <utility>

#include "control/screen_state.h"

namespace host::control {
namespace {

constexpr std::size_t kMostWaits = 64;
constexpr double kPeriodSeconds = 0.01;

Json outcome(const Json &state, double begin) {
    return {{"waited_ms", static_cast<int>((ecore_time_get() - begin) * 1000.0)}, {"state", state}};
}

}  // namespace

void Waits::add(Condition condition, const std::string &text, int deadline_ms,
                const Responder &responder) {
    if (waits_.size() >= kMostWaits) {
        throw RequestError("too many requests wait");
    }
    const double now = ecore_time_get();
    const Json state = read_state(rival_);
    condition.check_names(state);
    if (condition.holds(state)) {
        responder.done(outcome(state, now));
        return;
    }
    waits_.push_back({std::move(condition), text, now, now + deadline_ms / 1000.0, responder});
    if (!timer_.running()) {
        timer_.start(kPeriodSeconds, [this] { return check(); });
    }
}

bool Waits::check() {
    const double now = ecore_time_get();
    const Json state = read_state(rival_);
    // A reply lets its requester go on, who may come back here with the next wait.
    std::list<Wait> rest = std::exchange(waits_, {});
    for (auto wait = rest.begin(); wait != rest.end();) {
        if (!wait->responder.gone()) {
            if (wait->condition.holds(state)) {
                wait->responder.done(outcome(state, wait->begin));
            } else if (now >= wait->end) {
                wait->responder.failed("'" + wait->text + "' did not come in time",
                                       outcome(state, wait->begin));
            } else {
                ++wait;
                continue;
            }
        }
        wait = rest.erase(wait);
    }
    waits_.splice(waits_.begin(), rest);
    return !waits_.empty();
}

}  // namespace host::control
