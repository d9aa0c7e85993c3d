#pragma once

#include <gst/gst.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "common/unique_fd.h"

namespace host {

/// The part of a playback that keeps what comes over the network in a file. It listens to the
/// element of GStreamer's that downloads ahead of the playback, which is put in for containers that
/// profit from it. The file has its name only when it is whole. Any thread.
class Download {
public:
    /// What happens to the file; on GStreamer's threads.
    enum class Event { begun, complete, no_space, not_writable };

    /// @param path  empty: nothing is kept
    Download(std::string path, std::function<void(Event)> tell)
        : path_(std::move(path)), tell_(std::move(tell)) {}
    ~Download() { discard(); }
    Download(const Download &) = delete;
    Download &operator=(const Download &) = delete;

    [[nodiscard]] bool wanted() const { return !path_.empty(); }
    /// Listens to the element if it is the one.
    void take(GstElement *element);
    /// Ends the keeping, and takes away what isn't whole.
    void discard();
    /// Bytes that are there, and in all; none before the download begins.
    [[nodiscard]] std::optional<std::pair<unsigned long, unsigned long>> bytes() const;

private:
    static GstPadProbeReturn probe(GstPad *pad, GstPadProbeInfo *info, gpointer download);
    void keep(GstPad *pad, GstBuffer *buffer);
    void finish();
    void fail(int error);
    void note(std::uint64_t from, std::uint64_t to);
    [[nodiscard]] std::uint64_t there() const;

    const std::string path_;
    const std::function<void(Event)> tell_;
    mutable std::mutex mutex_;
    std::string unfinished_;  ///< name of the file while it grows
    UniqueFd file_;
    std::map<std::uint64_t, std::uint64_t> parts_;  ///< what is there: ends by beginnings
    std::uint64_t total_ = 0;
};

}  // namespace host
