#include "TslSignalMgr.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>

namespace {

struct Row {
    TslSignalType type;
    int value;
};

class SignalNumbers : public testing::TestWithParam<Row> {};

TEST_P(SignalNumbers, AreFixed) {
    EXPECT_EQ(static_cast<int>(GetParam().type), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    All, SignalNumbers,
    testing::Values(
        Row{SIGNAL_WINDOW_ROTATION_0, 5}, Row{SIGNAL_WINDOW_ROTATION_90, 6},
        Row{SIGNAL_WINDOW_ROTATION_180, 7}, Row{SIGNAL_WINDOW_ROTATION_270, 8},
        Row{SIGNAL_PLAYER_PLAY, 9}, Row{SIGNAL_PLAYER_STOP, 10}, Row{SIGNAL_PLAYER_PAUSE, 12},
        Row{SIGNAL_PLAYER_RESUME, 13}, Row{SIGNAL_PLAYER_VIEW_PLAY_OR_PAUSE, 15},
        Row{SIGNAL_PLAYER_VIEW_CHANGE_DISPLAY_MODE, 21}, Row{SIGNAL_SOUND_MGR_FADE_VOLUME, 22},
        Row{SIGNAL_PLAYER_VIEW_ROTARY_EVENT, 25}, Row{SIGNAL_POPUP_MISSED_VIDEO_PLUGIN, 31},
        Row{SIGNAL_POPUP_MISSED_AUDIO_PLUGIN, 32}, Row{SIGNAL_POPUP_ERROR_TOAST, 34},
        Row{SIGNAL_POPUP_ERROR_ONE_BUTTON, 35}, Row{SIGNAL_SOUND_MGR_VOLUME_CHANGED, 38},
        Row{SIGNAL_SOUND_MGR_ROUTE_CHANGED, 39}, Row{SIGNAL_SOUND_MGR_DEVICE_DISCONNECT, 40},
        Row{SIGNAL_PLAYER_VIEW_PUSH_VOLUME_VIEW, 43}, Row{SIGNAL_PLAYER_VIEW_PROGRESS_TICK, 44},
        Row{SIGNAL_VOLUME_VIEW_SET_VOLUME_TO_SOUND_MGR, 45},
        Row{SIGNAL_VOLUME_VIEW_GET_VOLUME_FROM_SOUND_MGR, 46},
        Row{SIGNAL_VOLUME_VIEW_INIT_VOLUME_VALUE_OF_VOLUME_BAR, 47}, Row{SIGNAL_APP_TERMINATE, 50}),
    [](const auto &row) { return "Value" + std::to_string(row.param.value); });

TEST(SignalMgr, IsASingletonWithOneSignal) {
    TslSignalMgr *manager = TSingleton<TslSignalMgr>::getInstance();
    EXPECT_EQ(TslSignalMgr::getInstance(), manager);
    EXPECT_EQ(&manager->getSignal(), &TslSignalMgr::getInstance()->getSignal());
    EXPECT_TRUE((std::is_base_of_v<TSingleton<TslSignalMgr>, TslSignalMgr>));
}

TEST(SignalMgr, BringsAnIntegerAsTheWordItself) {
    auto &signal = TslSignalMgr::getInstance()->getSignal();
    TslSignalType type{};
    std::intptr_t word = 0;
    unsigned id = signal.addListener([&](TslSignalType t, void *payload) {
        type = t;
        word = reinterpret_cast<std::intptr_t>(payload);
    });
    TslSignalMgr::getInstance()->getSignal().emit(SIGNAL_SOUND_MGR_VOLUME_CHANGED,
                                                  reinterpret_cast<void *>(11));
    signal.removeListener(id);
    EXPECT_EQ(type, SIGNAL_SOUND_MGR_VOLUME_CHANGED);
    EXPECT_EQ(word, 11);
}

TEST(SignalMgr, UnknownSignalReachesTheDefaultBranchOfItsListener) {
    auto &signal = TslSignalMgr::getInstance()->getSignal();
    int by_default = 0;
    unsigned id = signal.addListener([&](TslSignalType type, void *) {
        switch (type) {
        case SIGNAL_APP_TERMINATE:
            break;
        default:
            ++by_default;
            break;
        }
    });
    signal.emit(static_cast<TslSignalType>(49), nullptr);
    signal.removeListener(id);
    EXPECT_EQ(by_default, 1);
}

// The fade of the audio focus is the one emission off the main loop.
TEST(SignalMgr, EmissionFromAForeignThreadRunsBesideTheMainLoops) {
    auto &signal = TslSignalMgr::getInstance()->getSignal();
    constexpr int emissions = 2000;
    std::atomic<int> fades{0};
    std::atomic<int> ticks{0};
    unsigned id = signal.addListener([&](TslSignalType type, void *payload) {
        if (type == SIGNAL_SOUND_MGR_FADE_VOLUME) {
            fades += *static_cast<float *>(payload) == 0.5F ? 1 : 0;
        } else {
            ++ticks;
        }
    });
    std::thread service([] {
        float level = 0.5F;
        for (int i = 0; i < emissions; ++i) {
            TslSignalMgr::getInstance()->getSignal().emit(SIGNAL_SOUND_MGR_FADE_VOLUME, &level);
        }
    });
    for (int i = 0; i < emissions; ++i) {
        signal.emit(SIGNAL_PLAYER_VIEW_PROGRESS_TICK, nullptr);
    }
    service.join();
    signal.removeListener(id);
    EXPECT_EQ(fades, emissions);
    EXPECT_EQ(ticks, emissions);
}

}  // namespace
