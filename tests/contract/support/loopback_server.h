#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <functional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "common/unique_fd.h"

namespace support {

/// Takes connections on this machine, one at a time, and does with each what it is told.
class LoopbackServer {
public:
    /// @param serve  called on the server's thread; the connection is closed when it returns
    explicit LoopbackServer(std::function<void(int connection)> serve)
        : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (bind(listener_.get(), reinterpret_cast<sockaddr *>(&address), size) != 0 ||
            listen(listener_.get(), 8) != 0 ||
            getsockname(listener_.get(), reinterpret_cast<sockaddr *>(&address), &size) != 0) {
            throw std::system_error(errno, std::generic_category(), "a server on this machine");
        }
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this, serve = std::move(serve)] {
            for (;;) {
                const host::UniqueFd connection(
                    accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
                if (!connection) {
                    return;
                }
                serve(connection.get());
            }
        });
    }
    ~LoopbackServer() {
        shutdown(listener_.get(), SHUT_RDWR);
        thread_.join();
    }
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;

    /// Where a client finds it. Each path leads to the same.
    [[nodiscard]] std::string address(const std::string &path = "/clip.mp4") const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }

private:
    host::UniqueFd listener_;
    int port_ = 0;
    std::thread thread_;
};

/// A request's line and headers.
inline std::string read_request(int connection) {
    std::string request;
    char byte = 0;
    while (!request.ends_with("\r\n\r\n") && read(connection, &byte, 1) == 1) {
        request += byte;
    }
    return request;
}

/// As much of it as the client takes.
inline void send_all(int connection, const std::string &text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t step = send(connection, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (step <= 0) {
            return;
        }
        sent += static_cast<std::size_t>(step);
    }
}

/// Returns when the client has gone.
inline void wait_for_client_to_go(int connection) {
    char byte = 0;
    (void)!read(connection, &byte, 1);
}

}  // namespace support
