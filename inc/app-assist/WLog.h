#pragma once

#include <dlog.h>

#include <cstring>

// The C library's own, which <assert.h> declares only in builds that keep assert(): a fault ends
// the process in every build.
extern "C" void __assert_fail(const char *condition, const char *file, unsigned int line,
                              const char *function) noexcept __attribute__((__noreturn__));

/// The framework's log lines: "FILE: FUNCTION(LINE) > MESSAGE" under the tag "WAPP", the message in
/// the colour of its level; and its assertion, for programming faults only.

#define WAPP_LOG_TAG "WAPP"

#define WAPP_LOG_FILE_NAME \
    (std::strrchr(__FILE__, '/') != nullptr ? std::strrchr(__FILE__, '/') + 1 : __FILE__)

#define WAPP_LOG_PRINT(priority, colour, format, ...)                                           \
    __dlog_print(LOG_ID_MAIN, priority, WAPP_LOG_TAG, "%s: %s(%d) > " colour format "\033[0;m", \
                 WAPP_LOG_FILE_NAME, __func__, __LINE__, ##__VA_ARGS__)

#define WINFO(format, ...) WAPP_LOG_PRINT(DLOG_INFO, "\033[0;32m", format, ##__VA_ARGS__)
#define WWARN(format, ...) WAPP_LOG_PRINT(DLOG_WARN, "\033[0;35m", format, ##__VA_ARGS__)
#define WERROR(format, ...) \
    WAPP_LOG_PRINT(DLOG_ERROR, "\033[0;31m", "* Critical * " format, ##__VA_ARGS__)

/// Logs `message` and ends the process when `condition` doesn't hold.
#define WASSERT_MESSAGE(condition, message)                                             \
    do {                                                                                \
        if (!(condition)) {                                                             \
            WERROR("WASSERT! %s", message);                                             \
            __assert_fail("(" #condition ")", __FILE__, __LINE__, __PRETTY_FUNCTION__); \
        }                                                                               \
    } while (0)

/// The same with the condition's own text as the message.
#define WASSERT(condition) WASSERT_MESSAGE(condition, #condition)
