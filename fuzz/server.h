#pragma once

#include <mutex>
#include <string>

#include "loopback_server.h"

namespace fuzz {

/// A server on this machine that answers with whatever it is given, and ends each connection then.
class Server {
public:
    /// @param folder  its files are served without ranges
    explicit Server(std::string folder);

    /// All that the next requests for /given are answered with, head and body.
    void give(std::string response);
    /// "http://127.0.0.1:PORT/"
    [[nodiscard]] std::string address() const;
    /// A right answer.
    [[nodiscard]] static std::string response(const std::string &body);

private:
    [[nodiscard]] std::string answer_to(const std::string &path);

    const std::string folder_;
    std::mutex mutex_;
    std::string given_;
    support::LoopbackServer server_;  ///< last, so that it ends before what it uses goes
};

}  // namespace fuzz
