#include <dlog.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <barrier>
#include <set>
#include <thread>
#include <type_traits>
#include <vector>

// The template's calls of the mutex operations are counted, and made to fail, here alone.
namespace {

struct MutexCalls {
    std::atomic<int> attr_inits{0};
    std::atomic<int> inits{0};
    std::atomic<int> attr_destroys{0};
    std::atomic<int> locks{0};
    std::atomic<int> unlocks{0};
    std::atomic<int> attr_init_result{0};
    std::atomic<int> init_result{0};
    std::atomic<int> lock_result{0};
    std::atomic<const void *> last_locked{nullptr};

    void reset() {
        for (auto *counter : {&attr_inits, &inits, &attr_destroys, &locks, &unlocks,
                              &attr_init_result, &init_result, &lock_result}) {
            *counter = 0;
        }
    }
} calls;

int counted_attr_init(pthread_mutexattr_t *attributes) {
    ++calls.attr_inits;
    return calls.attr_init_result != 0 ? calls.attr_init_result.load()
                                       : pthread_mutexattr_init(attributes);
}

int counted_init(pthread_mutex_t *mutex, const pthread_mutexattr_t *attributes) {
    ++calls.inits;
    return calls.init_result != 0 ? calls.init_result.load()
                                  : pthread_mutex_init(mutex, attributes);
}

int counted_attr_destroy(pthread_mutexattr_t *attributes) {
    ++calls.attr_destroys;
    return pthread_mutexattr_destroy(attributes);
}

int counted_lock(pthread_mutex_t *mutex) {
    ++calls.locks;
    calls.last_locked = mutex;
    const int result = pthread_mutex_lock(mutex);
    return calls.lock_result != 0 ? calls.lock_result.load() : result;
}

int counted_unlock(pthread_mutex_t *mutex) {
    ++calls.unlocks;
    return pthread_mutex_unlock(mutex);
}

}  // namespace

#define pthread_mutexattr_init counted_attr_init
#define pthread_mutex_init counted_init
#define pthread_mutexattr_destroy counted_attr_destroy
#define pthread_mutex_lock counted_lock
#define pthread_mutex_unlock counted_unlock
#include "TSingleton.h"
#undef pthread_mutexattr_init
#undef pthread_mutex_init
#undef pthread_mutexattr_destroy
#undef pthread_mutex_lock
#undef pthread_mutex_unlock

namespace {

// Each test has a type of its own, and so an instance of its own.
template <int number>
struct Counted : TSingleton<Counted<number>> {
    Counted() { ++constructed; }
    ~Counted() override { ++destroyed; }

    static inline std::atomic<int> constructed{0};
    static inline std::atomic<int> destroyed{0};
};

class SingletonTest : public testing::Test {
protected:
    void SetUp() override { calls.reset(); }
};

TEST_F(SingletonTest, IsMadeByTheFirstCall) {
    using Type = Counted<1>;
    EXPECT_EQ(Type::constructed, 0);
    EXPECT_NE(Type::getInstance(), nullptr);
    EXPECT_EQ(Type::constructed, 1);
}

TEST_F(SingletonTest, IsTheSameAtEveryCall) {
    using Type = Counted<2>;
    Type *first = Type::getInstance();
    EXPECT_EQ(Type::getInstance(), first);
    EXPECT_EQ(Type::constructed, 1);
    EXPECT_EQ(Type::destroyed, 0);
}

TEST_F(SingletonTest, IsOneForEachType) {
    EXPECT_NE(static_cast<void *>(Counted<3>::getInstance()),
              static_cast<void *>(Counted<4>::getInstance()));
}

TEST_F(SingletonTest, FirstCallInitialisesTheMutexAndHoldsItOnce) {
    Counted<5>::getInstance();
    EXPECT_EQ(calls.attr_inits, 1);
    EXPECT_EQ(calls.inits, 1);
    EXPECT_EQ(calls.attr_destroys, 1);
    EXPECT_EQ(calls.locks, 1);
    EXPECT_EQ(calls.unlocks, 1);
}

TEST_F(SingletonTest, LaterCallsTakeNoLock) {
    Counted<6>::getInstance();
    calls.reset();
    for (int i = 0; i < 100; ++i) {
        Counted<6>::getInstance();
    }
    EXPECT_EQ(calls.locks, 0);
    EXPECT_EQ(calls.unlocks, 0);
    EXPECT_EQ(calls.attr_inits, 0);
}

TEST_F(SingletonTest, FailedAttributesAreIgnoredAndTheLockIsTaken) {
    calls.attr_init_result = ENOMEM;
    EXPECT_NE(Counted<7>::getInstance(), nullptr);
    EXPECT_EQ(calls.inits, 0);
    EXPECT_EQ(calls.attr_destroys, 0);
    EXPECT_EQ(calls.locks, 1);
    EXPECT_EQ(calls.unlocks, 1);
}

TEST_F(SingletonTest, AttributesAreKeptWhenTheMutexFails) {
    calls.init_result = ENOMEM;
    EXPECT_NE(Counted<8>::getInstance(), nullptr);
    EXPECT_EQ(calls.inits, 1);
    EXPECT_EQ(calls.attr_destroys, 0);
    EXPECT_EQ(calls.locks, 1);
}

TEST_F(SingletonTest, DeadlockIsPrintedAndCreationGoesOn) {
    calls.lock_result = EDEADLK;
    testing::internal::CaptureStdout();
    EXPECT_NE(Counted<9>::getInstance(), nullptr);
    const std::string printed = testing::internal::GetCapturedStdout();

    char expected[100];
    std::snprintf(expected, sizeof(expected), "ERROR ERROR: DEADLOCK on lock %p\n",
                  calls.last_locked.load());
    EXPECT_EQ(printed, expected);
    EXPECT_EQ(Counted<9>::constructed, 1);
    EXPECT_EQ(calls.unlocks, 1);
}

TEST_F(SingletonTest, OtherLockFailuresPrintNothing) {
    calls.lock_result = EINVAL;
    testing::internal::CaptureStdout();
    EXPECT_NE(Counted<10>::getInstance(), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// Slow enough for every thread to pass the first test before the instance exists.
struct SlowToConstruct : TSingleton<SlowToConstruct> {
    SlowToConstruct() {
        ++constructed;
        while (waiting.load() < threads) {
            std::this_thread::yield();
        }
        complete = true;
    }
    ~SlowToConstruct() override = default;

    static constexpr int threads = 8;
    static inline std::atomic<int> waiting{0};
    static inline std::atomic<int> constructed{0};
    bool complete = false;
};

TEST_F(SingletonTest, ThreadsThatRaceForTheFirstCallGetOneCompleteInstance) {
    std::vector<SlowToConstruct *> seen(SlowToConstruct::threads);
    std::vector<bool> complete(seen.size());
    {
        std::mutex guard;
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            threads.emplace_back([&, i] {
                ++SlowToConstruct::waiting;
                SlowToConstruct *instance = SlowToConstruct::getInstance();
                const std::lock_guard lock(guard);
                seen[i] = instance;
                complete[i] = instance->complete;
            });
        }
    }
    EXPECT_EQ(SlowToConstruct::constructed, 1);
    EXPECT_EQ(std::set<SlowToConstruct *>(seen.begin(), seen.end()).size(), 1U);
    EXPECT_EQ(std::count(complete.begin(), complete.end(), true),
              static_cast<long>(complete.size()));
}

TEST(Singleton, HasAVirtualDestructor) {
    EXPECT_TRUE((std::has_virtual_destructor_v<TSingleton<Counted<11>>>));
}

}  // namespace
