/*
 * Result codes of the platform.
 *
 * Every service and every callback reports its outcome as one 32-bit code: 0 is success, anything
 * else names the failure and is passed on unchanged.
 */
#ifndef YFW_CERRNO_H
#define YFW_CERRNO_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t cerrno;

/*
 * The text that describes a result code.
 *
 *   code    any result code; 0 gives the text of success
 *
 * Returns a text owned by the platform, never null, valid until the thread's next call.
 */
const char *cerr_strerror(cerrno code);

#ifdef __cplusplus
}
#endif

#endif
