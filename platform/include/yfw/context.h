/*
 * The per-request mapping context and request state. Both are the framework's: it makes them before
 * it enters a callback and takes them down when the request ends. All callbacks of one request run
 * on one thread, and no two requests run at the same time.
 */
#ifndef YFW_CONTEXT_H
#define YFW_CONTEXT_H

#include <stdint.h>

#include "yfw/cerrno.h"
#include "yfw/datatree.h"
#include "yfw/stack.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Kind of a whole request (yfw_map_request_descriptor.request_op). */
enum yfw_map_request_op {
  YFW_MAP_REQUEST_READ_CONFIG = 0, /* read of configuration */
  YFW_MAP_REQUEST_MERGE = 1,       /* edit; list keys are checked against their leafrefs */
  YFW_MAP_REQUEST_REPLACE = 8,     /* edit; list keys are checked against their leafrefs */
  YFW_MAP_REQUEST_READ_STATE = 10, /* read of configuration and operational state */
  YFW_MAP_REQUEST_CREATE = 15      /* edit; list keys are checked against their leafrefs */
};

/* Bits of yfw_map_request_state.flags. */
enum yfw_map_state_flag {
  YFW_MAP_STATE_XPATH_ERROR = 0x100 /* a walker met an xpath-error node */
};

/* Value of request_source that, with any filter bit set, leaves configuration out of an answer. */
#define YFW_MAP_SOURCE_OPERATIONAL 2u

typedef struct yfw_map_request_descriptor {
  uint32_t request_op;     /* enum yfw_map_request_op; other values are edits */
  uint32_t request_source; /* content selector of a read */
  uint32_t filter_fields;  /* bit set; 0 when the client asked for no filtering */
} yfw_map_request_descriptor;

typedef struct yfw_map_request_state {
  yfw_map_request_descriptor request;
  char *unsupported_tag;     /* tag of the refused node, or null: made with yfw_strdup, freed with
                                ombos_named_free by whoever replaces it */
  char *error_message;       /* reason of a refused value, or null: same ownership */
  uint32_t flags;            /* enum yfw_map_state_flag, or-ed */
  uint8_t list_edit_op;      /* enum nidl_yfw_edit_oper: the operation of the list being edited; the
                                framework gives each list its own, a list callback overwrites it */
  uint8_t output_list_depth; /* raised by yfw_add_to_output_list_ctx when it takes an entry */
  uint8_t list_wide;         /* not 0: a list is deleted as a whole. Set while the list's container
                                and the entry that stands for all, without keys or content, are on
                                top of the node hierarchy; 0 in entries with keys beside that one,
                                in other lists, and where a container above is deleted */
  uint8_t list_entry_reuse;  /* not 0: a write that ends at a list may take its current entry; a
                                callback clears it while it adds an entry of its own */
  char current_ifname[201];  /* "name" of the OpenConfig interface being walked; may be empty */
  char current_subif_index[64]; /* "index" of the subinterface being walked, as it arrived */
  nidl_yfw_datatree *current_list_node; /* output entry that path flag 1 writes under, or null */
  void *address_db;  /* the mapping's own per-request data: allocated with calloc, replaced by the
                        mapping, and what is left at the end freed by the framework with free */
  void *vrrp_vip_db; /* the mapping's VRRP data: same ownership */
  yfw_itree_stack *visited_entries; /* request entries being walked; see yfw/stack.h */
} yfw_map_request_state;

typedef struct yfw_map_ctx {
  void *debug_filter;      /* handed to yfw_debug_should_log */
  void *error_channel;     /* log channel of error lines */
  void *trace_channel;     /* log channel of trace lines */
  void *trace_buffer;      /* handed to _lstrace */
  uint8_t trace_buffer_on; /* not 0: lines go to the trace buffer as well */
  yfw_map_request_state *request_state;
} yfw_map_ctx;

/*
 * The two forms of a mapping callback. The framework calls through them; walkers and leaves have
 * the leaf form, hand-written containers and list entries the container form.
 *
 *   ctx          the request's context, never null
 *   in           the node to map
 *   child_count  number of children of in, 0 when it has none
 *   out          root of the tree being written
 */
typedef cerrno (*yfw_map_leaf_callback)(yfw_map_ctx *ctx, const nidl_yfw_datatree *in,
                                        nidl_yfw_datatree *out);
typedef cerrno (*yfw_map_container_callback)(yfw_map_ctx *ctx, const nidl_yfw_datatree *in,
                                             uint32_t child_count, nidl_yfw_datatree *out);

#ifdef __cplusplus
}
#endif

#endif
