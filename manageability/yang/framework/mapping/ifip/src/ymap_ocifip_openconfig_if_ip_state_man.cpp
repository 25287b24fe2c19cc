// State of a subinterface's addresses to native queries, as far as rows do not say it.

#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_paths.h"
#include "ymap_query.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

// Asks for the details of an interface's addresses on a node.
cerrno query_addresses(const Call& call, const char* node, const char* ifname) {
  return add_all(call, kNamespaceIpv6MaOper,
                 {{.path = YMAP_IPV6_NODE "/node-name", .value = node},
                  {.path = YMAP_IPV6_DETAIL "/interface-name", .value = ifname},
                  {.path = YMAP_IPV6_DETAIL "/address/address"},
                  {.path = YMAP_IPV6_DETAIL "/address/prefix-length"},
                  {.path = YMAP_IPV6_DETAIL "/address/address-state"}});
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_state_ip) {
  const cerrno result = query_mirrored(call, kIpv4Addresses, "/ip");
  return result != YMAP_OK
             ? result
             : query_native(call, kNamespaceIpv4IoCfg,
                            YMAP_IPV4_NETWORK "/addresses/secondaries/secondary/address");
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv6_state_status) {
  if (is_edit(call.ctx)) {
    return YMAP_OK;
  }
  NativeName ifname{};
  if (const cerrno result = native_interface_name(call.ctx, call.name, ifname); result != YMAP_OK) {
    return result;
  }
  const cerrno added =
      add_path(call, kNamespaceIpv6MaOper, {.path = YMAP_IPV6_DETAIL, .create = true});
  if (added != YMAP_OK || request_op(call.ctx) != YFW_MAP_REQUEST_READ_STATE) {
    return added;
  }
  NodeName node{};
  const cerrno result = node_of_interface(call, ifname.data(), node);
  return result != YMAP_OK ? result : query_addresses(call, node.data(), ifname.data());
}
