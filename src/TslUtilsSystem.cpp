#include <Elementary.h>
#include <app_common.h>
#include <app_manager.h>
#include <message_port.h>
#include <unistd.h>
#include <vconf.h>

#include <cstdlib>

#include "TslLog.h"
#include "TslUtils.h"

namespace {

constexpr char BATTERY_KEY[] = "memory/sysman/battery_status_low";
constexpr int BATTERY_POWER_OFF = 1;
constexpr int BATTERY_REAL_POWER_OFF = 6;
constexpr char LANGUAGE_KEY[] = "db/menu_widget/language";
/// Key and text of the message that stands for none.
constexpr char EMPTY_MESSAGE[] = "messagePortSendMessage";
constexpr int DBUS_TIMEOUT_MS = 120000;

/// @return null: nothing tells which application is focused
char *_getApplicationIdOfFocusedApplication() {
    TslError("It is failed to get app_id of running app.");
    return nullptr;
}

/// @return the platform's result
int sendMessage(const char *szRemoteAppId, const char *szRemotePort, bundle *pBundle) {
    if (pBundle != nullptr) {
        return message_port_send_message(szRemoteAppId, szRemotePort, pBundle);
    }
    bundle *pOwnBundle = bundle_create();
    bundle_add_str(pOwnBundle, EMPTY_MESSAGE, EMPTY_MESSAGE);
    const int nResult = message_port_send_message(szRemoteAppId, szRemotePort, pOwnBundle);
    bundle_free(pOwnBundle);
    return nResult;
}

/// @return the reply, owned by the caller, or null
GDBusMessage *waitForReply(GDBusConnection *pConnection, GDBusMessage *pMessage) {
    GError *pError = nullptr;
    GDBusMessage *pReply = g_dbus_connection_send_message_with_reply_sync(
        pConnection, pMessage, G_DBUS_SEND_MESSAGE_FLAGS_NONE, DBUS_TIMEOUT_MS, nullptr, nullptr,
        &pError);
    if (pReply == nullptr) {
        TslError("g_dbus_pConnection_send_message_with_pReply_sync() is failed.");
    }
    if (pError != nullptr) {
        if (pError->message != nullptr) {
            TslError("pError [%s]", pError->message);
        } else {
            TslError("");
        }
        g_error_free(pError);
    }
    return pReply;
}

}  // namespace

bool TslUtils::checkBatteryAvailable() {
    int nState = 0;
    if (vconf_get_int(BATTERY_KEY, &nState) != 0) {
        TslError("It is failed to get battery status.");
        return true;
    }
    TslInfo(" Battery State: %d", nState);
    if (nState == BATTERY_POWER_OFF || nState == BATTERY_REAL_POWER_OFF) {
        TslWarn("VCONFKEY_SYSMAN_BAT_POWER_OFF");
        return false;
    }
    return true;
}

bool TslUtils::isSharePanelRunningOnForeGround() {
    char *szAppId = _getApplicationIdOfFocusedApplication();
    if (szAppId == nullptr) {
        TslInfo("It is failed to get application id from window.");
    }
    std::free(szAppId);
    return false;
}

bool TslUtils::messagePortSendMessage(const char *szRemoteAppId, const char *szRemotePort,
                                      bundle *pBundle) {
    if (szRemotePort == nullptr) {
        TslWarn("The pointer of the szRemotePort is not existed.");
        return false;
    }
    if (szRemoteAppId == nullptr) {
        TslWarn("The pointer of the szRemoteAppId is not existed.");
        return false;
    }
    bool bExist = false;
    const int nChecked = message_port_check_remote_port(szRemoteAppId, szRemotePort, &bExist);
    if (nChecked != MESSAGE_PORT_ERROR_NONE) {
        TslWarn("There is error from message_port_check_remote_port() : %d", nChecked);
        return false;
    }
    if (!bExist) {
        TslWarn("Cannot find : szRemoteAppId=%s, szRemotePort=%s", szRemoteAppId, szRemotePort);
        return false;
    }
    const int nSent = sendMessage(szRemoteAppId, szRemotePort, pBundle);
    if (nSent != MESSAGE_PORT_ERROR_NONE) {
        TslWarn("failed message_port_send_message : szRemoteAppId=%s, szRemotePort=%s",
                szRemoteAppId, szRemotePort);
    }
    return nSent != MESSAGE_PORT_ERROR_NONE;
}

bool TslUtils::gdbusInvokeMethodSync(const char *szName, const char *szPath,
                                     const char *szInterface, const char *szMethod,
                                     GVariant *pBody) {
    GDBusConnection *pConnection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    if (pConnection == nullptr) {
        TslError("g_bus_get_sync() is failed.");
        return false;
    }
    GDBusMessage *pMessage = g_dbus_message_new_method_call(szName, szPath, szInterface, szMethod);
    if (pMessage == nullptr) {
        TslError("g_dbus_message_new_szMethod_call() is failed.");
        g_object_unref(pConnection);
        return false;
    }
    if (pBody != nullptr) {
        g_dbus_message_set_body(pMessage, pBody);
    }
    GDBusMessage *pReply = waitForReply(pConnection, pMessage);
    g_object_unref(pMessage);
    g_object_unref(pConnection);
    if (pReply == nullptr) {
        TslError("invoke gdbus method failed");
        return false;
    }
    g_object_unref(pReply);
    return true;
}

void TslUtils::updateLanguageSet() {
    char *szLanguage = vconf_get_str(LANGUAGE_KEY);
    if (szLanguage != nullptr) {
        elm_language_set(szLanguage);
        std::free(szLanguage);
    }
}

void TslUtils::waitingForObject(int nMicroSecond) {
    TslInfo("Wait for object for %d MicroSecond.", nMicroSecond);
    usleep(nMicroSecond);
}

bool TslUtils::resumeCurrentApp() {
    char *szId = nullptr;
    if (app_get_id(&szId) != APP_ERROR_NONE || szId == nullptr) {
        return false;
    }
    app_context_h hContext = nullptr;
    const bool bFound = app_manager_get_app_context(szId, &hContext) == APP_MANAGER_ERROR_NONE;
    std::free(szId);
    // A context that can't be resumed is left to the end of the process.
    if (!bFound || app_manager_resume_app(hContext) != APP_MANAGER_ERROR_NONE) {
        return false;
    }
    app_context_destroy(hContext);
    return true;
}
