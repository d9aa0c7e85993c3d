/**
 * @file dlog.h
 * @brief System log.
 *
 * Thread: every operation may be called from any thread. A line is written as a whole.
 */
#ifndef DLOG_H
#define DLOG_H

#ifdef __cplusplus
extern "C" {
#endif

/** Log buffers. */
typedef enum {
    LOG_ID_INVALID = -1,
    LOG_ID_MAIN,
    LOG_ID_RADIO,
    LOG_ID_SYSTEM,
    LOG_ID_APPS,
    LOG_ID_KMSG,
    LOG_ID_MAX
} log_id_t;

/** Priorities, in ascending order of importance. */
typedef enum {
    DLOG_UNKNOWN = 0,
    DLOG_DEFAULT,
    DLOG_VERBOSE,
    DLOG_DEBUG,
    DLOG_INFO,
    DLOG_WARN,
    DLOG_ERROR,
    DLOG_FATAL,
    DLOG_SILENT,
    DLOG_PRIO_MAX
} log_priority;

/**
 * Writes one line to a log buffer, as a whole, whichever threads write at the same time.
 *
 * The arguments' control characters and bytes that are no UTF-8 are escaped; colour codes that
 * stand in the format itself are kept where the log is read by a person and removed elsewhere. What
 * goes beyond 4096 bytes is cut. errno is left as it was.
 * @param log_id  buffer, from LOG_ID_MAIN up to, but without, LOG_ID_MAX
 * @param prio    one of log_priority, from DLOG_VERBOSE to DLOG_FATAL
 * @param tag     short name of the writer, not null
 * @param fmt     printf format, not null, followed by its arguments
 * @return the number of bytes written, 0 when the line was filtered, -EINVAL for an argument out of
 *         its range, another negative errno when writing failed
 */
int __dlog_print(log_id_t log_id, int prio, const char *tag, const char *fmt, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif
#endif
