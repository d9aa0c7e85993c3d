#pragma once

#include <functional>
#include <memory>
#include <string>

#include "common/fd_watch.h"
#include "common/unique_fd.h"

namespace host {

/// Tells when a file of a folder has been written, replaced, renamed or removed, by whatever
/// process. Thread: main loop.
class FolderWatch {
public:
    /// @param changed  may destroy the watch
    FolderWatch(const std::string &folder, std::function<void()> changed);

    /// False once the folder itself has gone, or when it could not be watched.
    [[nodiscard]] bool is_alive() const { return alive_; }

private:
    void drain();

    const std::function<void()> changed_;
    UniqueFd inotify_;
    std::unique_ptr<FdWatch> watch_;
    bool alive_ = false;
};

}  // namespace host
