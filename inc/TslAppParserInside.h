#pragma once

#include <app_control.h>

class TslAppControlCtrl;

/// What a TslAppParserCtrl knows of its request, and the steps of parsing it.
class TslAppParserInside {
public:
    TslAppParserInside();
    ~TslAppParserInside();
    TslAppParserInside(const TslAppParserInside &) = delete;
    TslAppParserInside &operator=(const TslAppParserInside &) = delete;

    /// Copies the request. @return false for a null handle
    bool _parseAppControl(app_control_h hAppControl);
    /// Takes the media from the URI or, without one, from the path, once.
    bool _parseUri();
    /// Reads the operation, whatever it is. @return false when there is none
    bool _parseOperation();

    char *m_szMediaUri;                ///< heap text, owned, may be null
    TslAppControlCtrl *m_pAppControl;  ///< copy of the request, owned, may be null
};
