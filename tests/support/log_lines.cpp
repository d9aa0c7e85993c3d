#include "log_lines.h"

#include <dlog.h>

#include <algorithm>
#include <charconv>
#include <mutex>
#include <utility>

namespace {

struct Store {
    std::mutex mutex;
    std::vector<logs::Line> lines;
};

Store &store() {
    static Store instance;
    return instance;
}

std::string_view colour_of(int level) {
    switch (level) {
    case DLOG_INFO:
        return "\033[0;32m";
    case DLOG_WARN:
        return "\033[0;35m";
    case DLOG_ERROR:
        return "\033[0;31m";
    default:
        return {};
    }
}

// "FILE: FUNCTION(LINE) > COLOUR MESSAGE RESET", without the blanks around the message.
void take_apart(logs::Line &line) {
    const std::string_view raw = line.raw;
    const auto file_end = raw.find(": ");
    const auto arrow = raw.find(") > ");
    if (file_end == std::string_view::npos || arrow == std::string_view::npos) {
        return;
    }
    const auto bracket = raw.rfind('(', arrow);
    if (bracket == std::string_view::npos || bracket < file_end + 2) {
        return;
    }
    line.file = raw.substr(0, file_end);
    line.function = raw.substr(file_end + 2, bracket - file_end - 2);
    const auto *digits_end = raw.data() + arrow;
    const auto [end, error] = std::from_chars(raw.data() + bracket + 1, digits_end, line.number);
    if (error != std::errc() || end != digits_end) {
        return;
    }
    const std::string_view reset = "\033[0;m";
    const std::string_view colour = colour_of(line.level);
    std::string_view rest = raw.substr(arrow + 4);
    if (colour.empty() || !rest.starts_with(colour) || !rest.ends_with(reset)) {
        return;
    }
    rest.remove_prefix(colour.size());
    rest.remove_suffix(reset.size());
    line.message = rest;
    line.well_formed = line.file.find('/') == std::string::npos &&
                       (line.level != DLOG_ERROR || line.message.starts_with("* Critical * "));
}

std::string dump() {
    std::string text = "log:\n";
    for (const auto &line : logs::all()) {
        text += "  [" + std::to_string(line.level) + "] " + line.tag + " " + line.file + ": " +
                line.function + "(" + std::to_string(line.number) + ") > ";
        text += line.well_formed ? line.message : "MALFORMED " + line.raw;
        text += '\n';
    }
    return text;
}

bool matches(const logs::Line &line, int level, std::string_view message, std::string_view tag) {
    return line.well_formed && line.level == level && line.tag == tag && line.message == message;
}

testing::AssertionResult logged(int level, std::string_view message, std::string_view tag) {
    if (logs::count(level, message, tag) > 0) {
        return testing::AssertionSuccess() << "logged: " << message;
    }
    return testing::AssertionFailure() << "not logged at level " << level << ": " << message << "\n"
                                       << dump();
}

}  // namespace

namespace logs {

void record(int log_id, int level, std::string_view tag, std::string raw) {
    Line line;
    line.level = level;
    line.tag = tag;
    line.raw = std::move(raw);
    line.thread = std::this_thread::get_id();
    take_apart(line);
    line.well_formed = line.well_formed && log_id == LOG_ID_MAIN;
    const std::lock_guard lock(store().mutex);
    store().lines.push_back(std::move(line));
}

std::vector<Line> all() {
    const std::lock_guard lock(store().mutex);
    return store().lines;
}

void clear() {
    const std::lock_guard lock(store().mutex);
    store().lines.clear();
}

int count(int level, std::string_view message, std::string_view tag) {
    const auto lines = all();
    return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const Line &line) {
        return matches(line, level, message, tag);
    }));
}

Expected info(std::string message) {
    return {DLOG_INFO, std::move(message)};
}
Expected warn(std::string message) {
    return {DLOG_WARN, std::move(message)};
}
Expected error(std::string message) {
    return {DLOG_ERROR, std::move(message)};
}

}  // namespace logs

testing::AssertionResult LoggedInfo(std::string_view message, std::string_view tag) {
    return logged(DLOG_INFO, message, tag);
}

testing::AssertionResult LoggedWarn(std::string_view message, std::string_view tag) {
    return logged(DLOG_WARN, message, tag);
}

testing::AssertionResult LoggedError(std::string_view message, std::string_view tag) {
    return logged(DLOG_ERROR, message, tag);
}

testing::AssertionResult LoggedTimes(int times, int level, std::string_view message,
                                     std::string_view tag) {
    const int found = logs::count(level, message, tag);
    if (found == times) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "logged " << found << " times instead of " << times
                                       << " at level " << level << ": " << message << "\n"
                                       << dump();
}

testing::AssertionResult LoggedIn(std::string_view function, int level, std::string_view message,
                                  std::string_view tag) {
    for (const auto &line : logs::all()) {
        if (matches(line, level, message, tag) && line.function == function) {
            return testing::AssertionSuccess();
        }
    }
    return testing::AssertionFailure()
           << "not logged in " << function << " at level " << level << ": " << message << "\n"
           << dump();
}

testing::AssertionResult LoggedInOrder(const std::vector<logs::Expected> &lines,
                                       std::string_view tag) {
    auto next = lines.begin();
    for (const auto &line : logs::all()) {
        if (next == lines.end()) {
            break;
        }
        if (matches(line, next->level, next->message, tag)) {
            ++next;
        }
    }
    if (next == lines.end()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "not logged in this order, missing from level "
                                       << next->level << ": " << next->message << "\n"
                                       << dump();
}

testing::AssertionResult NotLogged(std::string_view part) {
    for (const auto &line : logs::all()) {
        if (line.raw.find(part) != std::string::npos) {
            return testing::AssertionFailure() << "logged: " << part << "\n" << dump();
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult NoFaultLogged(std::string_view tag) {
    return OnlyFaultsLogged({}, tag);
}

testing::AssertionResult OnlyFaultsLogged(const std::vector<logs::Expected> &lines,
                                          std::string_view tag) {
    auto next = lines.begin();
    for (const auto &line : logs::all()) {
        if (line.tag != tag || (line.well_formed && line.level < DLOG_WARN)) {
            continue;
        }
        if (next == lines.end() || !matches(line, next->level, next->message, tag)) {
            return testing::AssertionFailure() << "unexpected line: " << line.raw << "\n" << dump();
        }
        ++next;
    }
    if (next != lines.end()) {
        return testing::AssertionFailure()
               << "not logged at level " << next->level << ": " << next->message << "\n"
               << dump();
    }
    return testing::AssertionSuccess();
}
