#include "ymap_read_back.h"

#include <cstdio>
#include <cstring>

#include "yfw/mapping.h"
#include "ymap_namespaces.h"
#include "ymap_request.h"

namespace ymap {

namespace {

constexpr const char* kTunnelPrefix = "tunnel-ip";

bool has_dot(const char* name) { return std::strchr(name, '.') != nullptr; }

cerrno add_interface(const Call& call, const char* name, const KeyFlags& keys, Node*& interface) {
  const cerrno result = add_path(
      call, kNamespaceInterfaces,
      {.path = kInterface, .create = true, .created = &interface, .flags = YFW_MAP_PATH_INTERFACE});
  return result != YMAP_OK ? result
                           : add_path(call, kNamespaceInterfaces,
                                      {.path = "/interfaces/interface/name",
                                       .value = name,
                                       .create = keys.name,
                                       .flags = YFW_MAP_PATH_PLAIN});
}

cerrno add_subinterface(const Call& call, Node* interface, const char* index, const KeyFlags& keys,
                        Node*& subinterface) {
  const TrimPrefix trimmed(call.ctx, kInterface);
  const cerrno result = add_path(call, kNamespaceInterfaces,
                                 {.path = kSubinterface,
                                  .create = true,
                                  .base = interface,
                                  .created = &subinterface,
                                  .flags = YFW_MAP_PATH_SUBINTERFACE});
  return result != YMAP_OK ? result
                           : add_path(call, kNamespaceInterfaces,
                                      {.path = YMAP_SUBINTERFACE "/index",
                                       .value = index,
                                       .create = keys.index,
                                       .base = interface,
                                       .flags = YFW_MAP_PATH_SUBINTERFACE});
}

// Where the current entry is stored.
Node*& slot_of(const Call& call, Node*& without_state) {
  return call.ctx->request_state != nullptr ? call.ctx->request_state->current_list_node
                                            : without_state;
}

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
  std::sscanf(name, "%200[^.].%200s", keys.interface.data(), keys.index.data());
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

bool is_tunnel_name(const char* name) {
  return name != nullptr && std::strncmp(name, kTunnelPrefix, std::strlen(kTunnelPrefix)) == 0;
}

bool is_tunnel(const Call& call) {
  return is_tunnel_name(entry_leaf(call, kNativeInterface, "interface-name"));
}

cerrno find_interface(const Call& call, const char* name, Node*& interface) {
  return yfw_map_search_list(call.ctx, call.out, &interface, kInterface, name, "name",
                             kNamespaceInterfaces);
}

cerrno find_subinterface(const Call& call, Node* interface, const char* index,
                         Node*& subinterface) {
  return yfw_map_search_list(call.ctx, interface, &subinterface, "/subinterfaces/subinterface",
                             index, "index", nullptr);
}

cerrno select_subinterface(const Call& call, Node* interface, const char* index,
                           const KeyFlags& keys) {
  Node* without_state = nullptr;
  Node*& slot = slot_of(call, without_state);
  Node* found = nullptr;
  if (find_subinterface(call, interface, index, found) == YMAP_OK) {
    slot = found;
    return YMAP_OK;
  }
  return add_subinterface(call, interface, index, keys, slot);
}

cerrno select_subinterface(const Call& call, const OpenConfigKeys& names, const KeyFlags& keys) {
  Node* interface = nullptr;
  if (find_interface(call, names.interface.data(), interface) == YMAP_OK) {
    return select_subinterface(call, interface, names.index.data(), keys);
  }
  const cerrno result = add_interface(call, names.interface.data(), keys, interface);
  // What is new has no subinterface to be looked for.
  Node* without_state = nullptr;
  return result != YMAP_OK ? result
                           : add_subinterface(call, interface, names.index.data(), keys,
                                              slot_of(call, without_state));
}

cerrno select_current_subinterface(const Call& call) {
  const char* name = current_interface_name(call.ctx);
  return has_dot(name) ? YMAP_OK : select_subinterface(call, split_interface_name(name));
}

cerrno add_openconfig(const Call& call, const char* path, const char* value) {
  return add_path(call, kNamespaceIfIp, {.path = path, .value = value});
}

cerrno add_twins(const Call& call, const Twins& paths, const char* value) {
  cerrno result = YMAP_OK;
  if (paths.config != nullptr && wants_config(call.ctx)) {
    result = add_openconfig(call, paths.config, value);
  }
  if (result == YMAP_OK && paths.state != nullptr && wants_state(call.ctx)) {
    result = add_openconfig(call, paths.state, value);
  }
  return result;
}

}  // namespace ymap
