#include "TslPreferenceHandler.h"

#include <app_preference.h>

#include <cstdarg>
#include <string>
#include <utility>

#include "TslLog.h"

struct _PreferenceHandlerImpl {
    ~_PreferenceHandlerImpl();
    void _removeEventHandler();
    static void _eventCb(const char *szKey, void *pData);

    std::string m_strKey;
    void *m_pUserData = nullptr;
    PreferenceHandler::EventHandlerFunc m_fnHandler;
};

_PreferenceHandlerImpl::~_PreferenceHandlerImpl() {
    TslInfo("");
    _removeEventHandler();
}

void _PreferenceHandlerImpl::_removeEventHandler() {
    if (!m_strKey.empty()) {
        preference_unset_changed_cb(m_strKey.c_str());
        m_pUserData = nullptr;
    }
}

void _PreferenceHandlerImpl::_eventCb(const char *szKey, void *pData) {
    const auto *pImpl = static_cast<_PreferenceHandlerImpl *>(pData);
    // The handler may delete its watch.
    const PreferenceHandler::EventHandlerFunc fnHandler = pImpl->m_fnHandler;
    fnHandler(szKey, pImpl->m_pUserData);
}

namespace {

bool isValidKey(const char *szKey) {
    if (szKey == nullptr) {
        TslWarn("There is not a pointer of the szKey.");
        return false;
    }
    if (*szKey == '\0') {
        TslWarn("There is no string.");
        return false;
    }
    return true;
}

/// Logs what the platform refused.
bool isDone(const char *szOperation, int nResult) {
    if (nResult != PREFERENCE_ERROR_NONE) {
        TslError("%s failed: [%d]", szOperation, nResult);
    }
    return nResult == PREFERENCE_ERROR_NONE;
}

/// Stores the next of the values.
bool storeValue(const char *szKey, int nType, va_list values) {
    switch (nType) {
    case PREFERENCE_TYPE_INT:
        return isDone("preference_set_int", preference_set_int(szKey, va_arg(values, int)));
    case PREFERENCE_TYPE_DOUBLE:
        return isDone("preference_set_double",
                      preference_set_double(szKey, va_arg(values, double)));
    case PREFERENCE_TYPE_STRING:
        return isDone("preference_set_string",
                      preference_set_string(szKey, va_arg(values, const char *)));
    case PREFERENCE_TYPE_BOOLEAN:
        return isDone("preference_set_boolean",
                      preference_set_boolean(szKey, va_arg(values, int) != 0));
    default:
        TslWarn("Unhandled nType");
        return false;
    }
}

}  // namespace

PreferenceHandler::PreferenceHandler() : m_pImpl(new _PreferenceHandlerImpl) {
    TslInfo("");
}

PreferenceHandler::~PreferenceHandler() {
    TslInfo("");
    delete m_pImpl;
}

int PreferenceHandler::addEventHandler(const char *szKey, EventHandlerFunc handler,
                                       void *pUserData) {
    if (!isValidKey(szKey)) {
        return -1;
    }
    m_pImpl->_removeEventHandler();
    m_pImpl->m_strKey = szKey;
    m_pImpl->m_fnHandler = std::move(handler);
    m_pImpl->m_pUserData = pUserData;
    return preference_set_changed_cb(szKey, _PreferenceHandlerImpl::_eventCb, m_pImpl);
}

bool PreferenceHandler::isExistPreference(const char *szKey, bool *pbExist) {
    return isValidKey(szKey) &&
           isDone("preference_is_existing", preference_is_existing(szKey, pbExist));
}

bool PreferenceHandler::initPreference(const char *szKey, int nType) {
    bool bExist = false;
    if (!isExistPreference(szKey, &bExist)) {
        return false;
    }
    if (bExist) {
        return true;
    }
    switch (nType) {
    case PREFERENCE_TYPE_INT:
    case PREFERENCE_TYPE_BOOLEAN:
        return setPreference(szKey, nType, 0);
    case PREFERENCE_TYPE_DOUBLE:
        return setPreference(szKey, nType, 0.0);
    case PREFERENCE_TYPE_STRING:
        return setPreference(szKey, nType, "");
    default:
        return true;
    }
}

bool PreferenceHandler::setPreference(const char *szKey, int nType, ...) {
    if (!isValidKey(szKey)) {
        return false;
    }
    va_list value;
    va_start(value, nType);
    const bool bDone = storeValue(szKey, nType, value);
    va_end(value);
    return bDone;
}

bool PreferenceHandler::getPreference(const char *szKey, int nType, void *pValue) {
    TslInfo("");
    if (!isValidKey(szKey)) {
        return false;
    }
    switch (nType) {
    case PREFERENCE_TYPE_INT:
        return isDone("preference_get_int", preference_get_int(szKey, static_cast<int *>(pValue)));
    case PREFERENCE_TYPE_DOUBLE:
        return isDone("preference_get_double",
                      preference_get_double(szKey, static_cast<double *>(pValue)));
    case PREFERENCE_TYPE_STRING:
        return isDone("preference_get_string",
                      preference_get_string(szKey, static_cast<char **>(pValue)));
    case PREFERENCE_TYPE_BOOLEAN:
        return isDone("preference_get_boolean",
                      preference_get_boolean(szKey, static_cast<bool *>(pValue)));
    default:
        TslWarn("Unhandled nType");
        return false;
    }
}
