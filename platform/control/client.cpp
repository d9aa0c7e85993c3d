#include "control/client.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

namespace host::control {
namespace {

/// The longest path and the longest condition fit many times over.
constexpr std::size_t kLongestRequest = 64 * 1024;
/// A client that reads nothing must not grow the program.
constexpr std::size_t kMostUnreadReplies = 1024 * 1024;

}  // namespace

Client::Client(UniqueFd fd, Commands &commands, std::function<void()> ended)
    : commands_(commands),
      ended_(std::move(ended)),
      fd_(std::move(fd)),
      requests_(kLongestRequest),
      reply_(std::make_shared<std::function<void(const Json &)>>(
          [this](const Json &answer) { reply(answer); })) {
    watch();
}

void Client::ready() {
    if (!closing_ && !receive()) {
        closing_ = true;
    }
    work();
    flush();
    if (broken_ || (closing_ && !busy_ && replies_.empty())) {
        const auto ended = ended_;
        ended();
        return;
    }
    watch();
}

/// What is watched for follows from the state; with nothing to watch for there is no watch at all,
/// since a hang-up would wake it again and again.
void Client::watch() {
    const bool reading = !closing_ && requests_.size() <= kLongestRequest;
    // A broken one is woken to end.
    const bool writing = !replies_.empty() || broken_ || (closing_ && !busy_);
    if (!reading && !writing) {
        watch_.reset();
        return;
    }
    if (!watch_) {
        watch_.emplace(fd_.get(), [this] { ready(); });
    }
    watch_->watch_for(reading, writing);
}

/// @return false at the end of what the client has to say
bool Client::receive() {
    std::array<char, 4096> bytes{};
    const ssize_t count = recv(fd_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count > 0) {
        requests_.append({bytes.data(), static_cast<std::size_t>(count)});
        return true;
    }
    if (count < 0) {
        broken_ = errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR;
        return !broken_;
    }
    // One that only has no more to ask still wants its replies.
    pollfd peer{fd_.get(), 0, 0};
    broken_ = poll(&peer, 1, 0) == 1 && (peer.revents & POLLHUP) != 0;
    return false;
}

void Client::work() {
    while (!busy_ && !broken_) {
        const auto line = requests_.next();
        if (!line) {
            break;
        }
        busy_ = true;
        const Responder responder(reply_);
        try {
            commands_.run(parse_request(*line), responder);
        } catch (const UsageError &error) {
            responder.failed(error.what(), {{"usage", true}});
        }
    }
    if (requests_.overflowed() && !closing_) {
        closing_ = true;
        reply({{"ok", false}, {"usage", true}, {"error", "the request is too long"}});
    }
}

void Client::reply(const Json &reply) {
    busy_ = false;
    replies_ += reply.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
    flush();
    // A reply that comes later is followed by the requests that arrived meanwhile: a watch for
    // writing wakes at once.
    if (!watch_) {
        watch_.emplace(fd_.get(), [this] { ready(); });
    }
    watch_->watch_for(!closing_, true);
}

void Client::flush() {
    while (!replies_.empty() && !broken_) {
        const ssize_t count =
            send(fd_.get(), replies_.data(), replies_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count > 0) {
            replies_.erase(0, static_cast<std::size_t>(count));
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            broken_ = replies_.size() > kMostUnreadReplies;
            return;
        } else if (errno != EINTR) {
            broken_ = true;
        }
    }
}

}  // namespace host::control
