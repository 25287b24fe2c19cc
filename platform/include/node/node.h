/*
 * Node identity. A node is a part of the device that runs software of its own: the card that the
 * process runs on, or that an interface is on. It has an identifier, by which the platform's
 * services know it for as long as the device runs, and a name as operators see it ("node0_1"), by
 * which native operational data is arranged.
 *
 * The local node is the one that the process runs on. A device that is not made of nodes has none,
 * and its interfaces are on none.
 */
#ifndef NODE_NODE_H
#define NODE_NODE_H

#include <stddef.h>
#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t nodeid_t;

/* No node's identifier. */
#define NODEID_NONE ((nodeid_t)0)

/* Stores the local node's identifier. Fails, with *node untouched, when there is no local node or
 * the platform cannot tell. */
cerrno platform_get_my_nodeid(nodeid_t *node);

/* Writes a node's name as operators see it into a buffer of size bytes (32 suffice). Fails for an
 * identifier that no node has, NODEID_NONE among them; the buffer is untouched then. */
cerrno nodeid_to_str_external(nodeid_t node, char *text, size_t size);

#ifdef __cplusplus
}
#endif

#endif
