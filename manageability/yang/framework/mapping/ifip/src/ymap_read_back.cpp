#include "ymap_read_back.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "text/bounded_text.h"
#include "yfw/mapping.h"
#include "ymap_namespaces.h"
#include "ymap_request.h"

namespace ymap {

namespace {

constexpr const char* kTunnelPrefix = "tunnel-ip";

}  // namespace

bool wants_config(const yfw_map_ctx* ctx) {
  if (ctx->request_state == nullptr) {
    return true;
  }
  const yfw_map_request_descriptor& request = ctx->request_state->request;
  return request.request_source != YFW_MAP_SOURCE_OPERATIONAL || request.filter_fields == 0;
}

bool wants_state(const yfw_map_ctx* ctx) { return request_op(ctx) == YFW_MAP_REQUEST_READ_STATE; }

OpenConfigKeys split_interface_name(const char* name) {
  OpenConfigKeys keys;
  // A part that is missing leaves its text as it is.
  std::sscanf(name != nullptr ? name : "", "%200[^.].%200s", keys.interface.data(),
              keys.index.data());
  return keys;
}

const char* current_interface_name(const yfw_map_ctx* ctx) {
  return ctx->request_state != nullptr ? ctx->request_state->current_ifname : "";
}

EntryKey entry_key(const Call& call, const char* list_path, const char* key) {
  const char* value = nullptr;
  const cerrno result = yfw_map_get_node_info(call.ctx, list_path, key, &value);
  return {result, result == YMAP_OK ? value : nullptr};
}

const char* entry_leaf(const Call& call, const char* list_path, const char* leaf) {
  return entry_key(call, list_path, leaf).value;
}

bool has_dot(const char* name) { return std::strchr(name, '.') != nullptr; }

bool is_tunnel_name(const char* name) {
  return name != nullptr && std::strncmp(name, kTunnelPrefix, std::strlen(kTunnelPrefix)) == 0;
}

bool is_tunnel(const Call& call) {
  return is_tunnel_name(entry_leaf(call, kNativeInterface, "interface-name"));
}

cerrno EntryCursor::find(const EntryList& list, const char* key) {
  if (key == nullptr) {
    return YMAP_ERR_NO_KEYS;
  }
  Node* found = nullptr;
  const cerrno result = yfw_map_search_list(call_.ctx, node_, &found, list.below, key, list.key,
                                            list.searched_namespace);
  if (result == YMAP_OK) {
    node_ = found;
  }
  return result;
}

cerrno EntryCursor::find_or_add(const EntryList& list, const char* key, Node** slot,
                                const Node* source) {
  if (!looks_for(list) || find(list, key) != YMAP_OK) {
    return add(list, key, slot, source);
  }
  is_new_ = false;
  if (slot != nullptr) {
    *slot = node_;
  }
  return YMAP_OK;
}

cerrno EntryCursor::add(const EntryList& list, const char* key, Node** slot, const Node* source) {
  Node* const above = node_;
  const bool key_from_entry = list.key_from_entry_below_found && !is_new_;
  is_new_ = true;
  {
    const TrimPrefix trimmed(call_.ctx, list.trim_prefix);
    const cerrno result = add_entry(list, slot, source);
    if (result != YMAP_OK || !key_from_entry) {
      return result != YMAP_OK ? result : add_key(list, key, above);
    }
  }
  const TrimPrefix trimmed(call_.ctx, list.path);
  return add_key(list, key, node_);
}

cerrno EntryCursor::add_entry(const EntryList& list, Node** slot, const Node* source) {
  Node** const stored = slot != nullptr ? slot : &node_;
  const cerrno result = add_path(call_, list.module_namespace,
                                 {.path = list.path,
                                  .source = source,
                                  .create = true,
                                  .base = node_,
                                  .created = stored,
                                  .flags = list.flags});
  if (result == YMAP_OK) {
    node_ = *stored;
  }
  return list.checked ? result : YMAP_OK;
}

cerrno EntryCursor::add_key(const EntryList& list, const char* key, Node* base) {
  if (list.key_path == nullptr) {
    return YMAP_OK;
  }
  const cerrno result = add_path(call_, list.module_namespace,
                                 {.path = list.key_path,
                                  .value = key,
                                  .create = list.key_create,
                                  .base = base,
                                  .flags = list.key_flags});
  return list.checked ? result : YMAP_OK;
}

Node** current_slot(const Call& call) {
  return call.ctx->request_state != nullptr ? &call.ctx->request_state->current_list_node : nullptr;
}

cerrno select_subinterface(const Call& call, const OpenConfigKeys& keys) {
  EntryCursor cursor(call);
  const cerrno result = cursor.find_or_add(kInterfaces, keys.interface.data());
  return result != YMAP_OK
             ? result
             : cursor.find_or_add(kSubinterfaces, keys.index.data(), current_slot(call));
}

cerrno select_current_subinterface(const Call& call) {
  const char* name = current_interface_name(call.ctx);
  return has_dot(name) ? YMAP_OK : select_subinterface(call, split_interface_name(name));
}

cerrno add_openconfig(const Call& call, const char* path, const char* value, bool create) {
  return add_path(call, kNamespaceIfIp, {.path = path, .value = value, .create = create});
}

cerrno add_in_upper_case(const Call& call, const char* path) {
  if (call.in->value == nullptr) {
    return add_openconfig(call, path, nullptr);
  }
  char* copy = strdup(call.in->value);
  if (copy == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  const cerrno result = add_openconfig(call, path, strupr(copy));
  std::free(copy);
  return result;
}

cerrno add_key_and_copy(const Call& call, const char* key_path, const char* copy_path) {
  const cerrno result = add_openconfig(call, key_path, call.in->value);
  return result != YMAP_OK ? result : add_openconfig(call, copy_path, call.in->value);
}

cerrno add_twins(const Call& call, const Twins& paths, const char* value, bool create) {
  cerrno result = YMAP_OK;
  if (paths.config != nullptr && wants_config(call.ctx)) {
    result = add_openconfig(call, paths.config, value, create);
  }
  if (result == YMAP_OK && paths.state != nullptr && wants_state(call.ctx)) {
    result = add_openconfig(call, paths.state, value, create);
  }
  return result;
}

cerrno add_key_and_twins(const Call& call, const char* key_path, const Twins& paths,
                         const char* value) {
  const cerrno result = add_openconfig(call, key_path, value);
  return result != YMAP_OK ? result : add_twins(call, paths, value);
}

cerrno add_placed_twins(const Call& call, const Twins& paths, const char* value) {
  if (const cerrno result = select_current_subinterface(call); result != YMAP_OK) {
    return result;
  }
  const TrimPrefix trimmed(call.ctx, kSubinterface);
  return add_twins(call, paths, value);
}

}  // namespace ymap
