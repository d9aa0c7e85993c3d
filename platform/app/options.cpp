#include "app/options.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <string_view>

#include "app/command_line.h"
#include "log/log.h"
#include "messaging/app_control_host.h"
#include "shell/keys.h"

namespace host {
namespace {

constexpr int kWrongUse = 2;
constexpr std::string_view kHelp = "--help";
constexpr std::string_view kVersion = "--version";
constexpr int kSmallestScreen = 64;
constexpr int kLargestScreen = 8192;
constexpr double kSmallestScale = 0.5;
constexpr double kLargestScale = 4.0;

constexpr std::string_view kPlayer = "tessel";
constexpr const char *kPlayerPurpose = "Plays one video in a round screen with a bezel, and ends.";
constexpr const char *kApplicationPurpose = "Runs an application of the watch on this machine.";

constexpr const char *kUsage =
    "  --operation NAME           operation of the launch request (default: view)\n"
    "  --mime TYPE                MIME type of the launch request\n"
    "  --extra KEY=VALUE          extra data of the launch request; may be repeated\n"
    "  --screen WxH               size of the round screen in pixels (default: 360x360)\n"
    "  --scale FACTOR             enlarge the screen and all on it, 0.5 to 4 (default: 1)\n"
    "  --frame none|watch         show the round screen alone, or with a watch around it\n"
    "                             (default: watch, but none with --fullscreen)\n"
    "  --fullscreen               fill the display\n"
    "  --headless                 render without a display\n"
    "  --control                  let tesselctl drive this process\n"
    "  --new-instance             don't hand the request to a running player\n"
    "  --service                  wait for the desktop to hand over a video\n"
    "  --profile watch            behave as on the wrist, not as on a desktop\n"
    "  --log LEVEL                log to standard error: verbose, debug, info, warn, error,\n"
    "                             fatal or off, for single tags as TAG:LEVEL,TAG:LEVEL\n"
    "  --screenshot FILE@SECONDS  write a PNG so many seconds after the first frame\n"
    "  --help                     show this text\n"
    "  --version                  show the version\n";

constexpr const char *kUsageEnd =
    "Environment: TESSEL_LOG as --log.\n"
    "Exit status: 0 after playing, 1 when nothing could be played, 2 for wrong use.\n";

struct WrongUse : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Control characters would make more of the message than one line.
std::string quoted(std::string_view text) {
    std::string shown = "'" + std::string(text) + "'";
    std::replace_if(
        shown.begin(), shown.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; }, '?');
    return shown;
}

template <typename Number>
bool read_number(std::string_view text, Number &number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::string_view without_folder(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string usage(const std::string &program) {
    return "Usage: " + program + " [OPTION]... [PATH or URI]\n" +
           (program == kPlayer ? kPlayerPurpose : kApplicationPurpose) + "\n\n" + kUsage +
           "\nKeys:\n" + describe_keys() + '\n' + kUsageEnd;
}

void read_screen(Options &options, const std::string &value) {
    const std::size_t by = value.find('x');
    const std::string_view text = value;
    Options::Size &size = options.screen;
    if (by == std::string::npos || !read_number(text.substr(0, by), size.width) ||
        !read_number(text.substr(by + 1), size.height)) {
        throw WrongUse("--screen needs WIDTHxHEIGHT, as in 360x360, not " + quoted(value));
    }
    for (const int side : {size.width, size.height}) {
        if (side < kSmallestScreen || side > kLargestScreen) {
            throw WrongUse("--screen needs sides of " + std::to_string(kSmallestScreen) + " to " +
                           std::to_string(kLargestScreen) + " pixels, not " + quoted(value));
        }
    }
}

void read_scale(Options &options, const std::string &value) {
    double scale = 0.0;
    if (!read_number(std::string_view(value), scale) ||
        !(scale >= kSmallestScale && scale <= kLargestScale)) {
        throw WrongUse("--scale needs a factor of 0.5 to 4, as in 1.5, not " + quoted(value));
    }
    options.scale = scale;
}

void read_frame(Options &options, const std::string &value) {
    if (value != "none" && value != "watch") {
        throw WrongUse("--frame knows none and watch only, not " + quoted(value));
    }
    options.frame = value == "watch";
}

void read_extra(Options &options, const std::string &value) {
    const std::size_t equals = value.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw WrongUse("--extra needs KEY=VALUE, not " + quoted(value));
    }
    const std::string key = value.substr(0, equals);
    if (is_reserved_extra_key(key)) {
        throw WrongUse("--extra can't set the reserved key " + quoted(key));
    }
    options.extras.emplace_back(key, value.substr(equals + 1));
}

void read_profile(Options &options, const std::string &value) {
    if (value != "watch") {
        throw WrongUse("--profile knows watch only, not " + quoted(value));
    }
    options.watch_profile = true;
}

void read_log(Options &options, const std::string &value) {
    if (!is_log_spec(value)) {
        throw WrongUse("--log needs a level (verbose, debug, info, warn, error, fatal, off), not " +
                       quoted(value));
    }
    options.log = value;
}

void read_screenshot(Options &options, const std::string &value) {
    const std::size_t at = value.rfind('@');
    Options::Screenshot screenshot;
    if (at == std::string::npos || at == 0 ||
        !read_number(std::string_view(value).substr(at + 1), screenshot.seconds) ||
        !std::isfinite(screenshot.seconds) || screenshot.seconds < 0.0) {
        throw WrongUse("--screenshot needs FILE@SECONDS, as in shot.png@2.5, not " + quoted(value));
    }
    screenshot.file = value.substr(0, at);
    options.screenshot = screenshot;
}

struct Flag {
    std::string_view name;
    bool Options::*field;
};
constexpr std::array<Flag, 5> kFlags{{{"--fullscreen", &Options::fullscreen},
                                      {"--headless", &Options::headless},
                                      {"--control", &Options::control},
                                      {"--new-instance", &Options::new_instance},
                                      {"--service", &Options::service}}};

struct Valued {
    std::string_view name;
    void (*read)(Options &, const std::string &);
};
constexpr std::array<Valued, 9> kValued{
    {{"--operation", [](Options &options, const std::string &value) { options.operation = value; }},
     {"--mime", [](Options &options, const std::string &value) { options.mime = value; }},
     {"--extra", read_extra},
     {"--screen", read_screen},
     {"--scale", read_scale},
     {"--frame", read_frame},
     {"--profile", read_profile},
     {"--log", read_log},
     {"--screenshot", read_screenshot}}};

template <typename Table>
const typename Table::value_type *find_option(const Table &table, std::string_view name) {
    for (const auto &option : table) {
        if (option.name == name) {
            return &option;
        }
    }
    return nullptr;
}

class Parser {
public:
    Parser(int argc, const char *const *argv)
        : program_(argc > 0 ? without_folder(argv[0]) : kPlayer),
          arguments_(argv + (argc > 0 ? 1 : 0), argv + argc) {}

    std::variant<Options, CommandLineEnd> parse() {
        bool options_ended = false;
        while (next_ < arguments_.size()) {
            const std::string argument = arguments_[next_++];
            const bool is_option = !options_ended && argument.size() > 1 && argument.front() == '-';
            if (!is_option) {
                take_target(argument);
            } else if (argument == "--") {
                options_ended = true;
            } else if (argument == kHelp) {
                return CommandLineEnd{0, usage(program_)};
            } else if (argument == kVersion) {
                return CommandLineEnd{0, "tessel " TESSEL_VERSION "\n"};
            } else {
                take_option(argument);
            }
        }
        if (options_.service && (options_.target || options_.new_instance)) {
            throw WrongUse("--service takes its video, and its place, from the session bus");
        }
        check_screen();
        return options_;
    }

private:
    void check_screen() const {
        const Options::Size shown = options_.shown_screen();
        for (const int side : {shown.width, shown.height}) {
            if (side < kSmallestScreen || side > kLargestScreen) {
                throw WrongUse("--scale makes a screen of " + std::to_string(shown.width) + "x" +
                               std::to_string(shown.height) + ": its sides need " +
                               std::to_string(kSmallestScreen) + " to " +
                               std::to_string(kLargestScreen) + " pixels");
            }
        }
    }

    void take_target(const std::string &argument) {
        if (argument.empty()) {
            throw WrongUse("the path or URI is empty");
        }
        if (options_.target) {
            throw WrongUse("only one path or URI can be played; " + quoted(argument) +
                           " is one too many");
        }
        options_.target = argument;
    }

    void take_option(const std::string &argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        const Flag *flag = find_option(kFlags, name);
        if (equals != std::string::npos && (flag != nullptr || name == kHelp || name == kVersion)) {
            throw WrongUse(name + " takes no value");
        }
        if (flag != nullptr) {
            options_.*flag->field = true;
            return;
        }
        const Valued *valued = find_option(kValued, name);
        if (valued == nullptr) {
            throw WrongUse("unknown option " + quoted(name));
        }
        valued->read(options_,
                     equals != std::string::npos ? argument.substr(equals + 1) : take_value(name));
    }

    std::string take_value(const std::string &name) {
        if (next_ >= arguments_.size()) {
            throw WrongUse(name + " needs a value");
        }
        return arguments_[next_++];
    }

    std::string program_;
    std::vector<std::string> arguments_;
    std::size_t next_ = 0;
    Options options_;
};

Options &process_options() {
    static Options instance;
    return instance;
}

}  // namespace

std::variant<Options, CommandLineEnd> parse_command_line(int argc, const char *const *argv) {
    try {
        return Parser(argc, argv).parse();
    } catch (const WrongUse &wrong) {
        return CommandLineEnd{kWrongUse,
                              std::string("tessel: ") + wrong.what() + " (see tessel --help)\n"};
    }
}

Options::Size Options::shown_screen() const {
    const auto scaled = [this](int side) { return static_cast<int>(std::lround(side * scale)); };
    return {scaled(screen.width), scaled(screen.height)};
}

const Options &options() {
    return process_options();
}

void set_options(Options options) {
    process_options() = std::move(options);
}

}  // namespace host
