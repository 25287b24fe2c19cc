#include "ymap_neighbors.h"

#include <cstdio>

#include "yfw_map_ifip_util.h"
#include "ymap_request.h"

namespace ymap {

namespace {

constexpr NeighborLists kLists = {kInterfaces, kSubinterfaces, kIpv4Neighbors};

// The OpenConfig keys in the interface name of an entry, of which 64 characters count, by design.
// Without a name, that of the interface is empty.
OpenConfigKeys keys_of(const char* interface) {
  InternalName name{};
  std::snprintf(name.data(), name.size(), "%s", interface != nullptr ? interface : "");
  return split_interface_name(name.data());
}

}  // namespace

cerrno place_ipv4_neighbor(const Call& call, const char* list, const char* interface) {
  const char* address = entry_leaf(call, list, "address");
  const OpenConfigKeys keys = keys_of(entry_leaf(call, list, interface));
  if (!keys.name_an_interface() || address == nullptr) {
    return YMAP_ERR_NO_KEYS;
  }
  return place_neighbor(call, keys, kLists, [address] { return address; });
}

}  // namespace ymap
