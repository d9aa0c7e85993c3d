#include "control/control.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "common/fd_watch.h"
#include "common/unique_fd.h"
#include "control/address.h"
#include "control/client.h"
#include "control/commands.h"

namespace host {
namespace {

constexpr std::size_t kMostClients = 16;
constexpr int kBacklog = 16;

/// Takes `directory` into use, made for this user alone.
/// @return false, with errno set, when it can't be had or is open to others
bool own_directory(const std::string &directory) {
    if (mkdir(directory.c_str(), S_IRWXU) == 0) {
        return true;
    }
    if (errno != EEXIST) {
        return false;
    }
    struct stat status {};
    if (lstat(directory.c_str(), &status) != 0) {
        return false;
    }
    if (!S_ISDIR(status.st_mode) || status.st_uid != getuid() ||
        (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        errno = EPERM;
        return false;
    }
    return true;
}

/// Takes its name only once it listens: whoever sees the name can connect.
UniqueFd listen_at(const std::string &path) {
    const std::string unnamed = control_directory() + "/opening-" + std::to_string(getpid());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (std::max(path.size(), unnamed.size()) >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return {};
    }
    unnamed.copy(address.sun_path, unnamed.size());
    UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // A process of the same number may have left one behind.
    unlink(unnamed.c_str());
    if (!fd || bind(fd.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        chmod(unnamed.c_str(), S_IRUSR | S_IWUSR) != 0 || listen(fd.get(), kBacklog) != 0 ||
        std::rename(unnamed.c_str(), path.c_str()) != 0) {
        return {};
    }
    return fd;
}

class Server {
public:
    Server(UniqueFd fd, std::string path)
        : path_(std::move(path)), fd_(std::move(fd)), watch_(fd_.get(), [this] { accept(); }) {}
    ~Server() { unlink(path_.c_str()); }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

private:
    void accept() {
        UniqueFd fd(accept4(fd_.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!fd || clients_.size() >= kMostClients) {
            return;
        }
        const auto place = clients_.emplace(clients_.end());
        *place = std::make_unique<control::Client>(std::move(fd), commands_,
                                                   [this, place] { clients_.erase(place); });
    }

    std::string path_;
    UniqueFd fd_;
    control::Commands commands_;
    std::list<std::unique_ptr<control::Client>> clients_;
    FdWatch watch_;
};

std::unique_ptr<Server> &server() {
    static std::unique_ptr<Server> instance;
    return instance;
}

}  // namespace

bool start_control() {
    const std::string path = control_socket(getpid());
    if (own_directory(control_directory())) {
        if (UniqueFd fd = listen_at(path)) {
            server() = std::make_unique<Server>(std::move(fd), path);
            return true;
        }
    }
    std::fprintf(stderr, "tessel: the control socket %s can't be opened: %s\n", path.c_str(),
                 std::strerror(errno));
    return false;
}

void stop_control() {
    server().reset();
}

}  // namespace host
