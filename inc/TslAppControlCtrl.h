#pragma once

#include <app_control.h>

/// One launch request of the platform, owned, with a uniform way of failing: what goes wrong is
/// logged and answered with null or false.
///
/// Main loop only.
class TslAppControlCtrl {
public:
    /// Holds no request until createAppControl().
    TslAppControlCtrl();

    /// Holds a copy of a request, or none when it can't be copied.
    /// @param hAppControl  stays the caller's
    explicit TslAppControlCtrl(app_control_h hAppControl);
    ~TslAppControlCtrl();
    TslAppControlCtrl(const TslAppControlCtrl &) = delete;
    TslAppControlCtrl &operator=(const TslAppControlCtrl &) = delete;

    /// @return the request, owned by this object; null when there is none
    app_control_h getHandle();

    /// @return heap copy that the caller frees; null when absent or empty
    char *getUri();
    /// @param szKey  null is refused
    /// @return heap copy that the caller frees; null when absent or empty
    char *getExtraData(const char *szKey);

    // The texts of these five are not freed by the caller. Each is valid on the calling thread
    // until the same operation is called again there, on whatever object. Null: absent or empty.
    const char *getMime();
    const char *getAppId();
    const char *getCaller();
    const char *getCategory();
    const char *getOperation();

    /// @param[out] pArray  array of *pLength texts; the caller frees each and the array
    /// @return false when there is no array under the key
    bool getExtraDataArray(const char *szKey, char ***pArray, int *pLength);

    // The setters copy what they are given. False: there is no request, or the text is null, or
    // the platform refused, each of which is logged.
    bool setUri(const char *szUri);
    bool setAppId(const char *szAppId);
    bool setOperation(const char *szOperation);
    /// Null texts are left to the platform to refuse.
    bool setExtraData(const char *szKey, const char *szValue);
    /// @param szArray  nLength texts, copied
    bool setExtraDataArray(const char *szKey, const char *szArray[], int nLength);
    /// @param nMode  0 or 1; others are refused without asking the platform
    bool setLaunchMode(app_control_launch_mode_e nMode);

    /// @return false when there is no request or the platform keeps it
    bool destroyAppControl();
    /// Replaces the request with a new, empty one.
    /// @return false when the platform made none
    bool createAppControl();

    /// Sends the request without waiting for a reply.
    /// @return true also when the platform refused it, which is only logged; false without request
    bool sendLaunchRequest();
    /// Asks the application that the request names to end.
    /// @return false when there is no request or the platform refused it
    bool sendTerminateRequest();

private:
    using TextGetter = int (*)(app_control_h, char **);

    bool _hasHandle() const;
    /// @return heap text, or null after logging why there is none
    char *_readText(TextGetter pGetter, const char *szAbsent, const char *szEmpty);

    app_control_h m_hAppControl;
};
