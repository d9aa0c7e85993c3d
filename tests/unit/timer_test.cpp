#include "app-assist/WTimer.h"

#include <Ecore_Evas.h>
#include <dlfcn.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "framework_fixture.h"

namespace {

bool g_refuse_adds = false;
std::vector<const void *> g_cancelled;

template <typename Function>
Function *real(Function *, const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// The program's calls come here first; the toolkit refuses an add only when its memory runs out.
extern "C" {

Ecore_Timer *ecore_timer_add(double in, Ecore_Task_Cb func, const void *data) {
    static auto *const next = real(&ecore_timer_add, "ecore_timer_add");
    return g_refuse_adds ? nullptr : next(in, func, data);
}

Ecore_Animator *ecore_animator_add(Ecore_Task_Cb func, const void *data) {
    static auto *const next = real(&ecore_animator_add, "ecore_animator_add");
    return g_refuse_adds ? nullptr : next(func, data);
}

Ecore_Idler *ecore_idler_add(Ecore_Task_Cb func, const void *data) {
    static auto *const next = real(&ecore_idler_add, "ecore_idler_add");
    return g_refuse_adds ? nullptr : next(func, data);
}

Ecore_Job *ecore_job_add(Ecore_Cb func, const void *data) {
    static auto *const next = real(&ecore_job_add, "ecore_job_add");
    return g_refuse_adds ? nullptr : next(func, data);
}

void *ecore_timer_del(Ecore_Timer *timer) {
    static auto *const next = real(&ecore_timer_del, "ecore_timer_del");
    g_cancelled.push_back(timer);
    return next(timer);
}

void *ecore_animator_del(Ecore_Animator *animator) {
    static auto *const next = real(&ecore_animator_del, "ecore_animator_del");
    g_cancelled.push_back(animator);
    return next(animator);
}

void *ecore_idler_del(Ecore_Idler *idler) {
    static auto *const next = real(&ecore_idler_del, "ecore_idler_del");
    g_cancelled.push_back(idler);
    return next(idler);
}

void *ecore_job_del(Ecore_Job *job) {
    static auto *const next = real(&ecore_job_del, "ecore_job_del");
    g_cancelled.push_back(job);
    return next(job);
}

}  // extern "C"

namespace {

using app_assist::WTimer;
using app_assist::WTimerWeakPtr;
using support::run_loop_turns;
using support::run_main_loop_for;
using support::run_main_loop_until;

constexpr std::string_view tag = logs::framework_tag;
constexpr double short_while = 0.05;
constexpr double never = 1000.0;

/// The four kinds, each behind the same two operations.
struct Kind {
    const char *name;
    WTimerWeakPtr (*add)(std::function<bool(void *)> handler, void *data);
    WTimerWeakPtr (*add_owned)(std::function<bool(void *)> handler, void *data, Evas_Object *owner);
    void *(*handle)(const WTimerWeakPtr &);
    const char *refused;
};

// A job has no result: it runs once.
auto as_job(std::function<bool(void *)> handler) {
    return handler ? std::function<void(void *)>([handler](void *data) { handler(data); })
                   : std::function<void(void *)>();
}

const Kind kinds[] = {
    {"Idler", [](std::function<bool(void *)> h, void *d) { return WTimer::addIdler(h, d); },
     [](std::function<bool(void *)> h, void *d, Evas_Object *o) {
         return WTimer::addIdler(h, d, o);
     },
     [](const WTimerWeakPtr &t) -> void * { return WTimer::getIdlerHandle(t); },
     "* Critical * failed to add ecore idler!"},
    {"Animator", [](std::function<bool(void *)> h, void *d) { return WTimer::addAnimator(h, d); },
     [](std::function<bool(void *)> h, void *d, Evas_Object *o) {
         return WTimer::addAnimator(h, d, o);
     },
     [](const WTimerWeakPtr &t) -> void * { return WTimer::getAnimatorHandle(t); },
     "* Critical * failed to add ecore animator!"},
    {"Timer", [](std::function<bool(void *)> h, void *d) { return WTimer::addTimer(0.001, h, d); },
     [](std::function<bool(void *)> h, void *d, Evas_Object *o) {
         return WTimer::addTimer(0.001, h, d, o);
     },
     [](const WTimerWeakPtr &t) -> void * { return WTimer::getTimerHandle(t); },
     "* Critical * failed to add ecore timer!"},
    {"Job", [](std::function<bool(void *)> h, void *d) { return WTimer::addJob(as_job(h), d); },
     [](std::function<bool(void *)> h, void *d, Evas_Object *o) {
         return WTimer::addJob(as_job(h), d, o);
     },
     [](const WTimerWeakPtr &t) -> void * { return WTimer::getJobHandle(t); },
     "* Critical * failed to add ecore job!"},
};

class OwnedObjectTest : public testing::Test {
protected:
    void SetUp() override {
        m_canvas = ecore_evas_buffer_new(8, 8);
        m_owner = evas_object_rectangle_add(ecore_evas_get(m_canvas));
    }
    void TearDown() override {
        g_refuse_adds = false;
        ecore_evas_free(m_canvas);
    }

    Ecore_Evas *m_canvas = nullptr;
    Evas_Object *m_owner = nullptr;
};

class EveryKind : public OwnedObjectTest, public testing::WithParamInterface<Kind> {};

INSTANTIATE_TEST_SUITE_P(WTimer, EveryKind, testing::ValuesIn(kinds),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_P(EveryKind, HandlerGetsItsDataAndRunsOnceWhenItReturnsFalse) {
    int calls = 0;
    void *seen = nullptr;
    WTimerWeakPtr timer = GetParam().add(
        [&](void *data) {
            ++calls;
            seen = data;
            return false;
        },
        &calls);
    ASSERT_TRUE(run_main_loop_until([&] { return calls > 0; }));
    EXPECT_EQ(seen, &calls);
    EXPECT_EQ(timer.lock(), nullptr);
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 1);
}

TEST_P(EveryKind, IsPendingUntilItHasRun) {
    WTimerWeakPtr timer = GetParam().add([](void *) { return false; }, nullptr);
    EXPECT_NE(timer.lock(), nullptr);
    EXPECT_NE(GetParam().handle(timer), nullptr);
    ASSERT_TRUE(run_main_loop_until([&] { return timer.expired(); }));
    EXPECT_EQ(GetParam().handle(timer), nullptr);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_P(EveryKind, DestroyBeforeItsTimeCancelsIt) {
    int calls = 0;
    WTimerWeakPtr timer = GetParam().add([&](void *) { return ++calls < 0; }, nullptr);
    const WTimerWeakPtr copy = timer;
    WTimer::destroy(timer);
    EXPECT_TRUE(copy.expired());
    EXPECT_EQ(timer.owner_before(WTimerWeakPtr()), false);
    EXPECT_EQ(WTimerWeakPtr().owner_before(timer), false);
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 0);
}

TEST_P(EveryKind, HandleThatTheLoopDropsItselfIsNotCancelled) {
    g_cancelled.clear();
    WTimerWeakPtr over = GetParam().add([](void *) { return false; }, nullptr);
    const void *handle = GetParam().handle(over);
    ASSERT_TRUE(run_main_loop_until([&] { return over.expired(); }));
    EXPECT_EQ(std::count(g_cancelled.begin(), g_cancelled.end(), handle), 0);
    WTimerWeakPtr pending = GetParam().add([](void *) { return false; }, nullptr);
    handle = GetParam().handle(pending);
    g_cancelled.clear();
    WTimer::destroy(pending);
    EXPECT_EQ(g_cancelled, std::vector<const void *>{handle});
}

TEST_P(EveryKind, DestroyFreesTheHandlersCaptures) {
    auto token = std::make_shared<int>(0);
    WTimerWeakPtr timer = GetParam().add([token](void *) { return false; }, nullptr);
    EXPECT_GT(token.use_count(), 1);
    WTimer::destroy(timer);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_P(EveryKind, HandlerMayDestroyItselfAndReturnFalse) {
    static WTimerWeakPtr timer;
    static int calls;
    calls = 0;
    timer = GetParam().add(
        [](void *) {
            ++calls;
            WTimer::destroy(timer);
            return false;
        },
        nullptr);
    const WTimerWeakPtr copy = timer;
    ASSERT_TRUE(run_main_loop_until([] { return calls > 0; }));
    run_main_loop_for(short_while);
    EXPECT_TRUE(copy.expired());
    EXPECT_EQ(calls, 1);
}

TEST_P(EveryKind, HandlerMayDestroyItselfAndReturnTrue) {
    static WTimerWeakPtr timer;
    static int calls;
    calls = 0;
    timer = GetParam().add(
        [](void *) {
            ++calls;
            WTimer::destroy(timer);
            return true;
        },
        nullptr);
    ASSERT_TRUE(run_main_loop_until([] { return calls > 0; }));
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 1);
}

TEST_P(EveryKind, EmptyHandlerThrowsAtItsTime) {
    EXPECT_BAD_FUNCTION_CALL({
        GetParam().add(nullptr, nullptr);
        // The throw ends it.
        EXPECT_TRUE(run_main_loop_until([] { return false; }));
    });
}

TEST_P(EveryKind, OwnedHandlerRunsWhileItsOwnerLives) {
    int calls = 0;
    WTimerWeakPtr timer =
        GetParam().add_owned([&](void *) { return ++calls < 0; }, nullptr, m_owner);
    EXPECT_NE(GetParam().handle(timer), nullptr);
    EXPECT_TRUE(run_main_loop_until([&] { return calls > 0; }));
    EXPECT_TRUE(timer.expired());
    // Nothing is left on the object that could be called for the timer that has gone.
    evas_object_del(m_owner);
}

TEST_P(EveryKind, DeletionOfTheOwnerCancelsIt) {
    auto token = std::make_shared<int>(0);
    int calls = 0;
    WTimerWeakPtr timer =
        GetParam().add_owned([&calls, token](void *) { return ++calls < 0; }, nullptr, m_owner);
    evas_object_del(m_owner);
    EXPECT_TRUE(timer.expired());
    EXPECT_EQ(token.use_count(), 1);
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 0);
}

TEST_P(EveryKind, HandlerMayDeleteItsOwner) {
    static Evas_Object *owner;
    static int calls;
    owner = m_owner;
    calls = 0;
    WTimerWeakPtr timer = GetParam().add_owned(
        [](void *) {
            ++calls;
            evas_object_del(owner);
            return false;
        },
        nullptr, m_owner);
    ASSERT_TRUE(run_main_loop_until([] { return calls > 0; }));
    EXPECT_TRUE(timer.expired());
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 1);
}

TEST_P(EveryKind, DestroyedTimerLeavesNoCallbackOnItsOwner) {
    WTimerWeakPtr timer = GetParam().add_owned([](void *) { return false; }, nullptr, m_owner);
    WTimer::destroy(timer);
    // A callback that stayed would run on freed memory here.
    evas_object_del(m_owner);
    run_loop_turns();
    EXPECT_TRUE(timer.expired());
}

TEST_P(EveryKind, RefusedAddIsLoggedAndGivesAnEmptyPointer) {
    auto token = std::make_shared<int>(0);
    g_refuse_adds = true;
    WTimerWeakPtr timer = GetParam().add([token](void *) { return false; }, nullptr);
    g_refuse_adds = false;
    EXPECT_EQ(timer.lock(), nullptr);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(LoggedTimes(1, DLOG_ERROR, GetParam().refused, tag));
    WTimer::destroy(timer);
    EXPECT_TRUE(timer.expired());
}

TEST_P(EveryKind, RefusedAddWithAnOwnerEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            framework::show_log_at_abort();
            g_refuse_adds = true;
            GetParam().add_owned([](void *) { return false; }, nullptr, m_owner);
        },
        testing::HasSubstr(GetParam().refused));
}

TEST_P(EveryKind, NullOwnerFailsTheAssertion) {
    EXPECT_ASSERTION(GetParam().add_owned([](void *) { return false; }, nullptr, nullptr),
                     "(ownerObj != nullptr)", "ownerObj is null.");
}

TEST_P(EveryKind, HandleIsOnlyGivenForTheRightKind) {
    WTimerWeakPtr timer = GetParam().add([](void *) { return false; }, nullptr);
    for (const Kind &other : kinds) {
        logs::clear();
        const std::string fault =
            std::string("* Critical * This is not ") + other.name + " type timer!";
        if (other.name == std::string(GetParam().name)) {
            EXPECT_NE(other.handle(timer), nullptr);
            EXPECT_TRUE(NoFaultLogged(tag));
        } else {
            EXPECT_EQ(other.handle(timer), nullptr);
            EXPECT_TRUE(OnlyFaultsLogged({logs::error(fault)}, tag));
        }
    }
    WTimer::destroy(timer);
}

TEST_P(EveryKind, HandleOfAnEmptyPointerIsSilentlyNull) {
    EXPECT_EQ(GetParam().handle(WTimerWeakPtr()), nullptr);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_P(EveryKind, WrongKindIsLoggedUnderTheGettersName) {
    WTimerWeakPtr timer = GetParam().add([](void *) { return false; }, nullptr);
    const Kind &other = GetParam().name == std::string("Job") ? kinds[0] : kinds[3];
    other.handle(timer);
    EXPECT_TRUE(LoggedIn(std::string("get") + other.name + "Handle", DLOG_ERROR,
                         std::string("* Critical * This is not ") + other.name + " type timer!",
                         tag));
    WTimer::destroy(timer);
}

TEST(Timer, RunsAgainAsLongAsItsHandlerReturnsTrue) {
    int calls = 0;
    WTimerWeakPtr timer = WTimer::addTimer(
        0.001, [&](void *) { return ++calls < 3; }, nullptr);
    ASSERT_TRUE(run_main_loop_until([&] { return timer.expired(); }));
    run_main_loop_for(short_while);
    EXPECT_EQ(calls, 3);
}

TEST(Timer, TakesItsIntervalInSeconds) {
    const double interval = 0.1;
    const double start = ecore_time_get();
    bool called = false;
    WTimer::addTimer(
        interval, [&](void *) { return !(called = true); }, nullptr);
    ASSERT_TRUE(run_main_loop_until([&] { return called; }));
    EXPECT_GE(ecore_time_get() - start, interval - 0.01);
}

TEST(Timer, HandleIsTheToolkitsOwn) {
    WTimerWeakPtr timer = WTimer::addTimer(
        never, [](void *) { return false; }, nullptr);
    EXPECT_DOUBLE_EQ(ecore_timer_interval_get(WTimer::getTimerHandle(timer)), never);
    WTimer::destroy(timer);
}

TEST(Timer, AnimatorRunsAgainAsLongAsItsHandlerReturnsTrue) {
    int calls = 0;
    WTimerWeakPtr timer = WTimer::addAnimator([&](void *) { return ++calls < 3; }, nullptr);
    ASSERT_TRUE(run_main_loop_until([&] { return timer.expired(); }));
    EXPECT_EQ(calls, 3);
}

TEST(Timer, IdlerRunsAgainAsLongAsItsHandlerReturnsTrue) {
    int calls = 0;
    WTimerWeakPtr timer = WTimer::addIdler([&](void *) { return ++calls < 3; }, nullptr);
    ASSERT_TRUE(run_main_loop_until([&] { return timer.expired(); }));
    EXPECT_EQ(calls, 3);
}

TEST(Timer, DestroyOnAnEmptyPointerDoesNothing) {
    WTimerWeakPtr timer;
    WTimer::destroy(timer);
    EXPECT_TRUE(timer.expired());
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST(Timer, DestroyOnAnExpiredPointerOnlyClearsIt) {
    WTimerWeakPtr timer = WTimer::addTimer(
        never, [](void *) { return false; }, nullptr);
    WTimerWeakPtr expired = timer;
    WTimer::destroy(timer);
    WTimer::destroy(expired);
    EXPECT_FALSE(expired.owner_before(WTimerWeakPtr()) || WTimerWeakPtr().owner_before(expired));
}

TEST(Timer, OneStrongReferenceHoldsTheWeakOnes) {
    WTimerWeakPtr timer = WTimer::addTimer(
        never, [](void *) { return false; }, nullptr);
    EXPECT_EQ(timer.use_count(), 1);
    WTimer::destroy(timer);
}

TEST(Timer, JobOfAnOwnerDeletedInTheSameRoundNeverRuns) {
    Ecore_Evas *canvas = ecore_evas_buffer_new(8, 8);
    Evas_Object *owner = evas_object_rectangle_add(ecore_evas_get(canvas));
    int calls = 0;
    // Jobs run in order of addition: the first deletes the owner of the second.
    WTimer::addJob([owner](void *) { evas_object_del(owner); }, nullptr);
    WTimerWeakPtr job = WTimer::addJob([&calls](void *) { ++calls; }, nullptr, owner);
    ASSERT_TRUE(run_main_loop_until([&] { return job.expired(); }));
    run_loop_turns();
    EXPECT_EQ(calls, 0);
    ecore_evas_free(canvas);
}

TEST(Timer, HandlerMayAddAnotherTimer) {
    int second = 0;
    WTimer::addTimer(
        0.0,
        [&](void *) {
            WTimer::addJob([&](void *) { ++second; }, nullptr);
            return false;
        },
        nullptr);
    EXPECT_TRUE(run_main_loop_until([&] { return second == 1; }));
}

TEST(Timer, HasNoVirtualOperationsAndOnePointer) {
    EXPECT_FALSE(std::is_polymorphic_v<WTimer>);
    EXPECT_EQ(sizeof(WTimer), sizeof(void *));
}

}  // namespace
