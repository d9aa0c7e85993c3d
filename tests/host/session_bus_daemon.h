#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include "child_process.h"

/// A session bus of the test's own, named to this process and its children by the environment.
class SessionBusDaemon {
public:
    SessionBusDaemon() {
        setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
        start();
    }
    ~SessionBusDaemon() {
        stop();
        unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }
    SessionBusDaemon(const SessionBusDaemon &) = delete;
    SessionBusDaemon &operator=(const SessionBusDaemon &) = delete;

    void start() {
        daemon_ = std::make_unique<child::Process>(
            std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                     "--print-address", "--address=" + address()},
            child::Environment{});
        ASSERT_TRUE(daemon_->prints("unix:path=")) << daemon_->errors();
    }
    /// Ends it as a crash does.
    void stop() {
        daemon_.reset();
        std::filesystem::remove(folder_.path() + "/bus");
    }

    [[nodiscard]] std::string address() const { return "unix:path=" + folder_.path() + "/bus"; }

private:
    const child::TemporaryFolder folder_;
    std::unique_ptr<child::Process> daemon_;
};
