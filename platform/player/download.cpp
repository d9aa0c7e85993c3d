#include "player/download.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string_view>

#include "player/gst_ptr.h"

namespace host {
namespace {

constexpr std::string_view kDownloadElement = "downloadbuffer";
constexpr char kUniqueEnd[] = ".XXXXXX";

bool write_at(int file, std::uint64_t place, const void *data, std::size_t size) {
    const auto *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const ssize_t written = pwrite(file, bytes, size, static_cast<off_t>(place));
        if (written <= 0) {
            return false;
        }
        bytes += written;
        place += static_cast<std::uint64_t>(written);
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace

void Download::discard() {
    const std::lock_guard lock(mutex_);
    file_.reset();
    if (!unfinished_.empty()) {
        unlink(unfinished_.c_str());
        unfinished_.clear();
    }
}

void Download::take(GstElement *element) {
    GstElementFactory *factory = gst_element_get_factory(element);
    if (!wanted() || factory == nullptr || kDownloadElement != GST_OBJECT_NAME(factory)) {
        return;
    }
    std::string name = path_ + kUniqueEnd;
    UniqueFd file(mkstemp(name.data()));
    if (!file) {
        fail(errno);
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        unfinished_ = name;
        file_ = std::move(file);
    }
    const GstObjectPtr<GstPad> sink(gst_element_get_static_pad(element, "sink"));
    gst_pad_add_probe(sink.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &Download::probe, this, nullptr);
    tell_(Event::begun);
}

GstPadProbeReturn Download::probe(GstPad *pad, GstPadProbeInfo *info, gpointer download) {
    auto *self = static_cast<Download *>(download);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
        self->keep(pad, GST_PAD_PROBE_INFO_BUFFER(info));
    } else if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS) {
        self->finish();
    }
    return GST_PAD_PROBE_OK;
}

void Download::keep(GstPad *pad, GstBuffer *buffer) {
    gint64 total = 0;
    const bool known = gst_pad_peer_query_duration(pad, GST_FORMAT_BYTES, &total) && total > 0;
    GstMapInfo map;
    if (!GST_BUFFER_OFFSET_IS_VALID(buffer) || !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return;
    }
    bool failed = false;
    int error = 0;
    {
        const std::lock_guard lock(mutex_);
        total_ = known ? static_cast<std::uint64_t>(total) : 0;
        if (file_) {
            failed = !write_at(file_.get(), GST_BUFFER_OFFSET(buffer), map.data, map.size);
            error = errno;
            note(GST_BUFFER_OFFSET(buffer), GST_BUFFER_OFFSET(buffer) + map.size);
        }
    }
    gst_buffer_unmap(buffer, &map);
    if (failed) {
        fail(error);
    }
}

void Download::fail(int error) {
    // What there is no room for takes none.
    discard();
    tell_(error == ENOSPC ? Event::no_space : Event::not_writable);
}

void Download::note(std::uint64_t from, std::uint64_t to) {
    // Joined with all that it touches.
    for (auto part = parts_.begin(); part != parts_.end();) {
        if (part->second < from || part->first > to) {
            ++part;
            continue;
        }
        from = std::min(from, part->first);
        to = std::max(to, part->second);
        part = parts_.erase(part);
    }
    parts_[from] = to;
}

std::uint64_t Download::there() const {
    return std::accumulate(
        parts_.begin(), parts_.end(), std::uint64_t{0},
        [](std::uint64_t sum, const auto &part) { return sum + part.second - part.first; });
}

void Download::finish() {
    int error = 0;
    {
        const std::lock_guard lock(mutex_);
        if (!file_ || total_ == 0 || there() != total_) {
            return;
        }
        if (std::rename(unfinished_.c_str(), path_.c_str()) == 0) {
            unfinished_.clear();
            file_.reset();
        } else {
            error = errno;
        }
    }
    if (error == 0) {
        tell_(Event::complete);
    } else {
        fail(error);
    }
}

std::optional<std::pair<unsigned long, unsigned long>> Download::bytes() const {
    const std::lock_guard lock(mutex_);
    if (parts_.empty()) {
        return std::nullopt;
    }
    return std::pair(static_cast<unsigned long>(there()), static_cast<unsigned long>(total_));
}

}  // namespace host
