// Drives a player that was started with --control: one command, one reply.

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "common/unique_fd.h"
#include "control/address.h"
#include "script_lines.h"

namespace {

using Json = nlohmann::json;
using host::UniqueFd;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongUse = 2;

/// How long a reply may take beyond the time that the command itself asks for.
constexpr long kPatienceMs = 60'000;

constexpr const char *kHelp =
    R"(Usage: tesselctl [--pid N | --socket PATH] COMMAND [ARGUMENT...]

Drives the player that runs with --control and prints its reply, one line of JSON.
With several such players, --pid or --socket names the one that is meant.

Commands:
  launch PATH|URI [OPERATION]     ask it to play something else
  tap X Y                         touch the screen; places are in its pixels
  press X Y DURATION_MS           touch it for so long
  drag X1 Y1 X2 Y2 DURATION_MS    move the finger over it
  bezel DETENTS [INTERVAL_MS]     turn the bezel; below 0 is counter-clockwise
  key back|more|home              press a key
  rotate 0|90|180|270             turn the watch
  state                           what is on the screen, and what plays
  wait CONDITION DEADLINE_MS      until the state is so: 'player==playing && position>=5000'
  screenshot FILE                 write what is shown as a PNG file
  error CODE                      make the player report an error, such as no-such-file
  interrupt CODE                  interrupt it: completed, media, call, earjack-unplug,
                                  resource-conflict, alarm
  missed video|audio              make it report a missing decoder
  network CONNECT_MS STALL_MS     how long a server may be silent: 10000 and 20000 otherwise
  event low-battery|low-memory|language|region
                                  raise a system event
  battery none|low|critical|action [charging|discharging]
                                  say how the battery is; discharging when not said
  language LANGUAGE               set the language of the system, such as pt_BR
  region REGION                   set the region that numbers and dates are written for, such as
                                  ar_EG
  clock 12|24                     set the hours of the clock
  screen-reader on|off            say that a screen reader is on, or off
  focus take none|no-resume|fading|both
                                  take the audio focus from it, stating that behaviour
  focus give-back                 give it back
  volume LEVEL                    set the media volume, 0 to 15
  device connect|disconnect earjack|bluetooth|hdmi|usb
                                  plug a device of the built-in mixer in, or pull it out
  widget add W H [KEY=VALUE]...   in an application of widgets: show one more widget
  widget resize W H               give the shown widget another size, in pixels
  widget update|force [KEY=VALUE]...
                                  tell it something; force: to be shown at once
  widget pause|resume             hide the home screen, or show it again
  widget remove                   remove the shown widget
  quit                            end the player
  play-script FILE                carry out such commands, one a line, and 'sleep MS' between
                                  them, until one fails; '-' is the standard input
  record FILE                     write what is done to the player as such a list, until it ends
  input DEADLINE_MS               what was done since the last such command, once there is something

Options:
  --pid N        the player with this process id
  --socket PATH  the player behind this socket
  --help         print this
  --version      print the version

Exit status: 0 when the command was carried out, 1 when it failed or a wait came to its deadline,
2 for wrong use.
)";

/// Ends the program with one line on standard error.
struct Failure : std::runtime_error {
    Failure(int exit_status, const std::string &why)
        : std::runtime_error(why), status(exit_status) {}
    int status;
};

std::optional<long> parse_number(std::string_view text) {
    long number = 0;
    const auto [stop, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (code != std::errc() || stop != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

struct Arguments {
    std::optional<pid_t> pid;
    std::optional<std::string> socket;
    std::vector<std::string> command;
};

Arguments parse_arguments(const std::vector<std::string> &words) {
    Arguments arguments;
    std::size_t next = 0;
    while (next < words.size() && words[next].starts_with('-')) {
        const std::string &option = words[next];
        if (option != "--pid" && option != "--socket") {
            throw Failure(kWrongUse, "unknown option '" + option + "'; see tesselctl --help");
        }
        if (next + 1 == words.size()) {
            throw Failure(kWrongUse, option + " needs a value; see tesselctl --help");
        }
        const std::string &value = words[next + 1];
        if (option == "--pid") {
            const auto pid = parse_number(value);
            if (!pid || *pid <= 0 || static_cast<pid_t>(*pid) != *pid) {
                throw Failure(kWrongUse, "'" + value + "' is not a process id");
            }
            arguments.pid = static_cast<pid_t>(*pid);
        } else {
            arguments.socket = value;
        }
        next += 2;
    }
    if (arguments.pid && arguments.socket) {
        throw Failure(kWrongUse, "--pid and --socket exclude each other");
    }
    arguments.command.assign(words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
    if (arguments.command.empty()) {
        throw Failure(kWrongUse, "no command; see tesselctl --help");
    }
    return arguments;
}

/// None, with errno set, when nobody listens at `path`.
UniqueFd connect_to(const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return {};
    }
    path.copy(address.sun_path, path.size());
    UniqueFd fd(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!fd || connect(fd.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address)) {
        return {};
    }
    return fd;
}

UniqueFd connect_to_named(const std::string &path) {
    UniqueFd fd = connect_to(path);
    if (!fd) {
        throw Failure(kFailed,
                      "no player listens at " + path + ": " + std::string(std::strerror(errno)));
    }
    return fd;
}

UniqueFd connect_to_only_one() {
    UniqueFd only;
    std::string pids;
    int count = 0;
    for (const pid_t pid : host::control_sockets()) {
        if (UniqueFd fd = connect_to(host::control_socket(pid))) {
            only = std::move(fd);
            pids += (count++ == 0 ? "" : ", ") + std::to_string(pid);
        }
    }
    if (count == 0) {
        throw Failure(kFailed, "no player runs with --control");
    }
    if (count > 1) {
        throw Failure(kWrongUse, "several players run; choose one with --pid: " + pids);
    }
    return only;
}

UniqueFd connect_to_player(const Arguments &arguments) {
    if (arguments.socket) {
        return connect_to_named(*arguments.socket);
    }
    if (arguments.pid) {
        return connect_to_named(host::control_socket(*arguments.pid));
    }
    return connect_to_only_one();
}

/// Names of files are meant from here, not from where the player runs.
void make_paths_absolute(std::vector<std::string> &command) {
    if (command.size() < 2) {
        return;
    }
    const bool is_path = command[0] == "screenshot" ||
                         (command[0] == "launch" && command[1].find("://") == std::string::npos);
    if (is_path && !command[1].empty()) {
        command[1] = std::filesystem::absolute(command[1]).string();
    }
}

/// Milliseconds that the command takes by its own arguments.
long time_asked_for(const std::vector<std::string> &command) {
    const std::size_t place = command[0] == "wait"    ? 2
                              : command[0] == "press" ? 3
                              : command[0] == "drag"  ? 5
                                                      : command.size();
    return place < command.size() ? std::max(parse_number(command[place]).value_or(0), 0L) : 0;
}

void send_all(const UniqueFd &fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(fd.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw Failure(kFailed, "the player has gone");
        }
    }
}

std::string receive_line(const UniqueFd &fd, long timeout_ms) {
    const timeval timeout{timeout_ms / 1000, timeout_ms % 1000 * 1000};
    setsockopt(fd.get(), SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    std::string line;
    char bytes[4096];
    for (;;) {
        const ssize_t count = recv(fd.get(), bytes, sizeof bytes, 0);
        if (count > 0) {
            line.append(bytes, static_cast<std::size_t>(count));
            if (line.ends_with('\n')) {
                line.pop_back();
                return line;
            }
        } else if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            throw Failure(kFailed, "the player does not answer");
        } else if (count == 0 || errno != EINTR) {
            throw Failure(kFailed, "the player has gone");
        }
    }
}

std::string encode(const std::vector<std::string> &command) {
    try {
        return Json(command).dump() + '\n';
    } catch (const Json::type_error &) {
        throw Failure(kWrongUse, "the command is not UTF-8");
    }
}

/// @throws Failure for the reply to a command that wasn't carried out
Json check_reply(const std::string &line) {
    Json reply = Json::parse(line, nullptr, false);
    if (!reply.is_object()) {
        throw Failure(kFailed, "the player gave no valid reply");
    }
    if (!reply.value("ok", false)) {
        throw Failure(reply.value("usage", false) ? kWrongUse : kFailed,
                      reply.value("error", "the command failed"));
    }
    return reply;
}

/// Sends a command and prints its reply.
/// @throws Failure when it wasn't carried out
void carry_out(const UniqueFd &fd, std::vector<std::string> command) {
    make_paths_absolute(command);
    send_all(fd, encode(command));
    const std::string line = receive_line(fd, kPatienceMs + time_asked_for(command));
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
    static_cast<void>(check_reply(line));
}

void sleep_as_told(const std::vector<std::string> &words) {
    constexpr long kLongestMs = 3'600'000;
    const auto ms = words.size() == 2 ? parse_number(words[1]) : std::nullopt;
    if (!ms || *ms < 0 || *ms > kLongestMs) {
        throw Failure(kWrongUse, "the form is: sleep MS, an hour at most");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(*ms));
}

std::vector<tesselctl::ScriptLine> read_script_file(const std::string &name) {
    try {
        if (name == "-") {
            return tesselctl::read_script(std::cin);
        }
        std::ifstream file(name, std::ios::binary);
        if (!file || std::filesystem::is_directory(name)) {
            throw Failure(kWrongUse, "the script " + name + " can't be read");
        }
        return tesselctl::read_script(file);
    } catch (const tesselctl::ScriptError &error) {
        throw Failure(kWrongUse, name + ':' + error.what());
    }
}

/// The whole script is read before its first command is sent.
void play_script(const Arguments &arguments) {
    if (arguments.command.size() != 2) {
        throw Failure(kWrongUse, "the form is: play-script FILE");
    }
    const std::string &name = arguments.command[1];
    const auto lines = read_script_file(name);
    const UniqueFd fd = connect_to_player(arguments);
    for (const auto &[number, words] : lines) {
        try {
            if (words[0] == "sleep") {
                sleep_as_told(words);
            } else {
                carry_out(fd, words);
            }
        } catch (const Failure &failure) {
            throw Failure(failure.status,
                          name + ':' + std::to_string(number) + ": " + failure.what());
        }
    }
}

/// Writes what was done since the last time, with the pauses between.
void write_input(std::ostream &script, const Json &input, std::optional<long> &before) {
    for (const Json &done : input) {
        const long at = done.at("at").get<long>();
        if (before && at > *before) {
            script << tesselctl::to_script_line({"sleep", std::to_string(at - *before)}) << '\n';
        }
        // The command takes its own time when it is played.
        before = at + done.at("takes").get<long>();
        script << tesselctl::to_script_line(done.at("command").get<std::vector<std::string>>())
               << '\n';
    }
    script.flush();
}

/// Until the player ends, or the tool is told to.
void record(const Arguments &arguments) {
    if (arguments.command.size() != 2) {
        throw Failure(kWrongUse, "the form is: record FILE");
    }
    const UniqueFd fd = connect_to_player(arguments);
    std::ofstream script(arguments.command[1]);
    std::optional<long> before;
    const std::vector<std::string> request{"input", "1000"};
    for (;;) {
        if (!script) {
            throw Failure(kFailed, "the script " + arguments.command[1] + " can't be written");
        }
        std::string line;
        try {
            send_all(fd, encode(request));
            line = receive_line(fd, kPatienceMs);
        } catch (const Failure &) {
            return;
        }
        write_input(script, check_reply(line).value("input", Json::array()), before);
    }
}

void run(const std::vector<std::string> &words) {
    const Arguments arguments = parse_arguments(words);
    if (arguments.command[0] == "play-script") {
        play_script(arguments);
    } else if (arguments.command[0] == "record") {
        record(arguments);
    } else {
        carry_out(connect_to_player(arguments), arguments.command);
    }
}

}  // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words.front() == "--help") {
        std::fputs(kHelp, stdout);
        return kDone;
    }
    if (!words.empty() && words.front() == "--version") {
        std::puts("tesselctl " TESSEL_VERSION);
        return kDone;
    }
    try {
        run(words);
        return kDone;
    } catch (const Failure &failure) {
        std::fprintf(stderr, "tesselctl: %s\n", failure.what());
        return failure.status;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "tesselctl: %s\n", error.what());
        return kFailed;
    }
}
