#include "rotary/dial_devices.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {
namespace {

constexpr const char *kFolder = "/dev/input";
constexpr std::string_view kEventDevice = "event";
constexpr int kReading = O_RDONLY | O_NONBLOCK | O_CLOEXEC;

/// Has a dial, and is no pointer, whose wheels the desktop reads.
bool is_dial(int fd) {
    constexpr std::size_t kWordBits = sizeof(unsigned long) * CHAR_BIT;
    std::array<unsigned long, REL_CNT / kWordBits + 1> axes{};
    const auto has = [&axes](std::size_t axis) {
        return (axes.at(axis / kWordBits) >> (axis % kWordBits) & 1U) != 0;
    };
    return ioctl(fd, EVIOCGBIT(EV_REL, sizeof axes), axes.data()) >= 0 && has(REL_DIAL) &&
           !has(REL_X);
}

}  // namespace

int detents_of(std::span<const input_event> events) {
    int detents = 0;
    for (const input_event &event : events) {
        if (event.type == EV_REL && event.code == REL_DIAL) {
            detents += event.value;
        }
    }
    return detents;
}

DialDevices::DialDevices(std::function<void(int)> turned)
    : turned_(std::move(turned)), folder_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // Watched before it is listed, so that none is missed.
    watch_folder();
    std::error_code error;
    for (std::filesystem::directory_iterator entry(kFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        open(entry->path());
    }
}

void DialDevices::watch_folder() {
    // A new device can often be opened only after its owner has been set.
    if (folder_ && inotify_add_watch(folder_.get(), kFolder, IN_CREATE | IN_ATTRIB) >= 0) {
        folder_watch_.emplace(folder_.get(), [this] { read_folder_changes(); });
    }
}

void DialDevices::read_folder_changes() {
    alignas(inotify_event) std::array<char, 4096> bytes{};
    const ssize_t count = ::read(folder_.get(), bytes.data(), bytes.size());
    for (ssize_t place = 0; place < count;) {
        const auto *change =
            reinterpret_cast<const inotify_event *>(bytes.data() + static_cast<std::size_t>(place));
        if (change->len > 0) {
            open(std::filesystem::path(kFolder) / change->name);
        }
        place += static_cast<ssize_t>(sizeof(inotify_event) + change->len);
    }
}

void DialDevices::open(const std::filesystem::path &path) {
    const bool known = std::any_of(dials_.begin(), dials_.end(),
                                   [&path](const Dial &dial) { return dial.path == path; });
    if (known || !path.filename().string().starts_with(kEventDevice)) {
        return;
    }
    UniqueFd fd(::open(path.c_str(), kReading));
    if (fd && is_dial(fd.get())) {
        const auto dial = dials_.emplace(dials_.end());
        dial->path = path;
        dial->fd = std::move(fd);
        dial->watch.emplace(dial->fd.get(), [this, dial] { read(dial); });
    }
}

void DialDevices::read(std::list<Dial>::iterator dial) {
    std::array<input_event, 64> events{};
    const ssize_t count = ::read(dial->fd.get(), events.data(), sizeof events);
    if (count <= 0) {
        if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            dials_.erase(dial);  // unplugged
        }
        return;
    }
    const auto whole = static_cast<std::size_t>(count) / sizeof(input_event);
    if (const int detents = detents_of(std::span(events).first(whole)); detents != 0) {
        turned_(detents);
    }
}

}  // namespace host
