#include "player/sound_guards.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <string>

#include "player/gst_ptr.h"

namespace {

constexpr GstClockTime kEnough = 20 * GST_SECOND;

class SoundGuards : public testing::Test {
protected:
    static void SetUpTestSuite() { gst_init(nullptr, nullptr); }

    /// What comes of mixing sound with so many channels.
    /// @return the text of the fault; empty: it was mixed to its end
    static std::string mix(int channels) {
        const std::string description =
            "audiotestsrc num-buffers=2 ! audio/x-raw,channel-mask=(bitmask)0,channels=" +
            std::to_string(channels) + " ! audioconvert name=mixer ! fakesink";
        const host::GstObjectPtr<GstElement> pipeline(
            gst_parse_launch(description.c_str(), nullptr));
        const host::GstObjectPtr<GstElement> mixer(
            gst_bin_get_by_name(GST_BIN(pipeline.get()), "mixer"));
        host::guard_sound(mixer.get());
        gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
        const host::GstObjectPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
        GstMessage *message = gst_bus_timed_pop_filtered(
            bus.get(), kEnough, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
        std::string text = "neither an end nor a fault";
        if (message != nullptr && GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
            GError *error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            text = error->message;
            g_error_free(error);
        } else if (message != nullptr) {
            text.clear();
        }
        gst_clear_message(&message);
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        return text;
    }
};

TEST_F(SoundGuards, AsManyChannelsAsCanBeMixedAreMixed) {
    EXPECT_EQ(mix(63), "");
}

TEST_F(SoundGuards, OneMoreIsAFaultThatSaysWhy) {
    EXPECT_EQ(mix(64), "the sound has too many channels");
}

}  // namespace
