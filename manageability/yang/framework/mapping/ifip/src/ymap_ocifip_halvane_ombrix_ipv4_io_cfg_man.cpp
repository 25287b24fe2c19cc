// The native IPv4 configuration of an interface to OpenConfig: addresses with prefix lengths, MTU,
// and the DHCP client with the address that it leased.
//
// The primary address and the secondaries differ on purpose: only secondaries have state, and only
// the primary is copied to the tunnel's tree.

#include <array>
#include <cstdint>
#include <cstdio>

#include "inet/inet.h"
#include "native_records.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_database.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define ADDRESS YMAP_ADDRESS("ipv4")
#define TUNNEL_ADDRESS YMAP_TUNNEL "/ipv4/addresses/address"

constexpr Twins kDhcpClient = YMAP_TWINS_AT(YMAP_SUBINTERFACE "/ipv4", "dhcp-client");
constexpr Twins kIp = YMAP_TWINS_AT(ADDRESS, "ip");
constexpr Twins kPrefixLength = YMAP_TWINS_AT(ADDRESS, "prefix-length");
constexpr const char* kStateOrigin = ADDRESS "/state/origin";

// A number of bits as text.
using LengthText = std::array<char, 10>;

LengthText length_text(std::uint32_t prefix_length) {
  LengthText text;
  std::snprintf(text.data(), text.size(), "%d", static_cast<int>(prefix_length));
  return text;
}

// The prefix length of a native netmask; false when it is not a dotted address.
bool length_of_netmask(const char* netmask, LengthText& text) {
  std::uint32_t mask = 0;
  if (netmask == nullptr || ombrix_inet_aton(netmask, &mask) == 0) {
    return false;
  }
  text = length_text(ipv4_mask2prefixlen(mask));
  return true;
}

// Opens an address entry for a native one. It takes the native entry's delete along.
cerrno add_address_entry(const Call& call) {
  return add_path(
      call, kNamespaceIfIp,
      {.path = ADDRESS, .source = is_delete(*call.in) ? call.in : nullptr, .create = true});
}

// Writes a leaf of the primary address and, on a tunnel, its copy.
cerrno add_primary_leaf(const Call& call, const char* path, const char* tunnel_path,
                        const char* value) {
  const cerrno result = add_openconfig(call, path, value);
  return result != YMAP_OK || !is_tunnel(call)
             ? result
             : add_path(call, kNamespaceTunnel, {.path = tunnel_path, .value = value});
}

// The database's form of the interface's name.
InternalName database_name(const Call& call) {
  InternalName name{};
  convert_to_internal_ifname(call.ctx, name, entry_leaf(call, kNativeInterface, "interface-name"));
  return name;
}

// Reads the interface's detail record, which the IPv4 daemon publishes. Returns false, with a line
// that says why, when there is none: a missing lease is no failure.
bool read_interface_detail(const Call& call, const InternalName& name,
                           DecodedRecord<ipv4_if_detail>& detail) {
  std::array<char, 256> path;
  std::snprintf(path.data(), path.size(), "if/%s/0x%x/1/%s", name.data(), rsi_c_vrf_id_dflt(),
                "ifdetail");
  DatabaseItem item;
  const cerrno found = item.read(dhcp_database, path.data());
  if (found == SYSDB_NO_MATCH) {
    YMAP_TRACE(call, "No matching entries found");
    return false;
  }
  if (found != YMAP_OK) {
    YMAP_TRACE(call, "No entries found");
    return false;
  }
  const cerrno result = detail.decode(item.bytes(), item.length());
  if (result != YMAP_OK) {
    YMAP_TRACE(call, "Error retrieving client info: %s", cerr_strerror(result));
  }
  return result == YMAP_OK;
}

// Writes the address that the DHCP client leased.
cerrno add_lease(const Call& call, const ipv4_if_detail& detail) {
  AddressText address{};
  inet_ntoa_r(detail.PrimaryAddress, address.data(), address.size());
  const LengthText length = length_text(detail.PrefixLength);
  return add_all(call, kNamespaceIfIp,
                 {{.path = kIp.state, .value = address.data()},
                  {.path = kPrefixLength.state, .value = length.data()},
                  {.path = kStateOrigin, .value = "DYNAMIC"}});
}

}  // namespace

YMAP_CONTAINER_CHECKED_LATE(ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses) {
  const cerrno result = select_current_subinterface(call);
  // Set and cleared without a write in between, by design.
  const TrimPrefix trimmed(call.ctx, kSubinterface);
  return result;
}

YMAP_CONTAINER(ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses_secondaries) {
  return YMAP_OK;
}

YMAP_LIST_ENTRY(ymap_xo_ocifip_halvaneombrixipv4iocfg_list_lvla_ipv4network_secondaries_secondary) {
  return add_address_entry(call);
}

YMAP_CONTAINER(ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses_primary) {
  return add_address_entry(call);
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4iocfg_leaf_lvla_ipv4network_primary_address) {
  const char* address = call.in->value;
  const cerrno result = add_primary_leaf(call, ADDRESS "/ip", TUNNEL_ADDRESS "/ip", address);
  return result != YMAP_OK || !wants_config(call.ctx)
             ? result
             : add_primary_leaf(call, kIp.config, TUNNEL_ADDRESS "/config/ip", address);
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4iocfg_leaf_lvla_ipv4network_primary_netmask) {
  LengthText length;
  return length_of_netmask(call.in->value, length) && wants_config(call.ctx)
             ? add_primary_leaf(call, kPrefixLength.config, TUNNEL_ADDRESS "/config/prefix-length",
                                length.data())
             : YMAP_OK;
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4iocfg_leaf_lvla_ipv4network_secondary_netmask) {
  LengthText length;
  const cerrno result = length_of_netmask(call.in->value, length)
                            ? add_twins(call, kPrefixLength, length.data())
                            : YMAP_OK;
  return result != YMAP_OK || !wants_state(call.ctx) ? result
                                                     : add_openconfig(call, kStateOrigin, "STATIC");
}

YMAP_LEAF(ymap_ombrix_2_oc_v4_dhcpclient) {
  const InternalName name = database_name(call);
  const BoundDatabase bound(dhcp_database, "/oper/ipv4-io/", SYSDB_BIND_READ);
  if (bound.result() != YMAP_OK) {
    YMAP_TRACE(call, "Failed to bind to SysDB: =%s", cerr_strerror(bound.result()));
    return YMAP_OK;
  }
  DecodedRecord<ipv4_if_detail> detail(ipv4_if_detail_bag);
  if (!read_interface_detail(call, name, detail)) {
    return YMAP_OK;
  }
  const cerrno result = add_twins(call, kDhcpClient, "true");
  const bool leased = wants_state(call.ctx) && detail->PrefixLength != 0;
  return result == YMAP_OK && leased ? add_lease(call, *detail) : result;
}
