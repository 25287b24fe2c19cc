#include "device/implied_items.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <utility>

#include "device/native_nodes.h"
#include "inet/inet.h"
#include "io/address_text.h"
#include "records/value_text.h"
#include "sysdb/sysdb.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kInterfaceModule = "Halvane-Ombrix-ifmgr-cfg";
constexpr const char* kArpModule = "Halvane-Ombrix-ipv4-arp-cfg";
constexpr const char* kNeighborModule = "Halvane-Ombrix-ipv6-nd-cfg";
constexpr const char* kVrrpModule = "Halvane-Ombrix-ipv4-vrrp-cfg";

constexpr std::string_view kDetailHead = "/oper/ipv4-io/if/";
constexpr std::string_view kRouterHead = "/oper/ip-vrrp/gl/ipv4/vrouter/";
constexpr std::string_view kNeighborHead = "/ipc/gl/ipv6-nd/node/";

// The record counts a router's addresses in 8 bits.
constexpr std::size_t kMostRouterAddresses = 255;

// Type of an item that is there or not, and has no value.
constexpr std::uint32_t kPresence = 1;

DatabaseItem record_item(std::string record, const Json& fields) {
  DatabaseItem item;
  item.type = SYSDB_TYPE_RECORD;
  item.record = std::move(record);
  item.fields = fields.dump();
  return item;
}

DatabaseItem presence_item() {
  DatabaseItem item;
  item.type = kPresence;
  return item;
}

void add_proxy_arp(const DocumentNode& interface, DatabaseItems& items) {
  const DocumentNode* arp = find_native(interface.children, kArpModule, "ipv4arp");
  if (arp == nullptr || native_leaf(interface, kInterfaceModule, "active") != "act") return;
  const std::string name =
      internal_name(native_leaf(interface, kInterfaceModule, "interface-name"));
  for (const char* setting : {"proxy-arp", "local-proxy-arp"}) {
    if (find_native(arp->children, kArpModule, setting) != nullptr) {
      items.emplace("/cfg/if/act/" + name + "/ipv4/arp/" + setting, presence_item());
    }
  }
}

// The daemon knows interfaces by their internal names.
void add_arp_entry(const std::string& vrf, const DocumentNode& entry, DatabaseItems& items) {
  const std::string address = native_leaf(entry, kArpModule, "address");
  const std::string interface = internal_name(native_leaf(entry, kArpModule, "interface"));
  if (interface.empty() || !address_bytes(OMBRIX_AF_INET, address)) return;
  Json fields = {{"IPAddress", address}, {"InterfaceName", interface}};
  const std::string mac = native_leaf(entry, kArpModule, "mac-address");
  if (mac_bytes(mac)) fields["HardwareAddress"] = mac;
  items.emplace("/oper/ipv4-arp-gmp/gl/vrf/" + vrf + "/config/" + address + ',' + interface,
                record_item("arp_gmp_config_entry", fields));
}

// A configured router runs: all of its addresses are operational.
void add_virtual_router(const std::string& interface, const DocumentNode& router,
                        DatabaseItems& items) {
  const std::string number = native_leaf(router, kVrrpModule, "vr-id");
  Json addresses = Json::array();
  const auto add_address = [&](const std::string& address) {
    if (address_bytes(OMBRIX_AF_INET, address)) addresses.push_back(address);
  };
  const std::string primary = native_leaf(router, kVrrpModule, "primary-ipv4-address");
  add_address(primary);
  each_native(router.children, kVrrpModule, {"secondary-ipv4-addresses", "secondary-ipv4-address"},
              [&](const DocumentNode& entry) {
                add_address(native_leaf(entry, kVrrpModule, "ip-address"));
              });
  const unsigned long id = std::strtoul(number.c_str(), nullptr, 10);
  if (interface.empty() || id == 0 || addresses.size() > kMostRouterAddresses) return;
  Json fields = {{"Interface", interface},
                 {"InterfaceName", interface},
                 {"VirtualRouterID", id},
                 {"Version", 3},
                 {"OperationalAddressCount", addresses.size()},
                 {"OperationalAddressList", addresses}};
  if (address_bytes(OMBRIX_AF_INET, primary)) fields["PrimaryVirtualIP"] = primary;
  items.emplace(std::string(kRouterHead) + interface + ',' + number,
                record_item("vrrp_vrouter_info", fields));
}

// What stands behind the interface's name in the path of its detail record.
std::string detail_tail() {
  std::array<char, 40> tail{};
  std::snprintf(tail.data(), tail.size(), "/0x%x/1/ifdetail", rsi_c_vrf_id_dflt());
  return tail.data();
}

std::optional<DatabaseItem> interface_detail(const InterfaceRecord* interface) {
  if (interface == nullptr || !interface->ipv4.primary) return std::nullopt;
  const DeviceAddress& primary = *interface->ipv4.primary;
  Json fields = {{"PrimaryAddress", address_text(AddressFamily::kIpv4, primary)},
                 {"PrefixLength", primary.prefix_length},
                 {"VRF_ID", rsi_c_vrf_id_dflt()},
                 {"VRFName", "default"},
                 {"SecondaryAddress", Json::array()}};
  for (const DeviceAddress& secondary : interface->ipv4.secondaries) {
    fields["SecondaryAddress"].push_back(
        {{"Address", address_text(AddressFamily::kIpv4, secondary)},
         {"PrefixLength", secondary.prefix_length}});
  }
  return record_item("ipv4_if_detail", fields);
}

DatabaseItems interface_details(const DeviceDirectory& directory) {
  DatabaseItems items;
  const std::string tail = detail_tail();
  for (const InterfaceRecord& interface : directory.interfaces()) {
    if (auto detail = interface_detail(&interface)) {
      items.emplace(std::string(kDetailHead) + internal_name(interface.name) + tail,
                    std::move(*detail));
    }
  }
  return items;
}

// A neighbor's item is named by the address's bytes in hexadecimal, and has no value.
void add_neighbor(const std::string& head, const DocumentNode& entry, DatabaseItems& items) {
  const std::string interface =
      internal_name(native_leaf(entry, kNeighborModule, "interface-name"));
  const auto address =
      address_bytes(OMBRIX_AF_INET6, native_leaf(entry, kNeighborModule, "neighbor-address"));
  if (interface.empty() || !address) return;
  std::string path = head + "/neighbour-entry/" + interface + '/';
  for (const char byte : *address) {
    std::array<char, 3> digits{};
    std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned char>(byte));
    path += digits.data();
  }
  items.emplace(std::move(path), presence_item());
}

DatabaseItems neighbors(const DeviceDirectory& directory) {
  DatabaseItems items;
  if (directory.own_node() == NODEID_NONE) return items;
  std::array<char, 16> node{};
  std::snprintf(node.data(), node.size(), "%x", directory.own_node());
  const std::string head = std::string(kNeighborHead) + node.data();
  each_native(directory.device().native.whole().roots, kNeighborModule,
              {"ipv6-neighbor", "neighbors", "neighbor"},
              [&](const DocumentNode& entry) { add_neighbor(head, entry, items); });
  return items;
}

}  // namespace

DatabaseItems items_configured_by(const Document& native) {
  DatabaseItems items;
  each_native(native.roots, kInterfaceModule,
              {"interface-configurations", "interface-configuration"},
              [&](const DocumentNode& interface) { add_proxy_arp(interface, items); });
  each_native(native.roots, kArpModule, {"arpgmp", "vrf"}, [&](const DocumentNode& vrf) {
    const std::string name = native_leaf(vrf, kArpModule, "vrf-name");
    each_native(vrf.children, kArpModule, {"entries", "entry"},
                [&](const DocumentNode& entry) { add_arp_entry(name, entry, items); });
  });
  each_native(native.roots, kVrrpModule, {"vrrp", "interfaces", "interface"},
              [&](const DocumentNode& interface) {
                const std::string name =
                    internal_name(native_leaf(interface, kVrrpModule, "interface-name"));
                each_native(
                    interface.children, kVrrpModule,
                    {"ipv4", "version3", "virtual-routers", "virtual-router"},
                    [&](const DocumentNode& router) { add_virtual_router(name, router, items); });
              });
  return items;
}

std::optional<DatabaseItem> running_item(const DeviceDirectory& directory,
                                         const std::string& path) {
  const std::string tail = detail_tail();
  if (path.starts_with(kDetailHead) && path.ends_with(tail) &&
      path.size() > kDetailHead.size() + tail.size()) {
    const std::size_t length = path.size() - kDetailHead.size() - tail.size();
    const std::string name = path.substr(kDetailHead.size(), length);
    return interface_detail(directory.interface(directory.handle_of(name)));
  }
  if (path.starts_with(kNeighborHead)) {
    const DatabaseItems items = neighbors(directory);
    const auto found = items.find(path);
    if (found != items.end()) return found->second;
  }
  return std::nullopt;
}

DatabaseItems running_items(const DeviceDirectory& directory, std::string_view path) {
  DatabaseItems items;
  const auto overlaps = [path](std::string_view head) {
    return head.starts_with(path) || path.starts_with(head);
  };
  if (overlaps(kDetailHead)) {
    items = interface_details(directory);
  }
  if (overlaps(kNeighborHead)) {
    items.merge(neighbors(directory));
  }
  std::erase_if(items, [path](const auto& item) { return !item.first.starts_with(path); });
  return items;
}

}  // namespace ocifip
