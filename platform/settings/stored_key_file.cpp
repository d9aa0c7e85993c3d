#include "settings/stored_key_file.h"

#include <dlog.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include "common/gobject.h"
#include "common/unique_fd.h"

namespace host {
namespace {

/// Another process holds the lock for one write only, unless it has been stopped in it.
constexpr auto kLockPatience = std::chrono::seconds(1);
constexpr auto kLockInterval = std::chrono::milliseconds(1);
constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;
constexpr off_t kLargestFile = off_t{16} * 1024 * 1024;

/// The folder, locked against other writers until the end of the object; none on failure.
UniqueFd lock_folder(const std::string &folder) {
    UniqueFd fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto end = std::chrono::steady_clock::now() + kLockPatience;
    while (fd && flock(fd.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            // A file system without locks: the replacement in one piece has to do.
            break;
        }
        if (std::chrono::steady_clock::now() > end) {
            return {};
        }
        std::this_thread::sleep_for(kLockInterval);
    }
    return fd;
}

enum class Look { absent, unreadable, read };

Look read_text(const std::string &path, std::string &text) {
    text.clear();
    // Whatever lies there, opening it must not wait.
    const UniqueFd fd(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!fd) {
        return errno == ENOENT || errno == ENOTDIR ? Look::absent : Look::unreadable;
    }
    struct stat status {};
    if (fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > kLargestFile) {
        return Look::unreadable;
    }
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(fd.get(), buffer.data(), buffer.size());
        if (count == 0) {
            return Look::read;
        }
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return Look::unreadable;
        }
    }
}

bool write_all(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(fd, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

KeyFilePtr empty_file() {
    return KeyFilePtr(g_key_file_new());
}

}  // namespace

StoredKeyFile::StoredKeyFile(std::string folder, std::string name,
                             std::function<bool(GKeyFile *)> is_sound)
    : folder_(std::move(folder)), name_(std::move(name)), is_sound_(std::move(is_sound)) {}

KeyFilePtr StoredKeyFile::read() {
    std::string text;
    switch (read_text(path(), text)) {
    case Look::absent:
        return empty_file();
    case Look::unreadable:
        return nullptr;
    case Look::read:
        break;
    }
    if (KeyFilePtr file = parse(text)) {
        fault_logged_ = false;
        return file;
    }
    const UniqueFd lock = lock_folder(folder_);
    KeyFilePtr file = lock ? read_locked(text) : nullptr;
    return file ? std::move(file) : empty_file();
}

bool StoredKeyFile::change(const std::function<void(GKeyFile *)> &apply) {
    if (g_mkdir_with_parents(folder_.c_str(), kPrivateFolder) != 0) {
        return false;
    }
    const UniqueFd lock = lock_folder(folder_);
    std::string old_text;
    const KeyFilePtr file = lock ? read_locked(old_text) : nullptr;
    if (!file) {
        return false;
    }
    apply(file.get());
    gsize length = 0;
    const GText text(g_key_file_to_data(file.get(), &length, nullptr));
    const std::string new_text(text.get(), length);
    return new_text == old_text || replace(new_text);
}

KeyFilePtr StoredKeyFile::parse(const std::string &text) const {
    KeyFilePtr file = empty_file();
    const bool parsed =
        text.find('\0') == std::string::npos &&
        (text.empty() || g_key_file_load_from_data(file.get(), text.data(), text.size(),
                                                   G_KEY_FILE_KEEP_COMMENTS, nullptr) != FALSE);
    return parsed && (!is_sound_ || is_sound_(file.get())) ? std::move(file) : nullptr;
}

KeyFilePtr StoredKeyFile::read_locked(std::string &text) {
    switch (read_text(path(), text)) {
    case Look::absent:
        return empty_file();
    case Look::unreadable:
        return nullptr;
    case Look::read:
        break;
    }
    if (KeyFilePtr file = parse(text)) {
        return file;
    }
    text.clear();
    return set_aside() ? empty_file() : nullptr;
}

bool StoredKeyFile::set_aside() {
    const std::string damaged = path() + ".damaged";
    std::string target = damaged;
    std::error_code error;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(target, error));
         ++number) {
        target = damaged + "-" + std::to_string(number);
    }
    if (std::rename(path().c_str(), target.c_str()) == 0) {
        fault_logged_ = false;
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "The damaged file %s was set aside as %s",
                     path().c_str(), target.c_str());
        return true;
    }
    if (!std::exchange(fault_logged_, true)) {
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST",
                     "The damaged file %s can't be set aside: %s; nothing will be written to it",
                     path().c_str(), std::strerror(errno));
    }
    return false;
}

bool StoredKeyFile::replace(const std::string &text) const {
    const std::string fresh = path() + ".new";
    UniqueFd fd(
        open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, kPrivateFile));
    // On the disk before it takes the old one's place: a power cut is a crash too.
    const bool written = fd && write_all(fd.get(), text) && fsync(fd.get()) == 0;
    fd.reset();
    if (!written || std::rename(fresh.c_str(), path().c_str()) != 0) {
        unlink(fresh.c_str());
        return false;
    }
    const UniqueFd folder(open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    fsync(folder.get());
    return true;
}

}  // namespace host
