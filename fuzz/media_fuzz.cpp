// Media through the whole player: prepared, sought in, played, captured, and let go. The first byte
// of an input says how it reaches the player.

#include <Ecore.h>
#include <player.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "driver.h"
#include "host_seams.h"
#include "player/player_host.h"
#include "process_counts.h"
#include "scarcity.h"
#include "server.h"

namespace {

namespace fs = std::filesystem;

/// Longer than any limit of the player for a file: what takes as long hangs.
constexpr double kHang = 60.0;
constexpr double kPlay = 0.1;
/// A server that falls silent is no finding; it only takes time.
constexpr host::NetworkLimits kPatience{std::chrono::milliseconds(1500),
                                        std::chrono::milliseconds(1500)};
/// The corpus' pictures take 9 KiB, and what is read of its files at once mostly less than this.
constexpr std::size_t kLessThanAPicture = std::size_t{8} * 1024;
/// What a library's pool of threads may keep for a while.
constexpr std::size_t kSlack = 8;

enum Road : char {
    kFile = 'F',      ///< a medium in a file
    kMemory = 'M',    ///< a medium in memory
    kPoor = 'P',      ///< a medium in a file, where there is no memory for a picture
    kKept = 'K',      ///< a medium of a server, kept in a file
    kCrowded = 'D',   ///< a medium of a server, kept in a file that there is no room for
    kResponse = 'R',  ///< all that a server says
    kOnServer = 'W',  ///< the path on a server
    kName = 'N',      ///< a path or an address
    kSubtitle = 'S'   ///< subtitles beside a sound medium
};

struct World {
    fs::path folder;
    std::string served;
    std::unique_ptr<fuzz::Server> server;
    std::size_t threads = 0;
    std::size_t descriptors = 0;
};
World world;

struct Events {
    std::atomic<int> prepared = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> sought = 0;
    std::atomic<int> captured = 0;
    std::atomic<int> missed = 0;
    std::atomic<int> error = 0;
    /// The first operation's that failed, where no fault of the medium came.
    int refused = 0;
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
        usleep(300);
    }
}

void count(void *counter) {
    ++*static_cast<std::atomic<int> *>(counter);
}

/// @return whether the operation was accepted
bool note(int result, Events &events) {
    if (result != PLAYER_ERROR_NONE && events.refused == PLAYER_ERROR_NONE) {
        events.refused = result;
    }
    return result == PLAYER_ERROR_NONE;
}

void listen(player_h player, Events &events) {
    player_set_error_cb(
        player, [](int code, void *to) { static_cast<Events *>(to)->error = code; }, &events);
    player_set_completed_cb(player, count, &events.ended);
    player_set_missed_plugin_info_cb(
        player,
        [](player_missed_plugin_type_e type, const char *, void *to) {
            static_cast<Events *>(to)->missed |= type;
        },
        &events);
    player_set_subtitle_updated_cb(
        player, [](unsigned long, char *, void *) {}, nullptr);
    player_set_buffering_cb(
        player, [](int, void *) {}, nullptr);
    player_set_display(player, PLAYER_DISPLAY_TYPE_EVAS, nullptr);
}

/// Gives the player the input.
bool hand_over(player_h player, const std::string &input, Events &events) {
    const std::string body = input.substr(1);
    const std::string file = world.folder / "input";
    const auto set_uri = [&](const std::string &uri) {
        return note(player_set_uri(player, uri.c_str()), events);
    };
    switch (input.front()) {
    case kMemory:
        return note(player_set_memory_buffer(player, body.data(), static_cast<int>(body.size())),
                    events);
    case kKept:
    case kCrowded:
        world.server->give(fuzz::Server::response(body));
        note(player_set_progressive_download_path(player, (world.folder / "kept").c_str()), events);
        return set_uri(world.server->address() + "given");
    case kResponse:
        world.server->give(body);
        return set_uri(world.server->address() + "given");
    case kOnServer:
        return set_uri(world.server->address() + body);
    case kName:
        return set_uri(body);
    case kSubtitle:
        std::ofstream(file, std::ios::binary) << body;
        note(player_set_subtitle_path(player, file.c_str()), events);
        return set_uri(world.served + "/h264_aac.mp4");
    default:
        std::ofstream(file, std::ios::binary) << body;
        return set_uri(file);
    }
}

bool prepare(player_h player, bool at_once, Events &events) {
    if (at_once) {
        return note(player_prepare(player), events);
    }
    if (!note(player_prepare_async(player, count, &events.prepared), events)) {
        return false;
    }
    run_until([&] { return events.prepared > 0 || events.error != 0; });
    return events.prepared > 0;
}

void read_facts(player_h player) {
    char *sound = nullptr;
    char *video = nullptr;
    int width = 0;
    int height = 0;
    bool captions = false;
    player_get_codec_info(player, &sound, &video);
    player_get_video_size(player, &width, &height);
    player_has_closed_caption(player, &captions);
    std::free(sound);
    std::free(video);
}

void play(player_h player, Events &events) {
    int duration = 0;
    player_get_duration(player, &duration);
    if (note(player_set_play_position(player, std::max(0, duration - 20), true, count,
                                      &events.sought),
             events)) {
        run_until([&] { return events.sought > 0 || events.error != 0; });
    }
    note(player_start(player), events);
    if (note(player_capture_video(
                 player, [](unsigned char *, int, int, unsigned int, void *to) { count(to); },
                 &events.captured),
             events)) {
        run_until([&] { return events.captured > 0 || events.error != 0; });
    }
    const double end = ecore_time_get() + kPlay;
    run_until([&] { return events.ended > 0 || events.error != 0 || ecore_time_get() > end; });
}

const char *name_of(int code) {
    switch (code) {
    case PLAYER_ERROR_OUT_OF_MEMORY:
        return "out of memory";
    case PLAYER_ERROR_INVALID_PARAMETER:
        return "invalid parameter";
    case PLAYER_ERROR_NO_SUCH_FILE:
        return "no such file";
    case PLAYER_ERROR_INVALID_OPERATION:
        return "invalid operation";
    case PLAYER_ERROR_FILE_NO_SPACE_ON_DEVICE:
        return "no space on the device";
    case PLAYER_ERROR_SEEK_FAILED:
        return "played, but couldn't be sought in";
    case PLAYER_ERROR_INVALID_STATE:
        return "invalid state";
    case PLAYER_ERROR_NOT_SUPPORTED_FILE:
        return "not a supported file";
    case PLAYER_ERROR_INVALID_URI:
        return "invalid address";
    case PLAYER_ERROR_VIDEO_CAPTURE_FAILED:
        return "played, but had no picture to capture";
    default:
        return "another error";
    }
}

std::string outcome_of(const Events &events) {
    const int fault = events.error;
    const int code = fault != PLAYER_ERROR_NONE ? fault : events.refused;
    if (code != PLAYER_ERROR_NONE && events.missed == 0) {
        return std::to_string(code) + " " + name_of(code);
    }
    std::string text = std::to_string(code) + " ";
    text += code != PLAYER_ERROR_NONE ? name_of(code)
            : events.ended > 0        ? "played to the end"
                                      : "played";
    text +=
        (events.missed & PLAYER_MISSED_PLUGIN_VIDEO) != 0 ? ", a plug-in for video missing" : "";
    text +=
        (events.missed & PLAYER_MISSED_PLUGIN_AUDIO) != 0 ? ", a plug-in for sound missing" : "";
    return text;
}

/// How many bytes come before the medium in an input; none: there is no medium in it.
std::size_t begin_of_medium(const std::string &input) {
    switch (input.front()) {
    case kFile:
    case kPoor:
    case kMemory:
    case kKept:
    case kCrowded:
        return 1;
    case kResponse: {
        constexpr char kEndOfHead[] = "\r\n\r\n";
        const auto end = input.find(kEndOfHead);
        return end == std::string::npos ? input.size() : end + sizeof kEndOfHead - 1;
    }
    default:
        return input.size();
    }
}

}  // namespace

namespace fuzz {

void begin(const std::string &corpus) {
    ecore_init();
    seams::reset();
    host::set_network_limits(kPatience);
    world.folder = fs::temp_directory_path() / ("media-fuzz-" + std::to_string(getpid()));
    fs::create_directories(world.folder);
    world.served = fs::absolute(fs::path(corpus) / "served");
    world.server = std::make_unique<Server>(world.served);
    // Names without a folder are looked for here.
    fs::current_path(world.served);
}

std::vector<Region> regions_of(const std::string &input) {
    const std::size_t medium = input.empty() ? 0 : begin_of_medium(input);
    std::vector<Region> regions;
    if (medium > 1) {
        regions.push_back({1, medium, Part::text, {}});
    }
    if (medium < input.size()) {
        for (Region &region : structure_of(input.substr(medium))) {
            region.begin += medium;
            region.end += medium;
            for (std::size_t &size : region.sizes) {
                size += medium;
            }
            regions.push_back(std::move(region));
        }
    }
    return regions;
}

void mend(std::string &input) {
    if (input.empty()) {
        return;
    }
    const std::size_t medium = begin_of_medium(input);
    std::string data = input.substr(medium);
    mend_checksums(data);
    input.replace(medium, std::string::npos, data);
}

std::string take(const std::string &input) {
    if (input.empty()) {
        return "0 empty";
    }
    player_h player = nullptr;
    if (player_create(&player) != PLAYER_ERROR_NONE) {
        std::abort();
    }
    std::optional<LittleMemory> memory;
    std::optional<LittleRoom> room;
    if (input.front() == kPoor) {
        memory.emplace(kLessThanAPicture);
    } else if (input.front() == kCrowded) {
        room.emplace(input.size() / 2);
    }
    Events events;
    listen(player, events);
    // Both ways to prepare, and to end.
    const bool at_once = input.size() % 2 == 0;
    if (hand_over(player, input, events) && prepare(player, at_once, events)) {
        read_facts(player);
        play(player, events);
        if (at_once) {
            player_unprepare(player);
        }
    }
    player_destroy(player);
    return outcome_of(events);
}

void loaded() {
    world.threads = support::threads();
    world.descriptors = support::descriptors();
}

std::string end() {
    const auto left_behind = [] {
        return support::threads() > world.threads + kSlack ||
               support::descriptors() > world.descriptors + kSlack;
    };
    const double end = ecore_time_get() + kHang;
    while (left_behind() && ecore_time_get() < end) {
        ecore_main_loop_iterate();
        usleep(10'000);
    }
    std::string left;
    if (left_behind()) {
        left = std::to_string(support::threads()) + " threads of " + std::to_string(world.threads) +
               ", " + std::to_string(support::descriptors()) + " descriptors of " +
               std::to_string(world.descriptors);
    }
    world.server.reset();
    fs::remove_all(world.folder);
    ecore_shutdown();
    return left;
}

}  // namespace fuzz
