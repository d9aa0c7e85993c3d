#include "settings/folder_watch.h"

#include <sys/inotify.h>

#include <array>
#include <utility>

namespace host {
namespace {

constexpr std::uint32_t kGone = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | kGone;

}  // namespace

FolderWatch::FolderWatch(const std::string &folder, std::function<void()> changed)
    : changed_(std::move(changed)), inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (!inotify_ || inotify_add_watch(inotify_.get(), folder.c_str(), kChanges) < 0) {
        return;
    }
    alive_ = true;
    watch_ = std::make_unique<FdWatch>(inotify_.get(), [this] {
        drain();
        const auto changed = changed_;
        changed();
    });
}

void FolderWatch::drain() {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(inotify_.get(), buffer.data(), buffer.size())) > 0;) {
        for (ssize_t place = 0; place < count;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + place);
            alive_ = alive_ && (event->mask & (kGone | IN_IGNORED)) == 0;
            place += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

}  // namespace host
