// The nodes of OpenConfig that the host itself knows by name: what leads to the IP of
// subinterfaces.
#ifndef OCIFIP_HOST_MAPPING_INTERFACE_NODES_H_
#define OCIFIP_HOST_MAPPING_INTERFACE_NODES_H_

#include <string_view>

#include "io/document_nodes.h"

namespace ocifip {

inline constexpr std::string_view kInterfacesModule = "openconfig-interfaces";
inline constexpr std::string_view kIpModule = "openconfig-if-ip";

inline bool is_subinterface(const DocumentNode& node) {
  return is_named(node, kInterfacesModule, "subinterface");
}

// An interface or subinterface.
inline bool is_walked_entry(const DocumentNode& node) {
  return is_named(node, kInterfacesModule, "interface") || is_subinterface(node);
}

// What is above subinterfaces.
inline bool leads_to_subinterfaces(const DocumentNode& node) {
  return is_named(node, kInterfacesModule, "interfaces") ||
         is_named(node, kInterfacesModule, "interface") ||
         is_named(node, kInterfacesModule, "subinterfaces");
}

// The IP of one family, of a subinterface or another.
inline bool is_family(const DocumentNode& node) {
  return is_named(node, kIpModule, "ipv4") || is_named(node, kIpModule, "ipv6");
}

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_INTERFACE_NODES_H_
