#pragma once

#include <Ecore.h>

#include <deque>
#include <functional>

namespace host {

/// Turns travel of the bezel into single detents, never closer together than a hand can turn them.
/// Thread: main loop.
class Detents {
public:
    /// The least time between two detents, in milliseconds.
    static constexpr int kLeastInterval = 10;
    static constexpr int kPerTurn = 24;

    /// `deliver` gets each detent: whether it is clockwise, and its time stamp in milliseconds.
    explicit Detents(std::function<void(bool, unsigned int)> deliver);
    ~Detents();
    Detents(const Detents &) = delete;
    Detents &operator=(const Detents &) = delete;

    /// A turn by a script: all of it is delivered. `count` > 0 is clockwise; intervals below the
    /// least one are lengthened to it.
    void turn(int count, int interval_ms);
    /// A turn by a person: going the other way drops what still waits, and so does what would take
    /// longer than a full turn.
    void turn_by_hand(int count);

private:
    struct Detent {
        bool clockwise;
        int interval_ms;  ///< from the one before it
    };

    void deliver_due();
    static Eina_Bool timer_expired(void *data);

    std::function<void(bool, unsigned int)> deliver_;
    std::deque<Detent> waiting_;
    double last_ = -1.0;  ///< seconds
    unsigned int last_stamp_ = 0;
    bool delivering_ = false;
    Ecore_Timer *timer_ = nullptr;
};

}  // namespace host
