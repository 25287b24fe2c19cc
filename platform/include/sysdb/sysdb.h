/*
 * Client of the configuration and state database.
 *
 * Paths are texts with components joined by "/". An interface stands in a path, in a filter and in
 * the name of an item by its native name in internal form (im/interface_manager.h), which has "_"
 * for every "/". The text fields of records that name interfaces have that form, too.
 */
#ifndef SYSDB_SYSDB_H
#define SYSDB_SYSDB_H

#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct sysdb_handle sysdb_handle; /* a binding to a subtree of the database */
typedef struct sysdb_list sysdb_list;     /* the items of a list, read one by one */

/* Results that readers test for. */
#define SYSDB_ITEM_NOT_FOUND ((cerrno)0x40818600)
#define SYSDB_LIST_EMPTY ((cerrno)0x40828600)
#define SYSDB_NO_MATCH ((cerrno)2)

/* Result of a bind that is not attempted, because the client is not installed. */
#define SYSDB_UNAVAILABLE ((cerrno)0x8081c200)

/* Bind modes. */
enum sysdb_bind_mode { SYSDB_BIND_VRRP = 0, SYSDB_BIND_READ = 4 };

/* Type of an item that is an encoded record (bag/bag.h). */
#define SYSDB_TYPE_RECORD 7u

/*
 * Binds to the subtree below a prefix.
 *
 *   handle  where to store the binding, to be released with _sysdb_unbind
 *   prefix  path of the subtree, ending in "/"
 *   mode    enum sysdb_bind_mode
 */
cerrno _sysdb_bind(sysdb_handle **handle, const char *prefix, uint32_t mode);

/* Releases a binding. */
cerrno _sysdb_unbind(sysdb_handle *handle);

/*
 * Reads one item.
 *
 *   handle  the binding
 *   path    path of the item below the binding's prefix
 *   buffer  where to store the item's bytes; the caller frees them with free
 *   length  where to store their number
 *   type    where to store the item's type
 *
 * Returns 0, SYSDB_NO_MATCH, SYSDB_ITEM_NOT_FOUND or another failure; the outputs are untouched
 * then.
 */
cerrno sysdb_item_get(sysdb_handle *handle, const char *path, void **buffer, uint32_t *length,
                      uint32_t *type);

/*
 * Opens the list of the items below a path.
 *
 *   handle  the binding
 *   path    path of the list below the binding's prefix
 *   filter  key text that selects items, or null for all
 *   list    where to store the list, to be released with sysdb_datalist_free
 *   count   where to store the number of items
 */
cerrno sysdb_datalist(sysdb_handle *handle, const char *path, const char *filter, sysdb_list **list,
                      uint32_t *count);

/*
 * Reads the next item of a list. Name and bytes belong to the list.
 *
 *   name    where to store the item's name below the list's path, or null when it has none
 *   buffer  where to store its bytes
 *   length  where to store their number
 *   type    where to store its type
 */
cerrno sysdb_datalist_next(sysdb_list *list, const char **name, const void **buffer,
                           uint32_t *length, uint32_t *type);

/* Releases a list; null is allowed. */
void sysdb_datalist_free(sysdb_list *list);

/* Identifier of the default VRF. */
uint32_t rsi_c_vrf_id_dflt(void);

#ifdef __cplusplus
}
#endif

#endif
