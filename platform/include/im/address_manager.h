/* Codec of the address lists that the interface manager keeps as attributes. */
#ifndef IM_ADDRESS_MANAGER_H
#define IM_ADDRESS_MANAGER_H

#include <stdint.h>

#include "im/event_manager.h"
#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Room for an address of either family; an IPv4 address takes the first four bytes. Bytes are in
 * network order. */
#define IPARM_ADDRESS_SIZE 16

typedef struct iparm_secondary {
  uint8_t address[IPARM_ADDRESS_SIZE];
  uint32_t prefix_length;
} iparm_secondary;

/* The addresses of one interface. Of IPv6 addresses, the one that was configured first is the
 * primary one. */
typedef struct iparm_record {
  uint8_t primary[IPARM_ADDRESS_SIZE];
  uint32_t prefix_length;
  uint32_t secondary_count;
  iparm_secondary *secondaries;
} iparm_record;

typedef struct iparm_list {
  uint32_t count;
  iparm_record *records;
} iparm_list;

/* Prepares the codec on an event manager. */
cerrno iparm_al_c_init(event_manager *manager);

/*
 * Decodes an address attribute.
 *
 *   data    the attribute as imc_attr_query gave it
 *   length  its bytes
 *   family  OMBRIX_AF_INET or OMBRIX_AF_INET6 (inet/inet.h), as of the attribute
 *   list    where to store the list, to be freed with iparm_al_c_free; may be set on failure, too
 */
cerrno iparm_al_c_tlv2addr(const uint8_t *data, uint32_t length, uint32_t family,
                           iparm_list **list);

/* Frees a list; null is allowed. */
void iparm_al_c_free(iparm_list *list);

#ifdef __cplusplus
}
#endif

#endif
