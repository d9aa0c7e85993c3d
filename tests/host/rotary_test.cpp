// Who is told of the bezel and of the hardware keys, and how a turn becomes detents.

#include "rotary/rotary.h"

#include <Elementary.h>
#include <efl_extension.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "main_loop.h"
#include "rotary/detents.h"
#include "window_fixture.h"

namespace {

struct Listener {
    std::string name;
    std::vector<std::string> *calls;
    bool takes = false;
    Eext_Rotary_Event_Info last{};
};

Eina_Bool on_detent(void *data, Evas_Object * /*obj*/, Eext_Rotary_Event_Info *info) {
    auto *listener = static_cast<Listener *>(data);
    listener->calls->push_back(listener->name);
    listener->last = *info;
    return listener->takes ? EINA_TRUE : EINA_FALSE;
}

Eina_Bool on_detent_too(void *data, Evas_Object *obj, Eext_Rotary_Event_Info *info) {
    return on_detent(data, obj, info);
}

Eina_Bool delete_object_on_detent(void * /*data*/, Evas_Object *obj,
                                  Eext_Rotary_Event_Info * /*info*/) {
    evas_object_del(obj);
    return EINA_FALSE;
}

Eina_Bool remove_other_on_detent(void * /*data*/, Evas_Object *obj,
                                 Eext_Rotary_Event_Info * /*info*/) {
    eext_rotary_object_event_callback_del(obj, on_detent);
    return EINA_FALSE;
}

class RotaryObjects : public support::WindowTest {
protected:
    Evas_Object *add_object() {
        Evas_Object *object = evas_object_rectangle_add(evas_object_evas_get(window()));
        evas_object_show(object);
        return object;
    }

    std::vector<std::string> calls;
    Listener first{"first", &calls};
    Listener second{"second", &calls};
};

using HardwareKeys = RotaryObjects;

void on_key(void *data, Evas_Object * /*obj*/, void * /*info*/) {
    const auto *listener = static_cast<const Listener *>(data);
    listener->calls->push_back(listener->name);
}

void delete_object_on_key(void *data, Evas_Object *obj, void *info) {
    on_key(data, obj, info);
    evas_object_del(obj);
}

TEST_F(RotaryObjects, OnlyTheActiveObjectIsTold) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    eext_rotary_object_event_callback_add(a, on_detent, &first);
    eext_rotary_object_event_callback_add(b, on_detent, &second);
    EXPECT_FALSE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    eext_rotary_object_event_activated_set(a, EINA_TRUE);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    eext_rotary_object_event_activated_set(b, EINA_TRUE);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "second"}));
}

TEST_F(RotaryObjects, DetentCarriesDirectionAndTime) {
    Evas_Object *object = add_object();
    first.takes = true;
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    EXPECT_TRUE(host::send_detent(EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE, 4711));
    EXPECT_EQ(first.last.direction, EEXT_ROTARY_DIRECTION_COUNTER_CLOCKWISE);
    EXPECT_EQ(first.last.time_stamp, 4711U);
}

TEST_F(RotaryObjects, DeactivatingAnotherObjectChangesNothing) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    eext_rotary_object_event_callback_add(a, on_detent, &first);
    eext_rotary_object_event_activated_set(a, EINA_TRUE);
    eext_rotary_object_event_activated_set(b, EINA_FALSE);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(calls.size(), 1U);
    eext_rotary_object_event_activated_set(a, EINA_FALSE);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(calls.size(), 1U);
}

TEST_F(RotaryObjects, ObjectThatGoesGivesTheBezelBackToTheOneBefore) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    Evas_Object *c = add_object();
    eext_rotary_object_event_callback_add(a, on_detent, &first);
    eext_rotary_object_event_callback_add(c, on_detent, &second);
    for (Evas_Object *object : {a, b, c}) {
        eext_rotary_object_event_activated_set(object, EINA_TRUE);
    }
    // One that goes while another is active is out of the row.
    evas_object_del(b);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(calls, std::vector<std::string>{"second"});
    evas_object_del(c);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 2);
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "first"}));
}

TEST_F(RotaryObjects, DeactivatedObjectGetsTheBezelBackFromNoOther) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    eext_rotary_object_event_callback_add(a, on_detent, &first);
    eext_rotary_object_event_activated_set(a, EINA_TRUE);
    eext_rotary_object_event_activated_set(b, EINA_TRUE);
    eext_rotary_object_event_activated_set(a, EINA_FALSE);
    evas_object_del(b);
    EXPECT_FALSE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    EXPECT_TRUE(calls.empty());
}

TEST_F(RotaryObjects, LowerPriorityValueIsCalledFirst) {
    Evas_Object *object = add_object();
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    eext_rotary_object_event_callback_priority_add(object, EVAS_CALLBACK_PRIORITY_BEFORE,
                                                   on_detent_too, &second);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "first"}));
}

TEST_F(RotaryObjects, TakenDetentGoesNoFurther) {
    Evas_Object *object = add_object();
    first.takes = true;
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    eext_rotary_object_event_callback_add(object, on_detent_too, &second);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    EXPECT_TRUE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    EXPECT_EQ(calls, std::vector<std::string>{"first"});
}

TEST_F(RotaryObjects, RemovalGivesTheDataBackOnce) {
    Evas_Object *object = add_object();
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    EXPECT_EQ(eext_rotary_object_event_callback_del(object, on_detent_too), nullptr);
    EXPECT_EQ(eext_rotary_object_event_callback_del(object, on_detent), &first);
    EXPECT_EQ(eext_rotary_object_event_callback_del(object, on_detent), nullptr);
}

TEST_F(RotaryObjects, CallbackRemovedDuringADetentIsNotCalled) {
    Evas_Object *object = add_object();
    eext_rotary_object_event_callback_add(object, remove_other_on_detent, nullptr);
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    EXPECT_FALSE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    EXPECT_TRUE(calls.empty());
}

TEST_F(RotaryObjects, ObjectDeletedDuringADetentIsForgotten) {
    Evas_Object *object = add_object();
    eext_rotary_object_event_callback_add(object, delete_object_on_detent, nullptr);
    eext_rotary_object_event_callback_add(object, on_detent, &first);
    eext_rotary_object_event_activated_set(object, EINA_TRUE);
    EXPECT_FALSE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 1));
    EXPECT_FALSE(host::send_detent(EEXT_ROTARY_DIRECTION_CLOCKWISE, 2));
    EXPECT_TRUE(calls.empty());
}

TEST_F(RotaryObjects, NullIsRefused) {
    EXPECT_FALSE(eext_rotary_object_event_callback_add(nullptr, on_detent, nullptr));
    EXPECT_FALSE(eext_rotary_object_event_callback_add(window(), nullptr, nullptr));
    EXPECT_FALSE(eext_rotary_object_event_activated_set(nullptr, EINA_TRUE));
    EXPECT_EQ(eext_rotary_object_event_callback_del(nullptr, on_detent), nullptr);
}

TEST_F(HardwareKeys, NewestVisibleObjectThatAskedIsTold) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    eext_object_event_callback_add(a, EEXT_CALLBACK_BACK, on_key, &first);
    eext_object_event_callback_add(b, EEXT_CALLBACK_BACK, on_key, &second);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_hide(b);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_show(b);
    evas_object_del(b);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "first", "first"}));
}

TEST_F(HardwareKeys, ObjectInAHiddenOneIsNotSeen) {
    Evas_Object *page = add_object();
    Evas_Object *box = elm_box_add(window());
    evas_object_show(box);
    Evas_Object *inside = elm_button_add(window());
    elm_box_pack_end(box, inside);
    evas_object_show(inside);
    eext_object_event_callback_add(page, EEXT_CALLBACK_BACK, on_key, &first);
    eext_object_event_callback_add(inside, EEXT_CALLBACK_BACK, on_key, &second);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_hide(box);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_show(box);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "first", "second"}));
}

TEST_F(HardwareKeys, ObjectOfAHiddenWindowIsNotSeen) {
    Evas_Object *object = add_object();
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &first);
    evas_object_hide(window());
    EXPECT_FALSE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_show(window());
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
}

TEST_F(HardwareKeys, PopupIsToldBeforeThePageBelowAndAToastOnlyWhileItShows) {
    Evas_Object *page = add_object();
    Evas_Object *popup = elm_popup_add(window());
    Evas_Object *toast = elm_popup_add(window());
    evas_object_show(popup);
    eext_object_event_callback_add(page, EEXT_CALLBACK_BACK, on_key, &first);
    eext_object_event_callback_add(popup, EEXT_CALLBACK_BACK, on_key, &second);
    Listener third{"toast", &calls};
    eext_object_event_callback_add(toast, EEXT_CALLBACK_BACK, on_key, &third);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_show(toast);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_del(toast);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    evas_object_del(popup);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, (std::vector<std::string>{"second", "toast", "second", "first"}));
}

TEST_F(HardwareKeys, AllCallbacksOfTheObjectAreCalledOldestFirst) {
    Evas_Object *object = add_object();
    Evas_Object *older = add_object();
    Listener third{"third", &calls};
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &first);
    eext_object_event_callback_add(older, EEXT_CALLBACK_BACK, on_key, &third);
    // Who asks again is the newest.
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &second);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "second"}));
}

TEST_F(HardwareKeys, NullIsIgnored) {
    eext_object_event_callback_add(nullptr, EEXT_CALLBACK_BACK, on_key, &first);
    eext_object_event_callback_add(window(), EEXT_CALLBACK_BACK, nullptr, &first);
    EXPECT_FALSE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(eext_object_event_callback_del(nullptr, EEXT_CALLBACK_BACK, on_key), nullptr);
}

TEST_F(HardwareKeys, CallbackRemovedDuringAKeyIsNotCalledAndOneAddedWaitsForTheNext) {
    struct Change {
        Listener *added;
        int times = 0;
    } change{&second};
    Evas_Object *object = add_object();
    eext_object_event_callback_add(
        object, EEXT_CALLBACK_BACK,
        [](void *data, Evas_Object *obj, void *) {
            auto *change = static_cast<Change *>(data);
            if (change->times++ == 0) {
                eext_object_event_callback_del(obj, EEXT_CALLBACK_BACK, on_key);
                eext_object_event_callback_add(obj, EEXT_CALLBACK_BACK, on_key, change->added);
            }
        },
        &change);
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &first);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, std::vector<std::string>{"second"});
}

TEST_F(HardwareKeys, EachKeyIsAskedForByItself) {
    Evas_Object *a = add_object();
    Evas_Object *b = add_object();
    eext_object_event_callback_add(a, EEXT_CALLBACK_MORE, on_key, &first);
    eext_object_event_callback_add(b, EEXT_CALLBACK_BACK, on_key, &second);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_MORE));
    EXPECT_EQ(calls, std::vector<std::string>{"first"});
}

TEST_F(HardwareKeys, NobodyAskedIsTold) {
    EXPECT_FALSE(host::send_key(EEXT_CALLBACK_MORE));
}

TEST_F(HardwareKeys, ObjectMayGoInItsCallback) {
    Evas_Object *object = add_object();
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, delete_object_on_key, &first);
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &second);
    EXPECT_TRUE(host::send_key(EEXT_CALLBACK_BACK));
    EXPECT_EQ(calls, std::vector<std::string>{"first"});
    EXPECT_FALSE(host::send_key(EEXT_CALLBACK_BACK));
}

TEST_F(HardwareKeys, RemovalGivesTheDataBackOnce) {
    Evas_Object *object = add_object();
    eext_object_event_callback_add(object, EEXT_CALLBACK_BACK, on_key, &first);
    EXPECT_EQ(eext_object_event_callback_del(object, EEXT_CALLBACK_MORE, on_key), nullptr);
    EXPECT_EQ(eext_object_event_callback_del(object, EEXT_CALLBACK_BACK, on_key), &first);
    EXPECT_EQ(eext_object_event_callback_del(object, EEXT_CALLBACK_BACK, on_key), nullptr);
    EXPECT_FALSE(host::send_key(EEXT_CALLBACK_BACK));
}

class BezelTurns : public testing::Test {
protected:
    struct Detent {
        bool clockwise;
        unsigned int stamp;
    };

    bool wait_for(std::size_t count) {
        return support::run_main_loop_until([&] { return detents.size() >= count; });
    }
    [[nodiscard]] unsigned int least_gap() const {
        unsigned int least = ~0U;
        for (std::size_t i = 1; i < detents.size(); ++i) {
            least = std::min(least, detents[i].stamp - detents[i - 1].stamp);
        }
        return least;
    }

    std::vector<Detent> detents;
    host::Detents bezel{[this](bool clockwise, unsigned int stamp) {
        detents.push_back({clockwise, stamp});
    }};
};

TEST_F(BezelTurns, FirstDetentComesAtOnce) {
    bezel.turn_by_hand(1);
    ASSERT_EQ(detents.size(), 1U);
    EXPECT_TRUE(detents[0].clockwise);
}

TEST_F(BezelTurns, BurstIsSpreadAtTenMilliseconds) {
    bezel.turn_by_hand(3);
    bezel.turn_by_hand(3);
    ASSERT_TRUE(wait_for(6));
    EXPECT_GE(least_gap(), 10U);
}

TEST_F(BezelTurns, ScriptedIntervalIsKept) {
    bezel.turn(-3, 40);
    ASSERT_TRUE(wait_for(3));
    EXPECT_GE(least_gap(), 40U);
    EXPECT_FALSE(detents[2].clockwise);
}

TEST_F(BezelTurns, ScriptedIntervalBelowTheLeastIsLengthened) {
    bezel.turn(4, 0);
    ASSERT_TRUE(wait_for(4));
    EXPECT_GE(least_gap(), 10U);
}

TEST_F(BezelTurns, GoingBackDropsWhatStillWaits) {
    bezel.turn_by_hand(10);
    bezel.turn_by_hand(-1);
    ASSERT_TRUE(wait_for(2));
    support::run_main_loop_for(0.05);
    ASSERT_EQ(detents.size(), 2U);
    EXPECT_TRUE(detents[0].clockwise);
    EXPECT_FALSE(detents[1].clockwise);
}

TEST_F(BezelTurns, FlingIsNoLongerThanATurn) {
    for (int i = 0; i < 40; ++i) {
        bezel.turn_by_hand(5);
    }
    ASSERT_TRUE(wait_for(25));
    support::run_main_loop_for(0.1);
    EXPECT_EQ(detents.size(), 25U);  // the one that came at once, and a turn
}

}  // namespace
