#pragma once

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "loopback_server.h"

namespace support {

/// Serves one medium over http on this machine, with ranges, to one client at a time.
class MediaServer {
public:
    /// @param stall_after  bytes of the medium after which nothing comes any more
    explicit MediaServer(std::string medium, std::optional<std::size_t> stall_after = {})
        : medium_(std::move(medium)),
          stall_after_(stall_after),
          server_([this](int connection) { serve(connection); }) {}

    [[nodiscard]] std::string address() const { return server_.address(); }
    /// The requests so far, with their headers.
    [[nodiscard]] std::vector<std::string> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

private:
    void serve(int connection) {
        const std::string request = read_request(connection);
        {
            const std::lock_guard lock(mutex_);
            requests_.push_back(request);
        }
        answer(connection, request);
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
        if (stall_after_ && *stall_after_ < part.size()) {
            wait_for_client_to_go(connection);
        }
    }

    const std::string medium_;
    const std::optional<std::size_t> stall_after_;
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    LoopbackServer server_;  ///< last, so that it ends before what it uses goes
};

}  // namespace support
