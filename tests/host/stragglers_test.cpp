#include "player/stragglers.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <memory>
#include <string_view>

#include "player/gst_ptr.h"
#include "player/pipeline.h"
#include "player/video_output.h"

namespace {

using host::GstObjectPtr;
using host::Pipeline;
using host::Stragglers;

GstObjectPtr<GstElement> make_element() {
    gst_init(nullptr, nullptr);
    return GstObjectPtr<GstElement>(
        GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("fakesrc", nullptr))));
}

TEST(Stragglers, OneThatIsStartedAfterItHasLeftIsStopped) {
    Stragglers stragglers;
    const auto element = make_element();
    stragglers.take(element.get());
    ASSERT_EQ(gst_element_set_state(element.get(), GST_STATE_READY), GST_STATE_CHANGE_SUCCESS);
    stragglers.stop();
    EXPECT_EQ(GST_STATE(element.get()), GST_STATE_NULL);
}

TEST(Stragglers, OneThatFollowsNoStateButItsOwnIsStopped) {
    Stragglers stragglers;
    const auto element = make_element();
    gst_element_set_locked_state(element.get(), TRUE);
    gst_element_set_state(element.get(), GST_STATE_READY);
    stragglers.take(element.get());
    stragglers.stop();
    EXPECT_EQ(GST_STATE(element.get()), GST_STATE_NULL);
}

TEST(Stragglers, TheyAreFreedWhenTheyAreStopped) {
    Stragglers stragglers;
    const auto element = make_element();
    stragglers.take(element.get());
    EXPECT_EQ(GST_OBJECT_REFCOUNT_VALUE(element.get()), 2);
    stragglers.stop();
    EXPECT_EQ(GST_OBJECT_REFCOUNT_VALUE(element.get()), 1);
}

TEST(Stragglers, TheLatestAreKeptAndNoMore) {
    Stragglers stragglers;
    const auto first = make_element();
    const auto second = make_element();
    stragglers.take(first.get());
    stragglers.take(second.get());
    for (std::size_t more = 2; more <= Stragglers::kMost; ++more) {
        stragglers.take(make_element().get());
    }
    EXPECT_EQ(GST_OBJECT_REFCOUNT_VALUE(first.get()), 1);
    EXPECT_EQ(GST_OBJECT_REFCOUNT_VALUE(second.get()), 2);
}

/// The whole that an element is a part of.
GstObject *root_of(GstObject *object) {
    GstObject *parent = GST_OBJECT_PARENT(object);
    return parent == nullptr ? object : root_of(parent);
}

TEST(Stragglers, APipelineThatEndsStopsThoseThatLeaveIt) {
    gst_init(nullptr, nullptr);
    GstObjectPtr<GstObject> whole;
    GstObjectPtr<GstElement> woken;
    Pipeline pipeline({
        .uri = "file:///dev/null",
        .remote = false,
        .sound_output = "fakesink",
        .volume = {},
        .video = std::make_shared<host::VideoOutput>(),
        .settings = {},
        .taps = {},
        .on_message =
            [&whole](host::GstMiniPtr<GstMessage> message) {
                if (!whole) {
                    GstObject *root = root_of(GST_MESSAGE_SRC(message.get()));
                    whole.reset(GST_OBJECT(gst_object_ref(root)));
                }
            },
    });
    pipeline.set_state(GST_STATE_PAUSED);
    ASSERT_NE(whole, nullptr);
    // As a reader of playlists does, late and now and then.
    g_signal_connect(
        whole.get(), "deep-element-removed",
        G_CALLBACK(+[](GstBin *, GstBin *, GstElement *element, gpointer data) {
            auto &kept = *static_cast<GstObjectPtr<GstElement> *>(data);
            GstElementFactory *factory = gst_element_get_factory(element);
            if (factory != nullptr && GST_OBJECT_NAME(factory) == std::string_view("filesrc")) {
                kept.reset(GST_ELEMENT(gst_object_ref(element)));
                gst_element_set_state(element, GST_STATE_READY);
            }
        }),
        &woken);
    pipeline.shut_down();
    ASSERT_NE(woken, nullptr);
    EXPECT_EQ(GST_STATE(woken.get()), GST_STATE_NULL);
}

}  // namespace
