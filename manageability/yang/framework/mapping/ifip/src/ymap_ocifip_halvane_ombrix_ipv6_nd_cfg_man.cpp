// The native configuration of neighbor discovery to OpenConfig, as far as rows do not say it:
// static neighbors, and the suppression of router advertisements.

#include "ymap_namespaces.h"
#include "ymap_neighbors.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

#define NEIGHBOR YMAP_NEIGHBOR("ipv6")

namespace {

constexpr NeighborLists kLists = [] {
  NeighborLists lists = {kInterfaces, kSubinterfacesWithNewKeys, kIpv6Neighbors};
  lists.neighbors.looked_for_below_new = true;
  return lists;
}();

}  // namespace

YMAP_LIST_ENTRY(ymap_xo_ocifip_halvaneombrixipv6ndcfg_list_lvla_ipv6neighbor_neighbors_neighbor) {
  const OpenConfigKeys keys =
      split_interface_name(entry_leaf(call, YMAP_STATIC_NEIGHBOR, "interface-name"));
  if (!keys.name_an_interface()) {
    YMAP_ERROR(call, "No valid interface name returned.");
    return YMAP_ERR_NO_SUBTREE;
  }
  return place_neighbor(call, keys, kLists,
                        [&] { return entry_leaf(call, YMAP_STATIC_NEIGHBOR, "neighbor-address"); });
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv6ndcfg_leaf_lvla_ipv6neighbor_neighbor_neighboraddress) {
  const PathWrite key = {.path = NEIGHBOR "/ip", .value = call.in->value};
  // The key twice, by design.
  const cerrno result = add_all(call, kNamespaceIfIp, {key, key});
  return result != YMAP_OK || !wants_config(call.ctx)
             ? result
             : add_openconfig(call, NEIGHBOR "/config/ip", call.in->value);
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv6ndcfg_leaf_lvla_ipv6neighbor_rasuppress) {
  const EntryKey leaf = entry_key(call, YMAP_IPV6_NEIGHBOR, "ra-suppress");
  if (leaf.value != nullptr && leaf.value[0] == '\0') {
    add_twins(call, YMAP_TWINS_AT(YMAP_SUBINTERFACE "/ipv6/router-advertisement", "suppress"),
              "true");
  }
  // The result is the lookup's alone: that of the writes is ignored, by design.
  return leaf.result;
}
