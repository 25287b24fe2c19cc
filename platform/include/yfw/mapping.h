/*
 * Mapping services: building output trees, the node hierarchy, list entries, and request kinds.
 *
 * Paths are YANG paths without keys ("/interfaces/interface/name"). The namespace given with a path
 * is that of the path's own nodes; nodes on the way that the schema places in another module keep
 * theirs. Texts handed in are copied; pointers to nodes that are handed out stay good until the
 * request ends.
 */
#ifndef YFW_MAPPING_H
#define YFW_MAPPING_H

#include <stdint.h>

#include "yfw/cerrno.h"
#include "yfw/context.h"
#include "yfw/datatree.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Result of yfw_map_tree_xpath_operations for a path that does not resolve, or that leads to a leaf
 * which exists already and stays as it is. */
#define YFW_MAP_XPATH_NOT_ADDED ((cerrno)0xaaf2fc00)

/* Path flags of yfw_map_datatree_add_path_flagged. */
enum yfw_map_path_flag {
  YFW_MAP_PATH_PLAIN = 0,        /* an absolute path from the base node */
  YFW_MAP_PATH_CURRENT = 1,      /* under the current list entries of the request */
  YFW_MAP_PATH_INTERFACE = 8,    /* a new "/interfaces/interface" entry, stored */
  YFW_MAP_PATH_SUBINTERFACE = 32 /* an entry or key below a found entry, under a trim prefix */
};

/* Kinds of yfw_map_add_to_node_hierarchy. */
enum yfw_map_hierarchy_kind { YFW_MAP_HIERARCHY_CONTAINER = 1, YFW_MAP_HIERARCHY_LIST_ENTRY = 2 };

/*
 * Creates what is missing along a path and sets the value of its last node.
 *
 *   ctx               the request's context
 *   base              root of the output tree, or a node found or created earlier
 *   path              the path; the part equal to the trim prefix, if one is set, is the base node
 *   module_namespace  namespace of the path's own nodes
 *   value             value of the last node, or null for none
 *   delete_source     input node whose edit operation the last node takes, or null
 *   created           where to store the last node, or null
 *   create            1 for list entries, containers and most leaves; 0 for key leaves that follow
 *                     their entry and leaves directly under a found node. At a list, 1 makes a new
 *                     entry
 *   flags             enum yfw_map_path_flag
 *
 * Below a node that was created with a deleting source, writes that are made while that input node
 * is being walked are part of the deletion: key leaves say which entry is deleted, anything else is
 * dropped. A write made elsewhere, or with that very input node as source once the mapping has
 * rewritten its operation, is for a successor: the deletion becomes a replace.
 *
 * An entry that was created with a deleting source, and one of whose key leaves has the operation
 * NIDL_YFW_EDIT_NONE, stays and only leads to what is deleted below it. The key leaf takes that
 * operation from its delete source, or the mapping sets it in the created key leaf, with
 * NIDL_YFW_FLAG_OPERATION_OVERRIDE, at any time until the request ends.
 *
 * An entry of a native list that has "interface" or "interface-name" as a key, which the mapping
 * leaves unwritten, takes the native name of the subinterface that was being mapped when the entry
 * was created, unless an entry above it names an interface already.
 *
 * Returns 0, or why the path cannot be written; nothing is created then.
 */
cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx *ctx, nidl_yfw_datatree *base,
                                         const char *path, const char *module_namespace,
                                         const char *value, const nidl_yfw_datatree *delete_source,
                                         nidl_yfw_datatree **created, uint32_t create,
                                         uint32_t flags);

/*
 * Finds a list entry by one key; never creates.
 *
 *   ctx               the request's context
 *   base              node that the path starts at
 *   found             where to store the entry
 *   list_path         path of the list, absolute or relative to base
 *                     ("/subinterfaces/subinterface")
 *   key_value         value of the key
 *   key_leaf          name of the key leaf
 *   module_namespace  namespace of the list, or null for any
 *
 * Returns 0 when the entry exists, which then is its list's current entry; not 0 when it does not.
 */
cerrno yfw_map_search_list(yfw_map_ctx *ctx, nidl_yfw_datatree *base, nidl_yfw_datatree **found,
                           const char *list_path, const char *key_value, const char *key_leaf,
                           const char *module_namespace);

/* As yfw_map_search_list, but makes the entry with its key leaf when it does not exist. */
cerrno yfw_map_search_or_add_list(yfw_map_ctx *ctx, nidl_yfw_datatree *base,
                                  nidl_yfw_datatree **found, const char *list_path,
                                  const char *key_value, const char *key_leaf,
                                  const char *module_namespace);

/*
 * Adds a leaf whose path mirrors the OpenConfig one; list keys come from the interface and
 * subinterface being walked.
 *
 *   ctx               the request's context
 *   in                the OpenConfig leaf
 *   out               root of the output tree
 *   top               the top node, as "/ocifipv4ma"
 *   module_namespace  namespace of the mirrored model
 *   steps             the steps from the top node down to the leaf, each beginning with "/"
 *   step_count        number of steps
 */
cerrno yfw_map_add_leaf_from_xpath(yfw_map_ctx *ctx, const nidl_yfw_datatree *in,
                                   nidl_yfw_datatree *out, const char *top,
                                   const char *module_namespace, const char *const *steps,
                                   uint32_t step_count);

/* Sets the trim prefix of the following yfw_map_datatree_add_path_flagged calls. */
cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx *ctx, const char *prefix);

/* Clears the trim prefix; harmless when none is set. */
void yfw_map_free_trim_path_list_ctx(yfw_map_ctx *ctx);

/* Joins the entries that were built apart into a list of the output tree. */
typedef struct yfw_map_stitch_request {
  uint32_t enabled;           /* 1 */
  char module_namespace[251]; /* namespace of the list */
  nidl_yfw_datatree *base;    /* root of the output tree */
  uint32_t operation;         /* 2: make the named entry the current one */
  char instance_path[1001];   /* the entry with its keys, "/interfaces/interface[name=...]/..." */
  char list_path[1001];       /* the same path without keys */
} yfw_map_stitch_request;

/* Runs a stitch request. Returns 0, or a failure when the entry does not exist. */
cerrno yfw_map_stitch_list_to_list(yfw_map_ctx *ctx, const yfw_map_stitch_request *request);

/* A path operation on the output tree. */
typedef struct yfw_map_xpath_request {
  uint32_t enabled;           /* 1 */
  char module_namespace[251]; /* namespace of the path's own nodes */
  nidl_yfw_datatree *base;    /* root of the output tree */
  uint32_t operation;         /* 3: add the leaf with the value */
  char value[301];            /* value of the leaf */
  char xpath[1001];           /* path with keys */
} yfw_map_xpath_request;

/* Runs a path operation. Returns 0, YFW_MAP_XPATH_NOT_ADDED, or another failure. */
cerrno yfw_map_tree_xpath_operations(yfw_map_ctx *ctx, const yfw_map_xpath_request *request);

/*
 * Pushes a node on the path of nodes being walked.
 *
 *   kind  enum yfw_map_hierarchy_kind
 */
cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx *ctx, const nidl_yfw_datatree *node,
                                     uint32_t kind);

/* Pops a node; called once for every push, in reverse order. */
cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx *ctx, const nidl_yfw_datatree *node);

/*
 * Records the list entry that was just pushed as the current entry of its list.
 *
 *   list_path  schema path of the list, module prefixes on its top-level components
 */
cerrno yfw_map_update_current_list_node(yfw_map_ctx *ctx, const char *list_path);

/*
 * Gives the value of a leaf of a list's current entry, or of a container being walked.
 *
 *   list_path  path of the list or container, without keys
 *              ("/interface-configurations/interface-configuration")
 *   leaf       name of the leaf
 *   value      where to store the value, a text of the framework's that lasts as long as the entry
 * is walked: null when the leaf is absent, the empty text for a leaf of type empty
 *
 * Returns 0 also for an absent leaf; not 0 when the list has no current entry.
 */
cerrno yfw_map_get_node_info(yfw_map_ctx *ctx, const char *list_path, const char *leaf,
                             const char **value);

/* Enters a list entry into the output list; raises output_list_depth if it took it. */
cerrno yfw_add_to_output_list_ctx(yfw_map_ctx *ctx, const nidl_yfw_datatree *entry,
                                  nidl_yfw_datatree *out);

/* Undoes yfw_add_to_output_list_ctx. */
cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx *ctx, const nidl_yfw_datatree *entry,
                                       nidl_yfw_datatree *out);

/* Not 0 when the request on the node is an add (create, merge or replace), as against a delete or a
 * read. */
int yfw_map_is_request_add(yfw_map_ctx *ctx, const nidl_yfw_datatree *node, nidl_yfw_datatree *out);

/* Not 0 when the request on the node deletes it (operations delete and remove). */
int yfw_map_is_request_delete(const nidl_yfw_datatree *node);

/*
 * Compares a list key with the leaf that it refers to.
 *
 *   list_path  path of the list, as given to yfw_map_update_current_list_node
 *   container  container below the entry that holds the leaf: "config"
 *   key_value  value of the key, or null
 *   entry      the list entry
 *
 * Returns 0 when they are equal or the container does not hold the leaf (an entry may be named by
 * its key alone), else the failure.
 */
cerrno yfw_map_check_oc_leafref(yfw_map_ctx *ctx, const char *list_path, const char *container,
                                const char *key_value, const nidl_yfw_datatree *entry);

/* Marks the path of the nodes being walked as the failing path of the request. */
void yfw_oc_error_path(yfw_map_ctx *ctx);

#ifdef __cplusplus
}
#endif

#endif
