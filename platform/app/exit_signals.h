#pragma once

#include "common/unique_fd.h"

namespace host {

/// SIGTERM, SIGINT and SIGHUP as something to poll for: whatever the process is at when one comes,
/// it ends the orderly way. One object per process. Thread: main.
class ExitSignals {
public:
    ExitSignals();
    ~ExitSignals();
    ExitSignals(const ExitSignals &) = delete;
    ExitSignals &operator=(const ExitSignals &) = delete;

    /// Takes the signals over; again, after a library has taken them.
    void install();
    /// Readable from the first signal on; not to be read.
    [[nodiscard]] int fd() const { return fd_.get(); }
    [[nodiscard]] bool received() const;

private:
    UniqueFd fd_;
};

}  // namespace host
