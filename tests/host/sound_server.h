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

/// A sound server of the test's own, named to this process and its children by the environment,
/// with one plain sink, "speaker", at full volume. Both servers that speak PulseAudio's protocol.
class SoundServer {
public:
    enum class Kind { pulseaudio, pipewire };

    enum class Begin { at_once, later };

    /// @param begin  later: the server is named to everybody, and start() is the test's
    explicit SoundServer(Kind kind, Begin begin = Begin::at_once) : kind_(kind) {
        setenv("PULSE_SERVER", ("unix:" + path()).c_str(), 1);
        if (begin == Begin::at_once) {
            start();
        }
    }
    ~SoundServer() {
        stop();
        unsetenv("PULSE_SERVER");
    }
    SoundServer(const SoundServer &) = delete;
    SoundServer &operator=(const SoundServer &) = delete;

    void start() {
        modules_.clear();
        if (kind_ == Kind::pulseaudio) {
            run({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                 "--log-level=error", "-L",
                 "module-native-protocol-unix socket=" + path() + " auth-anonymous=1", "-L",
                 "module-null-sink sink_name=speaker"});
            wait_for_answer([] { return host::sound_server_answers(); });
            return;
        }
        // Its session manager doesn't live without a bus.
        run({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + bus()});
        wait_for_answer([this] { return exists(folder_.path() + "/bus"); });
        run({"pipewire"});
        wait_for_answer([this] { return exists(folder_.path() + "/pipewire-0"); });
        run({"wireplumber"});
        run({"pipewire-pulse"});
        wait_for_answer([] { return host::sound_server_answers(); });
        // Its first sink is one that stands for none, until there is another.
        add_sink("speaker", "device.description=Speaker");
        wait_for_answer([this] {
            return control({"get-default-sink"}) == "speaker\n" &&
                   control({"list", "short", "sinks"}).find("auto_null") == std::string::npos;
        });
    }
    /// Ends it as a crash does.
    void stop() {
        while (!processes_.empty()) {
            processes_.pop_back();
        }
        for (const std::string &socket :
             {path(), folder_.path() + "/pipewire-0", folder_.path() + "/bus"}) {
            std::filesystem::remove(socket);
        }
    }
    /// Stops it from answering, and lets it go on.
    void freeze() const { processes_.back()->send(SIGSTOP); }
    void thaw() const { processes_.back()->send(SIGCONT); }

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
    static bool exists(const std::string &file) { return std::filesystem::exists(file); }

    void run(const std::vector<std::string> &command) {
        processes_.push_back(std::make_unique<child::Process>(command, environment()));
    }
    template <typename Condition>
    static void wait_for_answer(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + child::deadline;
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "the sound server did not start";
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    [[nodiscard]] std::string bus() const { return "unix:path=" + folder_.path() + "/bus"; }
    [[nodiscard]] std::string path() const { return folder_.path() + "/pulse/native"; }
    [[nodiscard]] child::Environment environment() const {
        return {{"HOME", folder_.path()},
                {"XDG_RUNTIME_DIR", folder_.path()},
                {"XDG_CONFIG_HOME", folder_.path() + "/config"},
                {"XDG_STATE_HOME", folder_.path() + "/state"},
                {"DBUS_SESSION_BUS_ADDRESS", kind_ == Kind::pipewire ? bus() : "disabled:"},
                {"DISPLAY", std::nullopt},
                {"LC_ALL", "C.UTF-8"}};
    }

    const Kind kind_;
    const child::TemporaryFolder folder_;
    std::vector<std::unique_ptr<child::Process>> processes_;  // the one that answers is the last
    std::map<std::string, std::string> modules_;              // by sink
};
