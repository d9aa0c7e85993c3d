#include "player/media_source.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>

#include "common/gobject.h"
#include "common/unique_fd.h"
#include "player/gst_ptr.h"

namespace host {
namespace {

constexpr std::array<std::string_view, 3> kStreamSchemes = {"http", "https", "rtsp"};
constexpr std::string_view kFileScheme = "file";

std::string lower(std::string_view text) {
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                   [](unsigned char character) { return std::tolower(character); });
    return lowered;
}

/// The scheme of a URI with an authority, and of a known one also without; none for a path. A
/// plain name may hold a colon.
std::optional<std::string> scheme_of(std::string_view given) {
    const auto colon = given.find(':');
    if (colon == 0 || colon == std::string_view::npos ||
        std::isalpha(static_cast<unsigned char>(given.front())) == 0) {
        return std::nullopt;
    }
    const std::string_view name = given.substr(0, colon);
    const bool plausible = std::all_of(name.begin(), name.end(), [](unsigned char character) {
        return std::isalnum(character) != 0 || character == '+' || character == '-' ||
               character == '.';
    });
    if (!plausible) {
        return std::nullopt;
    }
    std::string scheme = lower(name);
    const bool known =
        scheme == kFileScheme ||
        std::find(kStreamSchemes.begin(), kStreamSchemes.end(), scheme) != kStreamSchemes.end();
    if (known || given.substr(colon).starts_with("://")) {
        return scheme;
    }
    return std::nullopt;
}

struct UriUnref {
    void operator()(GUri *uri) const { g_uri_unref(uri); }
};

/// No byte that can't stand in a URI, however lenient one is about blanks.
bool is_text(const std::string &uri) {
    return g_utf8_validate(uri.data(), static_cast<gssize>(uri.size()), nullptr) != FALSE &&
           std::none_of(uri.begin(), uri.end(),
                        [](unsigned char byte) { return byte < ' ' || byte == 0x7F; });
}

bool names_a_host(const std::string &uri) {
    const std::unique_ptr<GUri, UriUnref> parsed(
        g_uri_parse(uri.c_str(), G_URI_FLAGS_ENCODED, nullptr));
    return parsed && g_uri_get_host(parsed.get()) != nullptr &&
           *g_uri_get_host(parsed.get()) != '\0';
}

}  // namespace

std::optional<MediaSource> MediaSource::parse(std::string_view given, std::string &why) {
    MediaSource source;
    source.given_ = given;
    if (given.empty()) {
        why = "the name is empty";
        return std::nullopt;
    }
    const auto scheme = scheme_of(given);
    if (scheme && *scheme != kFileScheme) {
        if (std::find(kStreamSchemes.begin(), kStreamSchemes.end(), *scheme) ==
            kStreamSchemes.end()) {
            why = "the scheme " + *scheme + " isn't one that can be opened";
            return std::nullopt;
        }
        if (!is_text(source.given_) || !names_a_host(source.given_)) {
            why = "the address is malformed";
            return std::nullopt;
        }
        source.uri_ = source.given_;
        return source;
    }
    if (scheme) {
        const GText path(g_filename_from_uri(source.given_.c_str(), nullptr, nullptr));
        if (!path) {
            why = "the address is malformed";
            return std::nullopt;
        }
        source.path_ = path.get();
    } else {
        const GText path(g_canonicalize_filename(source.given_.c_str(), nullptr));
        source.path_ = path.get();
    }
    const GText uri(g_filename_to_uri(source.path_.c_str(), nullptr, nullptr));
    if (!uri) {
        why = "the name is malformed";
        return std::nullopt;
    }
    source.uri_ = uri.get();
    return source;
}

std::optional<MediaSource> MediaSource::from_memory(const void *data, std::size_t size) {
    UniqueFd memory(memfd_create("medium", MFD_CLOEXEC));
    const auto *bytes = static_cast<const char *>(data);
    while (memory && size > 0) {
        const ssize_t written = write(memory.get(), bytes, size);
        if (written <= 0) {
            return std::nullopt;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    if (!memory) {
        return std::nullopt;
    }
    MediaSource source;
    source.given_ = "a medium in memory";
    source.path_ = "/proc/self/fd/" + std::to_string(memory.get());
    source.uri_ = "file://" + source.path_;
    source.memory_ = std::make_shared<UniqueFd>(std::move(memory));
    return source;
}

std::optional<PlaybackFault> MediaSource::examine() {
    if (remote()) {
        return std::nullopt;
    }
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) {
        return fault_of_errno(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return PlaybackFault{PLAYER_ERROR_INVALID_OPERATION,
                             S_ISDIR(status.st_mode) ? "it is a folder" : "it is not a plain file"};
    }
    const UniqueFd file(open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        return fault_of_errno(errno);
    }
    size_ = status.st_size;
    if (size_ == 0) {
        return PlaybackFault{PLAYER_ERROR_NOT_SUPPORTED_FILE, "the file is empty"};
    }
    return std::nullopt;
}

std::optional<PlaybackFault> MediaSource::examine_again() const {
    if (remote()) {
        return std::nullopt;
    }
    struct stat status {};
    if (stat(path_.c_str(), &status) != 0) {
        return fault_of_errno(errno);
    }
    if (status.st_size < size_) {
        return PlaybackFault{PLAYER_ERROR_NOT_SUPPORTED_FILE,
                             "the file was cut short while it played"};
    }
    return std::nullopt;
}

}  // namespace host
