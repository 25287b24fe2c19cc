/* The framework's text and memory services. */
#ifndef YFW_TEXT_H
#define YFW_TEXT_H

#include <stddef.h>
#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Failures of the bounded text services. */
enum yfw_text_error {
  YFW_TEXT_NULL = 400,    /* source or destination is null */
  YFW_TEXT_ZERO = 401,    /* destination size or count is 0 */
  YFW_TEXT_TOO_BIG = 403, /* destination size exceeds the permissible length */
  YFW_TEXT_NO_SPACE = 406 /* the text does not fit; what fits was copied */
};

/*
 * A copy of a text.
 *
 *   text             the text, or null
 *   allocation_name  label of the allocation, for the platform's memory accounting; may be null
 *
 * Returns a copy that the caller frees with ombos_named_free; null for null or without memory.
 */
char *yfw_strdup(const char *text, const char *allocation_name);

/* Frees a copy made by yfw_strdup; null is allowed. */
void ombos_named_free(void *copy);

/*
 * Bounded copy: writes at most count characters and never more than size bytes, and always ends the
 * destination with a terminator.
 *
 *   caller       name of the calling function, for the framework's diagnostics
 *   destination  buffer of size bytes
 *   size         its size in bytes
 *   source       text to copy
 *   count        most characters to copy
 *
 * Returns 0, or one of enum yfw_text_error.
 */
cerrno yfw_strncpy_s(const char *caller, char *destination, size_t size, const char *source,
                     size_t count);

/* Bounded append with the same arguments and guarantees; size is the whole destination's. */
cerrno yfw_strncat_s(const char *caller, char *destination, size_t size, const char *source,
                     size_t count);

/*
 * Bounded comparison.
 *
 *   first       text of at most maximum characters
 *   comparison  where to store a value below, equal to or above 0
 *
 * Returns 0, or one of enum yfw_text_error with *comparison untouched.
 */
cerrno yfw_safe_strcmp(const char *first, size_t maximum, const char *second, int *comparison);

/* Not 0 when both texts are given and equal; for tags, namespaces and key names. */
int yfw_map_do_these_match(const char *first, const char *second);

#ifdef __cplusplus
}
#endif

#endif
