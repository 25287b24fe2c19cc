// State of a subinterface's addresses, and the origin of neighbors, to native queries.

#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_query.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define IPV6_NODE "/ipv6-network/nodes/node"
#define IPV6_DETAIL IPV6_NODE "/interface-data/vrfs/vrf/details/detail"

// Name of the node that an interface is on; that of the local node for an interface that does not
// exist.
cerrno node_of_interface(const Call& call, const char* ifname, NodeName& node) {
  return interface_exists(call.ctx, call.name, ifname)
             ? get_node_info(call.ctx, node, ifname)
             : get_node_info_for_invalid_interface(call.ctx, node);
}

// Adds paths of the IPv6 operational model in turn, without values, until one fails.
cerrno query_ipv6_details(const Call& call, std::initializer_list<const char*> paths) {
  cerrno result = YMAP_OK;
  for (const char* path : paths) {
    if (result == YMAP_OK) {
      result = add_path(call, kNamespaceIpv6MaOper, {.path = path});
    }
  }
  return result;
}

// Names the node and the interface of an operational entry.
cerrno name_ipv6_detail(const Call& call, const char* ifname) {
  NodeName node{};
  if (const cerrno result = node_of_interface(call, ifname, node); result != YMAP_OK) {
    return result;
  }
  const cerrno result =
      add_path(call, kNamespaceIpv6MaOper, {.path = IPV6_NODE "/node-name", .value = node.data()});
  return result != YMAP_OK ? result
                           : add_path(call, kNamespaceIpv6MaOper,
                                      {.path = IPV6_DETAIL "/interface-name", .value = ifname});
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_state_ip) {
  const cerrno result = query_mirrored(call, kIpv4Addresses, "/ip");
  return result != YMAP_OK
             ? result
             : query_native(call, kNamespaceIpv4IoCfg,
                            "/interface-configurations/interface-configuration/ipv4-network/"
                            "addresses/secondaries/secondary/address");
}

// Address origins ask for nothing: the read-back of the addresses fills them.
YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv4_state_origin) { return YMAP_OK; }
YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv6_state_origin) { return YMAP_OK; }

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv6_state_status) {
  if (is_edit(call.ctx)) {
    return YMAP_OK;
  }
  NativeName ifname{};
  if (const cerrno result = native_interface_name(call.ctx, call.name, ifname); result != YMAP_OK) {
    return result;
  }
  cerrno result = add_path(call, kNamespaceIpv6MaOper, {.path = IPV6_DETAIL, .create = true});
  if (result != YMAP_OK || request_op(call.ctx) != YFW_MAP_REQUEST_READ_STATE) {
    return result;
  }
  result = name_ipv6_detail(call, ifname.data());
  return result != YMAP_OK ? result
                           : query_ipv6_details(call, {IPV6_DETAIL "/address/address",
                                                       IPV6_DETAIL "/address/prefix-length",
                                                       IPV6_DETAIL "/address/address-state"});
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvlb_ipv4_state_origin) {
  return query_native(call, kNamespaceIpv4ArpOper, "/arp/nodes/node/entries/entry/state");
}
