/* Node identity: the card that the process runs on, or that an interface is on. */
#ifndef NODE_NODE_H
#define NODE_NODE_H

#include <stddef.h>
#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t nodeid_t;

/* Stores the local node's identifier. */
cerrno platform_get_my_nodeid(nodeid_t *node);

/* Writes a node's name as operators see it into a buffer of size bytes (32 suffice). */
cerrno nodeid_to_str_external(nodeid_t node, char *text, size_t size);

#ifdef __cplusplus
}
#endif

#endif
