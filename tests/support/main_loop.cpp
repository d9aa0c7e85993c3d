#include "main_loop.h"

#include <Ecore.h>

namespace support {

namespace {

// Keeps the loop from blocking for longer than a deadline can be overrun.
class Ticker {
public:
    Ticker() : m_timer(ecore_timer_add(0.005, tick, nullptr)) {}
    ~Ticker() { ecore_timer_del(m_timer); }
    Ticker(const Ticker &) = delete;
    Ticker &operator=(const Ticker &) = delete;

private:
    static Eina_Bool tick(void *) { return ECORE_CALLBACK_RENEW; }
    Ecore_Timer *m_timer;
};

}  // namespace

bool run_main_loop_until(const std::function<bool()> &condition, double deadline_s) {
    const Ticker ticker;
    const double end = ecore_time_get() + deadline_s;
    while (!condition()) {
        if (ecore_time_get() >= end) {
            return false;
        }
        ecore_main_loop_iterate_may_block(1);
    }
    return true;
}

void run_loop_turns(int turns) {
    for (int turn = 0; turn < turns; ++turn) {
        ecore_main_loop_iterate();
    }
}

void run_main_loop_for(double seconds) {
    (void)run_main_loop_until([] { return false; }, seconds);
}

}  // namespace support
