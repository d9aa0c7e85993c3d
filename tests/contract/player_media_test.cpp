// The host's player on real media: what it finds in them, and what it shows of them.

#include <gtest/gtest.h>
#include <player.h>

#include <Elementary.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "common/main_loop.h"
#include "frame_number.h"
#include "host_seams.h"
#include "main_loop.h"
#include "player/player_host.h"

namespace {

/// A checked program on a busy machine takes long to load its first plug-ins.
constexpr double kDeadline = 40.0;
constexpr double kFrameMs = 1000.0 / 30;

std::string clip(const std::string &name) {
    return TESSEL_TEST_MEDIA "/" + name;
}

int luma(std::uint32_t rgb) {
    return static_cast<int>((rgb >> 16 & 0xFF) * 0.299 + (rgb >> 8 & 0xFF) * 0.587 +
                            (rgb & 0xFF) * 0.114);
}

struct Events {
    std::atomic<int> prepared = 0;
    std::atomic<int> completed = 0;
    std::atomic<int> seeks = 0;
    std::atomic<int> error = 0;
    std::atomic<int> missed = 0;
    std::atomic<int> interrupted = -1;
};

class PlayerMedia : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(player_create(&player_), PLAYER_ERROR_NONE);
        player_set_completed_cb(
            player_, [](void *events) { ++static_cast<Events *>(events)->completed; }, &events_);
        player_set_error_cb(
            player_, [](int code, void *events) { static_cast<Events *>(events)->error = code; },
            &events_);
        player_set_missed_plugin_info_cb(
            player_,
            [](player_missed_plugin_type_e type, const char *, void *events) {
                static_cast<Events *>(events)->missed = type;
            },
            &events_);
        player_set_interrupted_cb(
            player_,
            [](player_interrupted_code_e code, void *events) {
                static_cast<Events *>(events)->interrupted = code;
            },
            &events_);
        ASSERT_EQ(
            player_set_display(player_, PLAYER_DISPLAY_TYPE_OVERLAY, GET_DISPLAY(seams::window())),
            PLAYER_ERROR_NONE);
    }
    void TearDown() override {
        if (player_ != nullptr) {
            EXPECT_EQ(player_destroy(player_), PLAYER_ERROR_NONE);
        }
        seams::reset();
    }

    void prepare(const std::string &name) {
        events_.prepared = 0;
        ASSERT_EQ(player_set_uri(player_, clip(name).c_str()), PLAYER_ERROR_NONE);
        ASSERT_EQ(
            player_prepare_async(
                player_, [](void *events) { ++static_cast<Events *>(events)->prepared; }, &events_),
            PLAYER_ERROR_NONE);
        ASSERT_TRUE(until([this] { return events_.prepared > 0 || events_.error != 0; }));
        ASSERT_EQ(events_.error, 0);
    }
    void seek(int target_ms, bool accurate) {
        const int done = events_.seeks;
        ASSERT_EQ(player_set_play_position(
                      player_, target_ms, accurate,
                      [](void *events) { ++static_cast<Events *>(events)->seeks; }, &events_),
                  PLAYER_ERROR_NONE);
        ASSERT_TRUE(until([&] { return events_.seeks > done; }));
    }
    static bool until(const std::function<bool()> &condition) {
        return support::run_main_loop_until(condition, kDeadline);
    }
    [[nodiscard]] int duration() const {
        int milliseconds = -1;
        EXPECT_EQ(player_get_duration(player_, &milliseconds), PLAYER_ERROR_NONE);
        return milliseconds;
    }
    [[nodiscard]] int position() const {
        int milliseconds = -1;
        EXPECT_EQ(player_get_play_position(player_, &milliseconds), PLAYER_ERROR_NONE);
        return milliseconds;
    }
    [[nodiscard]] std::array<int, 2> video_size() const {
        std::array<int, 2> size{-1, -1};
        EXPECT_EQ(player_get_video_size(player_, size.data(), &size[1]), PLAYER_ERROR_NONE);
        return size;
    }
    void play_to_the_end(const std::string &name) {
        prepare(name);
        ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
        ASSERT_TRUE(until([this] { return events_.completed > 0 || events_.error != 0; }));
        EXPECT_EQ(events_.error, 0);
        EXPECT_EQ(seams::completions(), 1);
        EXPECT_TRUE(seams::failures().empty());
    }

    std::vector<int> shown_numbers_of_one_second();
    /// The number in the shown picture, for a picture of this shape at the player's mode.
    static std::optional<int> shown_number(const support::PictureArea &area) {
        return support::read_frame_number(
            area, [](int x, int y) { return luma(seams::plane().pixel(x, y)); });
    }
    static bool shows(int number, const support::PictureArea &area) {
        return until([&] { return shown_number(area) == number; });
    }

    player_h player_ = nullptr;
    Events events_;
};

constexpr double kScreen = 360;
const auto kWideCropped = support::PictureArea::covering(kScreen, 320, 180);
const auto kWideInside = support::PictureArea::inside(kScreen, 320, 180);

// What is found in a medium

TEST_F(PlayerMedia, H264AndAacInMp4) {
    prepare("h264_aac.mp4");
    EXPECT_NEAR(duration(), 10000, 30);
    EXPECT_EQ(video_size(), (std::array{640, 360}));
    char *audio = nullptr;
    char *video = nullptr;
    ASSERT_EQ(player_get_codec_info(player_, &audio, &video), PLAYER_ERROR_NONE);
    EXPECT_NE(std::string(video).find("H.264"), std::string::npos) << video;
    EXPECT_NE(std::string(audio).find("AAC"), std::string::npos) << audio;
    std::free(audio);
    std::free(video);
}

TEST_F(PlayerMedia, Vp9AndOpusInWebm) {
    play_to_the_end("vp9_opus.webm");
    EXPECT_EQ(video_size(), (std::array{320, 180}));
}

TEST_F(PlayerMedia, TheoraAndVorbisInOgg) {
    play_to_the_end("theora_vorbis.ogg");
    EXPECT_EQ(video_size(), (std::array{320, 240}));
}

TEST_F(PlayerMedia, SoundAlone) {
    play_to_the_end("audio_only.m4a");
    EXPECT_EQ(video_size(), (std::array{0, 0}));
    EXPECT_EQ(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, VideoAlone) {
    play_to_the_end("video_only.mp4");
    EXPECT_EQ(duration(), 3000);
}

TEST_F(PlayerMedia, OneFrame) {
    play_to_the_end("one_frame.mp4");
    EXPECT_NE(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, DurationsToTheMillisecond) {
    prepare("minute.mp4");
    EXPECT_EQ(duration(), 60000);
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    prepare("short_minute.mp4");
    EXPECT_EQ(duration(), 59999);
}

TEST_F(PlayerMedia, NamesAreTakenLiterally) {
    play_to_the_end("naïve %20 видео & 动画.mp4");
}

TEST_F(PlayerMedia, FileAddressesAreDecoded) {
    const std::string address = "file://" + clip(
                                                "na%C3%AFve%20%2520%20%D0%B2%D0%B8%D0%B4%D0%B5"
                                                "%D0%BE%20&%20%E5%8A%A8%E7%94%BB.mp4");
    ASSERT_EQ(player_set_uri(player_, address.c_str()), PLAYER_ERROR_NONE);
    EXPECT_EQ(player_prepare(player_), PLAYER_ERROR_NONE);
}

// What is shown

TEST_F(PlayerMedia, TheFirstPictureShowsBeforePlayingAtItsFinalSize) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    ASSERT_TRUE(until([] { return seams::plane().frames() > 0; }));
    EXPECT_EQ(seams::plane().frame()->width(), 360);
    EXPECT_EQ(seams::plane().frame()->height(), 360);
    EXPECT_EQ(shown_number(kWideCropped), 0);
    EXPECT_EQ(seams::plane().frames(), 1);
}

/// Plays one_second.mp4 to its end. @return the numbers of its pictures, as they were shown
std::vector<int> PlayerMedia::shown_numbers_of_one_second() {
    std::vector<int> numbers;
    seams::plane().on_shown(
        [&numbers] { numbers.push_back(shown_number(kWideCropped).value_or(-1)); });
    prepare("one_second.mp4");
    const int completed = events_.completed;
    EXPECT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([&] {
        const host::PlayerStatus status = host::player_status();
        return events_.completed > completed &&
               status.frames_shown + status.frames_dropped == status.frames_decoded;
    }));
    EXPECT_EQ(host::player_status().frames_shown, numbers.size());
    EXPECT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    seams::plane().on_shown({});
    return numbers;
}

TEST_F(PlayerMedia, EachPictureIsShownOnceAndInOrder) {
    // A machine that has no time for a picture when it is due drops it, and is asked again.
    constexpr int kRounds = 20;
    std::vector<int> all(30);
    std::iota(all.begin(), all.end(), 0);
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    std::vector<int> numbers;
    for (int round = 0; round < kRounds && numbers != all; ++round) {
        numbers = shown_numbers_of_one_second();
        // Whatever is dropped, no other comes twice or before its time.
        ASSERT_EQ(std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()),
                  numbers.end())
            << testing::PrintToString(numbers);
    }
    EXPECT_EQ(numbers, all);
}

TEST_F(PlayerMedia, AccurateSeeksShowExactlyTheirPicture) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    for (const int number : {900, 149, 150, 151, 1799, 1, 433, 434, 435, 436}) {
        seek(static_cast<int>(number * kFrameMs) + 10, true);
        EXPECT_TRUE(shows(number, kWideCropped)) << number;
        EXPECT_NEAR(position(), number * kFrameMs + 10, kFrameMs);
    }
}

TEST_F(PlayerMedia, RoughSeeksShowAKeyframeBesideTheTarget) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    seek(21000, false);
    EXPECT_TRUE(shows(600, kWideCropped));
    EXPECT_EQ(position(), 20000);
    seek(24500, false);
    ASSERT_TRUE(until([] { return shown_number(kWideCropped).value_or(0) % 150 == 0; }));
    const int number = shown_number(kWideCropped).value_or(0);
    EXPECT_TRUE(number == 600 || number == 750) << number;
    EXPECT_EQ(position(), number / 30 * 1000);
}

TEST_F(PlayerMedia, ASeekToTheEndThenPlayCompletes) {
    prepare("minute.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_pause(player_), PLAYER_ERROR_NONE);
    seek(60000, false);
    seek(60000, true);
    EXPECT_GE(position(), 59990);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([this] { return events_.completed == 1; }));
}

TEST_F(PlayerMedia, StartAfterTheEndPlaysAgain) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    play_to_the_end("one_second.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([this] { return events_.completed == 2; }));
}

struct ModeCase {
    player_display_mode_e mode;
    int x, y, width, height;
};

TEST_F(PlayerMedia, ModesRepaintAPausedPictureAtOnce) {
    prepare("minute.mp4");
    seek(10010, true);
    ASSERT_TRUE(shows(300, kWideInside));
    const std::array cases = {
        ModeCase{PLAYER_DISPLAY_MODE_LETTER_BOX, 0, 78, 360, 203},
        ModeCase{PLAYER_DISPLAY_MODE_ORIGINAL_SIZE, 20, 90, 320, 180},
        ModeCase{PLAYER_DISPLAY_MODE_FULL_SCREEN, 0, 0, 360, 360},
        ModeCase{PLAYER_DISPLAY_MODE_CROPPED_FULL, 0, 0, 360, 360},
        ModeCase{PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER, 20, 90, 320, 180},
        ModeCase{PLAYER_DISPLAY_MODE_DST_ROI, 0, 0, 360, 360},
    };
    for (const ModeCase &expected : cases) {
        ASSERT_EQ(player_set_display_mode(player_, expected.mode), PLAYER_ERROR_NONE);
        const auto &plane = seams::plane();
        ASSERT_NE(plane.frame(), nullptr);
        EXPECT_EQ(
            (std::array{plane.x(), plane.y(), plane.frame()->width(), plane.frame()->height()}),
            (std::array{expected.x, expected.y, expected.width, expected.height}))
            << "mode " << expected.mode;
    }
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    EXPECT_EQ(shown_number(kWideCropped), 300);
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER),
              PLAYER_ERROR_NONE);
    EXPECT_EQ(shown_number({20, 90, 320, 180}), 300);
}

TEST_F(PlayerMedia, RotationsTurnAPausedPictureClockwise) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    seek(10010, true);
    ASSERT_TRUE(shows(300, kWideCropped));
    for (int turns = 0; turns < 4; ++turns) {
        ASSERT_EQ(
            player_set_display_rotation(player_, static_cast<player_display_rotation_e>(turns)),
            PLAYER_ERROR_NONE);
        const auto number = support::read_frame_number(kWideCropped, [turns](int x, int y) {
            for (int turn = 0; turn < turns; ++turn) {
                const int turned = 359 - y;
                y = x;
                x = turned;
            }
            return luma(seams::plane().pixel(x, y));
        });
        EXPECT_EQ(number, 300) << turns << " quarter turns";
    }
}

TEST_F(PlayerMedia, ANewSizeOfThePlaneRepaints) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    ASSERT_TRUE(shows(0, kWideCropped));
    seams::plane().resize(480, 480);
    ASSERT_NE(seams::plane().frame(), nullptr);
    EXPECT_EQ(seams::plane().frame()->width(), 480);
    EXPECT_EQ(shown_number(support::PictureArea::covering(480, 320, 180)), 0);
}

TEST_F(PlayerMedia, WhatIsNotVisibleIsNotShownUntilItIs) {
    ASSERT_EQ(player_set_display_visible(player_, false), PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([] { return host::player_status().frames_decoded > 5; }));
    EXPECT_EQ(seams::plane().frame(), nullptr);
    ASSERT_EQ(player_set_display_visible(player_, true), PLAYER_ERROR_NONE);
    EXPECT_TRUE(until([] { return shown_number(kWideInside).value_or(0) > 0; }));
    ASSERT_EQ(player_set_display_visible(player_, false), PLAYER_ERROR_NONE);
    support::run_main_loop_for(0.2);
    EXPECT_EQ(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, UnprepareLeavesThePlaneEmpty) {
    prepare("minute.mp4");
    ASSERT_TRUE(shows(0, kWideInside));
    ASSERT_EQ(player_unprepare(player_), PLAYER_ERROR_NONE);
    EXPECT_EQ(seams::plane().frame(), nullptr);
    support::run_main_loop_for(0.1);
    EXPECT_EQ(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, ADeletedWindowIsForgotten) {
    prepare("minute.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(seams::plane().watched());
    seams::delete_window();
    EXPECT_FALSE(seams::plane().watched());
    support::run_main_loop_for(0.2);
    EXPECT_EQ(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, OddNumbersOfPixels) {
    prepare("odd_size.webm");
    EXPECT_EQ(video_size(), (std::array{321, 181}));
    EXPECT_TRUE(shows(0, support::PictureArea::inside(kScreen, 321, 181)));
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    EXPECT_EQ(shown_number(support::PictureArea::covering(kScreen, 321, 181)), 0);
}

TEST_F(PlayerMedia, Portrait) {
    prepare("portrait.mp4");
    EXPECT_EQ(video_size(), (std::array{180, 320}));
    EXPECT_TRUE(shows(0, support::PictureArea::inside(kScreen, 180, 320)));
    EXPECT_EQ(seams::plane().frame()->width(), 203);
    EXPECT_EQ(seams::plane().frame()->height(), 360);
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    EXPECT_EQ(shown_number(support::PictureArea::covering(kScreen, 180, 320)), 0);
}

TEST_F(PlayerMedia, AMediumThatAsksForItIsTurned) {
    prepare("turned.mp4");
    EXPECT_EQ(video_size(), (std::array{180, 320}));
    ASSERT_TRUE(until([] { return seams::plane().frame() != nullptr; }));
    EXPECT_EQ(seams::plane().frame()->width(), 203);
    EXPECT_EQ(seams::plane().frame()->height(), 360);
}

TEST_F(PlayerMedia, PixelsThatAreNotSquare) {
    prepare("wide_pixels.mp4");
    EXPECT_EQ(video_size(), (std::array{320, 180}));
    ASSERT_TRUE(until([] { return seams::plane().frame() != nullptr; }));
    EXPECT_EQ(seams::plane().frame()->width(), 360);
    EXPECT_EQ(seams::plane().frame()->height(), 203);
}

TEST_F(PlayerMedia, AnImageObjectTakesTheVideo) {
    Evas *canvas = evas_object_evas_get(seams::window());
    Evas_Object *image = evas_object_image_filled_add(canvas);
    evas_object_resize(image, 100, 100);
    ASSERT_EQ(player_set_display(player_, PLAYER_DISPLAY_TYPE_EVAS, GET_DISPLAY(image)),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    EXPECT_TRUE(until([image] {
        int width = 0;
        int height = 0;
        evas_object_image_size_get(image, &width, &height);
        return width == 100 && height == 56;
    }));
    evas_object_del(image);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    support::run_main_loop_for(0.2);
}

// What else it does

TEST_F(PlayerMedia, AStreamThatCannotBeDecodedIsToldAndTheRestPlays) {
    play_to_the_end("unknown_video.mp4");
    EXPECT_EQ(events_.missed, PLAYER_MISSED_PLUGIN_VIDEO);
}

TEST_F(PlayerMedia, SoundThatCannotBeDecodedIsToldAndTheVideoPlays) {
    play_to_the_end("unknown_sound.mp4");
    EXPECT_EQ(events_.missed, PLAYER_MISSED_PLUGIN_AUDIO);
    EXPECT_NE(seams::plane().frame(), nullptr);
}

TEST_F(PlayerMedia, ALostSoundOutputDoesNotEndThePlayback) {
    ::setenv("PULSE_SERVER", "unix:/nonexistent/socket", 1);
    seams::set_sound_sink("pulsesink");
    play_to_the_end("one_second.mp4");
    ::unsetenv("PULSE_SERVER");
}

TEST_F(PlayerMedia, AReturnedSoundOutputIsTakenWhereThePlaybackIs) {
    prepare("h264_aac.mp4");
    seek(4000, true);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return position() > 4200; }));
    const int before = position();
    seams::return_sound();
    ASSERT_TRUE(until([&] {
        EXPECT_GE(position(), before);
        return seams::sound_sinks_asked_for() == 2;
    }));
    ASSERT_TRUE(until([&] {
        EXPECT_GE(position(), before);
        return position() > before + 500;
    }));
    player_state_e state = PLAYER_STATE_NONE;
    ASSERT_EQ(player_get_state(player_, &state), PLAYER_ERROR_NONE);
    EXPECT_EQ(state, PLAYER_STATE_PLAYING);
    // Nobody has been told of anything.
    EXPECT_EQ(events_.prepared, 1);
    EXPECT_EQ(events_.seeks, 1);
    EXPECT_EQ(events_.completed, 0);
    EXPECT_EQ(events_.error, 0);
}

TEST_F(PlayerMedia, AReturnedSoundOutputLeavesAPauseAsItIs) {
    const auto area = support::PictureArea::covering(kScreen, 640, 360);
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("h264_aac.mp4");
    seek(4010, true);
    ASSERT_TRUE(shows(120, area));
    const int frames = seams::plane().frames();
    seams::return_sound();
    // The picture is drawn again, and no other one is seen on the way.
    ASSERT_TRUE(until([&] {
        EXPECT_EQ(shown_number(area), 120);
        return seams::plane().frames() > frames;
    }));
    EXPECT_EQ(seams::sound_sinks_asked_for(), 2);
    EXPECT_NEAR(position(), 4010, kFrameMs);
    support::run_main_loop_for(0.2);
    EXPECT_NEAR(position(), 4010, kFrameMs);
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return position() > 4300; }));
}

TEST_F(PlayerMedia, SeeksAcrossTheReturnOfTheSoundCompleteWhereTheyLead) {
    prepare("h264_aac.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    const auto begin_seek = [this](int target_ms) {
        return player_set_play_position(
            player_, target_ms, true, [](void *events) { ++static_cast<Events *>(events)->seeks; },
            &events_);
    };
    ASSERT_EQ(begin_seek(5000), PLAYER_ERROR_NONE);
    seams::return_sound();
    ASSERT_EQ(begin_seek(6000), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([&] { return seams::sound_sinks_asked_for() == 2; }));
    ASSERT_EQ(begin_seek(7000), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([&] { return events_.seeks == 3 && position() > 7200; }));
    EXPECT_LT(position(), 9500);
}

TEST_F(PlayerMedia, AReturnedSoundOutputIsNoneOfASilentMedium) {
    prepare("video_only.mp4");
    seams::return_sound();
    seek(500, true);
    EXPECT_EQ(seams::sound_sinks_asked_for(), 1);
}

TEST_F(PlayerMedia, TheRateChangesThePace) {
    prepare("video_only.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_EQ(player_set_playback_rate_ex(player_, 1.5F), PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([this] { return position() >= 300; }));
    const int from = position();
    const double begin = ecore_time_get();
    ASSERT_TRUE(until([&] { return position() >= from + 1500; }));
    EXPECT_NEAR(ecore_time_get() - begin, 1.0, 0.2);
}

TEST_F(PlayerMedia, CapturesTheCurrentPicture) {
    struct Capture {
        std::atomic<bool> done = false;
        int width = 0;
        int height = 0;
        std::vector<unsigned char> pixels;
    } capture;
    prepare("minute.mp4");
    seek(10010, true);
    ASSERT_EQ(player_capture_video(
                  player_,
                  [](unsigned char *data, int width, int height, unsigned int size, void *result) {
                      auto &capture = *static_cast<Capture *>(result);
                      capture.width = width;
                      capture.height = height;
                      capture.pixels.assign(data, data + size);
                      capture.done = true;
                  },
                  &capture),
              PLAYER_ERROR_NONE);
    ASSERT_TRUE(until([&] { return capture.done.load(); }));
    EXPECT_EQ((std::array{capture.width, capture.height}), (std::array{320, 180}));
    ASSERT_EQ(capture.pixels.size(), 320U * 180U * 3U);
    const auto number = support::read_frame_number({0, 0, 320, 180}, [&](int x, int y) {
        return static_cast<int>(capture.pixels[static_cast<std::size_t>(y * 320 + x) * 3 + 1]);
    });
    EXPECT_EQ(number, 300);
}

TEST_F(PlayerMedia, AnInterruptionComesThroughTheCallbackAndLeavesThePausingToIt) {
    prepare("minute.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    ASSERT_TRUE(host::inject_player_interruption(PLAYER_INTERRUPTED_BY_CALL));
    EXPECT_TRUE(until([this] { return events_.interrupted == PLAYER_INTERRUPTED_BY_CALL; }));
    EXPECT_EQ(host::player_status().state, PLAYER_STATE_PLAYING);
    EXPECT_EQ(player_pause(player_), PLAYER_ERROR_NONE);
}

TEST_F(PlayerMedia, WithoutAPlayerNothingIsInjected) {
    ASSERT_EQ(player_destroy(std::exchange(player_, nullptr)), PLAYER_ERROR_NONE);
    EXPECT_FALSE(host::inject_player_error(PLAYER_ERROR_NO_SUCH_FILE));
    EXPECT_FALSE(host::inject_player_interruption(PLAYER_INTERRUPTED_BY_CALL));
    EXPECT_FALSE(host::inject_missed_plugin(PLAYER_MISSED_PLUGIN_VIDEO));
    EXPECT_EQ(host::player_status().state, PLAYER_STATE_NONE);
}

TEST_F(PlayerMedia, SeeksThatAreGivenTheirTimeAllComplete) {
    ASSERT_EQ(player_set_display_mode(player_, PLAYER_DISPLAY_MODE_CROPPED_FULL),
              PLAYER_ERROR_NONE);
    prepare("minute.mp4");
    ASSERT_EQ(player_start(player_), PLAYER_ERROR_NONE);
    for (int index = 0; index < 40; ++index) {
        seek(index * 7919 % 58000, index % 2 == 0);
    }
    EXPECT_EQ(events_.seeks, 40);
    EXPECT_EQ(events_.completed, 0);
}

}  // namespace
