#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/unique_fd.h"

namespace child {

inline constexpr auto deadline = std::chrono::seconds(30);

/// A program that stands beside the test in the build tree.
inline std::string program(const std::string &name) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

/// A folder that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = testing::TempDir() + "tessel-XXXXXX";
        path_ = mkdtemp(name.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    [[nodiscard]] const std::string &path() const { return path_; }

private:
    std::string path_;
};

/// Null takes a variable away.
using Environment = std::map<std::string, std::optional<std::string>>;

/// A child with its output and its end. Every wait has a deadline, and a child that is left is
/// killed.
class Process {
public:
    Process(const std::vector<std::string> &arguments, const Environment &environment,
            const std::string &folder = "") {
        std::array<int, 2> out{};
        std::array<int, 2> err{};
        if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0) {
            std::abort();
        }
        pid_ = fork();
        if (pid_ == 0) {
            dup2(out[1], STDOUT_FILENO);
            dup2(err[1], STDERR_FILENO);
            run(arguments, environment, folder);
        }
        close(out[1]);
        close(err[1]);
        streams_ = {Stream{host::UniqueFd(out[0]), {}}, Stream{host::UniqueFd(err[0]), {}}};
    }
    ~Process() {
        if (!status_) {
            ::kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    [[nodiscard]] pid_t pid() const { return pid_; }
    void send(int signal) const { ::kill(pid_, signal); }

    /// Reads until standard output holds the text. @return false when it ended or took too long
    [[nodiscard]] bool prints(const std::string &text) { return prints_one_of({text}); }
    [[nodiscard]] bool prints_one_of(const std::vector<std::string> &texts) {
        return pump([this, &texts] {
            return std::any_of(texts.begin(), texts.end(), [this](const std::string &text) {
                return output().find(text) != std::string::npos;
            });
        });
    }
    /// Reads to the end of its output. @return exit status, negative signal, or -1000 on time-out
    int wait() {
        if (!pump([] { return false; }) && open_streams() > 0) {
            return -1000;
        }
        int status = 0;
        waitpid(pid_, &status, 0);
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        return *status_;
    }
    [[nodiscard]] const std::string &output() const { return streams_[0].text; }
    [[nodiscard]] const std::string &errors() const { return streams_[1].text; }

private:
    struct Stream {
        host::UniqueFd fd;
        std::string text;
    };

    [[noreturn]] static void run(const std::vector<std::string> &arguments,
                                 const Environment &environment, const std::string &folder) {
        for (const auto &[name, value] : environment) {
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
        }
        if (!folder.empty() && chdir(folder.c_str()) != 0) {
            _exit(126);
        }
        std::vector<char *> pointers;
        for (const std::string &argument : arguments) {
            pointers.push_back(const_cast<char *>(argument.c_str()));
        }
        pointers.push_back(nullptr);
        execvp(pointers[0], pointers.data());
        _exit(127);
    }

    [[nodiscard]] int open_streams() const {
        return (streams_[0].fd ? 1 : 0) + (streams_[1].fd ? 1 : 0);
    }

    template <typename Condition>
    bool pump(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + deadline;
        while (!condition()) {
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
                end - std::chrono::steady_clock::now());
            std::array<pollfd, 2> fds{
                {{streams_[0].fd.get(), POLLIN, 0}, {streams_[1].fd.get(), POLLIN, 0}}};
            if (open_streams() == 0 || left.count() <= 0) {
                return false;
            }
            // A child that stops or ends interrupts the wait.
            if (poll(fds.data(), fds.size(), static_cast<int>(left.count())) <= 0) {
                continue;
            }
            for (std::size_t i = 0; i < fds.size(); ++i) {
                if (fds[i].revents != 0) {
                    read_some(streams_[i]);
                }
            }
        }
        return true;
    }

    static void read_some(Stream &stream) {
        std::array<char, 4096> buffer{};
        const ssize_t got = read(stream.fd.get(), buffer.data(), buffer.size());
        if (got > 0) {
            stream.text.append(buffer.data(), static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            stream.fd.reset();
        }
    }

    pid_t pid_ = -1;
    std::array<Stream, 2> streams_;
    std::optional<int> status_;
};

/// A session bus of the test's own.
class Bus {
public:
    Bus()
        : daemon_({"dbus-daemon", "--session", "--nofork", "--print-address=1", "--address",
                   "unix:dir=" + folder_.path()},
                  {}) {
        EXPECT_TRUE(daemon_.prints("\n"));
        address_ = daemon_.output().substr(0, daemon_.output().find('\n'));
    }
    Bus(const Bus &) = delete;
    Bus &operator=(const Bus &) = delete;
    [[nodiscard]] const std::string &address() const { return address_; }
    /// As a bus that crashes; what has not been said is never said.
    void kill() {
        daemon_.send(SIGKILL);
        daemon_.wait();
    }

private:
    TemporaryFolder folder_;
    Process daemon_;
    std::string address_;
};

}  // namespace child
