// The native table of IPv6 neighbors to OpenConfig, as far as rows do not say it: the placing of
// its entries, and their key.

#include "ymap_neighbors.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_oper.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

// What becomes of a new interface and a new subinterface is not looked at, by design.
constexpr NeighborLists kLists = [] {
  NeighborLists lists = {kInterfaces, kSubinterfaces, kIpv6Neighbors};
  lists.interfaces.key_create = false;
  lists.interfaces.checked = false;
  lists.subinterfaces.checked = false;
  lists.subinterfaces.key_from_entry_below_found = true;
  return lists;
}();

}  // namespace

YMAP_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv6ndoper_list_lvla_ipv6nodediscovery_hostaddresses_hostaddress) {
  const EntryKey name = entry_key(call, YMAP_ND_INTERFACE, "interface-name");
  const OpenConfigKeys keys = split_interface_name(name.value);
  if (!keys.name_an_interface()) {
    return name.result != YMAP_OK ? name.result : YMAP_ERR_NO_KEYS;
  }
  return place_neighbor(call, keys, kLists,
                        [&] { return entry_leaf(call, YMAP_ND_HOST, "host-address"); });
}

YMAP_LEAF(
    ymap_xo_ocifip_halvaneombrixipv6ndoper_leaf_lvla_ipv6nodediscovery_hostaddress_hostaddress) {
  // The result is that of the state's leaf alone: the key's is ignored, by design.
  add_openconfig(call, YMAP_NEIGHBOR("ipv6") "/ip", call.in->value);
  return add_openconfig(call, YMAP_NEIGHBOR("ipv6") "/state/ip", call.in->value);
}
