#pragma once

#include <string>

#include "TSingleton.h"

/// The theme file of the screens, relative to the application's resource folder.
constexpr char TSL_EDJ_FILE[] = "edje/tessel.edj";

/// Turns resource names into full paths and keeps the name of the text domain.
///
/// One instance for the process, made on first use and never freed. Main loop.
class TslResourceCtrl : public TSingleton<TslResourceCtrl> {
public:
    TslResourceCtrl();
    ~TslResourceCtrl() override;

    void setTextDomain(const std::string &szTextDomain);
    /// @return a copy of the domain set last, empty before the first
    std::string getTextDomain();

    /// @return heap copy of the resource folder, ending in "/", that the caller frees; null when
    ///     the platform can't tell it
    char *getAppResourcePath();

    /// Puts the resource folder before `szResourcePath`, which has no leading "/". The result is
    /// cut at 1023 characters and isn't cached.
    /// @return heap copy that the caller frees; null for a null argument, and when the platform
    ///     can't tell the folder
    char *getResourcePath(const char *szResourcePath);

private:
    bool initResourceManager();
    bool releaseResourceManager();

    std::string szTextDomain;
};
