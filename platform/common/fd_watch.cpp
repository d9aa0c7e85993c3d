#include "common/fd_watch.h"

#include <utility>

namespace host {

FdWatch::FdWatch(int fd, std::function<void()> ready)
    : ready_(std::move(ready)),
      handler_(
          ecore_main_fd_handler_add(fd, ECORE_FD_READ, &FdWatch::fire, this, nullptr, nullptr)) {}

FdWatch::~FdWatch() {
    if (handler_ != nullptr) {
        ecore_main_fd_handler_del(handler_);
    }
}

void FdWatch::watch_for(bool reading, bool writing) {
    const int flags = (reading ? ECORE_FD_READ : 0) | (writing ? ECORE_FD_WRITE : 0);
    ecore_main_fd_handler_active_set(handler_, static_cast<Ecore_Fd_Handler_Flags>(flags));
}

Eina_Bool FdWatch::fire(void *data, Ecore_Fd_Handler * /*handler*/) {
    const auto ready = static_cast<FdWatch *>(data)->ready_;
    ready();
    return ECORE_CALLBACK_RENEW;
}

}  // namespace host
