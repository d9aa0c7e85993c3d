// Where the parts of the watch are for each way to show it.

#include "shell/geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

using host::Geometry;
using host::Rect;

TEST(Geometry, AWatchIsLargerThanItsScreenOnAllSides) {
    const Geometry watch = Geometry::watch(360, 300);
    EXPECT_TRUE(watch.framed);
    EXPECT_EQ(watch.screen.w, 360);
    EXPECT_EQ(watch.screen.h, 300);
    EXPECT_GT(watch.screen.x, static_cast<int>(watch.body));
    EXPECT_EQ(watch.window_w, watch.screen.w + 2 * watch.screen.x);
    EXPECT_EQ(watch.window_h, watch.screen.h + 2 * watch.screen.y);
}

TEST(Geometry, AScreenAloneFillsItsWindow) {
    const Geometry bare = Geometry::bare(360, 300);
    EXPECT_FALSE(bare.framed);
    EXPECT_EQ(bare.screen, (Rect{0, 0, 360, 300}));
    EXPECT_EQ(bare.window_w, 360);
    EXPECT_EQ(bare.window_h, 300);
    EXPECT_EQ(bare.at(180, 150), Geometry::Place::screen);
    EXPECT_EQ(bare.at(1, 1), Geometry::Place::elsewhere);
}

TEST(Geometry, AFullScreenHasTheLargestCircleInItsMiddle) {
    const Geometry full = Geometry::filling(800, 480);
    EXPECT_FALSE(full.framed);
    EXPECT_EQ(full.screen, (Rect{160, 0, 480, 480}));
    EXPECT_EQ(full.window_w, 800);
    EXPECT_EQ(full.at(100, 240), Geometry::Place::elsewhere);
}

TEST(Geometry, AFullScreensWatchIsTheLargestThatHasRoom) {
    for (const auto &[w, h] : {std::pair{800, 480}, std::pair{480, 800}, std::pair{360, 360}}) {
        const Geometry full = Geometry::watch_filling(w, h);
        EXPECT_TRUE(full.framed);
        EXPECT_EQ(full.window_w, w);
        EXPECT_EQ(full.window_h, h);
        const int room = std::min(w, h);
        EXPECT_LE(Geometry::watch(full.screen.w, full.screen.h).window_w, room);
        EXPECT_GT(Geometry::watch(full.screen.w + 1, full.screen.h + 1).window_w, room);
        EXPECT_EQ(full.screen.x, (w - full.screen.w) / 2);
        EXPECT_EQ(full.screen.y, (h - full.screen.h) / 2);
    }
}

}  // namespace
