/* The platform's text routines beyond the C library's. */
#ifndef TEXT_BOUNDED_TEXT_H
#define TEXT_BOUNDED_TEXT_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies at most count characters of a text into a buffer of size bytes and terminates it.
 *
 * Returns 0, or not 0 when an argument is null, a size is 0, or the text does not fit; the
 * destination is the empty text then.
 */
int strncpy_s(char *destination, size_t size, const char *source, size_t count);

/*
 * Compares two texts, of which at most maximum characters of the first are looked at.
 *
 *   comparison  where to store a value below, equal to or above 0
 *
 * Returns 0, or not 0 when an argument is null or maximum is 0; *comparison is untouched then.
 */
int strcmp_s(const char *first, size_t maximum, const char *second, int *comparison);

/* Turns a text into upper case in place and returns it. */
char *strupr(char *text);

/* Writes a number in a base of 2 to 36 into a buffer large enough, and returns the buffer. */
char *itoa(int value, char *buffer, int base);

#ifdef __cplusplus
}
#endif

#endif
