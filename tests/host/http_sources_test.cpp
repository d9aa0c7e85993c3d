#include "player/http_sources.h"

#include <dlfcn.h>
#include <gio/gio.h>
#include <gst/gst.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string_view>
#include <utility>

#include "loopback_server.h"
#include "player/gst_ptr.h"

namespace {

using host::GstObjectPtr;

constexpr std::chrono::seconds kEnough(20);

/// Set: the next request that is answered is cancelled before that is reported, and this is told
/// when it has been.
std::promise<void> *cancelled = nullptr;

GstObjectPtr<GstElement> make(const char *factory) {
    gst_init(nullptr, nullptr);
    return GstObjectPtr<GstElement>(
        GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make(factory, nullptr))));
}

TEST(HttpSources, EachHasASessionOfItsOwn) {
    const auto source = make("souphttpsrc");
    host::separate_http_source(source.get());
    guint timeout = 0;
    gint retries = -1;
    g_object_get(source.get(), "timeout", &timeout, "retries", &retries, nullptr);
    const auto *usual = reinterpret_cast<GParamSpecUInt *>(
        g_object_class_find_property(G_OBJECT_GET_CLASS(source.get()), "timeout"));
    EXPECT_EQ(timeout, 20U);
    EXPECT_NE(timeout, usual->default_value);
    EXPECT_EQ(retries, 0);
}

TEST(HttpSources, OneOfAnotherKindKeepsItsLimit) {
    const auto source = make("udpsrc");
    guint64 before = 0;
    g_object_get(source.get(), "timeout", &before, nullptr);
    host::separate_http_source(source.get());
    guint64 after = 1;
    g_object_get(source.get(), "timeout", &after, nullptr);
    EXPECT_EQ(after, before);
}

TEST(HttpSources, CancellationBetweenAnAnswerAndItsReportIsSurvived) {
    const support::LoopbackServer server([](int connection) {
        support::read_request(connection);
        support::send_all(connection,
                          "HTTP/1.1 200 OK\r\nContent-Length: 4\r\nConnection: close\r\n\r\nfour");
    });
    const auto source = make("souphttpsrc");
    const auto sink = make("fakesink");
    const auto pipeline = make("pipeline");
    gst_bin_add_many(GST_BIN(pipeline.get()), source.get(), sink.get(), nullptr);
    ASSERT_TRUE(gst_element_link(source.get(), sink.get()));
    g_object_set(source.get(), "location", server.address().c_str(), nullptr);
    std::promise<void> promise;
    cancelled = &promise;
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    EXPECT_EQ(promise.get_future().wait_for(kEnough), std::future_status::ready);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
}

}  // namespace

/// GLib's, for all libraries of the process.
extern "C" __attribute__((visibility("default"))) void g_task_return_pointer(
    GTask *task, gpointer result, GDestroyNotify free_result) {
    static const auto return_pointer = reinterpret_cast<decltype(&g_task_return_pointer)>(
        dlsym(RTLD_NEXT, "g_task_return_pointer"));
    const gpointer session = g_task_get_source_object(task);
    std::promise<void> *const told =
        session != nullptr && G_OBJECT_TYPE_NAME(session) == std::string_view("SoupSession")
            ? std::exchange(cancelled, nullptr)
            : nullptr;
    if (told != nullptr) {
        g_cancellable_cancel(g_task_get_cancellable(task));
    }
    return_pointer(task, result, free_result);
    if (told != nullptr) {
        told->set_value();
    }
}
