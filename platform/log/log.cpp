#include "log/log.h"

#include <dlog.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace host {
namespace {

constexpr const char *kEnvironment = "TESSEL_LOG";
// A write of at most this size to a pipe is never mixed with another.
constexpr std::size_t kLineMax = PIPE_BUF;

struct Level {
    std::string_view name;
    int priority;
};
constexpr std::array<Level, 9> kLevels{{{"verbose", DLOG_VERBOSE},
                                        {"debug", DLOG_DEBUG},
                                        {"info", DLOG_INFO},
                                        {"warn", DLOG_WARN},
                                        {"warning", DLOG_WARN},
                                        {"error", DLOG_ERROR},
                                        {"fatal", DLOG_FATAL},
                                        {"silent", DLOG_SILENT},
                                        {"off", DLOG_SILENT}}};

struct Filter {
    int lowest = DLOG_SILENT;
    std::map<std::string, int, std::less<>> tags;

    [[nodiscard]] bool lets_through(int priority, std::string_view tag) const {
        const auto own = tags.find(tag);
        return priority >= (own != tags.end() ? own->second : lowest);
    }
};

std::optional<int> priority_of(std::string_view name) {
    const auto same = [name](const Level &level) {
        return std::equal(name.begin(), name.end(), level.name.begin(), level.name.end(),
                          [](unsigned char a, char b) { return std::tolower(a) == b; });
    };
    const auto *level = std::find_if(kLevels.begin(), kLevels.end(), same);
    return level != kLevels.end() ? std::optional(level->priority) : std::nullopt;
}

std::optional<Filter> parse_filter(std::string_view spec) {
    Filter filter;
    while (true) {
        const std::size_t comma = spec.find(',');
        const std::string_view entry = spec.substr(0, comma);
        const std::size_t colon = entry.rfind(':');
        const bool named = colon != std::string_view::npos;
        const auto priority = priority_of(named ? entry.substr(colon + 1) : entry);
        if (!priority || colon == 0) {
            return std::nullopt;
        }
        if (named) {
            filter.tags[std::string(entry.substr(0, colon))] = *priority;
        } else {
            filter.lowest = *priority;
        }
        if (comma == std::string_view::npos) {
            return filter;
        }
        spec.remove_prefix(comma + 1);
    }
}

// A service manager tells by device and inode that standard error is its journal.
bool stderr_is_journal() {
    const char *stream = std::getenv("JOURNAL_STREAM");
    struct stat status {};
    if (stream == nullptr || fstat(STDERR_FILENO, &status) != 0) {
        return false;
    }
    unsigned long long device = 0;
    unsigned long long inode = 0;
    return std::sscanf(stream, "%llu:%llu", &device, &inode) == 2 && device == status.st_dev &&
           inode == status.st_ino;
}

// What a line is judged and written by. Never changed once it is published, so that writers need
// no lock; the ones before it are kept, since a writer may still be reading them.
struct Setup {
    Filter filter;
    bool colours = false;
    bool journal = false;
};

class Log {
public:
    Log() {
        if (const char *spec = std::getenv(kEnvironment); spec != nullptr) {
            if (auto filter = parse_filter(spec)) {
                publish(std::move(*filter));
            }
        }
    }

    [[nodiscard]] const Setup *setup() const { return setup_.load(std::memory_order_acquire); }

    void publish(Filter filter) {
        auto setup = std::make_unique<Setup>();
        setup->filter = std::move(filter);
        setup->journal = stderr_is_journal();
        setup->colours = !setup->journal && isatty(STDERR_FILENO) == 1;
        const std::lock_guard lock(mutex_);
        setup_.store(setup.get(), std::memory_order_release);
        kept_.push_back(std::move(setup));
    }

private:
    std::atomic<const Setup *> setup_{nullptr};
    std::mutex mutex_;
    std::vector<std::unique_ptr<const Setup>> kept_;
};

// Never destroyed: threads and static destructors may log to the very end.
Log &the_log() {
    static auto *const log = new Log;
    return *log;
}

char letter_of(int priority) {
    constexpr std::string_view letters = "??VDIWEF";
    return letters[static_cast<std::size_t>(priority)];
}

int syslog_priority(int priority) {
    switch (priority) {
    case DLOG_FATAL:
        return 2;
    case DLOG_ERROR:
        return 3;
    case DLOG_WARN:
        return 4;
    case DLOG_INFO:
        return 6;
    default:
        return 7;
    }
}

// Length of the well-formed UTF-8 character that `text` begins with, 0 when there is none.
std::size_t utf8_length(std::string_view text) {
    const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80                    ? 1
                               : lead >= 0xc2 && lead <= 0xdf ? 2
                               : lead >= 0xe0 && lead <= 0xef ? 3
                               : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                              : 0;
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80) {
            return 0;
        }
    }
    const bool overlong = (lead == 0xe0 && byte(1) < 0xa0) || (lead == 0xf0 && byte(1) < 0x90);
    const bool outside = (lead == 0xed && byte(1) > 0x9f) || (lead == 0xf4 && byte(1) > 0x8f);
    return overlong || outside ? 0 : length;
}

bool is_control(std::string_view character) {
    const auto lead = static_cast<unsigned char>(character[0]);
    const bool c1 =
        character.size() == 2 && lead == 0xc2 && static_cast<unsigned char>(character[1]) < 0xa0;
    return lead < 0x20 || lead == 0x7f || c1;
}

std::string escape_bytes(std::string_view bytes) {
    if (bytes == "\n") {
        return "\\n";
    }
    if (bytes == "\r") {
        return "\\r";
    }
    if (bytes == "\t") {
        return "\\t";
    }
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 5> code{};
        std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned char>(byte));
        text += code.data();
    }
    return text;
}

// One line on its way out. Room for the reset of the colours and the line feed is always left.
class Line {
public:
    void append(std::string_view text) {
        if (text_.size() + text.size() <= kLineMax - kReserve) {
            text_ += text;
        } else {
            full_ = true;
        }
    }

    void append_escaped(std::string_view text) {
        while (!text.empty() && !full_) {
            const std::size_t length = utf8_length(text);
            const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
            if (length == 0 || is_control(character)) {
                append(escape_bytes(character));
            } else {
                append(character);
            }
            text.remove_prefix(character.size());
        }
    }

    void append_colour(std::string_view sequence) {
        if (text_.size() + sequence.size() < kLineMax) {
            text_ += sequence;
        }
    }

    [[nodiscard]] const std::string &finish() {
        text_ += '\n';
        return text_;
    }

private:
    static constexpr std::size_t kReserve = 16;
    std::string text_;
    bool full_ = false;
};

std::string format_text(const char *format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

// The colour codes that stand in the format itself are the program's own; an escape character that
// comes with an argument is data. So the codes are taken out of the format before it is filled in,
// and their places in the text are found by filling in what stands before them.
struct Colour {
    std::size_t format_offset;
    std::string sequence;
};

std::string without_colours(std::string_view format, std::vector<Colour> &colours) {
    std::string plain;
    while (!format.empty()) {
        const std::size_t end = format.substr(0, 2) == "\033["
                                    ? format.find_first_not_of("0123456789;", 2)
                                    : std::string_view::npos;
        if (end != std::string_view::npos && format[end] == 'm') {
            colours.push_back({plain.size(), std::string(format.substr(0, end + 1))});
            format.remove_prefix(end + 1);
        } else {
            plain += format.front();
            format.remove_prefix(1);
        }
    }
    return plain;
}

void append_message(Line &line, const Setup &setup, const char *format, va_list arguments) {
    std::vector<Colour> colours;
    const std::string plain = without_colours(format, colours);
    std::vector<std::size_t> places;
    for (const Colour &colour : colours) {
        va_list again;
        va_copy(again, arguments);
        const std::string before = plain.substr(0, colour.format_offset);
        places.push_back(static_cast<std::size_t>(
            std::max(0, std::vsnprintf(nullptr, 0, before.c_str(), again))));
        va_end(again);
    }
    const std::string text = format_text(plain.c_str(), arguments);
    std::size_t done = 0;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const std::size_t place = std::clamp(places[i], done, text.size());
        line.append_escaped(std::string_view(text).substr(done, place - done));
        done = place;
        if (setup.colours) {
            line.append_colour(colours[i].sequence);
        }
    }
    line.append_escaped(std::string_view(text).substr(done));
}

int write_line(const std::string &line) {
    ssize_t written = 0;
    do {
        written = write(STDERR_FILENO, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    return written < 0 ? -errno : static_cast<int>(written);
}

int print(const Setup &setup, int priority, const char *tag, const char *format,
          va_list arguments) {
    std::array<char, 64> ids{};
    std::snprintf(ids.data(), ids.size(), "(%5d, %5d): ", getpid(), gettid());
    Line line;
    if (setup.journal) {
        line.append("<" + std::to_string(syslog_priority(priority)) + ">");
    }
    line.append(std::string{letter_of(priority), '/'});
    line.append_escaped(tag);
    line.append(std::string(std::max<std::size_t>(8, std::strlen(tag)) - std::strlen(tag), ' '));
    line.append(ids.data());
    append_message(line, setup, format, arguments);
    return write_line(line.finish());
}

}  // namespace

bool is_log_spec(const std::string &spec) {
    return parse_filter(spec).has_value();
}

bool set_log_levels(const std::string &spec) {
    auto filter = parse_filter(spec);
    if (!filter) {
        return false;
    }
    the_log().publish(std::move(*filter));
    return true;
}

}  // namespace host

int __dlog_print(log_id_t log_id, int prio, const char *tag, const char *fmt, ...) {
    if (log_id <= LOG_ID_INVALID || log_id >= LOG_ID_MAX || prio < DLOG_VERBOSE ||
        prio > DLOG_FATAL || tag == nullptr || fmt == nullptr) {
        return -EINVAL;
    }
    const host::Setup *const setup = host::the_log().setup();
    if (setup == nullptr || !setup->filter.lets_through(prio, tag)) {
        return 0;
    }
    // Logging must not disturb what its caller is about to read.
    const int saved_errno = errno;
    va_list arguments;
    va_start(arguments, fmt);
    const int written = host::print(*setup, prio, tag, fmt, arguments);
    va_end(arguments);
    errno = saved_errno;
    return written;
}
