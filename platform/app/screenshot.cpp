#include "app/screenshot.h"

#include <cstdio>
#include <utility>

#include "shell/shell.h"

namespace host {
namespace {

constexpr double kLookSeconds = 0.01;

}  // namespace

ScreenshotTimer::ScreenshotTimer(Options::Screenshot wanted, std::function<bool()> has_picture)
    : wanted_(std::move(wanted)), has_picture_(std::move(has_picture)) {
    timer_.reset(ecore_timer_add(
        kLookSeconds,
        [](void *self) {
            static_cast<ScreenshotTimer *>(self)->wait_for_first_frame();
            return ECORE_CALLBACK_RENEW;
        },
        this));
}

ScreenshotTimer::~ScreenshotTimer() {
    if (!taken_) {
        std::fprintf(stderr, "tessel: no screenshot in %s: the player ended before its time\n",
                     wanted_.file.c_str());
    }
}

void ScreenshotTimer::wait_for_first_frame() {
    if (!has_picture_()) {
        return;
    }
    timer_.reset(ecore_timer_add(
        wanted_.seconds,
        [](void *self) {
            static_cast<ScreenshotTimer *>(self)->take();
            return ECORE_CALLBACK_RENEW;
        },
        this));
}

void ScreenshotTimer::take() {
    timer_.reset();
    taken_ = true;
    if (!save_screenshot(wanted_.file)) {
        std::fprintf(stderr, "tessel: the screenshot can't be written to %s\n",
                     wanted_.file.c_str());
    }
}

}  // namespace host
