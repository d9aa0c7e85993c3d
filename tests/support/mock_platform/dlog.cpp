#include <dlog.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

#include "log_lines.h"

// Every line becomes a record of the tests.
extern "C" int __dlog_print(log_id_t log_id, int prio, const char *tag, const char *fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, fmt, arguments);
    va_end(arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) + 1 : 1, '\0');
    std::vsnprintf(text.data(), text.size(), fmt, again);
    va_end(again);
    text.pop_back();
    logs::record(log_id, prio, tag == nullptr ? "" : tag, std::move(text));
    return length;
}
