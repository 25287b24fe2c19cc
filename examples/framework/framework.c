/*
 * A minimal framework: loads the mapping plug-in, has it map one edit and one read, and prints the
 * native paths that it was given. docs/integration.md explains each step.
 *
 * Usage: framework PLUGIN
 */
#include <arpa/inet.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "inet/inet.h"
#include "log/log.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/mapping.h"
#include "yfw/mapping_results.h"
#include "yfw/registration.h"
#include "yfw/text.h"
#include "yfw/version.h"

/* ---- The output: each path that the plug-in writes is printed. A framework with models makes a
 * tree of them, in which a node that is written twice is one. */

#define NATIVE_INTERFACE "/interface-configurations/interface-configuration"

static nidl_yfw_datatree nodes[100]; /* the root first; they stay where they are */
static size_t node_count;

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx *ctx, nidl_yfw_datatree *base,
                                         const char *path, const char *module_namespace,
                                         const char *value, const nidl_yfw_datatree *delete_source,
                                         nidl_yfw_datatree **created, uint32_t create,
                                         uint32_t flags) {
  static const char *const names[] = {"", " (replace)", "", " (delete)", " (remove)", " (none)"};
  const size_t stem = strlen(NATIVE_INTERFACE);
  if (base != nodes || flags != YFW_MAP_PATH_CURRENT || node_count == 100 ||
      strncmp(path, NATIVE_INTERFACE "/", stem + 1) != 0) {
    return YFW_MAP_ERR_INVALID_ARGS; /* other bases, flags and trees are beyond this example */
  }
  (void)module_namespace, (void)create; /* tell nodes of one name apart; make a new entry */
  const yfw_map_request_state *state = ctx->request_state;
  const uint8_t operation = delete_source == NULL ? 0 : delete_source->edit_operation;
  /* The keys of the native interface are the framework's to write: the interface's name and, unless
   * it is 0, the subinterface's index. */
  const int has_index = strtol(state->current_subif_index, NULL, 10) > 0;
  printf("%s[active='act'][interface-name='%s%s%s']%s%s%s%s\n", NATIVE_INTERFACE,
         state->current_ifname, has_index ? "." : "", has_index ? state->current_subif_index : "",
         path + stem, value == NULL ? "" : " = ", value == NULL ? "" : value, names[operation]);
  nodes[node_count].edit_operation = operation;
  if (created != NULL) *created = &nodes[node_count];
  ++node_count;
  return YFW_MAP_OK;
}

/* ---- The request: its entries and the nodes being walked. */

struct yfw_itree_stack {
  const nidl_yfw_datatree *nodes[20];
  uint32_t size;
};

cerrno yfw_map_util_itree_stack_push(yfw_itree_stack *stack, const nidl_yfw_datatree *node,
                                     const nidl_yfw_datatree *second, uint32_t reserved) {
  (void)second, (void)reserved;
  if (stack->size == 20) return YFW_MAP_ERR_NO_MEMORY;
  stack->nodes[stack->size++] = node;
  return YFW_MAP_OK;
}

cerrno yfw_map_util_itree_stack_pop(yfw_itree_stack *stack) {
  return stack->size == 0 ? YFW_MAP_ERR_INVALID_ARGS : (--stack->size, YFW_MAP_OK);
}

cerrno yfw_map_util_itree_stack_peak(yfw_itree_stack *stack, const nidl_yfw_datatree **top) {
  if (stack->size == 0) return YFW_MAP_ERR_INVALID_ARGS;
  *top = stack->nodes[stack->size - 1];
  return YFW_MAP_OK;
}

static const nidl_yfw_datatree *walked[40];
static uint8_t outer_list_edit_op[40];
static uint32_t depth;

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx *ctx, const nidl_yfw_datatree *node,
                                     uint32_t kind) {
  if (depth == 40) return YFW_MAP_ERR_NO_MEMORY;
  walked[depth] = node;
  outer_list_edit_op[depth++] = ctx->request_state->list_edit_op;
  if (kind == YFW_MAP_HIERARCHY_CONTAINER) ctx->request_state->list_edit_op = node->edit_operation;
  return YFW_MAP_OK;
}

/* A node whose push failed is popped all the same. */
cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx *ctx, const nidl_yfw_datatree *node) {
  if (depth == 0 || walked[depth - 1] != node) return YFW_MAP_ERR_INVALID_ARGS;
  ctx->request_state->list_edit_op = outer_list_edit_op[--depth];
  return YFW_MAP_OK;
}

#define INTERFACE_LIST "/oc-if:interfaces/oc-if:interface"
#define SUBINTERFACE_LIST INTERFACE_LIST "/oc-if:subinterfaces/oc-if:subinterface"

/* The first child of the entry on top is the key: the example's requests have it there. */
cerrno yfw_map_update_current_list_node(yfw_map_ctx *ctx, const char *list_path) {
  yfw_map_request_state *state = ctx->request_state;
  const char *key = walked[depth - 1]->children->value;
  if (strcmp(list_path, INTERFACE_LIST) == 0) {
    snprintf(state->current_ifname, sizeof state->current_ifname, "%s", key);
  } else if (strcmp(list_path, SUBINTERFACE_LIST) == 0) {
    snprintf(state->current_subif_index, sizeof state->current_subif_index, "%s", key);
  }
  return YFW_MAP_OK;
}

int yfw_map_is_request_delete(const nidl_yfw_datatree *node) {
  const uint8_t operation = node->edit_operation;
  return operation == NIDL_YFW_EDIT_DELETE || operation == NIDL_YFW_EDIT_REMOVE;
}

int yfw_map_is_request_add(yfw_map_ctx *ctx, const nidl_yfw_datatree *node,
                           nidl_yfw_datatree *out) {
  (void)out;
  const uint32_t kind = ctx->request_state->request.request_op;
  return kind != YFW_MAP_REQUEST_READ_CONFIG && kind != YFW_MAP_REQUEST_READ_STATE &&
         node->edit_operation <= NIDL_YFW_EDIT_REPLACE;
}

/* An entry may be declined: the depth of the list stays as it is then. */
cerrno yfw_add_to_output_list_ctx(yfw_map_ctx *ctx, const nidl_yfw_datatree *entry,
                                  nidl_yfw_datatree *out) {
  return (void)ctx, (void)entry, (void)out, YFW_MAP_OK;
}

/* ---- The sibling mapping: walks to the subinterfaces, and hands their IPv4 to the plug-in. */

imc_connid yfw_ocifmgr_im_conn = 0; /* there is no interface manager */
static yfw_map_leaf_callback map_ipv4;

cerrno ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx *ctx,
                                                         const nidl_yfw_datatree *in,
                                                         nidl_yfw_datatree *out) {
  if (strcmp(in->tag, "ipv4") == 0) return map_ipv4(ctx, in, out);
  yfw_itree_stack *entries = ctx->request_state->visited_entries;
  const int is_entry = in->kind == NIDL_YFW_KIND_LIST;
  yfw_map_add_to_node_hierarchy(
      ctx, in, is_entry ? YFW_MAP_HIERARCHY_LIST_ENTRY : YFW_MAP_HIERARCHY_CONTAINER);
  if (is_entry) {
    const int is_interface = strcmp(in->tag, "interface") == 0;
    yfw_map_update_current_list_node(ctx, is_interface ? INTERFACE_LIST : SUBINTERFACE_LIST);
    yfw_map_util_itree_stack_push(entries, in, NULL, 0);
  }
  cerrno result = YFW_MAP_OK;
  for (uint32_t i = 0; i < in->child_count && result == YFW_MAP_OK; ++i) {
    const nidl_yfw_datatree *child = &in->children[i];
    if (child->child_count != 0) {
      result = ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(ctx, child, out);
    }
  }
  if (is_entry) yfw_map_util_itree_stack_pop(entries);
  yfw_map_remove_from_node_hierarchy(ctx, in);
  return result;
}

/* A key must agree with its copy: here an entry is the key and "config", which begins with it. */
cerrno yfw_map_check_oc_leafref(yfw_map_ctx *ctx, const char *list_path, const char *container,
                                const char *key_value, const nidl_yfw_datatree *entry) {
  (void)ctx, (void)list_path, (void)container;
  const char *copy = entry->children[1].children[0].value;
  return yfw_map_do_these_match(copy, key_value) ? YFW_MAP_OK : YFW_MAP_ERR_LIST_KEY;
}

/* ---- Texts, addresses and the log. */

char *yfw_strdup(const char *text, const char *allocation_name) {
  (void)allocation_name;
  return text == NULL ? NULL : strdup(text);
}

void ombos_named_free(void *copy) { free(copy); }

cerrno yfw_strncpy_s(const char *caller, char *destination, size_t size, const char *source,
                     size_t count) {
  (void)caller;
  if (destination == NULL || source == NULL) return YFW_TEXT_NULL;
  if (size == 0 || count == 0) return YFW_TEXT_ZERO;
  const int length = snprintf(destination, size, "%.*s", (int)count, source);
  return (size_t)length < size ? YFW_MAP_OK : (cerrno)YFW_TEXT_NO_SPACE;
}

int yfw_map_do_these_match(const char *first, const char *second) {
  return first != NULL && second != NULL && strcmp(first, second) == 0;
}

int ombrix_inet_pton(int family, const char *text, void *address) {
  return inet_pton(family, text, address);
}

int ombrix_inet_aton(const char *text, uint32_t *address) {
  return inet_pton(AF_INET, text, address);
}

const char *ombrix_inet_ntoa(uint32_t address) {
  return inet_ntoa((struct in_addr){.s_addr = address});
}

int yfw_debug_should_log(const void *filter, uint32_t level) {
  return (void)filter, (void)level, 0;
}

/* ---- The program. */

/* Stores the address of a symbol of the plug-in in a pointer to a function. */
static void find(void *plugin, const char *name, void *function) {
  void *found = plugin == NULL ? NULL : dlsym(plugin, name);
  if (found == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    exit(3);
  }
  memcpy(function, &found, sizeof found);
}

#define OC "http://openconfig.net/yang/interfaces"
#define IP "http://openconfig.net/yang/interfaces/ip"
#define REPLACE NIDL_YFW_EDIT_REPLACE
#define NODE(name, module, form, operation, first, count)                                     \
  {                                                                                           \
    .tag = name, .module_namespace = module, .kind = NIDL_YFW_KIND_##form, .children = first, \
    .edit_operation = operation, .child_count = count, .flags = NIDL_YFW_FLAG_HAS_SUBTREE     \
  }
#define LEAF(name, module, operation, text)                                                       \
  {                                                                                               \
    .tag = name, .module_namespace = module, .kind = NIDL_YFW_KIND_LEAF, .value = (char[]){text}, \
    .edit_operation = operation, .flags = NIDL_YFW_FLAG_HAS_VALUE                                 \
  }

/* The request, level by level: a node's children are consecutive. The plug-in may write to texts.
 */
static nidl_yfw_datatree input[] = {NODE("interfaces", OC, CONTAINER, 0, &input[1], 1),
                                    NODE("interface", OC, LIST, 0, &input[2], 2),
                                    LEAF("name", OC, 0, "Eth1"),
                                    NODE("subinterfaces", OC, CONTAINER, 0, &input[4], 1),
                                    NODE("subinterface", OC, LIST, 0, &input[5], 2),
                                    LEAF("index", OC, 0, "0"),
                                    NODE("ipv4", IP, CONTAINER, 0, &input[7], 1),
                                    NODE("addresses", IP, CONTAINER, REPLACE, &input[8], 2),
                                    NODE("address", IP, LIST, REPLACE, &input[10], 2),
                                    NODE("address", IP, LIST, REPLACE, &input[12], 2),
                                    LEAF("ip", IP, REPLACE, "10.0.0.1"),
                                    NODE("config", IP, CONTAINER, REPLACE, &input[14], 2),
                                    LEAF("ip", IP, REPLACE, "10.0.1.1"),
                                    NODE("config", IP, CONTAINER, REPLACE, &input[16], 2),
                                    LEAF("ip", IP, REPLACE, "10.0.0.1"),
                                    LEAF("prefix-length", IP, REPLACE, "24"),
                                    LEAF("ip", IP, REPLACE, "10.0.1.1"),
                                    LEAF("prefix-length", IP, REPLACE, "24")};

/* Runs the request as one of a kind. */
static cerrno map(yfw_map_leaf_callback to_native, uint32_t kind) {
  yfw_itree_stack entries = {.size = 0};
  yfw_map_request_state state = {.request.request_op = kind, .visited_entries = &entries};
  yfw_map_ctx ctx = {.request_state = &state};
  node_count = 1; /* the root alone */
  const cerrno result = to_native(&ctx, input, nodes);
  if (result != YFW_MAP_OK) printf("refused: 0x%x\n", result);
  ombos_named_free(state.unsupported_tag);
  ombos_named_free(state.error_message);
  free(state.address_db);
  free(state.vrrp_vip_db);
  return result;
}

int main(int count, char **arguments) {
  void *plugin = dlopen(count == 2 ? arguments[1] : "no plug-in", RTLD_NOW | RTLD_LOCAL);
  uint32_t (*version)(void);
  void (*fill)(yfw_map_reg_record *);
  yfw_map_reg_record record = {.last = NULL};
  find(plugin, "yfw_map_contract_version", &version);
  if (!YFW_CONTRACT_FITS(YFW_CONTRACT_VERSION, version())) return 3;
  find(plugin, "ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface", &map_ipv4);
  find(plugin, "yfw_map_reg_ifip_conf", &fill);
  fill(&record);

  puts("An edit that replaces the addresses of Eth1 becomes:");
  cerrno result = map(record.to_native, YFW_MAP_REQUEST_REPLACE);

  /* A read has no operations, and asks for any address: of one entry, without values. */
  input[7].child_count = 1;
  for (size_t i = 7; i < sizeof input / sizeof *input; ++i) {
    input[i].edit_operation = NIDL_YFW_EDIT_WRITE;
    input[i].value = NULL;
  }
  puts("A read of them becomes:");
  if (result == YFW_MAP_OK) result = map(record.to_native, YFW_MAP_REQUEST_READ_CONFIG);
  return result == YFW_MAP_OK ? 0 : 1;
}
