/* Address text and arithmetic. IPv4 addresses and masks are 32-bit words in network order. */
#ifndef INET_INET_H
#define INET_INET_H

#include <stddef.h>
#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Address families. */
enum ombrix_address_family { OMBRIX_AF_INET = 2, OMBRIX_AF_INET6 = 10 };

/* Room for the text of an IPv4 address, terminator included. */
#define OMBRIX_INET_TEXT_SIZE 16

/* Parses a dotted IPv4 address. Returns not 0 on success; *address is untouched otherwise. */
int ombrix_inet_aton(const char *text, uint32_t *address);

/* The dotted text of an IPv4 address, in a buffer of the platform that the next call reuses. */
const char *ombrix_inet_ntoa(uint32_t address);

/* Parses an address of a family into 4 or 16 bytes. Returns 1 on success. */
int ombrix_inet_pton(int family, const char *text, void *address);

/* Writes the text of an address into a buffer. Returns the buffer, or null when it is too small. */
const char *ombrix_inet_ntop(int family, const void *address, char *text, size_t size);

/* Writes the dotted text of an IPv4 address into a buffer. Returns the buffer, or null. */
char *inet_ntoa_r(uint32_t address, char *text, size_t size);

/* The number of leading one bits of a netmask. */
uint32_t ipv4_mask2prefixlen(uint32_t mask);

/*
 * Compares two prefixes: addresses with prefix lengths in bits.
 *
 * Returns 0 when they are equal, else a value below or above 0 by numeric order.
 */
int ipv4_compare_prefix(uint32_t first, uint32_t first_length, uint32_t second,
                        uint32_t second_length);

/* An address of either family, bytes in network order. */
typedef struct ip_addr {
  uint32_t family; /* enum ombrix_address_family */
  uint8_t bytes[16];
} ip_addr;

/* Writes the text of an address into a buffer. Returns the buffer, or null when it is too small. */
const char *ip_addr_string(const ip_addr *address, char *text, size_t size);

/* Compares two addresses: 0 when equal, else below or above 0. */
int ip_addr_compare(const ip_addr *first, const ip_addr *second);

/* Parses the hexadecimal digits of an address (8 digits IPv4, 32 IPv6). Returns 0, or the failure.
 */
cerrno hex_string2ip_addr(const char *digits, ip_addr *address);

#ifdef __cplusplus
}
#endif

#endif
