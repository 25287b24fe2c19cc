/*
 * Results that mapping callbacks return of themselves: why a request is refused. Beside these, a
 * callback passes on the result of a service that fails (yfw/cerrno.h). A framework shows them to
 * the client with the tag, the message and the path that the request state holds then.
 */
#ifndef YFW_MAPPING_RESULTS_H
#define YFW_MAPPING_RESULTS_H

#include "yfw/cerrno.h"

/* The node was mapped, or there was nothing to do. */
#define YFW_MAP_OK ((cerrno)0)

/* A callback was entered without a node or an output tree; or an edit deletes a container and gives
 * it content as well. */
#define YFW_MAP_ERR_INVALID_ARGS ((cerrno)0xaaf2a000)

/* A node says that it has children and they cannot be read, or one of them has no tag. */
#define YFW_MAP_ERR_NO_SUBTREE ((cerrno)0xaaf29e00)

/* An entry cannot be placed: the output tree lacks the interface or subinterface that it belongs
 * to. List walkers skip such an entry, so that a framework sees this only from a list callback that
 * it enters itself. */
#define YFW_MAP_ERR_NO_KEYS ((cerrno)0xaaf2f600)

/* An edit does not name a list entry by each of its keys, once, with a value. */
#define YFW_MAP_ERR_LIST_KEY ((cerrno)0xaaf2f000)

/* An edit deletes a key, but not the entry that it names. */
#define YFW_MAP_ERR_KEY_DELETE ((cerrno)0xaaf2f200)

/* A leaf's value is not one that the native model takes, as an address that is none. */
#define YFW_MAP_ERR_VALUE_RANGE ((cerrno)0xaaf2f400)

/* A node that the mapping knows not, or knows and has no native node for. */
#define YFW_MAP_ERR_UNSUPPORTED ((cerrno)0xaaf2ee00)

/* An edit adds a node of a foreign module where the mapping takes none. */
#define YFW_MAP_ERR_UNSUPPORTED_AUGMENT ((cerrno)0xaaf2f800)

/* There is no memory for what the mapping keeps of the request. */
#define YFW_MAP_ERR_NO_MEMORY ((cerrno)12)

/* A prefix length is missing where it is needed, or is one that no netmask has. No message goes
 * with it. */
#define YFW_MAP_ERR_PREFIX_LENGTH ((cerrno)16)

/* The lookup of an interface's addresses found no record, or a list that cannot be decoded. The
 * callbacks of a mapping may go on without the addresses, and keep these to themselves. */
#define YFW_MAP_ERR_NO_RECORD ((cerrno)22)
#define YFW_MAP_ERR_ADDRESS_LIST ((cerrno)70)

/* An item of a list of the database has no name. */
#define YFW_MAP_ERR_NAMELESS_ITEM ((cerrno)0x409f1800)

#endif
