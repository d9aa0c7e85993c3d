#include "sound/output.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "common/unique_fd.h"

namespace host {
namespace {

/// A server on this machine answers at once; more would show as a slow start.
constexpr int kConnectDeadlineMs = 100;

class Socket {
public:
    explicit Socket(int family)
        : fd_(socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

    [[nodiscard]] bool connects(const sockaddr *address, socklen_t size) const {
        if (!fd_) {
            return false;
        }
        if (connect(fd_.get(), address, size) == 0) {
            return true;
        }
        // A full backlog (EAGAIN) is a server that doesn't answer.
        if (errno != EINPROGRESS) {
            return false;
        }
        pollfd ready{fd_.get(), POLLOUT, 0};
        if (poll(&ready, 1, kConnectDeadlineMs) != 1) {
            return false;
        }
        int error = 0;
        socklen_t length = sizeof error;
        return getsockopt(fd_.get(), SOL_SOCKET, SO_ERROR, &error, &length) == 0 && error == 0;
    }

private:
    UniqueFd fd_;
};

bool local_socket_answers(const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    path.copy(address.sun_path, path.size());
    return Socket(AF_UNIX).connects(reinterpret_cast<const sockaddr *>(&address), sizeof address);
}

/// `host` and `port` of "host:port", "[host]:port" or "host".
std::pair<std::string, std::string> split_host(std::string_view place) {
    constexpr std::string_view kDefaultPort = "4713";
    std::string_view name = place;
    std::string_view port = kDefaultPort;
    if (const auto bracket = place.find(']');
        place.starts_with('[') && bracket != std::string_view::npos) {
        name = place.substr(1, bracket - 1);
        if (place.substr(bracket + 1).starts_with(':')) {
            port = place.substr(bracket + 2);
        }
    } else if (const auto colon = place.rfind(':'); colon != std::string_view::npos) {
        name = place.substr(0, colon);
        port = place.substr(colon + 1);
    }
    return {std::string(name), std::string(port)};
}

bool network_server_answers(std::string_view place) {
    auto [name, port] = split_host(place);
    if (name.empty() || port.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    if (name == "localhost") {
        name = "127.0.0.1";
    }
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo *found = nullptr;
    const int result = getaddrinfo(name.c_str(), port.c_str(), &hints, &found);
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, &freeaddrinfo);
    if (result == EAI_NONAME) {
        // Looking a name up may take seconds. Whoever names a machine is taken at their word.
        return true;
    }
    return result == 0 && addresses &&
           Socket(addresses->ai_family).connects(addresses->ai_addr, addresses->ai_addrlen);
}

/// One entry of PULSE_SERVER: "[{machine}]unix:PATH", "PATH", "tcp[4|6]:HOST[:PORT]", "HOST".
bool server_answers(std::string_view server) {
    if (server.starts_with('{')) {
        const auto end = server.find('}');
        if (end == std::string_view::npos) {
            return false;
        }
        server.remove_prefix(end + 1);
    }
    if (server.starts_with("unix:")) {
        return local_socket_answers(std::string(server.substr(5)));
    }
    if (server.starts_with('/')) {
        return local_socket_answers(std::string(server));
    }
    for (const std::string_view scheme : {"tcp:", "tcp4:", "tcp6:"}) {
        if (server.starts_with(scheme)) {
            return network_server_answers(server.substr(scheme.size()));
        }
    }
    return network_server_answers(server);
}

std::optional<std::string> environment(const char *name) {
    const char *value = std::getenv(name);
    if (value == nullptr || *value == '\0') {
        return std::nullopt;
    }
    return value;
}

/// Whether the kernel has a device that plays and that this user may open.
bool alsa_plays() {
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/dev/snd", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (name.starts_with("pcm") && name.ends_with('p') &&
            access(entry->path().c_str(), R_OK | W_OK) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<std::string> sound_servers() {
    std::vector<std::string> servers;
    if (const auto named = environment("PULSE_SERVER")) {
        std::istringstream words(*named);
        std::copy(std::istream_iterator<std::string>(words), {}, std::back_inserter(servers));
        return servers;
    }
    if (const auto directory = environment("PULSE_RUNTIME_PATH")) {
        return {"unix:" + *directory + "/native"};
    }
    if (const auto directory = environment("XDG_RUNTIME_DIR")) {
        servers.push_back("unix:" + *directory + "/pulse/native");
    }
    servers.emplace_back("unix:/run/pulse/native");
    return servers;
}

bool sound_server_answers(const std::vector<std::string> &servers) {
    return std::any_of(servers.begin(), servers.end(), server_answers);
}

const char *sound_sink_element() {
    if (sound_server_answers()) {
        return "pulsesink";
    }
    return alsa_plays() ? "alsasink" : "fakesink";
}

}  // namespace host
