#pragma once

#include <linux/input.h>

#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <span>

#include "common/fd_watch.h"
#include "common/unique_fd.h"

namespace host {

/// The detents in what was read from a dial, clockwise above 0.
[[nodiscard]] int detents_of(std::span<const input_event> events);

/// Dials that are no pointers, read from the kernel as far as this user may, those that are plugged
/// in later included. Thread: main loop.
class DialDevices {
public:
    /// `turned` gets the detents of each turn, clockwise above 0.
    explicit DialDevices(std::function<void(int)> turned);
    DialDevices(const DialDevices &) = delete;
    DialDevices &operator=(const DialDevices &) = delete;

private:
    struct Dial {
        std::filesystem::path path;
        UniqueFd fd;
        std::optional<FdWatch> watch;
    };

    void watch_folder();
    void read_folder_changes();
    void open(const std::filesystem::path &path);
    void read(std::list<Dial>::iterator dial);

    std::function<void(int)> turned_;
    UniqueFd folder_;
    std::optional<FdWatch> folder_watch_;
    std::list<Dial> dials_;
};

}  // namespace host
