// Static neighbors of a subinterface to the native models: IPv4 neighbors to static ARP entries of
// the default VRF, IPv6 neighbors to those of neighbor discovery. The native lists are the
// device's, with the interface among their keys: what is deleted is always one interface's entry.
// Reads name the operational entries, too.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "inet/inet.h"
#include "native_records.h"
#include "node/node.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_database.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_paths.h"
#include "ymap_query.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define STATIC_ARP_VRF "default"

// The native lists are addressed from the root, not under the request's current entries.
constexpr std::uint32_t kFlags = YFW_MAP_PATH_PLAIN;

bool is_state_read(const Call& call) { return request_op(call.ctx) == YFW_MAP_REQUEST_READ_STATE; }

// A leaf of a native entry: a read asks for it, with a value that it may be known by; an edit
// writes it.
PathWrite leaf(const Call& call, const char* path, const char* value) {
  return {.path = path,
          .value = value,
          .source = is_read(call.ctx) ? nullptr : call.in,
          .flags = kFlags};
}

// An entry of a native list, the static or the operational one.
PathWrite entry(const Call& call, const char* path) {
  return {.path = path,
          .source = is_read(call.ctx) ? nullptr : call.in,
          .create = true,
          .flags = kFlags};
}

// Whether an edit deletes all neighbors of the interface: the list without keys, or the container.
bool deletes_all(const Call& call) {
  return is_edit(call.ctx) && is_delete(*call.in) &&
         (call.child_count == 0 || is_list_wide(call.ctx));
}

// --- neighbors that a delete without keys is for -------------------------------------------------

// Names the VRF that static ARP entries stand in.
cerrno add_default_vrf(const Call& call) {
  return add_all(call, kNamespaceIpv4ArpCfg,
                 {{.path = YMAP_ARP_VRF, .create = true, .flags = kFlags},
                  {.path = YMAP_ARP_VRF "/vrf-name", .value = STATIC_ARP_VRF, .flags = kFlags},
                  {.path = YMAP_ARP_VRF "/entries", .flags = kFlags}});
}

// Deletes a static ARP entry, if it is one of the interface's; names the VRF before if it has not
// been.
cerrno delete_static_arp(const Call& call, const DatabaseName& ifname, const ListedItem& item,
                         bool& vrf_is_named) {
  DecodedRecord<arp_gmp_config_entry> record(arp_gmp_config_entry_bag);
  if (const cerrno result = record.decode(item.bytes, item.length); result != YMAP_OK) {
    YMAP_ERROR(call, "bag decode for arp_gmp_config_entry_bag failed");
    return result;
  }
  if (record->InterfaceName == nullptr || std::strcmp(record->InterfaceName, ifname.text()) != 0) {
    return YMAP_OK;
  }
  if (!vrf_is_named) {
    if (const cerrno result = add_default_vrf(call); result != YMAP_OK) {
      return result;
    }
    vrf_is_named = true;
  }
  AddressText address{};
  inet_ntoa_r(record->IPAddress, address.data(), address.size());
  return add_all(
      call, kNamespaceIpv4ArpCfg,
      {entry(call, YMAP_STATIC_ARP), leaf(call, YMAP_STATIC_ARP "/address", address.data())});
}

// Deletes every static ARP entry of an interface.
cerrno get_arp_info_for_interface_and_map(const Call& call, const char* ifname, bool vrf_is_named) {
  sysdb_handle* handle = nullptr;
  const BoundDatabase bound(handle, "/oper/ipv4-arp-gmp/gl/", SYSDB_BIND_READ);
  if (bound.result() != YMAP_OK) {
    return bind_failed(call, ifname, bound.result());
  }
  std::array<char, 64> path;
  std::snprintf(path.data(), path.size(), "vrf/%s/config/", STATIC_ARP_VRF);
  DatabaseList list;
  const cerrno result = list.open(handle, path.data());
  const DatabaseName name(ifname);
  return result != YMAP_OK ? result : list.each(SYSDB_TYPE_RECORD, [&](const ListedItem& item) {
    return delete_static_arp(call, name, item, vrf_is_named);
  });
}

// Deletes a static neighbor, of which the item's name is the address in hexadecimal digits.
cerrno delete_static_neighbor(const Call& call, const char* ifname, const ListedItem& item) {
  ip_addr address{};
  if (const cerrno result = hex_string2ip_addr(item.name, &address); result != YMAP_OK) {
    return result;
  }
  std::array<char, 46> text{};
  ip_addr_string(&address, text.data(), text.size());
  return add_all(call, kNamespaceIpv6NdCfg,
                 {entry(call, YMAP_STATIC_NEIGHBOR),
                  leaf(call, YMAP_STATIC_NEIGHBOR "/neighbor-address", text.data()),
                  leaf(call, YMAP_STATIC_NEIGHBOR "/interface-name", ifname)});
}

// Deletes every static IPv6 neighbor of an interface. Without a node identity there are none, which
// is no failure, by design.
cerrno get_ipv6_neighbor_info_for_interface_and_map(const Call& call, const char* ifname) {
  nodeid_t node = 0;
  if (platform_get_my_nodeid(&node) != YMAP_OK) {
    YMAP_ERROR(call, "\nNo Node id found.");
    return YMAP_OK;
  }
  sysdb_handle* handle = nullptr;
  const BoundDatabase bound(handle, "/ipc/gl/ipv6-nd/node/", SYSDB_BIND_READ);
  if (bound.result() != YMAP_OK) {
    return bind_failed(call, ifname, bound.result());
  }
  std::array<char, 256> path;
  std::snprintf(path.data(), path.size(), "%x/neighbour-entry/%s/", node,
                DatabaseName(ifname).text());
  DatabaseList list;
  const cerrno result = list.open(handle, path.data());
  return result != YMAP_OK ? result
                           : list.each(DatabaseList::kAnyType, [&](const ListedItem& item) {
                               return delete_static_neighbor(call, ifname, item);
                             });
}

cerrno delete_all_static_arp(const Call& call, bool vrf_is_named) {
  NativeName ifname;
  const cerrno result = native_interface_name(call.ctx, call.name, ifname);
  return result != YMAP_OK ? result
                           : get_arp_info_for_interface_and_map(call, ifname.data(), vrf_is_named);
}

cerrno delete_all_static_neighbors(const Call& call) {
  NativeName ifname;
  const cerrno result = native_interface_name(call.ctx, call.name, ifname);
  return result != YMAP_OK ? result
                           : get_ipv6_neighbor_info_for_interface_and_map(call, ifname.data());
}

// --- the operational entries ---------------------------------------------------------------------

// Where a family's operational entries are.
struct OperationalList {
  const char* module_namespace;
  const char* path;
  const char* node_name;
  const char* interface_name;
};

constexpr OperationalList kArp = {kNamespaceIpv4ArpOper, YMAP_ARP_ENTRY, YMAP_ARP_NODE "/node-name",
                                  YMAP_ARP_ENTRY "/interface-name"};
constexpr OperationalList kNeighborDiscovery = {kNamespaceIpv6NdOper, YMAP_ND_HOST,
                                                YMAP_ND_NODE "/node-name",
                                                YMAP_ND_INTERFACE "/interface-name"};

// Asks for the operational entry of a neighbor; a read of state names its node and interface.
cerrno query_operational_entry(const Call& call, const OperationalList& list) {
  NativeName ifname;
  cerrno result = native_interface_name(call.ctx, call.name, ifname);
  if (result == YMAP_OK) {
    result = add_path(call, list.module_namespace, entry(call, list.path));
  }
  if (result != YMAP_OK || !is_state_read(call)) {
    return result;
  }
  NodeName node{};
  result = node_of_interface(call, ifname.data(), node);
  return result != YMAP_OK ? result
                           : add_all(call, list.module_namespace,
                                     {leaf(call, list.node_name, node.data()),
                                      leaf(call, list.interface_name, ifname.data())});
}

}  // namespace

// --- IPv4 ----------------------------------------------------------------------------------------

YMAP_CONTAINER(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4_neighbors) {
  if (call.child_count == 0 && is_edit(call.ctx)) {
    return is_delete(*call.in) ? delete_all_static_arp(call, false) : YMAP_OK;
  }
  return add_default_vrf(call);
}

YMAP_LIST_ENTRY(ymap_ox_ocifip_openconfigifip_list_lvla_ipv4_neighbors_neighbor) {
  if (deletes_all(call)) {
    return delete_all_static_arp(call, true);
  }
  const NewListEntries new_entries(call.ctx);
  const cerrno result = add_path(call, kNamespaceIpv4ArpCfg, entry(call, YMAP_STATIC_ARP));
  return result != YMAP_OK || is_edit(call.ctx) ? result : query_operational_entry(call, kArp);
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_neighbor_ip) {
  NativeName ifname;
  if (const cerrno result = native_interface_name(call.ctx, call.name, ifname); result != YMAP_OK) {
    return result;
  }
  if (is_edit(call.ctx) && is_delete(*call.in)) {
    // Otherwise the entry has been deleted already.
    return is_list_wide(call.ctx) ? get_arp_info_for_interface_and_map(call, ifname.data(), true)
                                  : YMAP_OK;
  }
  const bool edits = is_edit(call.ctx);
  const cerrno result =
      add_all(call, kNamespaceIpv4ArpCfg,
              {leaf(call, YMAP_STATIC_ARP "/address", call.in->value),
               leaf(call, YMAP_STATIC_ARP "/encapsulation", edits ? "arpa" : nullptr),
               leaf(call, YMAP_STATIC_ARP "/entry-type", edits ? "static" : nullptr)});
  return result != YMAP_OK || !is_state_read(call)
             ? result
             : add_all(call, kNamespaceIpv4ArpOper,
                       {leaf(call, YMAP_ARP_ENTRY "/address", call.in->value),
                        leaf(call, YMAP_ARP_ENTRY "/interface-name", ifname.data())});
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_linklayeraddress) {
  if (is_edit(call.ctx) && is_delete(*call.in)) {
    return is_list_wide(call.ctx) ? YMAP_OK
                                  : add_path(call, kNamespaceIpv4ArpCfg,
                                             leaf(call, YMAP_STATIC_ARP "/mac-address", nullptr));
  }
  NativeName ifname;
  const cerrno result = native_interface_name(call.ctx, call.name, ifname);
  return result != YMAP_OK ? result
                           : add_all(call, kNamespaceIpv4ArpCfg,
                                     {leaf(call, YMAP_STATIC_ARP "/mac-address", call.in->value),
                                      leaf(call, YMAP_STATIC_ARP "/interface", ifname.data())});
}

// --- IPv6 ----------------------------------------------------------------------------------------

YMAP_CONTAINER(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv6_neighbors) {
  if (call.child_count == 0 && is_edit(call.ctx)) {
    return is_delete(*call.in) ? delete_all_static_neighbors(call) : YMAP_OK;
  }
  return add_path(call, kNamespaceIpv6NdCfg, {.path = "/ipv6-neighbor/neighbors", .flags = kFlags});
}

YMAP_LIST_ENTRY(ymap_ox_ocifip_openconfigifip_list_lvla_ipv6_neighbors_neighbor) {
  if (deletes_all(call)) {
    return delete_all_static_neighbors(call);
  }
  const NewListEntries new_entries(call.ctx);
  const cerrno result = add_path(call, kNamespaceIpv6NdCfg, entry(call, YMAP_STATIC_NEIGHBOR));
  return result != YMAP_OK || is_edit(call.ctx) ? result
                                                : query_operational_entry(call, kNeighborDiscovery);
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv6_neighbor_ip) {
  NativeName ifname;
  if (const cerrno result = native_interface_name(call.ctx, call.name, ifname); result != YMAP_OK) {
    return result;
  }
  if (is_edit(call.ctx) && is_delete(*call.in)) {
    return is_list_wide(call.ctx)
               ? get_ipv6_neighbor_info_for_interface_and_map(call, ifname.data())
               : YMAP_OK;
  }
  const cerrno result =
      add_all(call, kNamespaceIpv6NdCfg,
              {leaf(call, YMAP_STATIC_NEIGHBOR "/neighbor-address", call.in->value),
               leaf(call, YMAP_STATIC_NEIGHBOR "/interface-name", ifname.data())});
  return result != YMAP_OK || !is_state_read(call)
             ? result
             : add_path(call, kNamespaceIpv6NdOper,
                        leaf(call, YMAP_ND_HOST "/host-address", call.in->value));
}
