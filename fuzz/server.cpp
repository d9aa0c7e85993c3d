#include "server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace fuzz {
namespace {

constexpr char kCut[] = "cut/";
constexpr char kStatus[] = "status/";

std::string path_of_request(int connection) {
    std::string request;
    char byte = 0;
    while (!request.ends_with("\r\n\r\n") && read(connection, &byte, 1) == 1) {
        request += byte;
    }
    const auto begin = request.find('/');
    return begin == std::string::npos
               ? ""
               : request.substr(begin + 1, request.find(' ', begin) - begin - 1);
}

}  // namespace

Server::Server(std::string folder)
    : folder_(std::move(folder)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(listener_.get(), reinterpret_cast<sockaddr *>(&address), size) != 0 ||
        listen(listener_.get(), 8) != 0 ||
        getsockname(listener_.get(), reinterpret_cast<sockaddr *>(&address), &size) != 0) {
        std::abort();
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] {
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

Server::~Server() {
    shutdown(listener_.get(), SHUT_RDWR);
    thread_.join();
}

void Server::give(std::string response) {
    const std::lock_guard lock(mutex_);
    given_ = std::move(response);
}

std::string Server::address() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

std::string Server::response(const std::string &body) {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

void Server::serve(int connection) {
    const std::string answer = answer_to(path_of_request(connection));
    std::size_t sent = 0;
    while (sent < answer.size()) {
        const ssize_t more =
            send(connection, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (more <= 0) {
            return;
        }
        sent += static_cast<std::size_t>(more);
    }
}

std::string Server::answer_to(const std::string &path) {
    if (path == "given") {
        const std::lock_guard lock(mutex_);
        return given_;
    }
    if (path.starts_with(kStatus)) {
        return "HTTP/1.1 " + path.substr(sizeof kStatus - 1) +
               " So\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";
    }
    const bool cut = path.starts_with(kCut);
    const std::string name = cut ? path.substr(sizeof kCut - 1) : path;
    const std::filesystem::path file = std::filesystem::path(folder_) / name;
    if (name.find('/') != std::string::npos || !std::filesystem::is_regular_file(file)) {
        return answer_to(std::string(kStatus) + "404");
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string whole = response({std::istreambuf_iterator<char>(stream), {}});
    return whole.substr(0, cut ? whole.size() / 2 : whole.size());
}

}  // namespace fuzz
