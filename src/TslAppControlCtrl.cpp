#include "TslAppControlCtrl.h"

#include <cstdlib>
#include <string>

#include "TslLog.h"

namespace {

constexpr unsigned int LAUNCH_MODE_COUNT = 2;

bool isEmpty(const char *szText) {
    return szText == nullptr || szText[0] == '\0';
}

const char *printable(const char *szText) {
    return szText != nullptr ? szText : "(null)";
}

// Callers don't free these texts: the last one of each operation is kept for its thread.
const char *keep(std::string &strKept, char *szText) {
    if (szText == nullptr) {
        return nullptr;
    }
    strKept = szText;
    free(szText);
    return strKept.c_str();
}

void logLaunchError(int nError) {
    switch (nError) {
    case APP_CONTROL_ERROR_INVALID_PARAMETER:
        TslError("APP_CONTROL_ERROR_INVALID_PARAMETER [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_OUT_OF_MEMORY:
        TslError("APP_CONTROL_ERROR_OUT_OF_MEMORY [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_APP_NOT_FOUND:
        TslError("APP_CONTROL_ERROR_APP_NOT_FOUND [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_KEY_NOT_FOUND:
        TslError("APP_CONTROL_ERROR_KEY_NOT_FOUND [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_KEY_REJECTED:
        TslError("APP_CONTROL_ERROR_KEY_REJECTED [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_INVALID_DATA_TYPE:
        TslError("APP_CONTROL_ERROR_INVALID_DATA_TYPE [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_LAUNCH_REJECTED:
        TslError("APP_CONTROL_ERROR_LAUNCH_REJECTED [0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_PERMISSION_DENIED:
        TslError("APP_CONTROL_ERROR_PERMISSION_DENIED[0x%x]", nError);
        break;
    case APP_CONTROL_ERROR_LAUNCH_FAILED:
    default:
        TslError("APP_CONTROL_ERROR_LAUNCH_FAILED[0x%x]", nError);
        break;
    }
}

}  // namespace

TslAppControlCtrl::TslAppControlCtrl() : m_hAppControl(nullptr) {}

TslAppControlCtrl::TslAppControlCtrl(app_control_h hAppControl) : m_hAppControl(nullptr) {
    if (hAppControl == nullptr) {
        TslError("There is no app_control_h.");
    }

    if (app_control_clone(&m_hAppControl, hAppControl) != APP_CONTROL_ERROR_NONE) {
        TslError("It is failed to do app_control_clone().");
        m_hAppControl = nullptr;
    }
}

TslAppControlCtrl::~TslAppControlCtrl() {
    if (m_hAppControl != nullptr) {
        app_control_destroy(m_hAppControl);
    }
}

app_control_h TslAppControlCtrl::getHandle() {
    if (!_hasHandle()) {
        return nullptr;
    }
    return m_hAppControl;
}

char *TslAppControlCtrl::getUri() {
    return _readText(app_control_get_uri, "There is no uri.", "There is no Uri.");
}

char *TslAppControlCtrl::getExtraData(const char *szKey) {
    if (szKey == nullptr) {
        TslWarn("There is no szKey.");
        return nullptr;
    }
    if (m_hAppControl == nullptr) {
        TslWarn("There is no app control handle.");
        return nullptr;
    }

    char *szValue = nullptr;
    if (app_control_get_extra_data(m_hAppControl, szKey, &szValue) != APP_CONTROL_ERROR_NONE) {
        TslWarn("There is no %s bundle.", szKey);
        free(szValue);
        return nullptr;
    }
    if (isEmpty(szValue)) {
        TslError("There is no Value.");
        free(szValue);
        return nullptr;
    }
    return szValue;
}

const char *TslAppControlCtrl::getMime() {
    static thread_local std::string strMime;
    return keep(strMime, _readText(app_control_get_mime, "There is no mime.", "There is no Mime."));
}

const char *TslAppControlCtrl::getAppId() {
    static thread_local std::string strAppId;
    return keep(strAppId,
                _readText(app_control_get_app_id, "There is no app id.", "There is no AppId."));
}

const char *TslAppControlCtrl::getCaller() {
    static thread_local std::string strCaller;
    return keep(strCaller,
                _readText(app_control_get_caller, "There is no caller.", "There is no Caller."));
}

const char *TslAppControlCtrl::getCategory() {
    static thread_local std::string strCategory;
    return keep(strCategory, _readText(app_control_get_category, "There is no category.",
                                       "There is no Category."));
}

const char *TslAppControlCtrl::getOperation() {
    static thread_local std::string strOperation;
    return keep(strOperation, _readText(app_control_get_operation, "There is no operation.",
                                        "There is no Operation."));
}

bool TslAppControlCtrl::getExtraDataArray(const char *szKey, char ***pArray, int *pLength) {
    if (szKey == nullptr) {
        TslWarn("There is no szKey.");
        return false;
    }
    if (m_hAppControl == nullptr) {
        TslWarn("There is no app control handle.");
        return false;
    }

    if (app_control_get_extra_data_array(m_hAppControl, szKey, pArray, pLength) !=
        APP_CONTROL_ERROR_NONE) {
        TslWarn("There is no dataArray.");
        free(*pArray);
        *pArray = nullptr;
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setUri(const char *szUri) {
    if (!_hasHandle()) {
        return false;
    }
    if (szUri == nullptr) {
        TslWarn("There is no szAppId.");
        return false;
    }

    const int nResult = app_control_set_uri(m_hAppControl, szUri);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_set_uri. [0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setAppId(const char *szAppId) {
    if (!_hasHandle()) {
        return false;
    }
    if (szAppId == nullptr) {
        TslWarn("There is no szAppId.");
        return false;
    }

    const int nResult = app_control_set_app_id(m_hAppControl, szAppId);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslError("app_control_set_app_id is fail [0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setOperation(const char *szOperation) {
    if (!_hasHandle()) {
        return false;
    }
    if (szOperation == nullptr) {
        TslWarn("There is no szOperation.");
        return false;
    }

    const int nResult = app_control_set_operation(m_hAppControl, szOperation);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_set_operation[0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setExtraData(const char *szKey, const char *szValue) {
    if (!_hasHandle()) {
        return false;
    }

    const int nResult = app_control_add_extra_data(m_hAppControl, szKey, szValue);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_add_extra_data. [0x%x] = %s:%s", nResult,
                printable(szKey), printable(szValue));
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setExtraDataArray(const char *szKey, const char *szArray[], int nLength) {
    if (!_hasHandle()) {
        return false;
    }

    const int nResult = app_control_add_extra_data_array(m_hAppControl, szKey, szArray, nLength);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_add_extra_data_array.[0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::setLaunchMode(app_control_launch_mode_e nMode) {
    if (!_hasHandle()) {
        return false;
    }
    if (static_cast<unsigned int>(nMode) >= LAUNCH_MODE_COUNT) {
        TslWarn("Launch Mode to set is invalid. [%d]", static_cast<int>(nMode));
        return false;
    }

    const int nResult = app_control_set_launch_mode(m_hAppControl, nMode);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_set_launch_mode.[0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::destroyAppControl() {
    if (!_hasHandle()) {
        return false;
    }

    const int nResult = app_control_destroy(m_hAppControl);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to destroy. [0x%x]", nResult);
        return false;
    }
    m_hAppControl = nullptr;
    return true;
}

bool TslAppControlCtrl::createAppControl() {
    destroyAppControl();

    app_control_h hAppControl = nullptr;
    const int nResult = app_control_create(&hAppControl);
    TslInfo("It is to create app control handle. %p", static_cast<void *>(hAppControl));
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("app_control_set_app_id is fail [0x%x]", nResult);
        return false;
    }
    m_hAppControl = hAppControl;
    return true;
}

bool TslAppControlCtrl::sendLaunchRequest() {
    if (!_hasHandle()) {
        return false;
    }

    const int nResult = app_control_send_launch_request(m_hAppControl, nullptr, nullptr);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_send_launch_request().");
        logLaunchError(nResult);
    }
    return true;
}

bool TslAppControlCtrl::sendTerminateRequest() {
    if (!_hasHandle()) {
        return false;
    }

    const int nResult = app_control_send_terminate_request(m_hAppControl);
    if (nResult != APP_CONTROL_ERROR_NONE) {
        TslWarn("It is failed to call app_control_send_terminate_request [0x%x]", nResult);
        return false;
    }
    return true;
}

bool TslAppControlCtrl::_hasHandle() const {
    if (m_hAppControl == nullptr) {
        TslWarn("app control handle is null.");
        return false;
    }
    return true;
}

char *TslAppControlCtrl::_readText(TextGetter pGetter, const char *szAbsent, const char *szEmpty) {
    if (!_hasHandle()) {
        return nullptr;
    }

    char *szText = nullptr;
    if (pGetter(m_hAppControl, &szText) != APP_CONTROL_ERROR_NONE) {
        TslWarn("%s", szAbsent);
        free(szText);
        return nullptr;
    }
    if (isEmpty(szText)) {
        TslError("%s", szEmpty);
        free(szText);
        return nullptr;
    }
    return szText;
}
