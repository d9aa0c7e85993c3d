#pragma once

#include "control/request.h"
#include "control/responder.h"
#include "control/timer.h"

namespace host::control {

/// How long the finger of a tap stays.
inline constexpr int kTapMs = 50;

/// The one finger of the control socket. A stroke goes on to its end also when its requester goes,
/// so that no press stays behind.
class Pointer {
public:
    struct Place {
        int x = 0;
        int y = 0;
    };

    Pointer() = default;
    ~Pointer();
    Pointer(const Pointer &) = delete;
    Pointer &operator=(const Pointer &) = delete;

    /// Presses at `from`, moves to `to` within `duration_ms` and lets go there; replies then.
    /// @throws RequestError while another stroke is under way
    void stroke(Place from, Place to, int duration_ms, const Responder &responder);

private:
    void let_go(Place at);

    Timer timer_;
    Place at_;
};

}  // namespace host::control
