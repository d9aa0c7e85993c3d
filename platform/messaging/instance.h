#pragma once

#include <functional>
#include <memory>

#include "messaging/app_control_host.h"

namespace host {

/// One process for all requests: the first owns the application's name on the session bus, a later
/// one hands its request to it.
class Instance {
public:
    /// What this process is to do.
    enum class Role {
        play,         ///< be the application; no other took the request
        handed_over,  ///< end, the first has accepted the request
    };

    /// A request that came over the bus. Destroyed without accept(), it is refused, and its sender
    /// looks after itself.
    class Delivery {
    public:
        virtual ~Delivery() = default;
        /// Null asks for the foreground only.
        [[nodiscard]] virtual const app_control_s *request() const = 0;
        virtual void accept() = 0;
    };

    /// Called on the service thread.
    struct Handlers {
        std::function<void(std::shared_ptr<Delivery>)> deliver;
        std::function<void()> quit;
    };

    explicit Instance(Handlers handlers);
    /// Not on the service thread.
    ~Instance();
    Instance(const Instance &) = delete;
    Instance &operator=(const Instance &) = delete;

    /// Joins the bus and finds out. `decided` is called once, on the service thread, in bounded
    /// time: one second for the bus, one for the name, five for the first to accept.
    void join(const app_control_s &request, std::function<void(Role)> decided);

    /// From now on requests are refused, and the name is free for the next. Any thread.
    void leave();

private:
    class Member;
    std::shared_ptr<Member> member_;
};

}  // namespace host
