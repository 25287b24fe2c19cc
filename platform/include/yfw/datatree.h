/*
 * The framework's tree node, shared by input and output trees.
 *
 * Input nodes are read-only to a mapping, except for the key mark, the flags and the edit operation
 * where a function's comment says so, and for the text of a leaf's value, which it may turn into
 * upper case in place. Output nodes are made by the mapping services alone (yfw/mapping.h); a
 * mapping may set the edit operation of a key leaf that it was handed to NIDL_YFW_EDIT_NONE, with
 * the override mark, and nothing else. A mapping never allocates or frees a node.
 */
#ifndef YFW_DATATREE_H
#define YFW_DATATREE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Edit operation of a node (nidl_yfw_datatree.edit_operation). */
enum nidl_yfw_edit_oper {
  NIDL_YFW_EDIT_WRITE = 0,   /* plain write: create or merge */
  NIDL_YFW_EDIT_REPLACE = 1, /* the node's content replaces what was there */
  NIDL_YFW_EDIT_DELETE = 3,  /* the node goes; an error when it is absent */
  NIDL_YFW_EDIT_REMOVE = 4,  /* the node goes; no error when it is absent */
  NIDL_YFW_EDIT_NONE = 5     /* the node only leads to its children */
};

/* Kind of a node (nidl_yfw_datatree.kind). */
enum nidl_yfw_node_kind {
  NIDL_YFW_KIND_CONTAINER = 1,
  NIDL_YFW_KIND_LIST = 2,
  NIDL_YFW_KIND_LEAF = 3,
  NIDL_YFW_KIND_LEAF_LIST = 4,
  NIDL_YFW_KIND_XPATH_ERROR = 5 /* with NIDL_YFW_FLAG_XPATH_ERROR: a path that did not resolve */
};

/* Bits of nidl_yfw_datatree.flags. */
enum nidl_yfw_node_flag {
  NIDL_YFW_FLAG_HAS_SUBTREE = 0x01, /* children and child_count are valid */
  NIDL_YFW_FLAG_KEY = 0x02,         /* the node is a key of its list entry; set by list walkers */
  NIDL_YFW_FLAG_REQUEST_KEY = 0x04, /* the node is a key given by the client; set by list walkers */
  NIDL_YFW_FLAG_XPATH_ERROR = 0x08, /* with NIDL_YFW_KIND_XPATH_ERROR */
  NIDL_YFW_FLAG_OPERATION_OVERRIDE = 0x10, /* the mapping rewrote edit_operation; nodes created
                                              with this one as delete source take it, and so does
                                              the entry of an output key leaf */
  NIDL_YFW_FLAG_HAS_VALUE = 0x20           /* the node carries a value */
};

typedef struct nidl_yfw_datatree {
  const char *tag;              /* YANG name; null is an error that walkers report */
  const char *value;            /* a leaf's value as text, or null */
  const char *module_namespace; /* namespace of the module that the node belongs to */
  uint8_t key_mark;             /* 1 on a key child once its list walker has marked it */
  uint8_t edit_operation;       /* enum nidl_yfw_edit_oper; the request's operation on this node */
  struct nidl_yfw_datatree *children; /* the children, one after another, in schema order */
  uint32_t child_count;               /* number of nodes in children */
  uint8_t kind;                       /* enum nidl_yfw_node_kind */
  uint8_t flags;                      /* enum nidl_yfw_node_flag, or-ed */
} nidl_yfw_datatree;

#ifdef __cplusplus
}
#endif

#endif
