#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "control/request.h"

namespace host::control {

/// The way back to whoever made a request, who may have gone. Exactly one reply is due; copies
/// stand for the same request.
class Responder {
public:
    /// `reply` lives as long as the requester is there.
    explicit Responder(std::weak_ptr<std::function<void(const Json &)>> reply)
        : reply_(std::move(reply)) {}

    /// Nobody waits for the reply any more.
    [[nodiscard]] bool gone() const { return reply_.expired(); }

    /// Done; `more` is an object whose entries are added to the reply.
    void done(const Json &more = Json::object()) const {
        Json reply = {{"ok", true}};
        reply.update(more);
        send(reply);
    }
    void failed(const std::string &why, const Json &more = Json::object()) const {
        Json reply = {{"ok", false}, {"error", why}};
        reply.update(more);
        send(reply);
    }

private:
    void send(const Json &reply) const {
        if (const auto send = reply_.lock()) {
            (*send)(reply);
        }
    }

    std::weak_ptr<std::function<void(const Json &)>> reply_;
};

}  // namespace host::control
