// Where a picture goes on the plane, and which compressed pictures nothing else needs.

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "player/display_geometry.h"
#include "player/gst_ptr.h"
#include "player/reference_frames.h"

namespace {

using host::lay_out;
using host::Orientation;
using host::PictureLayout;
using host::PictureShape;
using host::PixelSize;

constexpr PixelSize kPlane{360, 360};
constexpr PictureShape kWide{{1280, 720}, 1, 1};
constexpr PictureShape kTall{{720, 1280}, 1, 1};
constexpr PictureShape kSmall{{160, 90}, 1, 1};

TEST(DisplayGeometry, LetterBoxShowsAllOfThePictureInTheMiddle) {
    const PictureLayout layout = lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_LETTER_BOX, {});
    EXPECT_EQ(layout.source, (PixelSize{1280, 720}));
    EXPECT_EQ(layout.scaled, (PixelSize{360, 203}));
    EXPECT_EQ(layout.x, 0);
    EXPECT_EQ(layout.y, 78);
}

TEST(DisplayGeometry, LetterBoxEnlargesASmallPicture) {
    EXPECT_EQ(lay_out(kSmall, kPlane, PLAYER_DISPLAY_MODE_LETTER_BOX, {}).scaled,
              (PixelSize{360, 203}));
}

TEST(DisplayGeometry, CroppedFullCoversThePlaneWithTheMiddleOfThePicture) {
    const PictureLayout layout = lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, {});
    EXPECT_EQ(layout.scaled, kPlane);
    EXPECT_EQ(layout.source, (PixelSize{720, 720}));
    EXPECT_EQ(layout.source_x, 280);
    EXPECT_EQ(layout.source_y, 0);
    EXPECT_EQ(lay_out(kTall, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, {}).source_y, 280);
}

TEST(DisplayGeometry, OriginalSizeCutsWhatIsTooLarge) {
    const PictureLayout layout = lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_ORIGINAL_SIZE, {});
    EXPECT_EQ(layout.scaled, kPlane);
    EXPECT_EQ(layout.source, kPlane);
    const PictureLayout small = lay_out(kSmall, kPlane, PLAYER_DISPLAY_MODE_ORIGINAL_SIZE, {});
    EXPECT_EQ(small.scaled, kSmall.size);
    EXPECT_EQ(small.x, 100);
    EXPECT_EQ(small.y, 135);
}

TEST(DisplayGeometry, FullScreenStretches) {
    const PictureLayout layout = lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_FULL_SCREEN, {});
    EXPECT_EQ(layout.scaled, kPlane);
    EXPECT_EQ(layout.source, kWide.size);
}

TEST(DisplayGeometry, OriginalOrLetterBoxOnlyEverMakesSmaller) {
    EXPECT_EQ(lay_out(kSmall, kPlane, PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER, {}).scaled,
              kSmall.size);
    EXPECT_EQ(lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_ORIGINAL_OR_LETTER, {}).scaled,
              (PixelSize{360, 203}));
}

TEST(DisplayGeometry, AQuarterTurnIsMadeAfterScaling) {
    const Orientation quarter = host::turned({}, PLAYER_DISPLAY_ROTATION_90);
    const PictureLayout layout = lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_LETTER_BOX, quarter);
    EXPECT_EQ(layout.shown(), (PixelSize{203, 360}));
    EXPECT_EQ(layout.scaled, (PixelSize{360, 203}));
    EXPECT_EQ(layout.x, 78);
    EXPECT_EQ(layout.y, 0);
    EXPECT_EQ(lay_out(kWide, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, quarter).source,
              (PixelSize{720, 720}));
}

TEST(DisplayGeometry, TurnsAddUp) {
    EXPECT_EQ(host::turned({.quarter_turns = 3}, PLAYER_DISPLAY_ROTATION_180).quarter_turns, 1);
}

TEST(DisplayGeometry, PixelsThatAreNotSquareAreMadeSo) {
    const PictureShape wide_pixels{{640, 720}, 2, 1};
    EXPECT_EQ(wide_pixels.square(), (PixelSize{1280, 720}));
    const PictureLayout layout = lay_out(wide_pixels, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, {});
    EXPECT_EQ(layout.source, (PixelSize{360, 720}));
}

TEST(DisplayGeometry, NothingIsLaidOutOnNoPlane) {
    EXPECT_TRUE(lay_out(kWide, {}, PLAYER_DISPLAY_MODE_CROPPED_FULL, {}).empty());
    EXPECT_TRUE(lay_out({}, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, {}).empty());
}

TEST(DisplayGeometry, TheThinnestPictureKeepsOnePixel) {
    const PictureShape line{{4096, 1}, 1, 1};
    const PictureLayout layout = lay_out(line, kPlane, PLAYER_DISPLAY_MODE_LETTER_BOX, {});
    EXPECT_EQ(layout.scaled, (PixelSize{360, 1}));
    const PictureLayout cropped = lay_out(line, kPlane, PLAYER_DISPLAY_MODE_CROPPED_FULL, {});
    EXPECT_EQ(cropped.source, (PixelSize{1, 1}));
}

class ReferenceFrames : public testing::Test {
protected:
    static void SetUpTestSuite() { gst_init(nullptr, nullptr); }

    void use(const char *caps_text) {
        const host::GstMiniPtr<GstCaps> caps(gst_caps_from_string(caps_text));
        frames_.set_caps(gst_caps_get_structure(caps.get(), 0));
    }
    [[nodiscard]] bool disposable(const std::vector<std::uint8_t> &picture) const {
        return frames_.is_disposable(picture);
    }

    host::ReferenceFrames frames_;
};

constexpr char kAvc[] = "video/x-h264, stream-format=avc, codec_data=(buffer)0164001fff";

TEST_F(ReferenceFrames, AnH264SliceWithoutReferenceMarkIsDisposable) {
    use(kAvc);
    EXPECT_TRUE(disposable({0, 0, 0, 2, 0x01, 0xAA}));
}

TEST_F(ReferenceFrames, AnH264SliceWithReferenceMarkIsNot) {
    use(kAvc);
    EXPECT_FALSE(disposable({0, 0, 0, 2, 0x41, 0xAA}));
    EXPECT_FALSE(disposable({0, 0, 0, 2, 0x65, 0xAA}));
}

TEST_F(ReferenceFrames, UnitsBeforeTheSliceAreLookedPast) {
    use(kAvc);
    EXPECT_TRUE(disposable({0, 0, 0, 2, 0x06, 0xAA, 0, 0, 0, 2, 0x01, 0xAA}));
    EXPECT_FALSE(disposable({0, 0, 0, 2, 0x06, 0xAA, 0, 0, 0, 2, 0x41, 0xAA}));
}

TEST_F(ReferenceFrames, WithoutASliceNothingIsDisposable) {
    use(kAvc);
    EXPECT_FALSE(disposable({0, 0, 0, 2, 0x06, 0xAA}));
    EXPECT_FALSE(disposable({}));
}

TEST_F(ReferenceFrames, BrokenLengthsAreNoReasonToSkip) {
    use(kAvc);
    EXPECT_FALSE(disposable({0, 0}));
    EXPECT_FALSE(disposable({0, 0, 0, 0}));
    EXPECT_FALSE(disposable({0xFF, 0xFF, 0xFF, 0xFF, 0x65}));
}

TEST_F(ReferenceFrames, StartCodesSeparateUnitsToo) {
    use("video/x-h264, stream-format=byte-stream");
    EXPECT_TRUE(disposable({0, 0, 0, 1, 0x09, 0x10, 0, 0, 1, 0x01, 0xAA}));
    EXPECT_FALSE(disposable({0, 0, 0, 1, 0x09, 0x10, 0, 0, 1, 0x41, 0xAA}));
}

TEST_F(ReferenceFrames, H265TellsByTheTypeOfTheUnit) {
    use("video/x-h265, stream-format=byte-stream");
    EXPECT_TRUE(disposable({0, 0, 1, 0x00, 0x01, 0xAA}));   // TRAIL_N
    EXPECT_FALSE(disposable({0, 0, 1, 0x02, 0x01, 0xAA}));  // TRAIL_R
    EXPECT_FALSE(disposable({0, 0, 1, 0x26, 0x01, 0xAA}));  // IDR
}

TEST_F(ReferenceFrames, OtherCodecsAreLeftAlone) {
    use("video/x-vp9");
    EXPECT_FALSE(disposable({0, 0, 0, 2, 0x01, 0xAA}));
}

}  // namespace
