#include "control/commands.h"

#include <app_control.h>
#include <player.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "access/screen_reader.h"
#include "app/lifecycle.h"
#include "control/screen_state.h"
#include "control/sound_commands.h"
#include "i18n/locale.h"
#include "messaging/app_control_host.h"
#include "player/player_host.h"
#include "power/battery.h"
#include "shell/shell.h"
#include "widget/widget_host.h"

namespace host::control {
namespace {

constexpr int kMostPixels = 100'000;
constexpr int kMostMs = 600'000;
constexpr int kDetentMs = 50;
/// The bezel's detents have distinct time stamps from here on.
constexpr int kLeastDetentMs = 10;
constexpr int kMostDetents = 1'000;
constexpr int kLeastWidgetPixels = 64;
constexpr int kMostWidgetPixels = 8'192;

Pointer::Place parse_place(const Words &words, std::size_t first) {
    return {parse_number(words[first], "x", -kMostPixels, kMostPixels),
            parse_number(words[first + 1], "y", -kMostPixels, kMostPixels)};
}

struct AppControlDestroy {
    void operator()(app_control_h request) const { app_control_destroy(request); }
};
using OwnedRequest = std::unique_ptr<app_control_s, AppControlDestroy>;

struct Free {
    void operator()(char *text) const { std::free(text); }
};

void check(int result, const char *what) {
    if (result != 0) {
        throw RequestError(std::string(what) + " failed with " + std::to_string(result));
    }
}

void launch(Commands & /*commands*/, const Words &words, const Responder &responder) {
    app_control_h handle = nullptr;
    check(app_control_create(&handle), "making the request");
    const OwnedRequest request(handle);
    char *id = nullptr;
    check(app_get_id(&id), "finding the program's id");
    const std::unique_ptr<char, Free> own_id(id);
    check(app_control_set_app_id(handle, id), "addressing the request");
    check(app_control_set_operation(
              handle, words.size() > 2 ? words[2].c_str() : APP_CONTROL_OPERATION_VIEW),
          "setting the operation");
    if (is_uri(words[1])) {
        check(app_control_set_uri(handle, decode_local_uri(words[1]).c_str()), "setting the URI");
    } else {
        check(app_control_add_extra_data(handle, APP_CONTROL_DATA_PATH, words[1].c_str()),
              "setting the path");
    }
    check(app_control_send_launch_request(handle, nullptr, nullptr), "the launch");
    responder.done();
}

void tap(Commands &commands, const Words &words, const Responder &responder) {
    const auto place = parse_place(words, 1);
    commands.pointer.stroke(place, place, kTapMs, responder);
}

void press(Commands &commands, const Words &words, const Responder &responder) {
    const auto place = parse_place(words, 1);
    commands.pointer.stroke(place, place, parse_number(words[3], "the duration", 0, kMostMs),
                            responder);
}

void drag(Commands &commands, const Words &words, const Responder &responder) {
    commands.pointer.stroke(parse_place(words, 1), parse_place(words, 3),
                            parse_number(words[5], "the duration", 0, kMostMs), responder);
}

void bezel(Commands & /*commands*/, const Words &words, const Responder &responder) {
    const int detents =
        parse_number(words[1], "the number of detents", -kMostDetents, kMostDetents);
    const int interval = words.size() > 2
                             ? parse_number(words[2], "the interval", kLeastDetentMs, kMostMs)
                             : kDetentMs;
    turn_bezel(detents, interval);
    responder.done();
}

void key(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kKeys{{"back", static_cast<int>(Key::back)},
                                         {"more", static_cast<int>(Key::more)},
                                         {"home", static_cast<int>(Key::home)}};
    const auto pressed = static_cast<Key>(parse_name(words[1], "the key", kKeys));
    // Home ends the program; the reply goes out before.
    responder.done();
    press_key(pressed);
}

void rotate(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kTurns{{"0", 0}, {"90", 90}, {"180", 180}, {"270", 270}};
    turn_screen(parse_name(words[1], "the angle", kTurns));
    responder.done();
}

void state(Commands &commands, const Words & /*words*/, const Responder &responder) {
    responder.done({{"state", read_state(commands.rival)}});
}

void wait(Commands &commands, const Words &words, const Responder &responder) {
    commands.waits.add(Condition(words[1]), words[1],
                       parse_number(words[2], "the deadline", 0, kMostMs), responder);
}

void screenshot(Commands & /*commands*/, const Words &words, const Responder &responder) {
    if (!save_screenshot(words[1])) {
        throw RequestError("the screenshot could not be written to '" + words[1] + "'");
    }
    responder.done();
}

void error(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kErrors{
        {"out-of-memory", PLAYER_ERROR_OUT_OF_MEMORY},
        {"invalid-parameter", PLAYER_ERROR_INVALID_PARAMETER},
        {"no-such-file", PLAYER_ERROR_NO_SUCH_FILE},
        {"invalid-operation", PLAYER_ERROR_INVALID_OPERATION},
        {"no-space", PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE},
        {"permission-denied", PLAYER_ERROR_PERMISSION_DENIED},
        {"feature-not-supported", PLAYER_ERROR_FEATURE_NOT_SUPPORTED_ON_DEVICE},
        {"seek-failed", PLAYER_ERROR_SEEK_FAILED},
        {"invalid-state", PLAYER_ERROR_INVALID_STATE},
        {"not-supported-file", PLAYER_ERROR_NOT_SUPPORTED_FILE},
        {"invalid-uri", PLAYER_ERROR_INVALID_URI},
        {"sound-policy", PLAYER_ERROR_SOUND_POLICY},
        {"connection-failed", PLAYER_ERROR_CONNECTION_FAILED},
        {"resource-limit", PLAYER_ERROR_RESOURCE_LIMIT},
    };
    if (!inject_player_error(parse_name(words[1], "the error", kErrors))) {
        throw RequestError("there is no player");
    }
    responder.done();
}

void interrupt(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kCodes{
        {"completed", PLAYER_INTERRUPTED_COMPLETED},
        {"media", PLAYER_INTERRUPTED_BY_MEDIA},
        {"call", PLAYER_INTERRUPTED_BY_CALL},
        {"earjack-unplug", PLAYER_INTERRUPTED_BY_EARJACK_UNPLUG},
        {"resource-conflict", PLAYER_INTERRUPTED_BY_RESOURCE_CONFLICT},
        {"alarm", PLAYER_INTERRUPTED_BY_ALARM},
    };
    const auto code = parse_name(words[1], "the interruption", kCodes);
    if (!inject_player_interruption(static_cast<player_interrupted_code_e>(code))) {
        throw RequestError("there is no player");
    }
    responder.done();
}

void missed(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kKinds{{"video", PLAYER_MISSED_PLUGIN_VIDEO},
                                          {"audio", PLAYER_MISSED_PLUGIN_AUDIO}};
    const auto kind = parse_name(words[1], "the stream", kKinds);
    if (!inject_missed_plugin(static_cast<player_missed_plugin_type_e>(kind))) {
        throw RequestError("there is no player");
    }
    responder.done();
}

void network(Commands & /*commands*/, const Words &words, const Responder &responder) {
    NetworkLimits limits;
    limits.connect =
        std::chrono::milliseconds(parse_number(words[1], "the limit for connecting", 1, kMostMs));
    limits.stall =
        std::chrono::milliseconds(parse_number(words[2], "the limit for a stall", 1, kMostMs));
    set_network_limits(limits);
    responder.done();
}

void event(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kEvents{
        {"low-memory", APP_EVENT_LOW_MEMORY},
        {"low-battery", APP_EVENT_LOW_BATTERY},
        {"language", APP_EVENT_LANGUAGE_CHANGED},
        {"region", APP_EVENT_REGION_FORMAT_CHANGED},
    };
    const auto raised = static_cast<app_event_type_e>(parse_name(words[1], "the event", kEvents));
    responder.done();
    raise_app_event(raised);
}

void battery(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kLevels{
        {"none", static_cast<int>(BatteryLevel::none)},
        {"low", static_cast<int>(BatteryLevel::low)},
        {"critical", static_cast<int>(BatteryLevel::critical)},
        {"action", static_cast<int>(BatteryLevel::action)},
    };
    static const std::vector<Name> kDirections{{"discharging", 1}, {"charging", 0}};
    const auto level = static_cast<BatteryLevel>(parse_name(words[1], "the level", kLevels));
    const bool discharging =
        words.size() < 3 || parse_name(words[2], "the direction", kDirections) != 0;
    // A low battery ends the program; the reply goes out before.
    responder.done();
    report_battery({level, discharging});
}

bool is_language(const std::string &word) {
    constexpr std::size_t kLongest = 64;
    const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return !word.empty() && word.size() <= kLongest && is_letter(word.front()) &&
           std::all_of(word.begin(), word.end(), [&](char c) {
               return is_letter(c) || (c >= '0' && c <= '9') ||
                      std::string_view("_-.@").find(c) != std::string_view::npos;
           });
}

void language(Commands & /*commands*/, const Words &words, const Responder &responder) {
    if (!is_language(words[1])) {
        throw UsageError("'" + words[1] + "' is not the name of a language, such as pt_BR");
    }
    change_language(words[1]);
    responder.done();
}

void region(Commands & /*commands*/, const Words &words, const Responder &responder) {
    if (!is_language(words[1])) {
        throw UsageError("'" + words[1] + "' is not the name of a region, such as en_GB");
    }
    change_region(words[1]);
    responder.done();
}

void clock(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kClocks{{"12", static_cast<int>(Clock::twelve_hours)},
                                           {"24", static_cast<int>(Clock::twenty_four_hours)}};
    change_clock(static_cast<Clock>(parse_name(words[1], "the clock", kClocks)));
    responder.done();
}

void screen_reader(Commands & /*commands*/, const Words &words, const Responder &responder) {
    static const std::vector<Name> kSwitch{{"on", 1}, {"off", 0}};
    switch_screen_reader(parse_name(words[1], "the switch", kSwitch) != 0);
    responder.done();
}

bundle parse_content(const Words &words, std::size_t first) {
    bundle content;
    for (std::size_t i = first; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        if (equals == std::string::npos || equals == 0) {
            throw UsageError("what a widget is told has the form KEY=VALUE, not '" + words[i] +
                             "'");
        }
        bundle_add_str(&content, words[i].substr(0, equals).c_str(),
                       words[i].substr(equals + 1).c_str());
    }
    return content;
}

void expect_words(const Words &words, std::size_t count) {
    if (words.size() != count) {
        throw UsageError("widget " + words[1] + " takes " + std::to_string(count - 2) +
                         " words more");
    }
}

void expect_success(bool succeeded) {
    if (!succeeded) {
        throw RequestError("there is no such widget, or it failed");
    }
}

int parse_side(const std::string &word, const char *what) {
    return parse_number(word, what, kLeastWidgetPixels, kMostWidgetPixels);
}

void widget(Commands & /*commands*/, const Words &words, const Responder &responder) {
    enum Action { add, resize, update, force, pause, resume, remove };
    static const std::vector<Name> kActions{
        {"add", add},     {"resize", resize}, {"update", update}, {"force", force},
        {"pause", pause}, {"resume", resume}, {"remove", remove}};
    const auto action = static_cast<Action>(parse_name(words[1], "the action", kActions));
    switch (action) {
    case add:
        if (words.size() < 4) {
            throw UsageError("the form is: widget add WIDTH HEIGHT [KEY=VALUE]...");
        }
        expect_success(add_widget(parse_side(words[2], "the width"),
                                  parse_side(words[3], "the height"), parse_content(words, 4)));
        break;
    case resize:
        expect_words(words, 4);
        expect_success(
            resize_widget(parse_side(words[2], "the width"), parse_side(words[3], "the height")));
        break;
    case update:
    case force:
        expect_success(update_widget(parse_content(words, 2), action == force));
        break;
    case pause:
        expect_words(words, 2);
        leave_foreground();
        break;
    case resume:
        expect_words(words, 2);
        enter_foreground();
        break;
    case remove:
        expect_words(words, 2);
        expect_success(remove_widget());
        break;
    }
    responder.done();
}

void input(Commands &commands, const Words &words, const Responder &responder) {
    commands.recorder.wait(parse_number(words[1], "the deadline", 0, kMostMs), responder);
}

void quit(Commands & /*commands*/, const Words & /*words*/, const Responder &responder) {
    responder.done();
    request_exit();
}

struct Command {
    std::string_view name;
    std::string_view arguments;
    std::size_t least;  ///< words, the name among them
    std::size_t most;
    void (*run)(Commands &commands, const Words &words, const Responder &responder);
};

constexpr std::array kCommands{
    Command{"launch", "PATH|URI [OPERATION]", 2, 3, launch},
    Command{"tap", "X Y", 3, 3, tap},
    Command{"press", "X Y DURATION_MS", 4, 4, press},
    Command{"drag", "X1 Y1 X2 Y2 DURATION_MS", 6, 6, drag},
    Command{"bezel", "DETENTS [INTERVAL_MS]", 2, 3, bezel},
    Command{"key", "back|more|home", 2, 2, key},
    Command{"rotate", "0|90|180|270", 2, 2, rotate},
    Command{"state", "", 1, 1, state},
    Command{"wait", "CONDITION DEADLINE_MS", 3, 3, wait},
    Command{"screenshot", "FILE", 2, 2, screenshot},
    Command{"error", "CODE", 2, 2, error},
    Command{"interrupt", "CODE", 2, 2, interrupt},
    Command{"missed", "video|audio", 2, 2, missed},
    Command{"network", "CONNECT_MS STALL_MS", 3, 3, network},
    Command{"event", "low-battery|low-memory|language|region", 2, 2, event},
    Command{"battery", "none|low|critical|action [charging|discharging]", 2, 3, battery},
    Command{"language", "LANGUAGE", 2, 2, language},
    Command{"region", "REGION", 2, 2, region},
    Command{"clock", "12|24", 2, 2, clock},
    Command{"screen-reader", "on|off", 2, 2, screen_reader},
    Command{"focus", "take none|no-resume|fading|both, or give-back", 2, 3, move_focus},
    Command{"volume", "LEVEL", 2, 2, set_volume},
    Command{"device", "connect|disconnect earjack|bluetooth|hdmi|usb", 3, 3, plug_device},
    Command{"widget", "add|resize|update|force|pause|resume|remove [WORD]...", 2, 64, widget},
    Command{"input", "DEADLINE_MS", 2, 2, input},
    Command{"quit", "", 1, 1, quit},
};

void carry_out(Commands &commands, const Words &words, const Responder &responder) {
    for (const Command &command : kCommands) {
        if (words[0] == command.name) {
            if (words.size() < command.least || words.size() > command.most) {
                throw UsageError("the form is: " + std::string(command.name) +
                                 (command.arguments.empty() ? "" : " ") +
                                 std::string(command.arguments));
            }
            command.run(commands, words, responder);
            return;
        }
    }
    throw UsageError("there is no command '" + words[0] + "'");
}

}  // namespace

void Commands::run(const Words &words, const Responder &responder) {
    try {
        carry_out(*this, words, responder);
    } catch (const UsageError &error) {
        responder.failed(error.what(), {{"usage", true}});
    } catch (const RequestError &error) {
        responder.failed(error.what());
    }
}

}  // namespace host::control
