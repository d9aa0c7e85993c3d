#pragma once

#include <functional>

#include "app/headless.h"
#include "app/options.h"

namespace host {

/// Writes the picture that `--screenshot` asks for, so long after the first frame was shown. One
/// line on standard error tells why there is none, when the process ends first, too. Thread: main
/// loop.
class ScreenshotTimer {
public:
    /// @param has_picture whether the first frame has been shown
    ScreenshotTimer(Options::Screenshot wanted, std::function<bool()> has_picture);
    ~ScreenshotTimer();
    ScreenshotTimer(const ScreenshotTimer &) = delete;
    ScreenshotTimer &operator=(const ScreenshotTimer &) = delete;

private:
    void wait_for_first_frame();
    void take();

    const Options::Screenshot wanted_;
    const std::function<bool()> has_picture_;
    EcoreTimerPtr timer_;
    bool taken_ = false;
};

}  // namespace host
