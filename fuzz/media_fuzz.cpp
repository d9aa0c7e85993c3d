// Media through the whole player: prepared, played, sought in, and let go.

#include <Ecore.h>
#include <player.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "driver.h"
#include "host_seams.h"

namespace {

namespace fs = std::filesystem;

/// Longer than any limit of the player for a file: what takes as long hangs.
constexpr double kHang = 60.0;

fs::path file;

struct Events {
    std::atomic<int> prepared = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> sought = 0;
    std::atomic<int> error = 0;
};

template <typename Condition>
void run_until(Condition condition) {
    const double end = ecore_time_get() + kHang;
    while (!condition()) {
        ecore_main_loop_iterate();
        if (ecore_time_get() > end) {
            std::fprintf(stderr, "the player hangs\n");
            std::abort();
        }
        usleep(500);
    }
}

void play(player_h player, Events &events) {
    int duration = 0;
    player_get_duration(player, &duration);
    const int result = player_set_play_position(
        player, std::max(0, duration - 20), true,
        [](void *to) { ++static_cast<Events *>(to)->sought; }, &events);
    if (result == PLAYER_ERROR_NONE) {
        run_until([&] { return events.sought > 0 || events.error != 0; });
    }
    player_start(player);
    const double end = ecore_time_get() + 0.1;
    run_until([&] { return events.ended > 0 || events.error != 0 || ecore_time_get() > end; });
}

}  // namespace

namespace fuzz {

void begin() {
    ecore_init();
    seams::reset();
    file = fs::temp_directory_path() / ("media-fuzz-" + std::to_string(getpid()));
}

std::vector<Region> regions_of(const std::string &input) {
    return header_regions(input);
}

std::string take(const std::string &input) {
    std::ofstream(file, std::ios::binary) << input;
    player_h player = nullptr;
    if (player_create(&player) != PLAYER_ERROR_NONE) {
        std::abort();
    }
    Events events;
    player_set_error_cb(
        player, [](int code, void *to) { static_cast<Events *>(to)->error = code; }, &events);
    player_set_completed_cb(
        player, [](void *to) { ++static_cast<Events *>(to)->ended; }, &events);
    player_set_display(player, PLAYER_DISPLAY_TYPE_EVAS, nullptr);
    const int result = player_set_uri(player, file.c_str());
    if (result == PLAYER_ERROR_NONE) {
        player_prepare_async(
            player, [](void *to) { ++static_cast<Events *>(to)->prepared; }, &events);
        run_until([&] { return events.prepared > 0 || events.error != 0; });
        if (events.prepared > 0) {
            play(player, events);
        }
    }
    player_destroy(player);
    const int code = result != PLAYER_ERROR_NONE ? result : events.error.load();
    if (code != PLAYER_ERROR_NONE) {
        return std::to_string(code);
    }
    return events.ended > 0 ? "played to the end" : "played";
}

void end() {
    fs::remove(file);
    ecore_shutdown();
}

}  // namespace fuzz
