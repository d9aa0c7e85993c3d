#pragma once

#include <list>

#include "control/condition.h"
#include "control/responder.h"
#include "control/rival.h"
#include "control/timer.h"

namespace host::control {

/// Requests that wait for a condition over the state. While there is one, the state is read a
/// hundred times a second.
class Waits {
public:
    /// @param rival  must live as long
    explicit Waits(const Rival &rival) : rival_(rival) {}

    /// Replies, with the state, as soon as the condition holds, or fails when `deadline_ms` have
    /// passed.
    /// @throws UsageError for a condition that the state can't answer, RequestError when too many
    /// wait
    void add(Condition condition, const std::string &text, int deadline_ms,
             const Responder &responder);

private:
    struct Wait {
        Condition condition;
        std::string text;
        double begin = 0.0;
        double end = 0.0;
        Responder responder;
    };

    bool check();

    const Rival &rival_;
    std::list<Wait> waits_;
    Timer timer_;
};

}  // namespace host::control
