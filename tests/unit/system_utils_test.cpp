// What the program asks of the system: battery, messages, services on the system bus, itself.

#include <dlfcn.h>
#include <dlog.h>
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "TslUtils.h"
#include "log_lines.h"
#include "mock_platform/fake_settings.h"
#include "mock_platform/mock_app_manager.h"
#include "mock_platform/mock_bundle.h"
#include "mock_platform/mock_message_port.h"
#include "mock_platform/mock_ui_app.h"

namespace {

/// GIO as the test wants it; what it passes on is counted.
struct Bus {
    bool is_there = true;
    bool makes_messages = true;
    bool replies = true;
    /// An error beside, or in place of, the reply.
    bool fails = false;
    bool error_has_text = true;

    GBusType type = G_BUS_TYPE_NONE;
    std::vector<std::string> words;
    std::string body;
    int timeout_ms = 0;
    int flags = -1;
    int live_objects = 0;
};
Bus bus;

void count_down(gpointer, GObject *) {
    --bus.live_objects;
}

/// An object whose end is seen.
gpointer counted(gpointer object) {
    ++bus.live_objects;
    g_object_weak_ref(G_OBJECT(object), count_down, nullptr);
    return object;
}

template <typename Function>
Function *librarys_own(const char *name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

GDBusConnection *g_bus_get_sync(GBusType type, GCancellable *, GError **) {
    bus.type = type;
    // Any object will do: what would use it is answered below.
    return bus.is_there
               ? static_cast<GDBusConnection *>(counted(g_object_new(G_TYPE_OBJECT, nullptr)))
               : nullptr;
}

GDBusMessage *g_dbus_message_new_method_call(const gchar *name, const gchar *path,
                                             const gchar *interface, const gchar *method) {
    bus.words = {name, path, interface, method};
    return bus.makes_messages ? static_cast<GDBusMessage *>(counted(g_dbus_message_new()))
                              : nullptr;
}

GDBusMessage *g_dbus_connection_send_message_with_reply_sync(GDBusConnection *,
                                                             GDBusMessage *message,
                                                             GDBusSendMessageFlags flags,
                                                             gint timeout_ms, volatile guint32 *,
                                                             GCancellable *, GError **error) {
    GVariant *body = g_dbus_message_get_body(message);
    gchar *text = body != nullptr ? g_variant_print(body, FALSE) : nullptr;
    bus.body = text != nullptr ? text : "(none)";
    g_free(text);
    bus.timeout_ms = timeout_ms;
    bus.flags = flags;
    if (bus.fails) {
        *error = g_error_new_literal(G_IO_ERROR, G_IO_ERROR_FAILED, "the reason");
        if (!bus.error_has_text) {
            g_free((*error)->message);
            (*error)->message = nullptr;
        }
    }
    return bus.replies ? static_cast<GDBusMessage *>(counted(g_dbus_message_new())) : nullptr;
}

}  // extern "C"

namespace {

using testing::_;
using testing::DoAll;
using testing::ElementsAre;
using testing::Return;
using testing::SetArgPointee;
using testing::StrEq;

constexpr char BATTERY_KEY[] = "memory/sysman/battery_status_low";

TEST(Battery, ThatCannotBeAskedIsTakenForGood) {
    EXPECT_TRUE(TslUtils::checkBatteryAvailable());
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::error("* Critical * It is failed to get battery status.")}));
    EXPECT_EQ(logs::all().size(), 1u);
}

TEST(Battery, IsEmptyInTheTwoPowerOffStatesOnly) {
    for (const int state : {-1, 0, 2, 3, 4, 5, 7}) {
        mock::fake_vconf().set_int(BATTERY_KEY, state);
        EXPECT_TRUE(TslUtils::checkBatteryAvailable()) << state;
    }
    EXPECT_TRUE(NoFaultLogged());
    for (const int state : {1, 6}) {
        logs::clear();
        mock::fake_vconf().set_int(BATTERY_KEY, state);
        EXPECT_FALSE(TslUtils::checkBatteryAvailable()) << state;
        EXPECT_TRUE(LoggedInOrder({logs::info(" Battery State: " + std::to_string(state)),
                                   logs::warn("VCONFKEY_SYSMAN_BAT_POWER_OFF")}));
    }
}

TEST(SharePanel, IsNeverInTheForeground) {
    for (int call = 0; call < 2; ++call) {
        logs::clear();
        EXPECT_FALSE(TslUtils::isSharePanelRunningOnForeGround());
        EXPECT_TRUE(
            LoggedInOrder({logs::error("* Critical * It is failed to get app_id of running app."),
                           logs::info("It is failed to get application id from window.")}));
        EXPECT_EQ(logs::all().size(), 2u);
    }
}

class MessageTest : public testing::Test {
protected:
    static void open_port() {
        ON_CALL(mock::message_port(), message_port_check_remote_port)
            .WillByDefault(DoAll(SetArgPointee<2>(true), Return(MESSAGE_PORT_ERROR_NONE)));
    }
};

using Message = MessageTest;

TEST_F(Message, NeedsAPortAndThenAnApplication) {
    EXPECT_CALL(mock::message_port(), message_port_check_remote_port).Times(0);
    EXPECT_FALSE(TslUtils::messagePortSendMessage(nullptr, nullptr, nullptr));
    EXPECT_FALSE(TslUtils::messagePortSendMessage(nullptr, "port", nullptr));
    EXPECT_TRUE(OnlyFaultsLogged({logs::warn("The pointer of the szRemotePort is not existed."),
                                  logs::warn("The pointer of the szRemoteAppId is not existed.")}));
}

TEST_F(Message, ToAPortThatCannotBeCheckedIsNotSent) {
    EXPECT_CALL(mock::message_port(),
                message_port_check_remote_port(StrEq("app"), StrEq("port"), _))
        .WillOnce(Return(-5));
    EXPECT_CALL(mock::message_port(), message_port_send_message).Times(0);
    EXPECT_FALSE(TslUtils::messagePortSendMessage("app", "port", nullptr));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("There is error from message_port_check_remote_port() : -5")}));
}

TEST_F(Message, ToAPortThatIsNotThereIsNotSent) {
    EXPECT_CALL(mock::message_port(), message_port_send_message).Times(0);
    EXPECT_FALSE(TslUtils::messagePortSendMessage("app", "port", nullptr));
    EXPECT_TRUE(
        OnlyFaultsLogged({logs::warn("Cannot find : szRemoteAppId=app, szRemotePort=port")}));
}

TEST_F(Message, ThatIsNullIsOneTextThatSaysSo) {
    open_port();
    EXPECT_CALL(mock::message_port(), message_port_send_message(StrEq("app"), StrEq("port"), _))
        .WillOnce([](const char *, const char *, bundle *content) {
            char *text = nullptr;
            EXPECT_EQ(bundle_get_count(content), 1);
            EXPECT_EQ(bundle_get_str(content, "messagePortSendMessage", &text), BUNDLE_ERROR_NONE);
            EXPECT_STREQ(text, "messagePortSendMessage");
            return MESSAGE_PORT_ERROR_NONE;
        });
    EXPECT_CALL(mock::bundles(), bundle_free).Times(1);
    EXPECT_FALSE(TslUtils::messagePortSendMessage("app", "port", nullptr));
    EXPECT_TRUE(NoFaultLogged());
}

TEST_F(Message, OfTheCallerStaysTheCallers) {
    open_port();
    bundle *content = bundle_create();
    EXPECT_CALL(mock::bundles(), bundle_free).Times(0);
    EXPECT_CALL(mock::bundles(), bundle_add_str).Times(0);
    EXPECT_CALL(mock::message_port(), message_port_send_message(_, _, content));
    EXPECT_FALSE(TslUtils::messagePortSendMessage("app", "port", content));
    testing::Mock::VerifyAndClearExpectations(&mock::bundles());
    bundle_free(content);
}

TEST_F(Message, ThatFailsGivesTrue) {
    open_port();
    EXPECT_CALL(mock::message_port(), message_port_send_message).WillOnce(Return(-5));
    EXPECT_TRUE(TslUtils::messagePortSendMessage("app", "port", nullptr));
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::warn("failed message_port_send_message : szRemoteAppId=app, szRemotePort=port")}));
}

class ServiceCallTest : public testing::Test {
protected:
    void SetUp() override { bus = Bus(); }

    static bool call(GVariant *body = nullptr) {
        return TslUtils::gdbusInvokeMethodSync("org.example", "/object", "org.example.Face", "Do",
                                               body);
    }
};

using ServiceCall = ServiceCallTest;

TEST_F(ServiceCall, GoesOutOnTheSystemBusAndWaitsTwoMinutes) {
    EXPECT_TRUE(call());
    EXPECT_EQ(bus.type, G_BUS_TYPE_SYSTEM);
    EXPECT_THAT(bus.words, ElementsAre("org.example", "/object", "org.example.Face", "Do"));
    EXPECT_EQ(bus.body, "(none)");
    EXPECT_EQ(bus.timeout_ms, 120000);
    EXPECT_EQ(bus.flags, 0);
    EXPECT_EQ(bus.live_objects, 0);
    EXPECT_TRUE(logs::all().empty());
}

TEST_F(ServiceCall, CarriesItsArguments) {
    EXPECT_TRUE(call(g_variant_new("(si)", "text", 5)));
    EXPECT_EQ(bus.body, "('text', 5)");
}

TEST_F(ServiceCall, NeedsTheBus) {
    bus.is_there = false;
    EXPECT_FALSE(call());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * g_bus_get_sync() is failed.")}));
}

TEST_F(ServiceCall, NeedsAMessage) {
    bus.makes_messages = false;
    EXPECT_FALSE(call());
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * g_dbus_message_new_szMethod_call() is failed.")}));
    EXPECT_EQ(bus.live_objects, 0);
}

TEST_F(ServiceCall, WithoutReplySaysWhy) {
    bus.replies = false;
    bus.fails = true;
    EXPECT_FALSE(call());
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * g_dbus_pConnection_send_message_with_pReply_sync() is failed."),
         logs::error("* Critical * pError [the reason]"),
         logs::error("* Critical * invoke gdbus method failed")}));
    EXPECT_EQ(bus.live_objects, 0);
}

TEST_F(ServiceCall, LogsAnErrorWithoutTextAsABareLine) {
    bus.replies = false;
    bus.fails = true;
    bus.error_has_text = false;
    EXPECT_FALSE(call());
    EXPECT_TRUE(OnlyFaultsLogged(
        {logs::error("* Critical * g_dbus_pConnection_send_message_with_pReply_sync() is failed."),
         logs::error("* Critical * "), logs::error("* Critical * invoke gdbus method failed")}));
}

TEST_F(ServiceCall, WithAReplyIsTrueWhateverErrorCameBeside) {
    bus.fails = true;
    EXPECT_TRUE(call());
    EXPECT_TRUE(OnlyFaultsLogged({logs::error("* Critical * pError [the reason]")}));
    EXPECT_EQ(bus.live_objects, 0);
}

TEST(WaitingForObject, BlocksForSoLong) {
    const auto begin = std::chrono::steady_clock::now();
    TslUtils::waitingForObject(20000);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
    EXPECT_TRUE(LoggedInfo("Wait for object for 20000 MicroSecond."));
}

constexpr char OWN_ID[] = "com.orvane.tessel";

/// The platform gives an id, which is to be freed: the leak detector sees to it.
void give_id(const char *id, int result = APP_ERROR_NONE) {
    EXPECT_CALL(mock::ui_app(), app_get_id).WillOnce([id, result](char **place) {
        *place = id != nullptr ? strdup(id) : nullptr;
        return result;
    });
}

TEST(ResumeCurrentApp, BringsThisApplicationForward) {
    give_id(OWN_ID);
    mock::fake_app_manager().set_running(OWN_ID);
    EXPECT_TRUE(TslUtils::resumeCurrentApp());
    EXPECT_THAT(mock::fake_app_manager().resumed(), ElementsAre(OWN_ID));
    EXPECT_EQ(mock::fake_app_manager().live(), 0);
    EXPECT_TRUE(logs::all().empty());
}

TEST(ResumeCurrentApp, NeedsAnId) {
    EXPECT_CALL(mock::app_manager(), app_manager_get_app_context).Times(0);
    give_id(nullptr);
    EXPECT_FALSE(TslUtils::resumeCurrentApp());
    give_id(nullptr, APP_ERROR_OUT_OF_MEMORY);
    EXPECT_FALSE(TslUtils::resumeCurrentApp());
}

TEST(ResumeCurrentApp, NeedsARunningApplication) {
    give_id(OWN_ID);
    EXPECT_CALL(mock::app_manager(), app_manager_resume_app).Times(0);
    EXPECT_FALSE(TslUtils::resumeCurrentApp());
}

TEST(ResumeCurrentApp, ThatFailsLeavesItsContext) {
    give_id(OWN_ID);
    mock::fake_app_manager().set_running(OWN_ID);
    EXPECT_CALL(mock::app_manager(), app_manager_resume_app)
        .WillOnce(Return(APP_MANAGER_ERROR_REQUEST_FAILED));
    EXPECT_CALL(mock::app_manager(), app_context_destroy).Times(0);
    EXPECT_FALSE(TslUtils::resumeCurrentApp());
    EXPECT_EQ(mock::fake_app_manager().live(), 1);
}

}  // namespace
