#include "TslPreferenceHandler.h"

#include <dlog.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "log_lines.h"
#include "mock_platform/mock_preference.h"

namespace {

using testing::_;
using testing::IsEmpty;
using testing::Return;
using testing::StrEq;

constexpr int NO_SUCH_TYPE = 9;
static_assert(PREFERENCE_TYPE_INT == 1 && PREFERENCE_TYPE_DOUBLE == 2 &&
              PREFERENCE_TYPE_STRING == 3 && PREFERENCE_TYPE_BOOLEAN == 4);

FakePreference &store() {
    return mock::fake_preference();
}

// What every operation does with a bad key.
struct KeyTest {
    const char *name;
    bool (*call)(const char *key);
};

bool flag = false;
int number = 0;

class BadKey : public testing::TestWithParam<KeyTest> {};

TEST_P(BadKey, IsLoggedAndRefused) {
    EXPECT_CALL(mock::preference(), preference_set_int).Times(0);
    EXPECT_CALL(mock::preference(), preference_get_int).Times(0);
    EXPECT_CALL(mock::preference(), preference_is_existing).Times(0);
    EXPECT_FALSE(GetParam().call(nullptr));
    EXPECT_FALSE(GetParam().call(""));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is not a pointer of the szKey."), logs::warn("There is no string.")}));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, BadKey,
    testing::Values(
        KeyTest{"IsExist",
                [](const char *key) { return PreferenceHandler::isExistPreference(key, &flag); }},
        KeyTest{"Init",
                [](const char *key) {
                    return PreferenceHandler::initPreference(key, PREFERENCE_TYPE_INT);
                }},
        KeyTest{"Set",
                [](const char *key) {
                    return PreferenceHandler::setPreference(key, PREFERENCE_TYPE_INT, 1);
                }},
        KeyTest{"Get",
                [](const char *key) {
                    return PreferenceHandler::getPreference(key, PREFERENCE_TYPE_INT, &number);
                }}),
    [](const auto &info) { return info.param.name; });

TEST(Preference, IsStoredByType) {
    EXPECT_TRUE(PreferenceHandler::setPreference("i", PREFERENCE_TYPE_INT, -7));
    EXPECT_TRUE(PreferenceHandler::setPreference("d", PREFERENCE_TYPE_DOUBLE, 0.25));
    EXPECT_TRUE(PreferenceHandler::setPreference("s", PREFERENCE_TYPE_STRING, "text"));
    EXPECT_TRUE(PreferenceHandler::setPreference("b", PREFERENCE_TYPE_BOOLEAN, 1));
    EXPECT_EQ(std::get<int>(store().values().at("i")), -7);
    EXPECT_EQ(std::get<double>(store().values().at("d")), 0.25);
    EXPECT_EQ(std::get<std::string>(store().values().at("s")), "text");
    EXPECT_EQ(std::get<bool>(store().values().at("b")), true);
    EXPECT_TRUE(NoFaultLogged());
}

TEST(Preference, IsReadByType) {
    store().set("i", -7);
    store().set("d", 0.25);
    store().set("s", std::string("text"));
    store().set("b", true);
    int i = 0;
    double d = 0.0;
    char *s = nullptr;
    bool b = false;
    EXPECT_TRUE(PreferenceHandler::getPreference("i", PREFERENCE_TYPE_INT, &i));
    EXPECT_TRUE(PreferenceHandler::getPreference("d", PREFERENCE_TYPE_DOUBLE, &d));
    EXPECT_TRUE(PreferenceHandler::getPreference("s", PREFERENCE_TYPE_STRING, &s));
    EXPECT_TRUE(PreferenceHandler::getPreference("b", PREFERENCE_TYPE_BOOLEAN, &b));
    const std::unique_ptr<char, decltype(&std::free)> owner(s, &std::free);
    EXPECT_EQ(i, -7);
    EXPECT_EQ(d, 0.25);
    EXPECT_STREQ(s, "text");
    EXPECT_TRUE(b);
}

TEST(Preference, IsTrueForEveryNumberButZero) {
    for (const int value : {2, -1, 256}) {
        EXPECT_TRUE(PreferenceHandler::setPreference("b", PREFERENCE_TYPE_BOOLEAN, value));
        EXPECT_TRUE(std::get<bool>(store().values().at("b"))) << value;
    }
    EXPECT_TRUE(PreferenceHandler::setPreference("b", PREFERENCE_TYPE_BOOLEAN, 0));
    EXPECT_FALSE(std::get<bool>(store().values().at("b")));
}

TEST(Preference, LogsEachReadAndNoWrite) {
    PreferenceHandler::setPreference("i", PREFERENCE_TYPE_INT, 1);
    EXPECT_TRUE(logs::all().empty());
    PreferenceHandler::getPreference("i", PREFERENCE_TYPE_INT, &number);
    EXPECT_TRUE(LoggedIn("getPreference", DLOG_INFO, ""));
    EXPECT_EQ(logs::all().size(), 1u);
}

TEST(Preference, ThatThePlatformRefusesToStoreIsLogged) {
    EXPECT_CALL(mock::preference(), preference_set_int).WillOnce(Return(-5));
    EXPECT_CALL(mock::preference(), preference_set_double).WillOnce(Return(-6));
    EXPECT_CALL(mock::preference(), preference_set_string).WillOnce(Return(-7));
    EXPECT_CALL(mock::preference(), preference_set_boolean).WillOnce(Return(-8));
    EXPECT_FALSE(PreferenceHandler::setPreference("k", PREFERENCE_TYPE_INT, 1));
    EXPECT_FALSE(PreferenceHandler::setPreference("k", PREFERENCE_TYPE_DOUBLE, 1.0));
    EXPECT_FALSE(PreferenceHandler::setPreference("k", PREFERENCE_TYPE_STRING, "1"));
    EXPECT_FALSE(PreferenceHandler::setPreference("k", PREFERENCE_TYPE_BOOLEAN, 1));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * preference_set_int failed: [-5]"),
                          logs::error("* Critical * preference_set_double failed: [-6]"),
                          logs::error("* Critical * preference_set_string failed: [-7]"),
                          logs::error("* Critical * preference_set_boolean failed: [-8]")}));
}

TEST(Preference, ThatThePlatformRefusesToReadIsLoggedAndLeavesTheResultAlone) {
    int i = 42;
    double d = 4.2;
    char *s = nullptr;
    bool b = true;
    EXPECT_CALL(mock::preference(), preference_get_int).WillOnce(Return(-5));
    EXPECT_CALL(mock::preference(), preference_get_double).WillOnce(Return(-6));
    EXPECT_CALL(mock::preference(), preference_get_string).WillOnce(Return(-7));
    EXPECT_CALL(mock::preference(), preference_get_boolean).WillOnce(Return(-8));
    EXPECT_FALSE(PreferenceHandler::getPreference("k", PREFERENCE_TYPE_INT, &i));
    EXPECT_FALSE(PreferenceHandler::getPreference("k", PREFERENCE_TYPE_DOUBLE, &d));
    EXPECT_FALSE(PreferenceHandler::getPreference("k", PREFERENCE_TYPE_STRING, &s));
    EXPECT_FALSE(PreferenceHandler::getPreference("k", PREFERENCE_TYPE_BOOLEAN, &b));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * preference_get_int failed: [-5]"),
                          logs::error("* Critical * preference_get_double failed: [-6]"),
                          logs::error("* Critical * preference_get_string failed: [-7]"),
                          logs::error("* Critical * preference_get_boolean failed: [-8]")}));
    EXPECT_EQ(i, 42);
    EXPECT_EQ(d, 4.2);
    EXPECT_EQ(s, nullptr);
    EXPECT_TRUE(b);
}

TEST(Preference, OfAnUnknownTypeIsNeitherStoredNorRead) {
    EXPECT_FALSE(PreferenceHandler::setPreference("k", NO_SUCH_TYPE, 1));
    EXPECT_FALSE(PreferenceHandler::setPreference("k", 0, 1));
    EXPECT_FALSE(PreferenceHandler::getPreference("k", NO_SUCH_TYPE, &number));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("Unhandled nType"), logs::warn("Unhandled nType"),
                                  logs::warn("Unhandled nType")}));
    EXPECT_THAT(store().values(), IsEmpty());
}

TEST(PreferenceExistence, IsToldByTheFlagAlone) {
    store().set("k", 1);
    bool exists = false;
    EXPECT_TRUE(PreferenceHandler::isExistPreference("k", &exists));
    EXPECT_TRUE(exists);
    EXPECT_TRUE(PreferenceHandler::isExistPreference("missing", &exists));
    EXPECT_FALSE(exists);
    EXPECT_TRUE(NoFaultLogged());
}

TEST(PreferenceExistence, ThatThePlatformCannotTellIsLogged) {
    EXPECT_CALL(mock::preference(), preference_is_existing).Times(2).WillRepeatedly(Return(-5));
    EXPECT_FALSE(PreferenceHandler::isExistPreference("k", &flag));
    EXPECT_FALSE(PreferenceHandler::initPreference("k", PREFERENCE_TYPE_INT));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * preference_is_existing failed: [-5]"),
                          logs::error("* Critical * preference_is_existing failed: [-5]")}));
    EXPECT_THAT(store().values(), IsEmpty());
}

TEST(PreferenceDefault, IsThatOfItsType) {
    EXPECT_TRUE(PreferenceHandler::initPreference("i", PREFERENCE_TYPE_INT));
    EXPECT_TRUE(PreferenceHandler::initPreference("d", PREFERENCE_TYPE_DOUBLE));
    EXPECT_TRUE(PreferenceHandler::initPreference("s", PREFERENCE_TYPE_STRING));
    EXPECT_TRUE(PreferenceHandler::initPreference("b", PREFERENCE_TYPE_BOOLEAN));
    EXPECT_EQ(std::get<int>(store().values().at("i")), 0);
    EXPECT_EQ(std::get<double>(store().values().at("d")), 0.0);
    EXPECT_EQ(std::get<std::string>(store().values().at("s")), "");
    EXPECT_EQ(std::get<bool>(store().values().at("b")), false);
}

TEST(PreferenceDefault, KeepsAValueThatExists) {
    store().set("k", 5);
    EXPECT_CALL(mock::preference(), preference_set_int).Times(0);
    EXPECT_TRUE(PreferenceHandler::initPreference("k", PREFERENCE_TYPE_INT));
    EXPECT_EQ(std::get<int>(store().values().at("k")), 5);
}

TEST(PreferenceDefault, OfAnUnknownTypeIsNone) {
    for (const int type : {NO_SUCH_TYPE, 0, 5}) {
        EXPECT_TRUE(PreferenceHandler::initPreference("k", type));
    }
    EXPECT_THAT(store().values(), IsEmpty());
    EXPECT_TRUE(logs::all().empty());
}

TEST(PreferenceDefault, ThatCannotBeStoredIsAFailure) {
    EXPECT_CALL(mock::preference(), preference_set_string).WillOnce(Return(-5));
    EXPECT_FALSE(PreferenceHandler::initPreference("k", PREFERENCE_TYPE_STRING));
}

class PreferenceWatch : public testing::Test {
protected:
    PreferenceWatch() {
        store().set("a", 1);
        store().set("b", 1);
        logs::clear();
    }

    int watch(const char *key, void *data = nullptr) {
        return m_handler->addEventHandler(
            key,
            [this](const char *changed, void *user_data) {
                m_changes.emplace_back(changed);
                m_data = user_data;
            },
            data);
    }

    std::unique_ptr<PreferenceHandler> m_handler = std::make_unique<PreferenceHandler>();
    std::vector<std::string> m_changes;
    void *m_data = nullptr;
};

TEST_F(PreferenceWatch, TellsTheKeyAndTheUserData) {
    EXPECT_EQ(watch("a", &m_changes), 0);
    store().set("b", 2);
    store().set("a", 2);
    EXPECT_EQ(m_changes, std::vector<std::string>{"a"});
    EXPECT_EQ(m_data, &m_changes);
}

TEST_F(PreferenceWatch, GivesThePlatformsOwnResult) {
    EXPECT_CALL(mock::preference(), preference_set_changed_cb).WillOnce(Return(-1234));
    EXPECT_EQ(watch("a"), -1234);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(PreferenceWatch, ReplacesTheOneBeforeAfterUnsettingIt) {
    testing::InSequence order;
    EXPECT_CALL(mock::preference(), preference_set_changed_cb(StrEq("a"), _, _));
    EXPECT_CALL(mock::preference(), preference_unset_changed_cb(StrEq("a")));
    EXPECT_CALL(mock::preference(), preference_set_changed_cb(StrEq("b"), _, _));
    EXPECT_CALL(mock::preference(), preference_unset_changed_cb(StrEq("b")));
    EXPECT_EQ(watch("a"), 0);
    EXPECT_EQ(watch("b"), 0);
    store().set("a", 2);
    store().set("b", 2);
    EXPECT_EQ(m_changes, std::vector<std::string>{"b"});
    m_handler.reset();
}

TEST_F(PreferenceWatch, OfABadKeyLeavesTheEarlierOneRunning) {
    EXPECT_EQ(watch("a"), 0);
    EXPECT_EQ(watch(""), -1);
    EXPECT_EQ(watch(nullptr), -1);
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is no string."), logs::warn("There is not a pointer of the szKey.")}));
    store().set("a", 2);
    EXPECT_EQ(m_changes, std::vector<std::string>{"a"});
}

TEST_F(PreferenceWatch, ThatWasNeverSetIsNotUnset) {
    EXPECT_CALL(mock::preference(), preference_unset_changed_cb).Times(0);
    m_handler.reset();
}

TEST_F(PreferenceWatch, EndsWithItsObject) {
    watch("a");
    m_handler.reset();
    EXPECT_EQ(store().watches(), 0);
    store().set("a", 2);
    EXPECT_THAT(m_changes, IsEmpty());
}

TEST_F(PreferenceWatch, MayBeDeletedByItsHandler) {
    const std::string tag = "a text that is too long to lie inside the object itself";
    std::string seen;
    m_handler->addEventHandler(
        "a",
        [this, tag, &seen](const char *, void *) {
            m_handler.reset();
            seen = tag;
        },
        nullptr);
    store().set("a", 2);
    EXPECT_EQ(seen, tag);
    EXPECT_EQ(store().watches(), 0);
}

TEST_F(PreferenceWatch, MayBeReplacedByItsHandler) {
    m_handler->addEventHandler(
        "a", [this](const char *, void *) { watch("b"); }, nullptr);
    store().set("a", 2);
    store().set("b", 2);
    EXPECT_EQ(m_changes, std::vector<std::string>{"b"});
}

TEST_F(PreferenceWatch, LogsItsMakingAndItsEnd) {
    m_handler = std::make_unique<PreferenceHandler>();
    logs::clear();
    m_handler = nullptr;
    PreferenceHandler another;
    EXPECT_TRUE(LoggedIn("~PreferenceHandler", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("~_PreferenceHandlerImpl", DLOG_INFO, ""));
    EXPECT_TRUE(LoggedIn("PreferenceHandler", DLOG_INFO, ""));
    EXPECT_EQ(logs::all().size(), 3u);
}

TEST(PreferenceHandlerClass, IsAHandleWithoutVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<PreferenceHandler>::value);
    EXPECT_EQ(sizeof(PreferenceHandler), sizeof(void *));
}

}  // namespace
