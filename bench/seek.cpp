// Times seeks of a paused player, from the call to its completion, one line of milliseconds each:
//
//     bench-seek tessel|playbin accurate|keyframe CLIP TARGET_MS...
//
// "tessel" is the host's player in a window of its shell, "playbin" the bare element that it is
// built on with an X11 sink.

#include <Elementary.h>
#include <gst/gst.h>
#include <player.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "shell/shell.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kDeadline = std::chrono::seconds(20);

struct Request {
    bool accurate = false;
    std::string clip;
    std::vector<int> targets_ms;
};

double ms_since(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// Turns the toolkit's loop until the platform has answered.
bool wait_for(const std::atomic<bool> &done) {
    const auto end = Clock::now() + kDeadline;
    while (!done && Clock::now() < end) {
        ecore_main_loop_iterate_may_block(EINA_TRUE);
    }
    return done;
}

void answered(void *data) {
    *static_cast<std::atomic<bool> *>(data) = true;
    ecore_main_loop_thread_safe_call_async([](void *) {}, nullptr);  // wakes the loop
}

int time_tessel(const Request &request) {
    elm_init(0, nullptr);
    if (!host::start_shell()) {
        return 1;
    }
    Evas_Object *window = elm_win_add(nullptr, "bench", ELM_WIN_BASIC);
    evas_object_show(window);
    player_h player = nullptr;
    std::atomic<bool> done{false};
    if (player_create(&player) != 0 || player_set_uri(player, request.clip.c_str()) != 0 ||
        player_set_display(player, PLAYER_DISPLAY_TYPE_OVERLAY, GET_DISPLAY(window)) != 0 ||
        player_prepare_async(player, answered, &done) != 0 || !wait_for(done)) {
        std::fprintf(stderr, "bench-seek: the clip can't be prepared\n");
        return 1;
    }
    player_start(player);
    player_pause(player);
    for (const int target : request.targets_ms) {
        done = false;
        const auto begin = Clock::now();
        if (player_set_play_position(player, target, request.accurate, answered, &done) != 0 ||
            !wait_for(done)) {
            std::fprintf(stderr, "bench-seek: no seek to %d ms\n", target);
            return 1;
        }
        std::printf("%.1f\n", ms_since(begin));
    }
    player_unprepare(player);
    player_destroy(player);
    evas_object_del(window);
    host::stop_shell();
    elm_shutdown();
    return 0;
}

struct PipelineStop {
    void operator()(GstElement *pipeline) const {
        gst_element_set_state(pipeline, GST_STATE_NULL);
        gst_object_unref(pipeline);
    }
};

int time_playbin(const Request &request) {
    gst_init(nullptr, nullptr);
    const std::unique_ptr<GstElement, PipelineStop> playbin(
        gst_element_factory_make("playbin", nullptr));
    GstElement *sink = gst_element_factory_make("ximagesink", nullptr);
    gchar *uri = gst_filename_to_uri(request.clip.c_str(), nullptr);
    g_object_set(playbin.get(), "uri", uri, "video-sink", sink, nullptr);
    g_free(uri);
    gst_element_set_state(playbin.get(), GST_STATE_PAUSED);
    const auto settled = [&] {
        return gst_element_get_state(playbin.get(), nullptr, nullptr, 20 * GST_SECOND) ==
               GST_STATE_CHANGE_SUCCESS;
    };
    if (!settled()) {
        std::fprintf(stderr, "bench-seek: the clip can't be prepared\n");
        return 1;
    }
    const auto flags = static_cast<GstSeekFlags>(
        GST_SEEK_FLAG_FLUSH | (request.accurate ? GST_SEEK_FLAG_ACCURATE : GST_SEEK_FLAG_KEY_UNIT));
    for (const int target : request.targets_ms) {
        const auto begin = Clock::now();
        gst_element_seek_simple(playbin.get(), GST_FORMAT_TIME, flags, target * GST_MSECOND);
        if (!settled()) {
            std::fprintf(stderr, "bench-seek: no seek to %d ms\n", target);
            return 1;
        }
        std::printf("%.1f\n", ms_since(begin));
    }
    return 0;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 5) {
        std::fprintf(stderr,
                     "usage: bench-seek tessel|playbin accurate|keyframe CLIP TARGET_MS...\n");
        return 2;
    }
    Request request{std::string(argv[2]) == "accurate", argv[3], {}};
    for (int i = 4; i < argc; ++i) {
        request.targets_ms.push_back(std::atoi(argv[i]));
    }
    return std::string(argv[1]) == "playbin" ? time_playbin(request) : time_tessel(request);
}
