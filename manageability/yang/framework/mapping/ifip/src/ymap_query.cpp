#include "ymap_query.h"

#include <cstdint>

#include "yfw/mapping.h"
#include "ymap_request.h"

namespace ymap {

cerrno query_mirrored(const Call& call, const Mirror& place, const char* leaf) {
  if (is_edit(call.ctx)) {
    return YMAP_OK;
  }
  std::array<const char*, kMaxMirrorSteps> steps = place.steps;
  std::uint32_t count = 0;
  while (steps[count] != nullptr) {
    ++count;
  }
  steps[count++] = leaf;
  const cerrno result = yfw_map_add_leaf_from_xpath(call.ctx, call.in, call.out, steps[0],
                                                    place.module_namespace, steps.data(), count);
  call.wrote = call.wrote || result == YMAP_OK;
  return result;
}

cerrno query_native(const Call& call, const char* module_namespace, const char* path) {
  return is_edit(call.ctx)
             ? YMAP_OK
             : add_path(call, module_namespace, {.path = path, .value = call.in->value});
}

cerrno ask_native(const Call& call, const char* module_namespace, const char* path) {
  return is_edit(call.ctx) ? YMAP_OK : add_path(call, module_namespace, {.path = path});
}

cerrno node_of_interface(const Call& call, const char* ifname, NodeName& node) {
  return interface_exists(call.ctx, call.name, ifname)
             ? get_node_info(call.ctx, node, ifname)
             : get_node_info_for_invalid_interface(call.ctx, node);
}

}  // namespace ymap
