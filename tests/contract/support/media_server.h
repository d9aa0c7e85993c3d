#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "common/unique_fd.h"

namespace support {

/// Serves one medium over http on this machine, with ranges, to one client at a time.
class MediaServer {
public:
    /// @param stall_after  bytes of the medium after which nothing comes any more
    explicit MediaServer(std::string medium, std::optional<std::size_t> stall_after = {})
        : medium_(std::move(medium)),
          stall_after_(stall_after),
          listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        bind(listener_.get(), reinterpret_cast<sockaddr *>(&address), size);
        listen(listener_.get(), 8);
        getsockname(listener_.get(), reinterpret_cast<sockaddr *>(&address), &size);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    ~MediaServer() {
        shutdown(listener_.get(), SHUT_RDWR);
        thread_.join();
    }
    MediaServer(const MediaServer &) = delete;
    MediaServer &operator=(const MediaServer &) = delete;

    [[nodiscard]] std::string address() const {
        return "http://127.0.0.1:" + std::to_string(port_) + "/clip.mp4";
    }
    /// The requests so far, with their headers.
    [[nodiscard]] std::vector<std::string> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

private:
    void serve() {
        for (;;) {
            const host::UniqueFd connection(accept(listener_.get(), nullptr, nullptr));
            if (!connection) {
                return;
            }
            std::string request;
            char byte = 0;
            while (!request.ends_with("\r\n\r\n") && read(connection.get(), &byte, 1) == 1) {
                request += byte;
            }
            answer(connection.get(), request);
            const std::lock_guard lock(mutex_);
            requests_.push_back(std::move(request));
        }
    }
    void answer(int connection, const std::string &request) const {
        const auto range = request.find("Range: bytes=");
        const std::size_t from =
            range == std::string::npos ? 0 : std::stoul(request.substr(range + 13));
        const std::string part = medium_.substr(std::min(from, medium_.size()));
        const std::string size = std::to_string(medium_.size());
        std::string head = range == std::string::npos
                               ? "HTTP/1.1 200 OK\r\n"
                               : "HTTP/1.1 206 Partial Content\r\n"
                                 "Content-Range: bytes " +
                                     std::to_string(from) + "-" +
                                     std::to_string(medium_.size() - 1) + "/" + size + "\r\n";
        head +=
            "Content-Type: video/mp4\r\nAccept-Ranges: bytes\r\nConnection: close\r\n"
            "Content-Length: " +
            std::to_string(part.size()) + "\r\n\r\n";
        send_all(connection, head);
        send_all(connection, part.substr(0, stall_after_.value_or(part.size())));
        char byte = 0;
        if (stall_after_ && *stall_after_ < part.size()) {
            (void)!read(connection, &byte, 1);
        }
    }
    static void send_all(int connection, const std::string &text) {
        std::size_t sent = 0;
        while (sent < text.size()) {
            const ssize_t step =
                send(connection, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
            if (step <= 0) {
                return;
            }
            sent += static_cast<std::size_t>(step);
        }
    }

    const std::string medium_;
    const std::optional<std::size_t> stall_after_;
    host::UniqueFd listener_;
    int port_ = 0;
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

}  // namespace support
