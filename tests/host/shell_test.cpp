// The watch as a person meets it: what it shows, in pixels, and where what is done to it goes.

#define EFL_ACCESS_OBJECT_PROTECTED
#define EFL_ACCESS_COMPONENT_PROTECTED

#include "shell/shell.h"

#include <Ecore_Input.h>
#include <Elementary.h>
#include <efl_extension.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "app/command_line.h"
#include "main_loop.h"
#include "shell/shell_instance.h"

namespace {

constexpr std::uint32_t kRed = 0xffff0000;
constexpr std::uint32_t kGreen = 0xff00ff00;
constexpr std::uint32_t kBlue = 0xff0000ff;
constexpr std::uint32_t kBlack = 0xff000000;
constexpr int kSide = 360;

/// A frame of one colour; rows may be longer than the picture, and then end in white.
class PlainFrame : public host::VideoFrame {
public:
    PlainFrame(int w, int h, std::uint32_t colour, int row = 0, int *alive = nullptr)
        : w_(w), h_(h), row_(row == 0 ? w : row), alive_(alive) {
        pixels_.resize(static_cast<std::size_t>(row_) * h_, 0xffffffff);
        for (int y = 0; y < h_; ++y) {
            std::fill_n(pixels_.begin() + static_cast<std::ptrdiff_t>(y) * row_, w_, colour);
        }
        if (alive_ != nullptr) {
            ++*alive_;
        }
    }
    ~PlainFrame() override {
        if (alive_ != nullptr) {
            --*alive_;
        }
    }
    [[nodiscard]] const void *pixels() const override { return pixels_.data(); }
    [[nodiscard]] int width() const override { return w_; }
    [[nodiscard]] int height() const override { return h_; }
    [[nodiscard]] int stride() const override { return row_ * 4; }

private:
    int w_;
    int h_;
    int row_;
    int *alive_;
    std::vector<std::uint32_t> pixels_;
};

/// A picture file, read back.
class PictureFile {
public:
    PictureFile(Evas *canvas, const std::string &file) {
        Evas_Object *image = evas_object_image_add(canvas);
        evas_object_image_file_set(image, file.c_str(), nullptr);
        evas_object_image_size_get(image, &w, &h);
        const auto *data =
            static_cast<const std::uint32_t *>(evas_object_image_data_get(image, EINA_FALSE));
        if (data != nullptr) {
            pixels_.assign(data, data + static_cast<std::size_t>(w) * h);
        }
        evas_object_del(image);
    }
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return pixels_.empty() ? 0 : pixels_[static_cast<std::size_t>(y) * w + x] | 0xff000000U;
    }
    int w = 0;
    int h = 0;

private:
    std::vector<std::uint32_t> pixels_;
};

class ShellTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(host::start_shell());
        window_ = elm_win_add(nullptr, "program", ELM_WIN_BASIC);
        ASSERT_NE(window_, nullptr);
        plane_ = host::video_plane_of(window_);
        ASSERT_NE(plane_, nullptr);
        evas_object_show(window_);
    }
    void TearDown() override { host::stop_shell(); }

    [[nodiscard]] Evas_Object *window() const { return window_; }
    [[nodiscard]] Evas *canvas() const { return evas_object_evas_get(window_); }
    [[nodiscard]] host::VideoPlane &plane() const { return *plane_; }

    Evas_Object *add_rectangle(int x, int y, int w, int h, std::uint32_t colour) {
        Evas_Object *rectangle = evas_object_rectangle_add(evas_object_evas_get(window_));
        evas_object_color_set(rectangle, colour >> 16U & 0xffU, colour >> 8U & 0xffU,
                              colour & 0xffU, colour >> 24U);
        evas_object_geometry_set(rectangle, x, y, w, h);
        evas_object_show(rectangle);
        return rectangle;
    }
    /// As the program makes it: transparent, and copied instead of blended.
    Evas_Object *add_hole() {
        Evas_Object *hole = add_rectangle(0, 0, kSide, kSide, 0);
        evas_object_render_op_set(hole, EVAS_RENDER_COPY);
        return hole;
    }
    void show(std::uint32_t colour, int w = kSide, int h = kSide, int x = 0, int y = 0) {
        plane_->show(std::make_unique<PlainFrame>(w, h, colour), x, y);
    }
    /// What the watch shows at a point of its screen.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const {
        const std::string file = testing::TempDir() + "shell_test." + std::to_string(getpid());
        EXPECT_TRUE(host::save_screenshot(file));
        const host::Rect &screen = host::shell()->geometry().screen;
        const std::uint32_t colour = PictureFile(canvas(), file).at(screen.x + x, screen.y + y);
        std::filesystem::remove(file);
        return colour;
    }
    static void tap(int x, int y) {
        host::pointer_down(x, y);
        host::pointer_up(x, y);
    }

private:
    Evas_Object *window_ = nullptr;
    host::VideoPlane *plane_ = nullptr;
};

void count(void *data, Evas * /*evas*/, Evas_Object * /*obj*/, void * /*info*/) {
    ++*static_cast<int *>(data);
}

void count_smart(void *data, Evas_Object * /*obj*/, void * /*info*/) {
    ++*static_cast<int *>(data);
}

using VideoPlane = ShellTest;

TEST_F(VideoPlane, HasTheSizeOfTheScreen) {
    EXPECT_EQ(plane().width(), kSide);
    EXPECT_EQ(plane().height(), kSide);
}

TEST_F(VideoPlane, BelongsToTheProgramsWindowAlone) {
    EXPECT_EQ(host::program_window(), window());
    EXPECT_EQ(host::video_plane_of(add_hole()), nullptr);
    EXPECT_EQ(host::video_plane_of(nullptr), nullptr);
    evas_object_del(window());
    EXPECT_EQ(host::program_window(), nullptr);
}

TEST_F(VideoPlane, ShowsThroughTheHoleAndOnlyThere) {
    add_rectangle(0, 0, kSide, kSide / 2, kGreen);
    Evas_Object *hole = add_hole();
    show(kRed);
    EXPECT_EQ(pixel(180, 90), kRed);
    EXPECT_EQ(pixel(180, 270), kRed);
    evas_object_geometry_set(hole, 0, 0, kSide, 60);
    EXPECT_EQ(pixel(180, 30), kRed);
    EXPECT_EQ(pixel(180, 90), kGreen);
    EXPECT_EQ(pixel(180, 270), kRed);
}

TEST_F(VideoPlane, LiesBelowWhatTheProgramDrawsLater) {
    add_hole();
    show(kRed);
    EXPECT_EQ(pixel(180, 180), kRed);
    Evas_Object *control = add_rectangle(150, 150, 60, 60, kBlue);
    EXPECT_EQ(pixel(180, 180), kBlue);
    EXPECT_EQ(pixel(100, 180), kRed);
    evas_object_hide(control);
    EXPECT_EQ(pixel(180, 180), kRed);
}

TEST_F(VideoPlane, IsBlackWhereNoFrameIs) {
    add_hole();
    EXPECT_EQ(pixel(180, 180), kBlack);
    show(kRed, 100, 100, 130, 130);
    EXPECT_EQ(pixel(130, 130), kRed);
    EXPECT_EQ(pixel(229, 229), kRed);
    EXPECT_EQ(pixel(129, 180), kBlack);
    EXPECT_EQ(pixel(180, 230), kBlack);
    plane().clear();
    EXPECT_EQ(pixel(180, 180), kBlack);
}

TEST_F(VideoPlane, CutsAFrameThatIsLarger) {
    add_hole();
    plane().show(std::make_unique<PlainFrame>(500, 400, kRed), -70, -20);
    EXPECT_EQ(pixel(180, 2), kRed);
    EXPECT_EQ(pixel(358, 180), kRed);
    plane().show(std::make_unique<PlainFrame>(200, 200, kGreen), -100, 80);
    EXPECT_EQ(pixel(99, 180), kGreen);
    EXPECT_EQ(pixel(100, 180), kBlack);
}

TEST_F(VideoPlane, DoesNotShowTheGapBetweenRows) {
    add_hole();
    plane().show(std::make_unique<PlainFrame>(101, 100, kRed, 128), 100, 130);
    EXPECT_EQ(pixel(200, 180), kRed);
    EXPECT_EQ(pixel(201, 180), kBlack);
    EXPECT_EQ(pixel(100, 180), kRed);
}

TEST_F(VideoPlane, KeepsAFrameUntilTheNext) {
    add_hole();
    int alive = 0;
    for (int i = 0; i < 3; ++i) {
        plane().show(std::make_unique<PlainFrame>(kSide, kSide, kRed, 0, &alive), 0, 0);
        EXPECT_EQ(alive, 1);
    }
    plane().clear();
    EXPECT_EQ(alive, 0);
}

TEST_F(VideoPlane, IsCutByTheRoundFrame) {
    add_hole();
    show(kRed);
    EXPECT_NE(pixel(10, 10), kRed);
    EXPECT_NE(pixel(kSide - 11, kSide - 11), kRed);
    EXPECT_EQ(pixel(180, 2), kRed);
    EXPECT_EQ(pixel(2, 180), kRed);
}

using ProgramWindow = ShellTest;

TEST_F(ProgramWindow, IsOfTheScreensSizeWhateverItAsksFor) {
    evas_object_resize(window(), 700, 20);
    int w = 0;
    int h = 0;
    evas_object_geometry_get(window(), nullptr, nullptr, &w, &h);
    EXPECT_EQ(w, kSide);
    EXPECT_EQ(h, kSide);
    int x = -1;
    int y = -1;
    elm_win_screen_size_get(window(), &x, &y, &w, nullptr);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
    EXPECT_EQ(w, kSide);
}

TEST_F(ProgramWindow, IsNeverNameless) {
    elm_win_title_set(window(), "");
    EXPECT_STREQ(elm_win_title_get(window()), "Tessel");
    elm_win_title_set(window(), "Holidays");
    EXPECT_STREQ(elm_win_title_get(window()), "Holidays");
}

TEST_F(ProgramWindow, TapIsAClick) {
    Evas_Object *button = elm_button_add(window());
    evas_object_geometry_set(button, 130, 130, 100, 100);
    evas_object_show(button);
    int clicks = 0;
    evas_object_smart_callback_add(button, "clicked", count_smart, &clicks);
    support::run_loop_turns();
    tap(60, 180);
    tap(180, 180);
    EXPECT_TRUE(support::run_main_loop_until([&] { return clicks > 0; }));
    support::run_loop_turns();
    EXPECT_EQ(clicks, 1);
}

TEST_F(ProgramWindow, TapEndsInTheGestureLayer) {
    Evas_Object *surface = elm_layout_add(window());
    evas_object_geometry_set(surface, 0, 0, kSide, kSide);
    evas_object_show(surface);
    Evas_Object *target = add_rectangle(0, 0, kSide, kSide, 0);
    Evas_Object *layer = elm_gesture_layer_add(window());
    elm_gesture_layer_hold_events_set(layer, EINA_FALSE);
    elm_gesture_layer_attach(layer, target);
    int ends = 0;
    elm_gesture_layer_cb_set(
        layer, ELM_GESTURE_N_TAPS, ELM_GESTURE_STATE_END,
        [](void *data, void *) {
            ++*static_cast<int *>(data);
            return EVAS_EVENT_FLAG_NONE;
        },
        &ends);
    support::run_loop_turns();
    tap(180, 90);
    EXPECT_TRUE(support::run_main_loop_until([&] { return ends == 1; }));
}

TEST_F(ProgramWindow, OnlyAFingerThatIsDownIsFelt) {
    Evas_Object *surface = add_rectangle(0, 0, kSide, kSide, 0);
    int moves = 0;
    evas_object_event_callback_add(surface, EVAS_CALLBACK_MOUSE_MOVE, count, &moves);
    host::pointer_move(100, 180);
    host::pointer_move(200, 180);
    EXPECT_EQ(moves, 0);
    host::pointer_down(100, 180);
    const int before = moves;
    host::pointer_move(200, 180);
    EXPECT_EQ(moves, before + 1);
    host::pointer_up(200, 180);
}

TEST_F(ProgramWindow, MayBeClosedUnderAFinger) {
    Evas_Object *button = elm_button_add(window());
    evas_object_geometry_set(button, 0, 0, kSide, kSide);
    evas_object_show(button);
    evas_object_smart_callback_add(
        button, "clicked",
        [](void *data, Evas_Object *, void *) {
            evas_object_del(static_cast<Evas_Object *>(data));
        },
        window());
    support::run_loop_turns();
    tap(180, 180);
    EXPECT_TRUE(support::run_main_loop_until([] { return host::program_window() == nullptr; }));
}

class Turning : public ShellTest {
protected:
    void allow(std::vector<int> rotations) {
        elm_win_wm_rotation_available_rotations_set(window(), rotations.data(), rotations.size());
    }
};

TEST_F(Turning, IsSupported) {
    EXPECT_TRUE(elm_win_wm_rotation_supported_get(window()));
    EXPECT_EQ(elm_win_rotation_get(window()), 0);
}

TEST_F(Turning, TellsTheProgramOnceEach) {
    allow({0, 90, 180, 270});
    int rotated = 0;
    int rotated_by_wm = 0;
    evas_object_smart_callback_add(window(), "rotation,changed", count_smart, &rotated);
    evas_object_smart_callback_add(window(), "wm,rotation,changed", count_smart, &rotated_by_wm);
    host::turn_screen(270);
    EXPECT_EQ(elm_win_rotation_get(window()), 270);
    EXPECT_EQ(rotated, 1);
    EXPECT_EQ(rotated_by_wm, 1);
    host::turn_screen(270);
    host::turn_screen(45);
    EXPECT_EQ(rotated, 1);
    EXPECT_EQ(rotated_by_wm, 1);
}

TEST_F(Turning, IsRefusedWhereTheProgramDoesNotAllowIt) {
    allow({0, 180});
    int rotated = 0;
    evas_object_smart_callback_add(window(), "wm,rotation,changed", count_smart, &rotated);
    host::turn_screen(90);
    EXPECT_EQ(elm_win_rotation_get(window()), 0);
    EXPECT_EQ(rotated, 0);
    host::turn_screen(180);
    EXPECT_EQ(elm_win_rotation_get(window()), 180);
}

TEST_F(Turning, TurnsThePictureAndTheTouchWithIt) {
    // A mark left of the middle of the program's picture.
    Evas_Object *mark = add_rectangle(60, 150, 60, 60, kGreen);
    int touched = 0;
    evas_object_event_callback_add(mark, EVAS_CALLBACK_MOUSE_DOWN, count, &touched);
    show(kRed);
    struct Place {
        int degrees;
        int x;
        int y;
    };
    int expected = 0;
    for (const Place &place :
         {Place{0, 90, 180}, Place{90, 180, 270}, Place{180, 270, 180}, Place{270, 180, 90}}) {
        host::turn_screen(place.degrees);
        EXPECT_EQ(pixel(place.x, place.y), kGreen) << place.degrees;
        EXPECT_EQ(pixel(kSide - place.x, kSide - place.y), kRed) << place.degrees;
        tap(place.x, place.y);
        EXPECT_EQ(touched, ++expected) << place.degrees;
    }
}

TEST_F(Turning, LeavesTheVideoPlaneAsItIs) {
    add_hole();
    show(kRed, kSide, 100, 0, 0);
    host::turn_screen(90);
    EXPECT_EQ(pixel(180, 50), kRed);
    EXPECT_EQ(pixel(50, 180), kBlack);
}

class Bezel : public ShellTest {
protected:
    struct Detent {
        Eext_Rotary_Event_Direction direction;
        unsigned int stamp;
    };

    void SetUp() override {
        ShellTest::SetUp();
        eext_rotary_object_event_callback_add(
            window(),
            [](void *data, Evas_Object *, Eext_Rotary_Event_Info *info) -> Eina_Bool {
                static_cast<Bezel *>(data)->detents.push_back({info->direction, info->time_stamp});
                return EINA_TRUE;
            },
            this);
        eext_rotary_object_event_activated_set(window(), EINA_TRUE);
    }
    bool wait_for(std::size_t count) {
        return support::run_main_loop_until([&] { return detents.size() >= count; });
    }
    static void wheel(int z) {
        Evas *canvas = host::shell()->top().input_canvas();
        const host::Rect &screen = host::shell()->geometry().screen;
        evas_event_feed_mouse_in(canvas, 0, nullptr);
        evas_event_feed_mouse_move(canvas, screen.x + 180, screen.y + 180, 0, nullptr);
        evas_event_feed_mouse_wheel(canvas, 0, z, 0, nullptr);
    }

    std::vector<Detent> detents;
};

TEST_F(Bezel, WheelUpIsClockwise) {
    wheel(-1);
    ASSERT_EQ(detents.size(), 1U);
    EXPECT_EQ(detents[0].direction, EEXT_ROTARY_DIRECTION_CLOCKWISE);
}

TEST_F(Bezel, WheelDownIsCounterClockwise) {
    wheel(1);
    ASSERT_EQ(detents.size(), 1U);
    EXPECT_EQ(detents[0].direction, EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE);
}

TEST_F(Bezel, WheelBurstIsSpread) {
    wheel(-2);
    wheel(-2);
    ASSERT_TRUE(wait_for(4));
    for (std::size_t i = 1; i < detents.size(); ++i) {
        EXPECT_GE(detents[i].stamp - detents[i - 1].stamp, 10U);
    }
}

TEST_F(Bezel, WheelScrollsNothingInTheProgram) {
    Evas_Object *surface = add_rectangle(0, 0, kSide, kSide, 0);
    int wheels = 0;
    evas_object_event_callback_add(surface, EVAS_CALLBACK_MOUSE_WHEEL, count, &wheels);
    wheel(-1);
    EXPECT_EQ(detents.size(), 1U);
    EXPECT_EQ(wheels, 0);
}

TEST_F(Bezel, DragAlongTheRingGivesADetentPerFifteenDegrees) {
    Evas_Object *surface = add_rectangle(0, 0, kSide, kSide, 0);
    int touches = 0;
    evas_object_event_callback_add(surface, EVAS_CALLBACK_MOUSE_DOWN, count, &touches);
    // From the top of the ring to its right: a quarter of a turn.
    host::pointer_down(180, -25);
    host::pointer_move(180 + 145, 180 - 145);
    host::pointer_move(180 + 205, 180);
    host::pointer_up(180 + 205, 180);
    ASSERT_TRUE(wait_for(6));
    support::run_main_loop_for(0.05);
    EXPECT_EQ(detents.size(), 6U);
    EXPECT_EQ(detents[0].direction, EEXT_ROTARY_DIRECTION_CLOCKWISE);
    EXPECT_EQ(touches, 0);
}

TEST_F(Bezel, DragBackAcrossTheTopIsCounterClockwise) {
    host::pointer_down(180 + 30, -22);
    host::pointer_move(180 - 30, -22);
    host::pointer_up(180 - 30, -22);
    ASSERT_TRUE(wait_for(1));
    EXPECT_EQ(detents[0].direction, EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE);
    EXPECT_EQ(detents.size(), 1U);
}

TEST_F(Bezel, ScriptTurnsItToo) {
    host::turn_bezel(-2, 20);
    ASSERT_TRUE(wait_for(2));
    EXPECT_EQ(detents[1].direction, EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE);
    EXPECT_GE(detents[1].stamp - detents[0].stamp, 20U);
}

class Keyboard : public Bezel {
protected:
    void SetUp() override {
        Bezel::SetUp();
        eext_object_event_callback_add(window(), EEXT_CALLBACK_BACK, count_smart, &back);
        eext_object_event_callback_add(window(), EEXT_CALLBACK_MORE, count_smart, &more);
    }
    static void press(const char *name, unsigned int modifiers = 0) {
        send(ECORE_EVENT_KEY_DOWN, name, modifiers);
    }
    static void let_go(const char *name) { send(ECORE_EVENT_KEY_UP, name, 0); }
    static void send(int type, const char *name, unsigned int modifiers) {
        // The name lies behind the event, as the toolkit's own events have it.
        const std::size_t length = std::strlen(name) + 1;
        auto *event =
            static_cast<Ecore_Event_Key *>(std::calloc(1, sizeof(Ecore_Event_Key) + length));
        char *text = reinterpret_cast<char *>(event + 1);
        std::memcpy(text, name, length);
        event->keyname = text;
        event->key = text;
        event->modifiers = modifiers;
        ecore_event_add(type, event, nullptr, nullptr);
        support::run_loop_turns();
    }

    int back = 0;
    int more = 0;
};

TEST_F(Keyboard, EscapeAndBackAreBack) {
    press("Escape");
    press("XF86Back");
    EXPECT_EQ(back, 2);
    EXPECT_EQ(more, 0);
}

TEST_F(Keyboard, MenuAndF10AreMore) {
    press("Menu");
    press("F10");
    EXPECT_EQ(more, 2);
    EXPECT_EQ(back, 0);
}

TEST_F(Keyboard, ArrowsTurnTheBezel) {
    press("Right");
    ASSERT_TRUE(wait_for(1));
    press("Left");
    ASSERT_TRUE(wait_for(2));
    EXPECT_EQ(detents[0].direction, EEXT_ROTARY_DIRECTION_CLOCKWISE);
    EXPECT_EQ(detents[1].direction, EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE);
}

TEST_F(Keyboard, ChordsOfTheDesktopAreNotForTheWatch) {
    press("Escape", ECORE_EVENT_MODIFIER_CTRL);
    press("Right", ECORE_EVENT_MODIFIER_ALT);
    EXPECT_EQ(back, 0);
    EXPECT_TRUE(detents.empty());
}

TEST_F(Keyboard, WhatIsPressedWithAKeyOfTheScreenReaderIsItsCommand) {
    for (const char *const key : {"Insert", "KP_Insert", "Caps_Lock"}) {
        back = 0;
        press(key);
        press("Escape");
        EXPECT_EQ(back, 0) << key;
        let_go("Escape");
        let_go(key);
        press("Escape");
        EXPECT_EQ(back, 1) << key;
    }
}

TEST_F(Keyboard, KeysThatTheToolkitHoldsBackForAssistiveTechnologiesArriveAllTheSame) {
    const auto hold_back = [](void *, void *, int type, void *) -> Eina_Bool {
        return type != ECORE_EVENT_KEY_DOWN && type != ECORE_EVENT_KEY_UP;
    };
    Ecore_Event_Filter *filter = ecore_event_filter_add(nullptr, hold_back, nullptr, nullptr);
    press("Escape");
    ecore_event_filter_del(filter);
    EXPECT_EQ(back, 1);
}

/// The lines of --help that tell of keys: names with commas between, and what they do.
std::vector<std::pair<std::string, std::string>> keys_of_the_help() {
    const char *const arguments[] = {"tessel", "--help"};
    std::istringstream help(
        std::get<host::CommandLineEnd>(host::parse_command_line(2, arguments)).text);
    std::vector<std::pair<std::string, std::string>> keys;
    std::string line;
    while (std::getline(help, line) && line != "Keys:") {
    }
    while (std::getline(help, line) && !line.empty()) {
        const std::size_t gap = line.find("   ", 2);
        const std::size_t meaning = line.find_first_not_of(' ', gap);
        std::istringstream names(line.substr(2, gap - 2));
        std::string name;
        while (std::getline(names >> std::ws, name, ',')) {
            keys.emplace_back(name, line.substr(meaning));
        }
    }
    return keys;
}

/// Buttons in two rows, given in no order.
class KeyboardFocus : public Keyboard {
protected:
    void SetUp() override {
        Keyboard::SetUp();
        for (const auto &[name, x, y] : {Place{"lower right", 200, 200}, Place{"upper", 150, 60},
                                         Place{"lower left", 100, 205}}) {
            buttons[name] = add_button(window(), x, y);
        }
    }
    void TearDown() override {
        elm_config_mirrored_set(EINA_FALSE);
        Keyboard::TearDown();
    }

    struct Place {
        const char *name;
        int x;
        int y;
    };

    Evas_Object *add_button(Evas_Object *parent, int x, int y) {
        Evas_Object *button = elm_button_add(parent);
        evas_object_geometry_set(button, x, y, 60, 40);
        evas_object_smart_callback_add(
            button, "clicked",
            [](void *data, Evas_Object *pressed, void *) {
                static_cast<std::vector<Evas_Object *> *>(data)->push_back(pressed);
            },
            &clicked);
        evas_object_show(button);
        support::run_loop_turns();
        return button;
    }

    std::string focused() {
        for (const auto &[name, button] : buttons) {
            if (button == host::focused_button()) {
                return name;
            }
        }
        return "";
    }
    std::vector<std::string> walk(int steps, unsigned int modifiers = 0) {
        std::vector<std::string> seen;
        for (int step = 0; step < steps; ++step) {
            press("Tab", modifiers);
            seen.push_back(focused());
        }
        return seen;
    }

    std::map<std::string, Evas_Object *> buttons;
    std::vector<Evas_Object *> clicked;
};

using Names = std::vector<std::string>;

TEST_F(KeyboardFocus, TabGoesFromRowToRowAndRound) {
    EXPECT_EQ(walk(4), (Names{"upper", "lower left", "lower right", "upper"}));
}

TEST_F(KeyboardFocus, ShiftTabGoesTheOtherWay) {
    EXPECT_EQ(walk(4, ECORE_EVENT_MODIFIER_SHIFT),
              (Names{"lower right", "lower left", "upper", "lower right"}));
    // As some desktops call the same key.
    press("ISO_Left_Tab", ECORE_EVENT_MODIFIER_SHIFT);
    EXPECT_EQ(focused(), "lower left");
}

TEST_F(KeyboardFocus, ARowIsReadAsTheLanguageIs) {
    elm_config_mirrored_set(EINA_TRUE);
    EXPECT_EQ(walk(3), (Names{"upper", "lower right", "lower left"}));
}

TEST_F(KeyboardFocus, HiddenAndDisabledButtonsArePassedOver) {
    evas_object_hide(buttons["lower left"]);
    EXPECT_EQ(walk(3), (Names{"upper", "lower right", "upper"}));
    elm_object_disabled_set(buttons["lower right"], EINA_TRUE);
    EXPECT_EQ(walk(2), (Names{"upper", "upper"}));
}

TEST_F(KeyboardFocus, ReturnEnterAndSpacePressTheButton) {
    walk(2);
    press("Return");
    press("KP_Enter");
    press("space");
    EXPECT_EQ(clicked, std::vector<Evas_Object *>(3, buttons["lower left"]));
}

TEST_F(KeyboardFocus, AButtonThatNoKeyHasChosenIsNotPressed) {
    elm_object_focus_set(buttons["upper"], EINA_TRUE);
    press("Return");
    EXPECT_TRUE(clicked.empty());
    EXPECT_EQ(focused(), "");
}

bool is_said_to_have_focus(Evas_Object *button) {
    return STATE_TYPE_GET(efl_access_object_state_set_get(button), EFL_ACCESS_STATE_TYPE_FOCUSED) !=
           0;
}

TEST_F(KeyboardFocus, IsWhatAssistiveTechnologiesAreTold) {
    walk(2);
    EXPECT_TRUE(is_said_to_have_focus(buttons["lower left"]));
    EXPECT_FALSE(is_said_to_have_focus(buttons["upper"]));
    evas_object_hide(buttons["lower left"]);
    EXPECT_FALSE(is_said_to_have_focus(buttons["lower left"]));
}

TEST_F(KeyboardFocus, TheToolkitsOwnIsNotTold) {
    Evas_Object *picture = elm_win_inlined_image_object_get(window());
    evas_focus_in(evas_object_evas_get(picture));
    evas_object_focus_set(picture, EINA_TRUE);
    support::run_loop_turns();
    elm_object_focus_set(buttons["upper"], EINA_TRUE);
    ASSERT_TRUE(elm_object_focus_get(buttons["upper"]));
    EXPECT_FALSE(is_said_to_have_focus(buttons["upper"]));
}

TEST_F(KeyboardFocus, AssistiveTechnologiesMayGiveItToAButtonThatCanBePressed) {
    evas_object_hide(buttons["lower left"]);
    EXPECT_FALSE(efl_access_component_focus_grab(buttons["lower left"]));
    EXPECT_EQ(focused(), "");
    EXPECT_TRUE(efl_access_component_focus_grab(buttons["lower right"]));
    EXPECT_EQ(focused(), "lower right");
}

TEST_F(KeyboardFocus, GoesWithItsButton) {
    walk(1);
    evas_object_del(buttons["upper"]);
    buttons.erase("upper");
    support::run_loop_turns();
    EXPECT_EQ(focused(), "");
    EXPECT_EQ(walk(1), Names{"lower left"});
}

TEST_F(KeyboardFocus, StaysAtAButtonThatAKeyPressesAndIsEndedByAFinger) {
    walk(1);
    press("Return");
    EXPECT_EQ(focused(), "upper");
    tap(20, 180);
    EXPECT_EQ(focused(), "");
    EXPECT_EQ(walk(1), Names{"upper"});
}

TEST_F(KeyboardFocus, AButtonThatWasHiddenOrDisabledSinceIsNotPressed) {
    walk(1);
    elm_object_disabled_set(buttons["upper"], EINA_TRUE);
    press("Return");
    elm_object_disabled_set(buttons["upper"], EINA_FALSE);
    ASSERT_EQ(walk(1), Names{"lower left"});
    evas_object_hide(buttons["lower left"]);
    press("Return");
    EXPECT_TRUE(clicked.empty());
}

TEST_F(KeyboardFocus, AButtonThatHasGoneIsForgotten) {
    walk(2);
    evas_object_del(buttons["lower left"]);
    buttons.erase("lower left");
    press("Return");
    EXPECT_TRUE(clicked.empty());
    EXPECT_EQ(walk(1), Names{"upper"});
}

TEST_F(KeyboardFocus, WhereNoButtonIsShownTheScreenIsTapped) {
    for (const auto &[name, button] : buttons) {
        evas_object_hide(button);
    }
    std::vector<host::InputEvent> seen;
    host::observe_input([&seen](const host::InputEvent &event) { seen.push_back(event); });
    press("space");
    host::observe_input({});
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_EQ(seen[0].kind, host::InputEvent::Kind::finger_down);
    EXPECT_EQ(seen[0].x, kSide / 2);
    EXPECT_EQ(seen[0].y, kSide / 2);
    EXPECT_EQ(seen[1].kind, host::InputEvent::Kind::finger_up);
}

TEST_F(KeyboardFocus, AnOpenPopupKeepsTheFocusToItself) {
    Evas_Object *popup = elm_popup_add(window());
    Evas_Object *button = elm_button_add(popup);
    elm_object_part_content_set(popup, "button1", button);
    evas_object_show(popup);
    buttons["popup"] = button;
    // It takes its place with its first frame.
    ASSERT_TRUE(support::run_main_loop_until([&] { return walk(1) == Names{"popup"}; }));
    EXPECT_EQ(walk(2), (Names{"popup", "popup"}));
}

TEST_F(KeyboardFocus, ATurnedScreenIsPressedWhereItsButtonIs) {
    host::turn_screen(90);
    support::run_loop_turns();
    walk(1);
    press("Return");
    EXPECT_EQ(clicked, std::vector<Evas_Object *>{buttons["upper"]});
}

TEST_F(Keyboard, EachKeyOfTheHelpDoesWhatItSays) {
    using Event = host::InputEvent;
    const auto is_key = [](host::Key key) {
        return [key](const Event &e) { return e.kind == Event::Kind::key && e.key == key; };
    };
    const auto is_detent = [](bool clockwise) {
        return [clockwise](const Event &e) {
            return e.kind == Event::Kind::detent && e.clockwise == clockwise;
        };
    };
    const std::map<std::string, std::function<bool(const Event &)>> effects{
        {"back: ends the player, closes a message", is_key(host::Key::back)},
        {"the more key", is_key(host::Key::more)},
        {"leaves the foreground, which ends the player", is_key(host::Key::home)},
        {"turns the bezel clockwise by a detent", is_detent(true)},
        {"turns the bezel back by a detent", is_detent(false)},
        {"turns the watch by a quarter",
         [](const Event &e) { return e.kind == Event::Kind::turned && e.degrees == 90; }},
        {"goes to the next button, with Shift to the one before",
         [](const Event &e) { return e.kind == Event::Kind::focus_moved && e.forward; }},
        {"presses that button; where none is shown, taps the screen",
         [](const Event &e) { return e.kind == Event::Kind::finger_down; }}};
    const auto keys = keys_of_the_help();
    EXPECT_EQ(keys.size(), 13U);
    for (const auto &[name, meaning] : keys) {
        ASSERT_TRUE(effects.contains(meaning)) << meaning;
        std::vector<Event> seen;
        host::observe_input([&seen](const Event &event) { seen.push_back(event); });
        press(name.c_str());
        EXPECT_TRUE(support::run_main_loop_until([&seen] { return !seen.empty(); })) << name;
        host::observe_input({});
        // What a finger has pressed it lets go.
        ASSERT_EQ(seen.size(), seen[0].kind == Event::Kind::finger_down ? 2U : 1U) << name;
        EXPECT_TRUE(effects.at(meaning)(seen[0])) << name << " doesn't do: " << meaning;
    }
}

TEST_F(Keyboard, KeyDrawnOnTheFrameIsBack) {
    const host::Geometry &geometry = host::shell()->geometry();
    for (int x = kSide; x < kSide + 80 && back == 0; ++x) {
        if (geometry.at(geometry.screen.x + x, geometry.screen.y + 80) ==
            host::Geometry::Place::back_key) {
            tap(x, 80);
        }
    }
    EXPECT_EQ(back, 1);
}

TEST_F(ShellTest, ScreenshotHasTheWholeWatch) {
    add_hole();
    show(kRed);
    const std::string file = testing::TempDir() + "shell_whole." + std::to_string(getpid());
    ASSERT_TRUE(host::save_screenshot(file));
    const PictureFile picture(canvas(), file);
    std::filesystem::remove(file);
    const host::Geometry &geometry = host::shell()->geometry();
    EXPECT_EQ(picture.w, geometry.window_w);
    EXPECT_EQ(picture.h, geometry.window_h);
    const int middle = geometry.window_w / 2;
    EXPECT_EQ(picture.at(middle, geometry.window_h / 2), kRed);
    // The ring is lighter than the glass beside it.
    const auto light = [&picture](int x, int y) { return picture.at(x, y) >> 8U & 0xffU; };
    EXPECT_GT(light(middle + 20, geometry.screen.y - 25),
              light(middle + 20, geometry.screen.y - 4));
}

TEST_F(ShellTest, ScreenshotThatCannotBeWrittenIsToldAndLeavesNothing) {
    EXPECT_FALSE(host::save_screenshot("/nonexistent/folder/picture.png"));
}

class PlatformTheme : public ShellTest {
protected:
    Evas_Object *add_popup(const char *style) {
        Evas_Object *layout = elm_layout_add(window());
        EXPECT_TRUE(elm_layout_theme_set(layout, "layout", "application", "default"));
        evas_object_resize(layout, kSide, kSide);
        evas_object_show(layout);
        Evas_Object *popup = elm_popup_add(layout);
        elm_popup_align_set(popup, -1.0, 1.0);
        EXPECT_TRUE(elm_object_style_set(popup, style));
        return popup;
    }
};

TEST_F(PlatformTheme, HasWhatTheDevicesThemeHas) {
    for (const char *group :
         {"elm/layout/application/default", "elm/layout/popup/content/circle",
          "elm/naviframe/item/basic/transparent/default", "elm/ctxpopup/base/more/default",
          "elm/button/base/naviframe/more/default", "elm/button/base/popup/circle",
          "elm/popup/base/circle", "elm/popup/base/toast/circle", "elm/notify/bottom/popup/circle",
          "elm/notify/bottom/popup/toast/circle"}) {
        EXPECT_NE(elm_theme_group_path_find(nullptr, group), nullptr) << group;
    }
}

TEST_F(PlatformTheme, PopupWithAButtonIsDismissedAfterItsHiding) {
    Evas_Object *popup = add_popup("circle");
    Evas_Object *content = elm_layout_add(popup);
    ASSERT_TRUE(elm_layout_theme_set(content, "layout", "popup", "content/circle"));
    EXPECT_TRUE(elm_layout_text_set(content, "elm.text", "Unable to play video."));
    elm_object_content_set(popup, content);
    Evas_Object *button = elm_button_add(popup);
    elm_object_part_content_set(popup, "button1", button);
    EXPECT_TRUE(elm_object_style_set(button, "popup/circle"));
    Evas_Object *icon = elm_icon_add(button);
    elm_object_part_content_set(button, "elm.swallow.content", icon);
    EXPECT_EQ(elm_object_part_content_get(button, "elm.swallow.content"), icon);
    evas_object_smart_callback_add(
        button, "clicked",
        [](void *data, Evas_Object *, void *) {
            elm_popup_dismiss(static_cast<Evas_Object *>(data));
        },
        popup);
    int dismissed = 0;
    evas_object_smart_callback_add(popup, "dismissed", count_smart, &dismissed);
    evas_object_show(popup);
    support::run_main_loop_for(0.4);
    tap(180, 300);
    EXPECT_EQ(dismissed, 0);
    EXPECT_TRUE(support::run_main_loop_until([&] { return dismissed == 1; }));
}

TEST_F(PlatformTheme, ToastGoesByItself) {
    Evas_Object *popup = add_popup("toast/circle");
    elm_object_part_text_set(popup, "elm.text", "This file does not exist.");
    EXPECT_STREQ(elm_object_part_text_get(popup, "elm.text"), "This file does not exist.");
    elm_popup_timeout_set(popup, 0.3);
    int timeouts = 0;
    int dismissed = 0;
    evas_object_smart_callback_add(popup, "timeout", count_smart, &timeouts);
    evas_object_smart_callback_add(popup, "dismissed", count_smart, &dismissed);
    evas_object_show(popup);
    EXPECT_TRUE(support::run_main_loop_until([&] { return timeouts == 1 && dismissed == 1; }));
}

TEST_F(PlatformTheme, PaintsNothingBehindAPage) {
    Evas_Object *conformant = elm_conformant_add(window());
    evas_object_size_hint_weight_set(conformant, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window(), conformant);
    evas_object_show(conformant);
    Evas_Object *naviframe = elm_naviframe_add(conformant);
    elm_object_content_set(conformant, naviframe);
    evas_object_show(naviframe);
    Evas_Object *page = elm_layout_add(naviframe);
    Elm_Object_Item *item =
        elm_naviframe_item_push(naviframe, nullptr, nullptr, nullptr, page, nullptr);
    elm_naviframe_item_title_enabled_set(item, EINA_FALSE, EINA_FALSE);
    elm_naviframe_item_style_set(item, "basic/transparent");
    show(kRed);
    support::run_main_loop_for(0.3);
    EXPECT_EQ(pixel(180, 180), kRed);
    EXPECT_EQ(pixel(180, 20), kRed);
    int x = -1;
    int y = -1;
    int w = 0;
    int h = 0;
    evas_object_geometry_get(page, &x, &y, &w, &h);
    EXPECT_EQ(host::Rect({x, y, w, h}), host::Rect({0, 0, kSide, kSide}));
}

}  // namespace
