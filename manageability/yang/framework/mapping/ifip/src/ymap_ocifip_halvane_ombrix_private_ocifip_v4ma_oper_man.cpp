// The IPv4 summary of a subinterface to OpenConfig: its place, and the state of its addresses,
// which tunnels have in their own tree, too.

#include <cstdint>
#include <cstdio>

#include "yfw/mapping.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.h"
#include "ymap_read_back.h"
#include "ymap_stitch.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define INTERFACE "/ocifipv4ma/interfaces/interface"
#define ADDRESS_STATE YMAP_SUBINTERFACE "/ipv4/addresses/address/state"

constexpr Summary kSummary = {
    .interfaces = INTERFACE,
    .subinterfaces = INTERFACE "/subinterfaces/subinterface",
    .no_name = YMAP_TRACE_TEXT("ocifipv4_ma reverse mapping, interface name is NULL"),
    .no_index = YMAP_TRACE_TEXT("ocifipv4_ma reverse mapping, index val is NULL")};

constexpr std::uint32_t kAddLeaf = 3;  // operation of a path request

// Copies a leaf of an address's state to the tunnel's tree. That it is there already is no
// failure.
cerrno copy_to_tunnel(const Call& call, const char* ifname, const char* leaf) {
  yfw_map_xpath_request request{};
  request.enabled = 1;
  request.base = call.out;
  request.operation = kAddLeaf;
  std::snprintf(request.module_namespace, sizeof request.module_namespace, "%s", kNamespaceTunnel);
  std::snprintf(request.value, sizeof request.value, "%s",
                call.in->value != nullptr ? call.in->value : "");
  std::snprintf(request.xpath, sizeof request.xpath,
                "/interfaces/interface[name=%s]/tunnel/ipv4/addresses/address/state/%s", ifname,
                leaf);
  const cerrno result = yfw_map_tree_xpath_operations(call.ctx, &request);
  call.wrote = call.wrote || result == YMAP_OK;
  if (result == YMAP_ERR_XPATH_NOT_ADDED) {
    YMAP_TRACE(call, "Node exits");  // the text is meant as it stands
    return YMAP_OK;
  }
  return result;
}

// The rest of an address leaf, of which `added` is the result so far: a tunnel's leaf is copied
// whatever came of the subinterface's, and its result takes the place of that, by design.
cerrno finish_address_leaf(const Call& call, const char* ifname, const char* leaf, cerrno added) {
  return is_tunnel_name(ifname) ? copy_to_tunnel(call, ifname, leaf) : added;
}

}  // namespace

YMAP_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixprivateocifipv4maoper_list_lvla_ocifipv4ma_subinterfaces_subinterface) {
  return stitch_entry<kSummary>(call);
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixprivateocifipv4maoper_leaf_lvla_ocifipv4ma_state_ip) {
  const char* ifname = entry_leaf(call, kSummary.interfaces, "name");
  const cerrno added = add_openconfig(call, ADDRESS_STATE "/ip", call.in->value);
  return finish_address_leaf(call, ifname, "ip", added);
}

YMAP_LEAF(
    ymap_xo_ocifip_halvaneombrixprivateocifipv4maoper_leaf_lvla_ocifipv4ma_state_prefixlength) {
  const char* ifname = entry_leaf(call, kSummary.interfaces, "name");
  // The origin follows, and its result counts, whatever came of the prefix length, by design.
  add_openconfig(call, ADDRESS_STATE "/prefix-length", call.in->value);
  const cerrno added = add_openconfig(call, ADDRESS_STATE "/origin", "STATIC");
  return finish_address_leaf(call, ifname, "prefix-length", added);
}
