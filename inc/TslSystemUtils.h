#pragma once

/// Keeps the display on. Static operations for the main loop; requests aren't counted, so that one
/// release ends any number of them.
class TslSystemUtils {
public:
    TslSystemUtils() = delete;

    /// Keeps the display on without a time limit.
    static void lockDisplay();
    static void unlockDisplay();
};
