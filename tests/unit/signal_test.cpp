#include <Ecore_Evas.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "app-assist/WSignal.h"
#include "log_lines.h"
#include "vtable_slot.h"

namespace {

std::size_t g_allocations = 0;

}  // namespace

[[gnu::noinline]] void *operator new(std::size_t size) {
    ++g_allocations;
    if (void *memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void *memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using Signal = app_assist::WSignal<void(int, void *)>;

constexpr std::string_view tag = logs::framework_tag;

/// A listener's side of the test: each call leaves its name.
class SignalTest : public testing::Test {
protected:
    std::function<void(int, void *)> named(const std::string &name) {
        return [this, name](int, void *) { m_calls.push_back(name); };
    }

    std::vector<std::string> emitted(int type = 0, void *payload = nullptr) {
        m_calls.clear();
        m_signal.emit(type, payload);
        return m_calls;
    }

    using Calls = std::vector<std::string>;
    Signal m_signal;
    Calls m_calls;
};

/// With a canvas, for listeners bound to an object.
class BoundSignalTest : public SignalTest {
protected:
    void SetUp() override {
        m_canvas = ecore_evas_buffer_new(8, 8);
        ASSERT_NE(m_canvas, nullptr);
        m_object = evas_object_rectangle_add(ecore_evas_get(m_canvas));
    }
    void TearDown() override { ecore_evas_free(m_canvas); }

    Ecore_Evas *m_canvas = nullptr;
    Evas_Object *m_object = nullptr;
};

TEST_F(SignalTest, EmissionCarriesTypeAndPayload) {
    int word = 0;
    int type = 0;
    void *payload = nullptr;
    m_signal.addListener([&](int t, void *p) {
        type = t;
        payload = p;
    });
    m_signal.emit(9, &word);
    EXPECT_EQ(type, 9);
    EXPECT_EQ(payload, &word);
}

TEST_F(SignalTest, EmissionHasRunToItsEndWhenItReturns) {
    m_signal.addListener(named("a"));
    EXPECT_EQ(emitted(), Calls{"a"});
}

TEST_F(SignalTest, EmissionWithoutListenersCallsNothing) {
    EXPECT_EQ(emitted(), Calls{});
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(SignalTest, ListenersAreCalledInOrderOfRegistration) {
    m_signal.addListener(named("a"));
    m_signal.addListener(named("b"));
    m_signal.addListener(named("c"));
    EXPECT_EQ(emitted(), (Calls{"a", "b", "c"}));
}

TEST_F(SignalTest, IdsAscendByOneAndAreNeverZero) {
    const unsigned first = m_signal.addListener(named("a"));
    const unsigned second = m_signal.addListener(named("b"));
    EXPECT_GT(first, 0U);
    EXPECT_EQ(second, first + 1);
}

TEST_F(SignalTest, IdsAreSharedByAllSignals) {
    Signal other;
    app_assist::WSignal<void()> another;
    const unsigned first = m_signal.addListener(named("a"));
    const unsigned second = other.addListener(named("b"));
    const unsigned third = another.addListener([] {});
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(third, first + 2);
}

TEST_F(SignalTest, IdsAreNotReused) {
    unsigned first = m_signal.addListener(named("a"));
    const unsigned copy = first;
    m_signal.removeListener(first);
    EXPECT_EQ(m_signal.addListener(named("b")), copy + 1);
}

TEST(SignalIds, StartAtOne) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // Only a fresh process has a fresh counter.
    EXPECT_EXIT(
        {
            Signal signal;
            std::_Exit(signal.addListener([](int, void *) {}) == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(SignalTest, RemovedListenerIsNotCalled) {
    unsigned a = m_signal.addListener(named("a"));
    m_signal.addListener(named("b"));
    m_signal.removeListener(a);
    EXPECT_EQ(emitted(), Calls{"b"});
}

TEST_F(SignalTest, RemovalClearsTheCallersId) {
    unsigned id = m_signal.addListener(named("a"));
    m_signal.removeListener(id);
    EXPECT_EQ(id, 0U);
}

TEST_F(SignalTest, SecondRemovalDoesNothing) {
    unsigned id = m_signal.addListener(named("a"));
    m_signal.removeListener(id);
    m_signal.removeListener(id);
    EXPECT_EQ(id, 0U);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(SignalTest, StaleIdIsLoggedAndCleared) {
    unsigned id = m_signal.addListener(named("a"));
    unsigned stale = id;
    const std::string expected = "* Critical * Already removed listener! =" + std::to_string(stale);
    m_signal.removeListener(id);
    m_signal.removeListener(stale);
    EXPECT_EQ(stale, 0U);
    EXPECT_TRUE(LoggedIn("removeListener", DLOG_ERROR, expected, tag));
    EXPECT_TRUE(LoggedTimes(1, DLOG_ERROR, expected, tag));
}

TEST_F(SignalTest, RemovalDestroysTheCallback) {
    auto token = std::make_shared<int>(0);
    unsigned id = m_signal.addListener([token](int, void *) {});
    EXPECT_EQ(token.use_count(), 2);
    m_signal.removeListener(id);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(SignalTest, ListenerAddedDuringAnEmissionIsFirstCalledByTheNext) {
    bool added = false;
    m_signal.addListener([&](int, void *) {
        m_calls.emplace_back("a");
        if (!added) {
            added = true;
            m_signal.addListener(named("late"));
        }
    });
    m_signal.addListener(named("b"));
    EXPECT_EQ(emitted(), (Calls{"a", "b"}));
    EXPECT_EQ(emitted(), (Calls{"a", "b", "late"}));
}

TEST_F(SignalTest, ListenersAddedDuringAnEmissionKeepTheirOrder) {
    unsigned once = m_signal.addListener([&](int, void *) {
        m_signal.addListener(named("first"));
        m_signal.addListener(named("second"));
    });
    m_signal.emit(0, nullptr);
    m_signal.removeListener(once);
    EXPECT_EQ(emitted(), (Calls{"first", "second"}));
}

TEST_F(SignalTest, ListenerStillWaitingCantBeRemovedYet) {
    unsigned late = 0;
    unsigned once = m_signal.addListener([&](int, void *) {
        late = m_signal.addListener(named("late"));
        unsigned copy = late;
        m_signal.removeListener(copy);
    });
    m_signal.emit(0, nullptr);
    EXPECT_TRUE(
        LoggedError("* Critical * Already removed listener! =" + std::to_string(late), tag));
    m_signal.removeListener(once);
    EXPECT_EQ(emitted(), Calls{"late"});
}

TEST_F(SignalTest, ListenerRemovedDuringAnEmissionIsNotCalledInIt) {
    unsigned b = 0;
    m_signal.addListener([&](int, void *) {
        m_calls.emplace_back("a");
        m_signal.removeListener(b);
    });
    b = m_signal.addListener(named("b"));
    m_signal.addListener(named("c"));
    EXPECT_EQ(emitted(), (Calls{"a", "c"}));
    EXPECT_EQ(emitted(), (Calls{"a", "c"}));
}

TEST_F(SignalTest, RemovalDuringAnEmissionClearsTheIdAtOnceAndKeepsTheRecordToItsEnd) {
    auto token = std::make_shared<int>(0);
    unsigned b = 0;
    long uses_inside = 0;
    m_signal.addListener([&](int, void *) {
        if (b != 0) {
            m_signal.removeListener(b);
            EXPECT_EQ(b, 0U);
            uses_inside = token.use_count();
        }
    });
    b = m_signal.addListener([token](int, void *) {});
    m_signal.emit(0, nullptr);
    EXPECT_EQ(uses_inside, 2);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(SignalTest, RemovingTwiceDuringOneEmissionIsSilent) {
    unsigned b = 0;
    unsigned a = m_signal.addListener([&](int, void *) {
        unsigned copy = b;
        unsigned again = b;
        m_signal.removeListener(copy);
        m_signal.removeListener(again);
    });
    b = m_signal.addListener(named("b"));
    EXPECT_EQ(emitted(), Calls{});
    EXPECT_TRUE(NoFaultLogged(tag));
    m_signal.removeListener(a);
}

TEST_F(SignalTest, ListenerMayRemoveItself) {
    unsigned id = 0;
    id = m_signal.addListener([&](int, void *) {
        m_calls.emplace_back("once");
        m_signal.removeListener(id);
    });
    EXPECT_EQ(emitted(), Calls{"once"});
    EXPECT_EQ(emitted(), Calls{});
}

TEST_F(SignalTest, NestedEmissionRunsInTheMiddleOfTheOuterOne) {
    m_signal.addListener([&](int type, void *) {
        m_calls.push_back("a" + std::to_string(type));
        if (type == 1) {
            m_signal.emit(2, nullptr);
        }
    });
    m_signal.addListener([&](int type, void *) { m_calls.push_back("b" + std::to_string(type)); });
    EXPECT_EQ(emitted(1), (Calls{"a1", "a2", "b2", "b1"}));
}

TEST_F(SignalTest, RemovalAfterANestedEmissionErasesAtOnce) {
    auto token = std::make_shared<int>(0);
    unsigned b = 0;
    long uses_inside = 0;
    m_signal.addListener([&](int type, void *) {
        if (type == 1) {
            m_signal.emit(2, nullptr);
            m_signal.removeListener(b);
            uses_inside = token.use_count();
        }
    });
    b = m_signal.addListener([token](int, void *) {});
    m_signal.emit(1, nullptr);
    EXPECT_EQ(uses_inside, 1);
}

TEST_F(SignalTest, ListenerMayRemoveItselfAfterANestedEmission) {
    unsigned a = 0;
    a = m_signal.addListener([this, &a](int type, void *) {
        m_calls.emplace_back("a");
        if (type == 1) {
            Signal &signal = m_signal;
            signal.emit(2, nullptr);
            signal.removeListener(a);
        }
    });
    m_signal.addListener(named("b"));
    EXPECT_EQ(emitted(1), (Calls{"a", "a", "b", "b"}));
    EXPECT_EQ(emitted(2), Calls{"b"});
}

TEST_F(SignalTest, EmptyCallbackThrows) {
    unsigned id = m_signal.addListener(nullptr);
    EXPECT_THROW(m_signal.emit(0, nullptr), std::bad_function_call);
    m_signal.removeListener(id);
}

TEST_F(SignalTest, EmissionAllocatesNothing) {
    std::size_t heard = 0;
    m_signal.addListener([&](int, void *) { ++heard; });
    m_signal.addListener([&](int, void *) { ++heard; });
    const std::size_t before = g_allocations;
    for (int i = 0; i < 1000; ++i) {
        m_signal.emit(i, nullptr);
    }
    EXPECT_EQ(g_allocations, before);
    EXPECT_EQ(heard, 2000U);
}

TEST_F(SignalTest, DerivedSignalReplacesTheNotification) {
    struct Silent : Signal {
        int asked = 0;
        void notifyListeners(int, void *) override { ++asked; }
    } silent;
    silent.addListener(named("a"));
    silent.emit(0, nullptr);
    EXPECT_EQ(silent.asked, 1);
    EXPECT_EQ(m_calls, Calls{});
}

TEST_F(SignalTest, TheNotificationStandsBehindTheDestructors) {
    struct Operations : Signal {
        static std::size_t slot() { return support::vtable_slot(&Operations::notifyListeners); }
    };
    EXPECT_EQ(Operations::slot(), 2U);
}

TEST_F(SignalTest, DestructionFreesLiveAndWaitingListeners) {
    auto live = std::make_shared<int>(0);
    auto waiting = std::make_shared<int>(0);
    {
        auto signal = std::make_unique<Signal>();
        signal->addListener([live](int, void *) {});
        struct NeverEnds : std::exception {};
        signal->addListener([&, waiting](int, void *) {
            signal->addListener([waiting](int, void *) {});
            throw NeverEnds();
        });
        // The emission never reaches its end, so the listener stays in the waiting list.
        EXPECT_THROW(signal->emit(0, nullptr), NeverEnds);
        EXPECT_EQ(waiting.use_count(), 3);
    }
    EXPECT_EQ(live.use_count(), 1);
    EXPECT_EQ(waiting.use_count(), 1);
}

TEST_F(BoundSignalTest, ListenerBoundToAnObjectIsCalledWhileItLives) {
    m_signal.addListener(named("bound"), m_object);
    EXPECT_EQ(emitted(), Calls{"bound"});
}

TEST_F(BoundSignalTest, ListenerGoesWithItsObjectSilently) {
    auto token = std::make_shared<int>(0);
    m_signal.addListener([token](int, void *) {}, m_object);
    evas_object_del(m_object);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(BoundSignalTest, DeletionOfTheObjectLeavesTheOtherListeners) {
    m_signal.addListener(named("a"));
    m_signal.addListener(named("bound"), m_object);
    m_signal.addListener(named("c"));
    evas_object_del(m_object);
    EXPECT_EQ(emitted(), (Calls{"a", "c"}));
}

TEST_F(BoundSignalTest, IdOfAListenerThatWentWithItsObjectIsStale) {
    unsigned id = m_signal.addListener(named("bound"), m_object);
    const std::string expected = "* Critical * Already removed listener! =" + std::to_string(id);
    evas_object_del(m_object);
    m_signal.removeListener(id);
    EXPECT_TRUE(LoggedError(expected, tag));
}

TEST_F(BoundSignalTest, RemovedListenerLeavesNoHookOnItsObject) {
    auto token = std::make_shared<int>(0);
    unsigned id = m_signal.addListener([token](int, void *) {}, m_object);
    m_signal.removeListener(id);
    evas_object_del(m_object);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(emitted(), Calls{});
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(BoundSignalTest, ObjectDeletedDuringAnEmissionTakesItsListenerOutOfIt) {
    auto token = std::make_shared<int>(0);
    long uses_inside = 0;
    m_signal.addListener([&](int, void *) {
        if (m_object != nullptr) {
            evas_object_del(m_object);
            m_object = nullptr;
            uses_inside = token.use_count();
        }
    });
    m_signal.addListener([this, token](int, void *) { m_calls.emplace_back("bound"); }, m_object);
    EXPECT_EQ(emitted(), Calls{});
    EXPECT_EQ(uses_inside, 2);
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(NoFaultLogged(tag));
}

TEST_F(BoundSignalTest, ListenerAddedDuringAnEmissionIsBoundWhenItEnds) {
    auto token = std::make_shared<int>(0);
    unsigned once = m_signal.addListener(
        [&](int, void *) { m_signal.addListener([token](int, void *) {}, m_object); });
    m_signal.emit(0, nullptr);
    m_signal.removeListener(once);
    EXPECT_EQ(token.use_count(), 2);
    evas_object_del(m_object);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(BoundSignalTest, DestroyedSignalLeavesNoHookOnTheObject) {
    {
        Signal signal;
        signal.addListener(named("bound"), m_object);
    }
    evas_object_del(m_object);
    EXPECT_EQ(m_calls, Calls{});
}

TEST_F(BoundSignalTest, NullObjectBindsToNothing) {
    m_signal.addListener(named("free"), nullptr);
    EXPECT_EQ(emitted(), Calls{"free"});
}

}  // namespace
