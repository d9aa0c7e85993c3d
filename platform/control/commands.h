#pragma once

#include "control/pointer.h"
#include "control/recorder.h"
#include "control/request.h"
#include "control/responder.h"
#include "control/rival.h"
#include "control/waits.h"

namespace host::control {

/// What the commands of the control socket share. Thread: main loop.
class Commands {
public:
    /// Carries a request out and replies through `responder`, now or later. Whatever is wrong with
    /// the request is a reply too.
    void run(const Words &words, const Responder &responder);

    Pointer pointer;
    Rival rival;
    Waits waits{rival};
    Recorder recorder;
};

}  // namespace host::control
