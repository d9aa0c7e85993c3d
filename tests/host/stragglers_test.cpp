#include "player/stragglers.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "player/gst_ptr.h"

namespace {

using host::GstObjectPtr;
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

}  // namespace
