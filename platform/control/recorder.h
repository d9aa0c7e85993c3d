#pragma once

#include <optional>
#include <vector>

#include "control/request.h"
#include "control/responder.h"
#include "control/timer.h"
#include "shell/shell.h"

namespace host::control {

/// Turns what is done to the watch into the commands that do the same. Thread: main loop.
class Recorder {
public:
    Recorder() = default;
    ~Recorder();
    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

    /// Replies with the commands since the last call, once there is one or `deadline_ms` have
    /// passed: `input`, a list of objects with `at`, its begin in milliseconds of a steady
    /// clock, `takes`, how many of them the command takes, and `command`, a list of words. The
    /// first call begins the recording; it ends with its requester.
    /// @throws RequestError while another waits
    void wait(int deadline_ms, const Responder &responder);

private:
    struct Finger {
        int x = 0;
        int y = 0;
        double since = 0.0;
    };

    void take(const InputEvent &event);
    void add(double at, long takes_ms, Json command);
    void lifted(const InputEvent &event);
    bool check();
    void answer();

    Json recorded_ = Json::array();
    std::optional<Finger> finger_;
    std::optional<Responder> waiting_;
    double end_ = 0.0;
    bool recording_ = false;
    Timer timer_;
};

}  // namespace host::control
