#include "read_back_platform.h"

#include <arpa/inet.h>

#include <bit>
#include <cstdlib>
#include <cstring>

#include "bag/bag.h"
#include "inet/inet.h"
#include "sysdb/sysdb.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/mapping.h"

namespace recording {

ReadBack read_back;

static std::string name_of(const Node* base) {
  const auto found = platform.base_names.find(base);
  return found != platform.base_names.end() ? found->second : "output";
}

}  // namespace recording

using namespace recording;

cerrno yfw_map_search_list(yfw_map_ctx*, Node* base, Node** found, const char* list_path,
                           const char* key_value, const char* key_leaf,
                           const char* module_namespace) {
  const auto entry = read_back.entries.find(std::string(list_path) + " " + key_value);
  const cerrno result = platform.serve(kSearch, "search", name_of(base), list_path,
                                       std::string(key_leaf) + "=\"" + key_value + "\"",
                                       short_module(module_namespace));
  if (result != 0) return result;
  if (entry == read_back.entries.end()) return 2;
  *found = entry->second;
  return 0;
}

cerrno yfw_map_search_or_add_list(yfw_map_ctx*, Node* base, Node** found, const char* list_path,
                                  const char* key_value, const char* key_leaf,
                                  const char* module_namespace) {
  *found = base;
  return platform.serve(kSearch, "search_or_add", name_of(base), list_path,
                        std::string(key_leaf) + "=\"" + key_value + "\"", module_namespace);
}

cerrno yfw_map_get_node_info(yfw_map_ctx*, const char* list_path, const char* leaf,
                             const char** value) {
  const auto found = read_back.leaves.find(std::string(list_path) + " " + leaf);
  *value = found != read_back.leaves.end() ? found->second.c_str() : nullptr;
  return platform.outcome("node_info");
}

cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx*, const char* prefix) {
  return platform.serve(kWrites, "trim", prefix);
}

void yfw_map_free_trim_path_list_ctx(yfw_map_ctx*) { platform.record(kWrites, "untrim"); }

// A request on the output tree is recorded among the writes, whole:
//   stitch enabled=N MODULE output|(another) operation=N INSTANCE-PATH LIST-PATH
//   xpath enabled=N MODULE output|(another) operation=N ="VALUE" PATH
static const char* shown_base(const Node* base) {
  return base == platform.root ? "output" : "(another)";
}

cerrno yfw_map_stitch_list_to_list(yfw_map_ctx*, const yfw_map_stitch_request* request) {
  return platform.serve(kWrites, "stitch", "enabled=" + std::to_string(request->enabled),
                        short_module(request->module_namespace), shown_base(request->base),
                        "operation=" + std::to_string(request->operation), request->instance_path,
                        request->list_path);
}

cerrno yfw_map_tree_xpath_operations(yfw_map_ctx*, const yfw_map_xpath_request* request) {
  return platform.serve(kWrites, "xpath", "enabled=" + std::to_string(request->enabled),
                        short_module(request->module_namespace), shown_base(request->base),
                        "operation=" + std::to_string(request->operation),
                        std::string("=\"") + request->value + "\"", request->xpath);
}

// Registrations name the sibling's walker; nothing here calls it.
cerrno ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx*, const Node*, Node*) {
  return platform.serve(kNotes, "sibling's interfaces");
}

// --- addresses -----------------------------------------------------------------------------------

uint32_t ipv4_mask2prefixlen(uint32_t mask) {
  return static_cast<uint32_t>(std::countl_one(ntohl(mask)));
}

char* inet_ntoa_r(uint32_t address, char* text, size_t size) {
  inet_ntop(AF_INET, &address, text, static_cast<socklen_t>(size));
  return text;
}

// --- database and codec --------------------------------------------------------------------------

uint32_t rsi_c_vrf_id_dflt(void) { return 0x60000001; }

cerrno _sysdb_bind(sysdb_handle** handle, const char* prefix, uint32_t mode) {
  const cerrno result = platform.serve(kDevice, "database", prefix, mode);
  if (result == 0) *handle = kDatabase;
  return result;
}

// The database has no lists.
cerrno sysdb_datalist(sysdb_handle*, const char* path, const char*, sysdb_list**, uint32_t*) {
  platform.record(kDevice, std::string("list ") + path);
  return SYSDB_LIST_EMPTY;
}
cerrno sysdb_datalist_next(sysdb_list*, const char**, const void**, uint32_t*, uint32_t*) {
  return SYSDB_LIST_EMPTY;
}
void sysdb_datalist_free(sysdb_list*) {}
cerrno hex_string2ip_addr(const char*, ip_addr*) { return 1; }
const char* ip_addr_string(const ip_addr*, char* text, size_t) { return text; }

cerrno sysdb_item_get(sysdb_handle* handle, const char* path, void** buffer, uint32_t* length,
                      uint32_t* type) {
  const cerrno result = platform.serve(kDevice, handle == kDatabase ? "item" : "item?", path);
  if (result != 0) return result;
  if (!read_back.detail) return SYSDB_NO_MATCH;
  *buffer = std::malloc(1);
  *length = 1;
  *type = SYSDB_TYPE_RECORD;
  return 0;
}

uint32_t bag_decode(const void*, uint32_t length, void* structure,
                    const bag_descriptor* descriptor) {
  const uint32_t result = platform.serve(kDevice, "decode_record", descriptor->name, length);
  if (result == 0) std::memcpy(structure, &*read_back.detail, sizeof *read_back.detail);
  return result;
}

void bag_free_indirections(void*, const bag_descriptor* descriptor) {
  platform.record(kDevice, std::string("free_record ") + descriptor->name);
}

// The records' own functions are no part of a mapping.
uint64_t bag_register_start(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t) {
  return platform.outcome("register");
}
uint32_t bag_register(const bag_descriptor*) { return platform.outcome("register"); }
uint32_t bag_register_end(void) { return platform.outcome("register"); }
void bag_register_abort(void) {}
uint32_t bag_fetch_string(uint64_t, const uint32_t*, uint32_t) { return 0; }
