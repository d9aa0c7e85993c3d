#include "server.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

namespace fuzz {
namespace {

constexpr char kCut[] = "cut/";
constexpr char kStatus[] = "status/";

std::string path_of(const std::string &request) {
    const auto begin = request.find('/');
    return begin == std::string::npos
               ? ""
               : request.substr(begin + 1, request.find(' ', begin) - begin - 1);
}

}  // namespace

Server::Server(std::string folder)
    : folder_(std::move(folder)), server_([this](int connection) {
          support::send_all(connection, answer_to(path_of(support::read_request(connection))));
      }) {}

void Server::give(std::string response) {
    const std::lock_guard lock(mutex_);
    given_ = std::move(response);
}

std::string Server::address() const {
    return server_.address("/");
}

std::string Server::response(const std::string &body) {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
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
