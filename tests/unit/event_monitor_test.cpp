#include "TslEventMonitor.h"

#include <dlog.h>
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "log_lines.h"
#include "mock_platform/mock_preference.h"
#include "mock_platform/mock_ui_app.h"
#include "private_member.h"

using Items =
    support::PrivateMember<struct ItemsTag,
                           std::vector<TslEventMonitor::EventHandlerItem *> TslEventMonitor::*>;
template struct support::OpenMember<Items, &TslEventMonitor::m_pHandlerItems>;

namespace {

class EventMonitor : public testing::Test {
protected:
    static FakeUiApp &platform() { return mock::fake_ui_app(); }

    /// Registers a function that notes its name when it is called.
    int add(app_event_type_e type, const std::string &name) {
        return m_monitor.addEventHandler(
            type, [this, name](app_event_info_h, void *) { m_calls.push_back(name); }, nullptr);
    }

    /// The same for a preference, which exists.
    int watch(const char *key, const std::string &name) {
        mock::fake_preference().set(key, 0);
        logs::clear();
        return m_monitor.addEventHandler(
            key, [this, name](const char *, void *) { m_calls.push_back(name); }, nullptr);
    }

    TslEventMonitor m_monitor;
    std::vector<std::string> m_calls;
};

}  // namespace

TEST_F(EventMonitor, AnEventReachesItsHandlerWithTheUserData) {
    int data = 0;
    app_event_info_h event = nullptr;
    void *user_data = nullptr;
    EXPECT_EQ(m_monitor.addEventHandler(
                  APP_EVENT_LOW_BATTERY,
                  [&](app_event_info_h info, void *passed) {
                      event = info;
                      user_data = passed;
                  },
                  &data),
              0);
    platform().raise_event(APP_EVENT_LANGUAGE_CHANGED);
    EXPECT_EQ(event, nullptr);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_NE(event, nullptr);
    EXPECT_EQ(user_data, &data);
}

TEST_F(EventMonitor, AnEmptyHandlerIsRefused) {
    EXPECT_EQ(m_monitor.addEventHandler(APP_EVENT_LOW_BATTERY, nullptr, nullptr), -1);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no pHandlerFunc.")}));
    EXPECT_EQ(platform().handlers(), 0);
}

TEST_F(EventMonitor, ARegistrationIsKeptAsARecord) {
    add(APP_EVENT_LANGUAGE_CHANGED, "language");
    const auto &items = m_monitor.*member(Items{});
    ASSERT_EQ(items.size(), 1u);
    EXPECT_NE(items[0]->pHandler, nullptr);
    EXPECT_EQ(items[0]->nHandlerType, 0);
    EXPECT_EQ(*static_cast<int *>(items[0]->pKey), int(APP_EVENT_LANGUAGE_CHANGED));
}

TEST_F(EventMonitor, ARefusalOfThePlatformIsNotNoticed) {
    EXPECT_CALL(mock::ui_app(), ui_app_add_event_handler)
        .WillOnce(testing::Return(APP_ERROR_OUT_OF_MEMORY));
    EXPECT_EQ(add(APP_EVENT_LOW_BATTERY, "battery"), 0);
    EXPECT_TRUE(m_monitor.removeEventHandler(APP_EVENT_LOW_BATTERY));
}

TEST_F(EventMonitor, TwoRegistrationsForOneTypeBothStay) {
    add(APP_EVENT_LOW_BATTERY, "first");
    add(APP_EVENT_LOW_BATTERY, "second");
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(m_calls, (std::vector<std::string>{"first", "second"}));
}

TEST_F(EventMonitor, ARemovalTakesTheFirstOfItsTypeAndKeepsTheOrder) {
    add(APP_EVENT_LANGUAGE_CHANGED, "language");
    add(APP_EVENT_LOW_BATTERY, "first");
    add(APP_EVENT_LOW_MEMORY, "memory");
    add(APP_EVENT_LOW_BATTERY, "second");
    const auto &items = m_monitor.*member(Items{});
    const auto *removed = static_cast<void *>(items[1]);
    const std::vector<TslEventMonitor::EventHandlerItem *> kept{items[0], items[2], items[3]};

    EXPECT_TRUE(m_monitor.removeEventHandler(APP_EVENT_LOW_BATTERY));

    char expected[64];
    snprintf(expected, sizeof expected, "Remove EventHandler: %p", removed);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(expected)}));
    EXPECT_EQ(items, kept);
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(m_calls, (std::vector<std::string>{"second"}));
    EXPECT_EQ(platform().handlers(), 3);
}

TEST_F(EventMonitor, RemovingAnUnknownTypeIsFalseAndSilent) {
    add(APP_EVENT_LOW_BATTERY, "battery");
    logs::clear();
    EXPECT_FALSE(m_monitor.removeEventHandler(APP_EVENT_LOW_MEMORY));
    EXPECT_TRUE(logs::all().empty());
    EXPECT_EQ(platform().handlers(), 1);
}

TEST_F(EventMonitor, RemovingLooksAtApplicationEventsOnly) {
    auto &items = m_monitor.*member(Items{});
    char key[] = "\1\0\0\0";
    TslEventMonitor::EventHandlerItem other{nullptr, 1, key};
    items.push_back(&other);
    EXPECT_FALSE(m_monitor.removeEventHandler(APP_EVENT_LOW_BATTERY));
    items.clear();
}

TEST_F(EventMonitor, DestroyEndsAllInOrderAndTheMonitorCanGoOn) {
    std::vector<app_event_handler_h> made;
    EXPECT_CALL(mock::ui_app(), ui_app_add_event_handler)
        .Times(2)
        .WillRepeatedly([&made](app_event_handler_h *handler, app_event_type_e type,
                                app_event_cb callback, void *data) {
            const int result =
                mock::fake_ui_app().ui_app_add_event_handler(handler, type, callback, data);
            made.push_back(*handler);
            return result;
        });
    add(APP_EVENT_LOW_BATTERY, "battery");
    add(APP_EVENT_LANGUAGE_CHANGED, "language");
    auto &items = m_monitor.*member(Items{});
    items.insert(items.begin() + 1, nullptr);
    const size_t storage = items.capacity();
    std::vector<app_event_handler_h> ended;
    EXPECT_CALL(mock::ui_app(), ui_app_remove_event_handler)
        .Times(2)
        .WillRepeatedly([&ended](app_event_handler_h handler) {
            ended.push_back(handler);
            return mock::fake_ui_app().ui_app_remove_event_handler(handler);
        });
    m_monitor.destroy();
    EXPECT_EQ(platform().handlers(), 0);
    EXPECT_TRUE(items.empty());
    EXPECT_EQ(items.capacity(), storage);
    EXPECT_EQ(ended, made);
    EXPECT_TRUE(NoFaultLogged());
    testing::Mock::VerifyAndClearExpectations(&mock::ui_app());

    add(APP_EVENT_LOW_BATTERY, "again");
    platform().raise_event(APP_EVENT_LOW_BATTERY);
    EXPECT_EQ(m_calls, (std::vector<std::string>{"again"}));
}

TEST_F(EventMonitor, TheRegistrationsGoWithTheMonitor) {
    auto monitor = std::make_unique<TslEventMonitor>();
    monitor->addEventHandler(
        APP_EVENT_LOW_BATTERY, [](app_event_info_h, void *) {}, nullptr);
    EXPECT_EQ(platform().handlers(APP_EVENT_LOW_BATTERY), 1);
    monitor.reset();
    EXPECT_EQ(platform().handlers(APP_EVENT_LOW_BATTERY), 0);
}

TEST_F(EventMonitor, DestroyingNoItemIsLogged) {
    TslEventMonitor::destroyItem(nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no pHandlerItem.")}));
}

TEST_F(EventMonitor, AnItemOfAnUnknownKindIsLeftAlone) {
    int key = 7;
    TslEventMonitor::EventHandlerItem item{&key, 7, &key};
    TslEventMonitor::destroyItem(&item);
    EXPECT_EQ(item.pHandler, &key);
    EXPECT_EQ(item.nHandlerType, 7);
    EXPECT_TRUE(logs::all().empty());
}

TEST_F(EventMonitor, AChangeOfAPreferenceReachesItsHandlerWithTheUserData) {
    mock::fake_preference().set("colour", 0);
    int data = 0;
    std::string key;
    void *user_data = nullptr;
    EXPECT_EQ(m_monitor.addEventHandler(
                  "colour",
                  [&](const char *changed, void *passed) {
                      key = changed;
                      user_data = passed;
                  },
                  &data),
              0);
    mock::fake_preference().set("shade", 1);
    EXPECT_EQ(key, "");
    mock::fake_preference().set("colour", 1);
    EXPECT_EQ(key, "colour");
    EXPECT_EQ(user_data, &data);
}

TEST_F(EventMonitor, APreferenceNeedsAKeyAndAHandlerInThisOrder) {
    const char *no_key = nullptr;
    EXPECT_EQ(m_monitor.addEventHandler(no_key, nullptr, nullptr), -1);
    EXPECT_EQ(m_monitor.addEventHandler("colour", nullptr, nullptr), -1);
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * There is no szKey."),
                                  logs::error("* Critical * There is no pHandlerFunc.")}));
    EXPECT_TRUE((m_monitor.*member(Items{})).empty());
}

TEST_F(EventMonitor, AWatchIsKeptAsARecordWithItsOwnCopyOfTheKey) {
    std::string key = "colour";
    watch(key.c_str(), "colour");
    key[0] = 'x';
    const auto &items = m_monitor.*member(Items{});
    ASSERT_EQ(items.size(), 1u);
    EXPECT_NE(items[0]->pHandler, nullptr);
    EXPECT_EQ(items[0]->nHandlerType, 1);
    EXPECT_EQ(*static_cast<std::string *>(items[0]->pKey), "colour");
}

TEST_F(EventMonitor, AWatchThatThePlatformRefusesStandsAllTheSame) {
    EXPECT_EQ(m_monitor.addEventHandler(
                  "missing", [](const char *, void *) {}, nullptr),
              0);
    EXPECT_EQ((m_monitor.*member(Items{})).size(), 1u);
    EXPECT_TRUE(m_monitor.removeEventHandler("missing"));
}

TEST_F(EventMonitor, ARemovalOfAPreferenceTakesTheFirstOfItsKeyAndKeepsTheOrder) {
    watch("shade", "shade");
    watch("colour", "first");
    add(APP_EVENT_LOW_BATTERY, "battery");
    watch("colour", "second");
    logs::clear();
    m_calls.clear();
    const auto &items = m_monitor.*member(Items{});
    const auto *removed = static_cast<void *>(items[1]);
    const std::vector<TslEventMonitor::EventHandlerItem *> kept{items[0], items[2], items[3]};

    EXPECT_TRUE(m_monitor.removeEventHandler(std::string("colour").c_str()));

    char expected[64];
    snprintf(expected, sizeof expected, "Remove EventHandler: %p", removed);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(expected)}));
    EXPECT_EQ(items, kept);
    mock::fake_preference().set("shade", 1);
    EXPECT_EQ(m_calls, (std::vector<std::string>{"shade"}));
}

TEST_F(EventMonitor, RemovingAnUnknownPreferenceIsFalseAndSilent) {
    watch("colour", "colour");
    add(APP_EVENT_LOW_BATTERY, "battery");
    logs::clear();
    EXPECT_FALSE(m_monitor.removeEventHandler("colou"));
    EXPECT_FALSE(m_monitor.removeEventHandler("colours"));
    EXPECT_TRUE(logs::all().empty());
    EXPECT_EQ((m_monitor.*member(Items{})).size(), 2u);
}

TEST_F(EventMonitor, RemovingThePreferenceNullIsLogged) {
    const char *no_key = nullptr;
    EXPECT_FALSE(m_monitor.removeEventHandler(no_key));
    EXPECT_TRUE(LoggedInfo("There is no szKey."));
    EXPECT_EQ(logs::all().size(), 1u);
}

TEST_F(EventMonitor, DestroyEndsRegistrationsOfBothKinds) {
    watch("colour", "colour");
    add(APP_EVENT_LOW_BATTERY, "battery");
    watch("shade", "shade");
    m_monitor.destroy();
    EXPECT_EQ(mock::fake_preference().watches(), 0);
    EXPECT_EQ(platform().handlers(), 0);
    EXPECT_TRUE((m_monitor.*member(Items{})).empty());
}

TEST_F(EventMonitor, APreferencesHandlerMayRemoveItself) {
    mock::fake_preference().set("colour", 0);
    std::string seen;
    const std::string tag = "a text that is too long to lie inside the object itself";
    m_monitor.addEventHandler(
        "colour",
        [this, tag, &seen](const char *key, void *) {
            EXPECT_TRUE(m_monitor.removeEventHandler(key));
            seen = tag;
        },
        nullptr);
    mock::fake_preference().set("colour", 1);
    EXPECT_EQ(seen, tag);
    EXPECT_EQ(mock::fake_preference().watches(), 0);
}
