#include "player/network_limits.h"

#include <mutex>

namespace host {
namespace {

std::mutex limits_mutex;
NetworkLimits current_limits;

}  // namespace

NetworkLimits network_limits() {
    const std::lock_guard lock(limits_mutex);
    return current_limits;
}

void set_network_limits(const NetworkLimits &limits) {
    const std::lock_guard lock(limits_mutex);
    current_limits = limits;
}

}  // namespace host
