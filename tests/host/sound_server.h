#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "child_process.h"
#include "sound/output.h"

/// A PulseAudio server of the test's own, named to this process and its children by the
/// environment, with one plain sink, "speaker", at full volume.
class SoundServer {
public:
    SoundServer() {
        setenv("PULSE_SERVER", ("unix:" + path()).c_str(), 1);
        start();
    }
    ~SoundServer() {
        stop();
        unsetenv("PULSE_SERVER");
    }
    SoundServer(const SoundServer &) = delete;
    SoundServer &operator=(const SoundServer &) = delete;

    void start() {
        modules_.clear();
        server_ = std::make_unique<child::Process>(
            std::vector<std::string>{
                "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                "--log-level=error", "-L",
                "module-native-protocol-unix socket=" + path() + " auth-anonymous=1", "-L",
                "module-null-sink sink_name=speaker"},
            environment());
        const auto end = std::chrono::steady_clock::now() + child::deadline;
        while (!host::sound_server_answers()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "the sound server did not start";
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    /// Ends it as a crash does.
    void stop() {
        server_.reset();
        std::filesystem::remove(path());
    }
    /// Stops it from answering, and lets it go on.
    void freeze() const { server_->send(SIGSTOP); }
    void thaw() const { server_->send(SIGCONT); }

    /// @return what pactl prints
    std::string control(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "pactl");
        child::Process pactl(arguments, environment());
        EXPECT_EQ(pactl.wait(), 0) << arguments[1] << ": " << pactl.errors();
        return pactl.output();
    }
    void set_volume(double percent) const {
        control({"set-sink-volume", "@DEFAULT_SINK@", std::to_string(percent) + "%"});
    }
    void set_mute(bool mute) const {
        control({"set-sink-mute", "@DEFAULT_SINK@", mute ? "1" : "0"});
    }
    /// "Volume: ..." of the default sink.
    [[nodiscard]] std::string volume() const {
        return control({"get-sink-volume", "@DEFAULT_SINK@"});
    }
    [[nodiscard]] bool is_muted() const {
        return control({"get-sink-mute", "@DEFAULT_SINK@"}).find("yes") != std::string::npos;
    }
    void add_sink(const std::string &name, const std::string &properties) {
        modules_[name] = control({"load-module", "module-null-sink", "sink_name=" + name,
                                  "sink_properties=\"" + properties + '"'});
    }
    void remove_sink(const std::string &name) {
        std::string module = modules_.at(name);
        module.erase(module.find_last_not_of('\n') + 1);
        control({"unload-module", module});
        modules_.erase(name);
    }
    void make_default(const std::string &name) const { control({"set-default-sink", name}); }

private:
    [[nodiscard]] std::string path() const { return folder_.path() + "/native"; }
    [[nodiscard]] child::Environment environment() const {
        return {{"HOME", folder_.path()},
                {"XDG_RUNTIME_DIR", folder_.path()},
                {"XDG_CONFIG_HOME", folder_.path()},
                {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
                {"DISPLAY", std::nullopt},
                {"LC_ALL", "C.UTF-8"}};
    }

    const child::TemporaryFolder folder_;
    std::unique_ptr<child::Process> server_;
    std::map<std::string, std::string> modules_;  // by sink
};
