#include "app/exit_signals.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace {

std::atomic<int> signal_fd{-1};
static_assert(std::atomic<int>::is_always_lock_free, "the handler may do nothing else");

extern "C" void exit_signal_received(int) {
    const int saved_errno = errno;
    const std::uint64_t one = 1;
    // The counter being full says what there is to say.
    [[maybe_unused]] const ssize_t written = write(signal_fd.load(), &one, sizeof one);
    errno = saved_errno;
}

void take_over(int number) {
    struct sigaction action {};
    // A process that was started to outlive its terminal goes on doing so.
    const bool outlives = number == SIGHUP && sigaction(number, nullptr, &action) == 0 &&
                          action.sa_handler == SIG_IGN;
    if (outlives) {
        return;
    }
    action = {};
    action.sa_handler = exit_signal_received;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

}  // namespace

namespace host {

ExitSignals::ExitSignals() : fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    signal_fd = fd_.get();
}

ExitSignals::~ExitSignals() {
    signal_fd = -1;
}

void ExitSignals::install() {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        take_over(number);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

bool ExitSignals::received() const {
    pollfd poll_fd{fd_.get(), POLLIN, 0};
    return poll(&poll_fd, 1, 0) == 1;
}

}  // namespace host
