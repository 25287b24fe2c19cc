#include "ymap_stitch.h"

#include <cstdint>
#include <cstdio>

#include "yfw/mapping.h"
#include "ymap_namespaces.h"
#include "ymap_read_back.h"

namespace ymap {

namespace {

constexpr std::uint32_t kMakeCurrent = 2;  // operation of a stitch request

}  // namespace

cerrno stitch_subinterface(const Call& call, const char* name, const char* index) {
  EntryCursor cursor(call);
  if (cursor.find(kInterfaces, name) != YMAP_OK || cursor.find(kSubinterfaces, index) != YMAP_OK) {
    return YMAP_ERR_NO_KEYS;
  }
  yfw_map_stitch_request request{};
  request.enabled = 1;
  request.base = call.out;
  request.operation = kMakeCurrent;
  std::snprintf(request.module_namespace, sizeof request.module_namespace, "%s",
                kNamespaceInterfaces);
  std::snprintf(request.instance_path, sizeof request.instance_path,
                "/interfaces/interface[name=%s]/subinterfaces/subinterface[index=%s]/", name,
                index);
  std::snprintf(request.list_path, sizeof request.list_path, "%s", kSubinterface);
  const cerrno result = yfw_map_stitch_list_to_list(call.ctx, &request);
  call.wrote = call.wrote || result == YMAP_OK;
  return result;
}

}  // namespace ymap
