#include "TslAppControlCtrl.h"

#include <dlog.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>

#include "log_lines.h"
#include "mock_platform/mock_app_control.h"

using testing::_;
using testing::Return;

namespace {

constexpr char no_handle[] = "app control handle is null.";
constexpr int some_error = APP_CONTROL_ERROR_OUT_OF_MEMORY;

struct Free {
    void operator()(char *text) const { free(text); }
};
using HeapText = std::unique_ptr<char, Free>;

std::string hex(int code) {
    char text[16];
    snprintf(text, sizeof text, "0x%x", static_cast<unsigned int>(code));
    return text;
}

class AppControlCtrl : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(app_control_create(&m_request), APP_CONTROL_ERROR_NONE); }
    void TearDown() override { app_control_destroy(m_request); }

    app_control_h request() { return m_request; }

private:
    app_control_h m_request = nullptr;
};

// A getter as the table of getters has it.
struct Getter {
    const char *name;
    std::function<std::string(TslAppControlCtrl &)> get;  // empty for null
    std::function<void(MockAppControl &, int, const char *)> answer;
    std::string on_error;
    std::string on_empty;
};

std::string owned(char *text) {
    const HeapText owner(text);
    return text != nullptr ? text : "";
}
std::string borrowed(const char *text) {
    return text != nullptr ? text : "";
}

char *heap_copy(const char *text) {
    return text != nullptr ? strdup(text) : nullptr;
}

#define ANSWER(function)                                                \
    [](MockAppControl &mock, int code, const char *text) {              \
        EXPECT_CALL(mock, function(_, _))                               \
            .WillRepeatedly([code, text](app_control_h, char **value) { \
                *value = heap_copy(text);                               \
                return code;                                            \
            });                                                         \
    }

const Getter getters[] = {
    {"getUri", [](auto &c) { return owned(c.getUri()); }, ANSWER(app_control_get_uri),
     "There is no uri.", "* Critical * There is no Uri."},
    {"getMime", [](auto &c) { return borrowed(c.getMime()); }, ANSWER(app_control_get_mime),
     "There is no mime.", "* Critical * There is no Mime."},
    {"getAppId", [](auto &c) { return borrowed(c.getAppId()); }, ANSWER(app_control_get_app_id),
     "There is no app id.", "* Critical * There is no AppId."},
    {"getCaller", [](auto &c) { return borrowed(c.getCaller()); }, ANSWER(app_control_get_caller),
     "There is no caller.", "* Critical * There is no Caller."},
    {"getCategory", [](auto &c) { return borrowed(c.getCategory()); },
     ANSWER(app_control_get_category), "There is no category.",
     "* Critical * There is no Category."},
    {"getOperation", [](auto &c) { return borrowed(c.getOperation()); },
     ANSWER(app_control_get_operation), "There is no operation.",
     "* Critical * There is no Operation."},
    {"getExtraData", [](auto &c) { return owned(c.getExtraData("key")); },
     [](MockAppControl &mock, int code, const char *text) {
         EXPECT_CALL(mock, app_control_get_extra_data(_, testing::StrEq("key"), _))
             .WillRepeatedly([code, text](app_control_h, const char *, char **value) {
                 *value = heap_copy(text);
                 return code;
             });
     },
     "There is no key bundle.", "* Critical * There is no Value."},
};

}  // namespace

// Construction and destruction.

TEST_F(AppControlCtrl, TheRequestIsClonedAndTheCloneDestroyed) {
    const int live = mock::fake_app_control().live();
    app_control_set_uri(request(), "before");
    {
        TslAppControlCtrl ctrl(request());
        EXPECT_EQ(mock::fake_app_control().live(), live + 1);
        EXPECT_NE(ctrl.getHandle(), nullptr);
        EXPECT_NE(ctrl.getHandle(), request());
        app_control_set_uri(request(), "after");
        EXPECT_EQ(owned(ctrl.getUri()), "before");
        EXPECT_TRUE(NoFaultLogged());
    }
    EXPECT_EQ(mock::fake_app_control().live(), live);
}

TEST_F(AppControlCtrl, ANullHandleStillReachesTheClone) {
    EXPECT_CALL(mock::app_control(), app_control_clone(_, nullptr)).Times(1);
    TslAppControlCtrl ctrl(nullptr);
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * There is no app_control_h."),
                          logs::error("* Critical * It is failed to do app_control_clone().")}));
    EXPECT_EQ(ctrl.getHandle(), nullptr);
}

TEST_F(AppControlCtrl, AFailedCloneKeepsANullHandle) {
    EXPECT_CALL(mock::app_control(), app_control_clone)
        .WillOnce([this](app_control_h *clone, app_control_h) {
            *clone = request();
            return some_error;
        });
    EXPECT_CALL(mock::app_control(), app_control_destroy).Times(0);
    {
        TslAppControlCtrl ctrl(request());
        EXPECT_TRUE(OnlyFaultsLogged(
            {logs::error("* Critical * It is failed to do app_control_clone().")}));
        EXPECT_EQ(ctrl.getHandle(), nullptr);
    }
    testing::Mock::VerifyAndClearExpectations(&mock::app_control());
}

TEST_F(AppControlCtrl, TheDefaultHoldsNothingAndDestroysNothing) {
    EXPECT_CALL(mock::app_control(), app_control_destroy).Times(0);
    {
        TslAppControlCtrl ctrl;
        EXPECT_TRUE(logs::all().empty());
        EXPECT_EQ(ctrl.getHandle(), nullptr);
        EXPECT_TRUE(LoggedIn("_hasHandle", DLOG_WARN, no_handle));
    }
    testing::Mock::VerifyAndClearExpectations(&mock::app_control());
}

TEST_F(AppControlCtrl, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<TslAppControlCtrl>);
}

// Getters.

TEST_F(AppControlCtrl, GettersGiveTheTextOfTheRequest) {
    for (const Getter &getter : getters) {
        SCOPED_TRACE(getter.name);
        TslAppControlCtrl ctrl(request());
        getter.answer(mock::app_control(), APP_CONTROL_ERROR_NONE, "some text");
        logs::clear();
        EXPECT_EQ(getter.get(ctrl), "some text");
        EXPECT_TRUE(NoFaultLogged());
    }
}

TEST_F(AppControlCtrl, GettersWithoutHandleWarnAndGiveNull) {
    for (const Getter &getter : getters) {
        SCOPED_TRACE(getter.name);
        TslAppControlCtrl ctrl;
        logs::clear();
        EXPECT_EQ(getter.get(ctrl), "");
        const bool own_words = std::string(getter.name) == "getExtraData";
        EXPECT_TRUE(OnlyFaultsLogged(
            {logs::warn(own_words ? "There is no app control handle." : no_handle)}));
    }
}

TEST_F(AppControlCtrl, GettersWarnOfAnErrorAndFreeWhatCame) {
    for (const Getter &getter : getters) {
        for (const char *text : {"text beside the error", static_cast<const char *>(nullptr)}) {
            SCOPED_TRACE(getter.name);
            TslAppControlCtrl ctrl(request());
            getter.answer(mock::app_control(), some_error, text);
            logs::clear();
            EXPECT_EQ(getter.get(ctrl), "");
            EXPECT_TRUE(OnlyFaultsLogged({logs::warn(getter.on_error)}));
        }
    }
}

TEST_F(AppControlCtrl, GettersTakeNullAndEmptyForNothing) {
    for (const Getter &getter : getters) {
        for (const char *text : {"", static_cast<const char *>(nullptr)}) {
            SCOPED_TRACE(getter.name);
            TslAppControlCtrl ctrl(request());
            getter.answer(mock::app_control(), APP_CONTROL_ERROR_NONE, text);
            logs::clear();
            EXPECT_EQ(getter.get(ctrl), "");
            EXPECT_TRUE(OnlyFaultsLogged({logs::error(getter.on_empty)}));
        }
    }
}

TEST_F(AppControlCtrl, ABorrowedTextOutlivesTheObjectAndOtherGetters) {
    app_control_set_operation(request(), "operation");
    app_control_set_mime(request(), "video/mp4");
    const char *operation = nullptr;
    {
        TslAppControlCtrl ctrl(request());
        operation = ctrl.getOperation();
        EXPECT_STREQ(ctrl.getMime(), "video/mp4");
    }
    EXPECT_STREQ(operation, "operation");
}

TEST_F(AppControlCtrl, ABorrowedTextIsTheThreadsOwn) {
    app_control_set_operation(request(), "first");
    TslAppControlCtrl first(request());
    app_control_set_operation(request(), "second");
    TslAppControlCtrl second(request());
    const char *operation = first.getOperation();
    std::thread other([&second] { EXPECT_STREQ(second.getOperation(), "second"); });
    other.join();
    EXPECT_STREQ(operation, "first");
}

TEST_F(AppControlCtrl, ExtraDataTestsItsKeyFirst) {
    TslAppControlCtrl ctrl;
    EXPECT_EQ(ctrl.getExtraData(nullptr), nullptr);
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no szKey.")}));
}

TEST_F(AppControlCtrl, ExtraDataArrayComesWhole) {
    const char *values[] = {"a", "b"};
    app_control_add_extra_data_array(request(), "key", values, 2);
    TslAppControlCtrl ctrl(request());
    char **array = nullptr;
    int length = 0;
    ASSERT_TRUE(ctrl.getExtraDataArray("key", &array, &length));
    ASSERT_EQ(length, 2);
    EXPECT_STREQ(array[0], "a");
    EXPECT_STREQ(array[1], "b");
    free(array[0]);
    free(array[1]);
    free(array);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(AppControlCtrl, ExtraDataArrayTestsKeyThenHandle) {
    TslAppControlCtrl ctrl;
    char **array = nullptr;
    int length = 0;
    EXPECT_FALSE(ctrl.getExtraDataArray(nullptr, &array, &length));
    EXPECT_FALSE(ctrl.getExtraDataArray("key", &array, &length));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is no szKey."), logs::warn("There is no app control handle.")}));
}

TEST_F(AppControlCtrl, ExtraDataArrayFreesAndClearsWhatCameWithAnError) {
    TslAppControlCtrl ctrl(request());
    EXPECT_CALL(mock::app_control(), app_control_get_extra_data_array)
        .WillOnce([](app_control_h, const char *, char ***value, int *) {
            *value = static_cast<char **>(calloc(1, sizeof(char *)));
            return some_error;
        })
        .WillOnce(Return(some_error));
    for (int call = 0; call < 2; ++call) {
        char **array = nullptr;
        int length = 0;
        logs::clear();
        EXPECT_FALSE(ctrl.getExtraDataArray("key", &array, &length));
        EXPECT_EQ(array, nullptr);
        EXPECT_TRUE(OnlyFaultsLogged({logs::warn("There is no dataArray.")}));
    }
}

// Setters.

TEST_F(AppControlCtrl, SettersChangeTheRequest) {
    TslAppControlCtrl ctrl(request());
    const char *values[] = {"a", "b"};
    EXPECT_TRUE(ctrl.setUri("uri"));
    EXPECT_TRUE(ctrl.setAppId("app"));
    EXPECT_TRUE(ctrl.setOperation("operation"));
    EXPECT_TRUE(ctrl.setExtraData("key", "value"));
    EXPECT_TRUE(ctrl.setExtraDataArray("keys", values, 2));
    EXPECT_TRUE(ctrl.setLaunchMode(APP_CONTROL_LAUNCH_MODE_GROUP));
    EXPECT_TRUE(NoFaultLogged());

    EXPECT_EQ(owned(ctrl.getUri()), "uri");
    EXPECT_STREQ(ctrl.getAppId(), "app");
    EXPECT_STREQ(ctrl.getOperation(), "operation");
    EXPECT_EQ(owned(ctrl.getExtraData("key")), "value");
    app_control_launch_mode_e mode = APP_CONTROL_LAUNCH_MODE_SINGLE;
    app_control_get_launch_mode(ctrl.getHandle(), &mode);
    EXPECT_EQ(mode, APP_CONTROL_LAUNCH_MODE_GROUP);
}

TEST_F(AppControlCtrl, OperationsWithoutHandleWarnAndFail) {
    TslAppControlCtrl ctrl;
    const char *values[] = {"a"};
    const std::function<bool()> operations[] = {
        [&] { return ctrl.setUri(nullptr); },
        [&] { return ctrl.setAppId(nullptr); },
        [&] { return ctrl.setOperation(nullptr); },
        [&] { return ctrl.setExtraData("key", "value"); },
        [&] { return ctrl.setExtraDataArray("key", values, 1); },
        [&] { return ctrl.setLaunchMode(static_cast<app_control_launch_mode_e>(2)); },
        [&] { return ctrl.destroyAppControl(); },
        [&] { return ctrl.sendLaunchRequest(); },
        [&] { return ctrl.sendTerminateRequest(); },
    };
    for (const auto &operation : operations) {
        logs::clear();
        EXPECT_FALSE(operation());
        EXPECT_TRUE(OnlyFaultsLogged({logs::warn(no_handle)}));
    }
}

TEST_F(AppControlCtrl, SettersRefuseNullTexts) {
    TslAppControlCtrl ctrl(request());
    EXPECT_CALL(mock::app_control(), app_control_set_uri).Times(0);
    EXPECT_CALL(mock::app_control(), app_control_set_app_id).Times(0);
    EXPECT_CALL(mock::app_control(), app_control_set_operation).Times(0);
    EXPECT_FALSE(ctrl.setUri(nullptr));
    EXPECT_FALSE(ctrl.setAppId(nullptr));
    EXPECT_FALSE(ctrl.setOperation(nullptr));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("There is no szAppId."), logs::warn("There is no szAppId."),
                          logs::warn("There is no szOperation.")}));
}

TEST_F(AppControlCtrl, SettersReportTheCodeOfThePlatform) {
    TslAppControlCtrl ctrl(request());
    MockAppControl &platform = mock::app_control();
    EXPECT_CALL(platform, app_control_set_uri).WillOnce(Return(some_error));
    EXPECT_CALL(platform, app_control_set_app_id).WillOnce(Return(some_error));
    EXPECT_CALL(platform, app_control_set_operation).WillOnce(Return(some_error));
    EXPECT_CALL(platform, app_control_add_extra_data).WillOnce(Return(some_error));
    EXPECT_CALL(platform, app_control_add_extra_data_array).WillOnce(Return(some_error));
    EXPECT_CALL(platform, app_control_set_launch_mode).WillOnce(Return(some_error));
    const char *values[] = {"a"};

    EXPECT_FALSE(ctrl.setUri("uri"));
    EXPECT_FALSE(ctrl.setAppId("app"));
    EXPECT_FALSE(ctrl.setOperation("operation"));
    EXPECT_FALSE(ctrl.setExtraData("key", "value"));
    EXPECT_FALSE(ctrl.setExtraDataArray("key", values, 1));
    EXPECT_FALSE(ctrl.setLaunchMode(APP_CONTROL_LAUNCH_MODE_SINGLE));

    const std::string code = hex(some_error);
    EXPECT_TRUE(OnlyFaultsLogged({
        logs::warn("It is failed to call app_control_set_uri. [" + code + "]"),
        logs::error("* Critical * app_control_set_app_id is fail [" + code + "]"),
        logs::warn("It is failed to call app_control_set_operation[" + code + "]"),
        logs::warn("It is failed to call app_control_add_extra_data. [" + code + "] = key:value"),
        logs::warn("It is failed to call app_control_add_extra_data_array.[" + code + "]"),
        logs::warn("It is failed to call app_control_set_launch_mode.[" + code + "]"),
    }));
}

TEST_F(AppControlCtrl, ExtraDataWithNullTextsIsLeftToThePlatform) {
    TslAppControlCtrl ctrl(request());
    EXPECT_CALL(mock::app_control(), app_control_add_extra_data(_, nullptr, nullptr))
        .WillOnce(Return(APP_CONTROL_ERROR_INVALID_PARAMETER));
    EXPECT_FALSE(ctrl.setExtraData(nullptr, nullptr));
    EXPECT_TRUE(LoggedWarn("It is failed to call app_control_add_extra_data. [" +
                           hex(APP_CONTROL_ERROR_INVALID_PARAMETER) + "] = (null):(null)"));
}

TEST_F(AppControlCtrl, LaunchModesFromTwoAreRefusedWithoutThePlatform) {
    TslAppControlCtrl ctrl(request());
    EXPECT_CALL(mock::app_control(), app_control_set_launch_mode).Times(0);
    for (const int mode : {2, 3, -1}) {
        logs::clear();
        EXPECT_FALSE(ctrl.setLaunchMode(static_cast<app_control_launch_mode_e>(mode)));
        EXPECT_TRUE(OnlyFaultsLogged(
            {logs::warn("Launch Mode to set is invalid. [" + std::to_string(mode) + "]")}));
    }
}

// Life cycle.

TEST_F(AppControlCtrl, CreatingOnAFreshObjectWarnsOnceAndCreates) {
    TslAppControlCtrl ctrl;
    EXPECT_TRUE(ctrl.createAppControl());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(no_handle)}));
    char expected[64];
    snprintf(expected, sizeof expected, "It is to create app control handle. %p",
             static_cast<void *>(ctrl.getHandle()));
    EXPECT_TRUE(LoggedInfo(expected));
    EXPECT_NE(ctrl.getHandle(), nullptr);
}

TEST_F(AppControlCtrl, CreatingReplacesTheRequest) {
    app_control_set_uri(request(), "uri");
    TslAppControlCtrl ctrl(request());
    const int live = mock::fake_app_control().live();
    EXPECT_TRUE(ctrl.createAppControl());
    EXPECT_EQ(mock::fake_app_control().live(), live);
    EXPECT_EQ(ctrl.getUri(), nullptr);
}

TEST_F(AppControlCtrl, CreatingGoesOnThoughTheOldRequestStays) {
    TslAppControlCtrl ctrl(request());
    app_control_h kept = ctrl.getHandle();
    EXPECT_CALL(mock::app_control(), app_control_destroy).WillOnce(Return(some_error));
    EXPECT_TRUE(ctrl.createAppControl());
    testing::Mock::VerifyAndClearExpectations(&mock::app_control());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("It is failed to destroy. [" + hex(some_error) + "]")}));
    EXPECT_NE(ctrl.getHandle(), kept);
    EXPECT_NE(ctrl.getHandle(), nullptr);
    app_control_destroy(kept);
}

TEST_F(AppControlCtrl, AFailedCreateIsReportedInTheWordsOfTheAppId) {
    TslAppControlCtrl ctrl;
    EXPECT_CALL(mock::app_control(), app_control_create).WillOnce(Return(some_error));
    EXPECT_FALSE(ctrl.createAppControl());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn(no_handle),
                          logs::warn("app_control_set_app_id is fail [" + hex(some_error) + "]")}));
    EXPECT_TRUE(LoggedInfo("It is to create app control handle. (nil)"));
    EXPECT_EQ(ctrl.getHandle(), nullptr);
}

TEST_F(AppControlCtrl, DestroyingEndsTheRequest) {
    TslAppControlCtrl ctrl(request());
    EXPECT_TRUE(ctrl.destroyAppControl());
    EXPECT_TRUE(NoFaultLogged());
    EXPECT_EQ(ctrl.getHandle(), nullptr);
    EXPECT_FALSE(ctrl.destroyAppControl());
}

TEST_F(AppControlCtrl, AFailedDestroyKeepsTheRequest) {
    TslAppControlCtrl ctrl(request());
    app_control_h handle = ctrl.getHandle();
    EXPECT_CALL(mock::app_control(), app_control_destroy(handle))
        .WillOnce(Return(some_error))
        .WillOnce(
            [](app_control_h kept) { return mock::fake_app_control().app_control_destroy(kept); });
    EXPECT_FALSE(ctrl.destroyAppControl());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("It is failed to destroy. [" + hex(some_error) + "]")}));
    EXPECT_EQ(ctrl.getHandle(), handle);
    EXPECT_TRUE(ctrl.destroyAppControl());
    testing::Mock::VerifyAndClearExpectations(&mock::app_control());
}

TEST_F(AppControlCtrl, ALaunchRequestIsSentWithoutReplyCallback) {
    app_control_set_uri(request(), "uri");
    TslAppControlCtrl ctrl(request());
    EXPECT_TRUE(ctrl.sendLaunchRequest());
    ASSERT_EQ(mock::fake_app_control().sent().size(), 1u);
    const FakeAppControl::Sent &sent = mock::fake_app_control().sent()[0];
    EXPECT_EQ(sent.uri, "uri");
    EXPECT_FALSE(sent.terminate);
    EXPECT_EQ(sent.callback, nullptr);
    EXPECT_EQ(sent.user_data, nullptr);
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(AppControlCtrl, ARefusedLaunchRequestIsLoggedByCodeAndStillTrue) {
    struct Row {
        int code;
        const char *message;
    };
    const Row rows[] = {
        {APP_CONTROL_ERROR_INVALID_PARAMETER, "APP_CONTROL_ERROR_INVALID_PARAMETER ["},
        {APP_CONTROL_ERROR_OUT_OF_MEMORY, "APP_CONTROL_ERROR_OUT_OF_MEMORY ["},
        {APP_CONTROL_ERROR_APP_NOT_FOUND, "APP_CONTROL_ERROR_APP_NOT_FOUND ["},
        {APP_CONTROL_ERROR_KEY_NOT_FOUND, "APP_CONTROL_ERROR_KEY_NOT_FOUND ["},
        {APP_CONTROL_ERROR_KEY_REJECTED, "APP_CONTROL_ERROR_KEY_REJECTED ["},
        {APP_CONTROL_ERROR_INVALID_DATA_TYPE, "APP_CONTROL_ERROR_INVALID_DATA_TYPE ["},
        {APP_CONTROL_ERROR_LAUNCH_REJECTED, "APP_CONTROL_ERROR_LAUNCH_REJECTED ["},
        {APP_CONTROL_ERROR_PERMISSION_DENIED, "APP_CONTROL_ERROR_PERMISSION_DENIED["},
        {APP_CONTROL_ERROR_LAUNCH_FAILED, "APP_CONTROL_ERROR_LAUNCH_FAILED["},
        {APP_CONTROL_ERROR_TIMED_OUT, "APP_CONTROL_ERROR_LAUNCH_FAILED["},
        {1, "APP_CONTROL_ERROR_LAUNCH_FAILED["},
    };
    TslAppControlCtrl ctrl(request());
    for (const Row &row : rows) {
        SCOPED_TRACE(row.message);
        EXPECT_CALL(mock::app_control(), app_control_send_launch_request)
            .WillOnce(Return(row.code));
        logs::clear();
        EXPECT_TRUE(ctrl.sendLaunchRequest());
        EXPECT_TRUE(OnlyFaultsLogged(
            {logs::warn("It is failed to call app_control_send_launch_request()."),
             logs::error("* Critical * " + std::string(row.message) + hex(row.code) + "]")}));
    }
}

TEST_F(AppControlCtrl, ATerminateRequestIsSent) {
    TslAppControlCtrl ctrl(request());
    ctrl.setAppId("app");
    EXPECT_TRUE(ctrl.sendTerminateRequest());
    ASSERT_EQ(mock::fake_app_control().sent().size(), 1u);
    EXPECT_TRUE(mock::fake_app_control().sent()[0].terminate);
    EXPECT_EQ(mock::fake_app_control().sent()[0].app_id, "app");
}

TEST_F(AppControlCtrl, ARefusedTerminateRequestIsReported) {
    TslAppControlCtrl ctrl(request());
    EXPECT_CALL(mock::app_control(), app_control_send_terminate_request)
        .WillOnce(Return(some_error));
    EXPECT_FALSE(ctrl.sendTerminateRequest());
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn(
        "It is failed to call app_control_send_terminate_request [" + hex(some_error) + "]")}));
}
