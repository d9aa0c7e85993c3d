#pragma once

/// Binds the program to the platform's theme and to its own translations at start-up.
///
/// Static operations without state, for the main loop. A failure is logged and leaves the
/// platform's defaults in place.
class TslExpandedUtils {
public:
    TslExpandedUtils() = delete;

    /// Asks for changeable colours and fonts, and for the light style.
    static void setUxtTheme();
    /// Binds the text domain "tessel" to the folder "locale" of the resources.
    static void bindTextDomain();
    /// Installs the tables of changeable colours and fonts from the shared resources.
    static void setChangeableGuiTables();
};
