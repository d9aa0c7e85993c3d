#pragma once

#include <mutex>
#include <string>
#include <thread>

#include "common/unique_fd.h"

namespace fuzz {

/// A server on this machine that answers with whatever it is given, and ends each connection then.
class Server {
public:
    /// @param folder  its files are served without ranges
    explicit Server(std::string folder);
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// All that the next requests for /given are answered with, head and body.
    void give(std::string response);
    /// "http://127.0.0.1:PORT/"
    [[nodiscard]] std::string address() const;
    /// A right answer.
    [[nodiscard]] static std::string response(const std::string &body);

private:
    void serve(int connection);
    [[nodiscard]] std::string answer_to(const std::string &path);

    std::string folder_;
    host::UniqueFd listener_;
    int port_ = 0;
    std::mutex mutex_;
    std::string given_;
    std::thread thread_;
};

}  // namespace fuzz
