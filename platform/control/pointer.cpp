#include "control/pointer.h"

#include <Ecore.h>

#include <algorithm>

#include "shell/shell.h"

namespace host::control {

Pointer::~Pointer() {
    if (timer_.running()) {
        let_go(at_);
    }
}

void Pointer::stroke(Place from, Place to, int duration_ms, const Responder &responder) {
    constexpr double kStepSeconds = 0.01;
    if (timer_.running()) {
        throw RequestError("another press or drag is under way");
    }
    at_ = from;
    pointer_down(from.x, from.y);
    timer_.start(kStepSeconds, [this, from, to, responder, begin = ecore_time_get(),
                                seconds = duration_ms / 1000.0] {
        const double part =
            seconds > 0.0 ? std::min((ecore_time_get() - begin) / seconds, 1.0) : 1.0;
        const Place next{from.x + static_cast<int>((to.x - from.x) * part),
                         from.y + static_cast<int>((to.y - from.y) * part)};
        if (next.x != at_.x || next.y != at_.y) {
            at_ = next;
            pointer_move(next.x, next.y);
        }
        if (part < 1.0) {
            return true;
        }
        let_go(next);
        responder.done();
        return false;
    });
}

void Pointer::let_go(Place at) {
    timer_.stop();
    pointer_up(at.x, at.y);
}

}  // namespace host::control
