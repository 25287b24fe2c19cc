// The entry callbacks of the plug-in that the sibling interfaces mapping calls.
#ifndef OCIFIP_HOST_REQUEST_AUGMENT_ENTRIES_H_
#define OCIFIP_HOST_REQUEST_AUGMENT_ENTRIES_H_

#include "yfw/context.h"

namespace ocifip {

struct AugmentEntries {
  yfw_map_leaf_callback subinterface_ipv4 = nullptr;
  yfw_map_leaf_callback subinterface_ipv6 = nullptr;
  yfw_map_leaf_callback routed_vlan_ipv4 = nullptr;
  yfw_map_leaf_callback routed_vlan_ipv6 = nullptr;
  // Of the model that extends a subinterface's IPv6; null when the plug-in does not map it.
  yfw_map_leaf_callback subinterface_ipv6_extension = nullptr;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_AUGMENT_ENTRIES_H_
