#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "common/unique_fd.h"
#include "player/playback_fault.h"

namespace host {

/// What player_set_uri() was given, understood: a file of this machine, or a stream. Any thread.
class MediaSource {
public:
    /// A path, taken literally, or a URI of a scheme that is opened.
    /// @param[out] why  the reason of a refusal, in a few words
    [[nodiscard]] static std::optional<MediaSource> parse(std::string_view given, std::string &why);

    /// A copy of what is in memory. None when there is no room for it.
    [[nodiscard]] static std::optional<MediaSource> from_memory(const void *data, std::size_t size);

    [[nodiscard]] const std::string &given() const { return given_; }
    [[nodiscard]] const std::string &uri() const { return uri_; }
    /// Of a file of this machine; empty for a stream.
    [[nodiscard]] const std::string &path() const { return path_; }
    /// Comes over a network, so that it may stall.
    [[nodiscard]] bool remote() const { return path_.empty(); }

    /// Looks at a file before it is opened for playing: that it is there, a plain file, readable
    /// and not empty. Nothing of a stream. Blocks on the file system.
    [[nodiscard]] std::optional<PlaybackFault> examine();
    /// Why a file that could be played can't be any more: it is gone, or has been cut short since
    /// examine(). Blocks on the file system.
    [[nodiscard]] std::optional<PlaybackFault> examine_again() const;

private:
    std::string given_;
    std::string uri_;
    std::string path_;  ///< empty for a stream
    off_t size_ = 0;
    std::shared_ptr<const UniqueFd> memory_;  ///< keeps a medium that is in memory
};

}  // namespace host
