// The crossings: to the main loop, and to the thread that GLib's sources live on.

#include <Ecore.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "common/main_loop.h"
#include "common/service_thread.h"
#include "main_loop.h"

namespace {

using support::run_main_loop_until;

TEST(MainLoop, RunsACallOfItsOwnThreadOnALaterTurn) {
    bool ran = false;
    host::post_to_main_loop([&ran] { ran = true; });
    EXPECT_FALSE(ran);
    EXPECT_TRUE(run_main_loop_until([&ran] { return ran; }));
}

TEST(MainLoop, RunsCallsOfManyThreadsThereEachThreadsInOrder) {
    constexpr int kThreads = 4;
    constexpr int kCalls = 500;
    std::array<std::vector<int>, kThreads> seen;
    const std::thread::id main_thread = std::this_thread::get_id();
    int ran = 0;
    bool elsewhere = false;
    std::vector<std::thread> posters;
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        posters.emplace_back([&, thread] {
            for (int i = 0; i < kCalls; ++i) {
                host::post_to_main_loop([&, thread, i] {
                    seen[thread].push_back(i);
                    elsewhere |= std::this_thread::get_id() != main_thread;
                    ++ran;
                });
            }
        });
    }
    EXPECT_TRUE(run_main_loop_until([&ran] { return ran == kThreads * kCalls; }));
    for (std::thread &poster : posters) {
        poster.join();
    }
    EXPECT_FALSE(elsewhere);
    for (const std::vector<int> &calls : seen) {
        EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end()));
    }
}

TEST(MainLoop, KeepsTheOrderOfOwnAndForeignCalls) {
    std::vector<int> order;
    host::post_to_main_loop([&order] { order.push_back(1); });
    std::thread([&order] { host::post_to_main_loop([&order] { order.push_back(2); }); }).join();
    host::post_to_main_loop([&order] { order.push_back(3); });
    EXPECT_TRUE(run_main_loop_until([&order] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(MainLoop, ACallMayPostAnother) {
    int ran = 0;
    host::post_to_main_loop([&ran] {
        ++ran;
        host::post_to_main_loop([&ran] { ++ran; });
    });
    EXPECT_TRUE(run_main_loop_until([&ran] { return ran == 2; }));
}

TEST(ServiceThread, RunsCallsInOrderOnOneOtherThread) {
    std::vector<int> order;
    std::thread::id id;
    host::post_to_service_thread([&] {
        order.push_back(1);
        id = std::this_thread::get_id();
    });
    host::post_to_service_thread([&] { order.push_back(2); });
    bool same = false;
    host::run_on_service_thread([&] {
        order.push_back(3);
        same = id == std::this_thread::get_id();
    });
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(same);
    EXPECT_NE(id, std::this_thread::get_id());
}

TEST(ServiceThread, RunsAtOnceWhatItAsksOfItself) {
    bool inner = false;
    host::run_on_service_thread([&inner] {
        host::run_on_service_thread([&inner] { inner = true; });
        EXPECT_TRUE(inner);
    });
    EXPECT_TRUE(inner);
}

TEST(ServiceThread, DispatchesTheSourcesOfItsContext) {
    std::promise<std::thread::id> fired;
    GSource *source = g_timeout_source_new(1);
    g_source_set_callback(
        source,
        [](gpointer promise) -> gboolean {
            static_cast<std::promise<std::thread::id> *>(promise)->set_value(
                std::this_thread::get_id());
            return G_SOURCE_REMOVE;
        },
        &fired, nullptr);
    g_source_attach(source, host::service_context());
    g_source_unref(source);
    auto future = fired.get_future();
    ASSERT_EQ(future.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    std::thread::id service;
    host::run_on_service_thread([&service] { service = std::this_thread::get_id(); });
    EXPECT_EQ(future.get(), service);
}

// The two below end what the others use, so they stand last.
TEST(ZEnd, TheServiceThreadDropsAndReleasesWhatComesLater) {
    bool before = false;
    host::post_to_service_thread([&before] { before = true; });
    host::stop_service_thread();
    EXPECT_TRUE(before);
    const auto held = std::make_shared<int>(0);
    std::atomic<bool> ran{false};
    host::post_to_service_thread([&ran, held] { ran = true; });
    EXPECT_EQ(held.use_count(), 1);
    host::run_on_service_thread([&ran] { ran = true; });
    EXPECT_FALSE(ran);
    host::stop_service_thread();
}

TEST(ZEnd, TheMainLoopDropsAndReleasesWhatWaitsAndWhatComesLater) {
    const auto held = std::make_shared<int>(0);
    bool ran = false;
    host::post_to_main_loop([&ran, held] { ran = true; });
    EXPECT_EQ(held.use_count(), 2);
    host::close_main_loop();
    EXPECT_EQ(held.use_count(), 1);
    host::post_to_main_loop([&ran, held] { ran = true; });
    EXPECT_EQ(held.use_count(), 1);
    support::run_loop_turns();
    EXPECT_FALSE(ran);
}

}  // namespace
