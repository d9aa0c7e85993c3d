#pragma once

#include <gst/gst.h>

#include <cstddef>
#include <list>
#include <mutex>

#include "player/gst_ptr.h"

namespace host {

/// Elements that have left a pipeline, which may be started again after that: what reads playlists
/// wakes a source now and then that it has stopped and dropped already. Freed in that state, a
/// source leaves the thread of its session with an element that is no more.
class Stragglers {
public:
    /// Of those that have left, the latest that may still be started.
    static constexpr std::size_t kMost = 32;

    /// Keeps an element that leaves. Any thread.
    void take(GstElement *element);
    /// Stops and frees them. For when the pipeline has stopped, and not on a thread of it.
    void stop();

private:
    std::mutex mutex_;
    std::list<GstObjectPtr<GstElement>> elements_;
};

}  // namespace host
