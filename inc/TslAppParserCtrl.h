#pragma once

#include <app_control.h>

class TslAppParserInside;

/// Turns one launch request into the media to play. A new one is made for each request.
///
/// Main loop only.
class TslAppParserCtrl {
public:
    /// Parses a request; what it lacks is logged and answered by getMediaUri().
    /// @param hAppControl  copied; null leaves the parser empty
    explicit TslAppParserCtrl(app_control_h hAppControl);
    ~TslAppParserCtrl();
    TslAppParserCtrl(const TslAppParserCtrl &) = delete;
    TslAppParserCtrl &operator=(const TslAppParserCtrl &) = delete;

    /// @return heap copy of the path or URI, freed by the caller; null when the request named none
    char *getMediaUri();

private:
    TslAppParserInside *m_pAppParserInside;
};
