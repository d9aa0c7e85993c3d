#pragma once

#include <functional>

struct _PreferenceHandlerImpl;

/// Type of a stored value.
enum PreferenceType {
    PREFERENCE_TYPE_INT = 1,
    PREFERENCE_TYPE_DOUBLE,
    PREFERENCE_TYPE_STRING,
    PREFERENCE_TYPE_BOOLEAN
};

/// The application's stored settings by type, and a watch of one of them per instance, which ends
/// with the instance.
///
/// Main loop only, the handler included. A null or empty key is logged and refused everywhere.
class PreferenceHandler {
public:
    using EventHandlerFunc = std::function<void(const char *, void *)>;

    PreferenceHandler();
    ~PreferenceHandler();
    PreferenceHandler(const PreferenceHandler &) = delete;
    PreferenceHandler &operator=(const PreferenceHandler &) = delete;

    /// Watches a key, in place of the one watched before. It must exist.
    /// @param handler    gets the key, valid during the call, and pUserData; not empty
    /// @param pUserData  not owned
    /// @return the platform's result, 0 on success; -1 for a bad key, which leaves the earlier
    /// watch
    ///     running
    int addEventHandler(const char *szKey, EventHandlerFunc handler, void *pUserData);

    /// @param[out] pbExist  whether the key exists
    /// @return whether the platform could tell
    static bool isExistPreference(const char *szKey, bool *pbExist);
    /// Stores the default of the type, 0, 0.0, "" or false, under a key that doesn't exist.
    /// @param nType  PreferenceType; for any other nothing is stored, and the result is true
    static bool initPreference(const char *szKey, int nType);
    /// @param nType  PreferenceType, followed by the value: int, double, const char *, or an int
    ///     whose non-zero values are true
    static bool setPreference(const char *szKey, int nType, ...);
    /// @param nType   PreferenceType
    /// @param pValue  int *, double *, char ** for a text that the caller frees, or bool *; left
    ///     alone on failure
    static bool getPreference(const char *szKey, int nType, void *pValue);

private:
    _PreferenceHandlerImpl *m_pImpl;
};
