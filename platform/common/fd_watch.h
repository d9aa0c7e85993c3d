#pragma once

#include <Ecore.h>

#include <functional>

namespace host {

/// A watch of a descriptor by the main loop, for reading at first. Thread: main loop.
class FdWatch {
public:
    /// `fd` is borrowed and must outlive the watch. `ready` may destroy the watch.
    FdWatch(int fd, std::function<void()> ready);
    ~FdWatch();
    FdWatch(const FdWatch &) = delete;
    FdWatch &operator=(const FdWatch &) = delete;

    void watch_for(bool reading, bool writing);

private:
    static Eina_Bool fire(void *data, Ecore_Fd_Handler *handler);

    std::function<void()> ready_;
    Ecore_Fd_Handler *handler_;
};

}  // namespace host
