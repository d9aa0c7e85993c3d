#pragma once

#include <Ecore.h>

#include <memory>

namespace host {

struct EcoreTimerDelete {
    void operator()(Ecore_Timer *timer) const { ecore_timer_del(timer); }
};
using EcoreTimerPtr = std::unique_ptr<Ecore_Timer, EcoreTimerDelete>;

/// Presses back five seconds after a popup has appeared that nothing else would end, for a process
/// that nobody sees. Thread: main loop.
class PopupCloser {
public:
    PopupCloser();
    PopupCloser(const PopupCloser &) = delete;
    PopupCloser &operator=(const PopupCloser &) = delete;

private:
    void look();

    EcoreTimerPtr timer_;
    const void *popup_ = nullptr;
    double seen_ = 0.0;
};

}  // namespace host
