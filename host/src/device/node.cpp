// Node identity, for node/node.h.
#include "node/node.h"

#include "device/device_directory.h"
#include "result_codes.h"
#include "yfw/text.h"

using ocifip::DeviceDirectory;
using ocifip::kInvalidArgument;
using ocifip::kNotFound;
using ocifip::kOk;
using ocifip::kUnavailable;

extern "C" {

cerrno platform_get_my_nodeid(nodeid_t* node) {
  const DeviceDirectory* directory = DeviceDirectory::active();
  if (directory == nullptr || directory->device().node_absent) {
    return kUnavailable;
  }
  if (node == nullptr) {
    return kInvalidArgument;
  }
  if (directory->own_node() == NODEID_NONE) {
    return kNotFound;
  }
  *node = directory->own_node();
  return kOk;
}

cerrno nodeid_to_str_external(nodeid_t node, char* text, size_t size) {
  const DeviceDirectory* directory = DeviceDirectory::active();
  if (directory == nullptr || directory->device().node_absent) {
    return kUnavailable;
  }
  const std::string* name = directory->node_name(node);
  return name == nullptr ? kNotFound : yfw_strncpy_s(__func__, text, size, name->c_str(), size);
}

}  // extern "C"
