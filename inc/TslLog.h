#pragma once

#include <dlog.h>

#include <cstring>

/// The player's log lines: "FILE: FUNCTION(LINE) > MESSAGE" under the tag "TESSEL", the message in
/// the colour of its level. A message of "" is the entry trace of a function.

#define TSL_LOG_TAG "TESSEL"

#define TSL_LOG_FILE_NAME \
    (std::strrchr(__FILE__, '/') != nullptr ? std::strrchr(__FILE__, '/') + 1 : __FILE__)

#define TSL_LOG_PRINT(priority, colour, format, ...)                                           \
    __dlog_print(LOG_ID_MAIN, priority, TSL_LOG_TAG, "%s: %s(%d) > " colour format "\033[0;m", \
                 TSL_LOG_FILE_NAME, __func__, __LINE__, ##__VA_ARGS__)

#define TslInfo(format, ...) TSL_LOG_PRINT(DLOG_INFO, "\033[0;32m", format, ##__VA_ARGS__)
#define TslWarn(format, ...) TSL_LOG_PRINT(DLOG_WARN, "\033[0;35m", format, ##__VA_ARGS__)
#define TslError(format, ...) \
    TSL_LOG_PRINT(DLOG_ERROR, "\033[0;31m", "* Critical * " format, ##__VA_ARGS__)
