#pragma once

#include "app/headless.h"
#include "app/options.h"

namespace host {

/// Writes the picture that `--screenshot` asks for, so long after the first frame was shown. One
/// line on standard error tells why there is none, when the process ends first, too. Thread: main
/// loop.
class ScreenshotTimer {
public:
    explicit ScreenshotTimer(Options::Screenshot wanted);
    ~ScreenshotTimer();
    ScreenshotTimer(const ScreenshotTimer &) = delete;
    ScreenshotTimer &operator=(const ScreenshotTimer &) = delete;

private:
    void wait_for_first_frame();
    void take();

    const Options::Screenshot wanted_;
    EcoreTimerPtr timer_;
    bool taken_ = false;
};

}  // namespace host
