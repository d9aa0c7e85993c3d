#pragma once

#include <memory>
#include <string>

namespace host {

/// Keeps the machine from sleeping or from blanking its screen for as long as it lives: a logind
/// inhibitor or, against blanking where there is no logind, one of the desktop's screen saver. A
/// machine with neither is left as it is, which is logged once.
///
/// Thread: any one; nothing here waits. The request runs on the service thread; an inhibitor that
/// has gone before the answer came closes what the answer brings.
class Inhibitor {
public:
    /// @param what  logind's word for the thing held off: "idle" or "sleep"
    explicit Inhibitor(const std::string &what);
    ~Inhibitor();
    Inhibitor(Inhibitor &&) noexcept = default;
    Inhibitor &operator=(Inhibitor &&) noexcept = default;
    Inhibitor(const Inhibitor &) = delete;
    Inhibitor &operator=(const Inhibitor &) = delete;

private:
    struct Request;
    std::shared_ptr<Request> request_;
};

}  // namespace host
