/* Logging and tracing. */
#ifndef LOG_LOG_H
#define LOG_LOG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Levels of the debug-log filter. */
enum yfw_log_level { YFW_LOG_ERROR = 0, YFW_LOG_TRACE = 3 };

/*
 * Whether lines of a level are wanted.
 *
 *   filter  the context's debug-log filter
 *   level   enum yfw_log_level
 */
int yfw_debug_should_log(const void *filter, uint32_t level);

/* The next trace sequence number; increasing over all requests of the process. */
uint32_t ret_nc_yfw_trace_index_incr(void);

/*
 * Writes one line to a log channel.
 *
 *   channel      the context's error or trace channel
 *   reserved...  five zeros
 *   site_word    the call site's own word, 0xffffffff before its first use; the service's to keep
 *   format       printf format; the arguments follow
 */
void _ombos_dt_log_filter_adv(void *channel, uint32_t reserved_1, uint32_t reserved_2,
                              uint32_t reserved_3, uint32_t reserved_4, uint32_t reserved_5,
                              uint32_t *site_word, const char *format, ...)
#ifdef __GNUC__
    __attribute__((format(printf, 8, 9)))
#endif
    ;

/*
 * Adds one line to a trace buffer.
 *
 *   buffer  the context's trace-buffer handle
 *   flags   of the entry; mapping callbacks pass 0x10101000000
 *   line    the line, at most 249 characters; copied
 */
void _lstrace(void *buffer, uint64_t flags, const char *line);

#ifdef __cplusplus
}
#endif

#endif
