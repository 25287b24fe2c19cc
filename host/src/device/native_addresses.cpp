#include "device/native_addresses.h"

#include <optional>
#include <string_view>
#include <utility>

#include "device/native_nodes.h"
#include "inet/inet.h"
#include "io/address_text.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceModule = "Halvane-Ombrix-ifmgr-cfg";
constexpr std::string_view kIpv4Module = "Halvane-Ombrix-ipv4-io-cfg";
constexpr std::string_view kIpv6Module = "Halvane-Ombrix-ipv6-ma-cfg";

// The address of a container or entry that holds "address" and "netmask".
std::optional<DeviceAddress> read_ipv4_address(const DocumentNode& node) {
  const std::string text = native_leaf(node, kIpv4Module, "address");
  const std::string netmask = native_leaf(node, kIpv4Module, "netmask");
  DeviceAddress address;
  std::uint32_t mask = 0;
  if (ombrix_inet_aton(netmask.c_str(), &mask) == 0 ||
      ombrix_inet_pton(OMBRIX_AF_INET, text.c_str(), address.bytes.data()) != 1) {
    return std::nullopt;
  }
  address.prefix_length = ipv4_mask2prefixlen(mask);
  return address;
}

// The address of an entry that holds "address" and "prefix-length".
std::optional<DeviceAddress> read_ipv6_address(const DocumentNode& entry) {
  const std::string text = native_leaf(entry, kIpv6Module, "address") + '/' +
                           native_leaf(entry, kIpv6Module, "prefix-length");
  DeviceAddress address;
  std::string reason;
  return read_address(AddressFamily::kIpv6, text, address, reason) ? std::optional(address)
                                                                   : std::nullopt;
}

DeviceAddresses ipv4_addresses(const DocumentNode& interface) {
  DeviceAddresses addresses;
  const auto* all = find_native_below(interface, kIpv4Module, {"ipv4-network", "addresses"});
  if (all == nullptr) {
    return addresses;
  }
  if (const auto* primary = find_native(all->children, kIpv4Module, "primary")) {
    addresses.primary = read_ipv4_address(*primary);
  }
  if (const auto* secondaries = find_native(all->children, kIpv4Module, "secondaries")) {
    for (const DocumentNode& entry : secondaries->children) {
      if (const auto address = read_ipv4_address(entry)) {
        addresses.secondaries.push_back(*address);
      }
    }
  }
  return addresses;
}

DeviceAddresses ipv6_addresses(const DocumentNode& interface) {
  DeviceAddresses addresses;
  const auto* entries =
      find_native_below(interface, kIpv6Module, {"ipv6-network", "addresses", "regular-addresses"});
  if (entries == nullptr) {
    return addresses;
  }
  for (const DocumentNode& entry : entries->children) {
    const auto address = read_ipv6_address(entry);
    if (address && !addresses.primary) {
      addresses.primary = address;
    } else if (address) {
      addresses.secondaries.push_back(*address);
    }
  }
  return addresses;
}

// A list whose entries make an interface known.
struct InterfaceList {
  std::string_view module;
  std::string_view tag;
};

constexpr InterfaceList kInterfaceLists[] = {
    {kInterfaceModule, "interface-configuration"},
    {"Halvane-Ombrix-ipv4-arp-cfg", "entry"},
    {"Halvane-Ombrix-ipv6-nd-cfg", "neighbor"},
    {"Halvane-Ombrix-ipv4-vrrp-cfg", "interface"},
};

}  // namespace

std::vector<std::string> configured_interfaces(const std::vector<InterfaceEntry>& entries) {
  std::vector<std::string> names;
  for (const InterfaceList& list : kInterfaceLists) {
    for (const InterfaceEntry& entry : entries) {
      const bool is_of_list =
          Models::module(entry.list) == list.module && Models::tag(entry.list) == list.tag;
      if (is_of_list && entry.is_active && !entry.interface.empty()) {
        names.emplace_back(entry.interface);
      }
    }
  }
  return names;
}

std::vector<ConfiguredAddresses> native_addresses(const Document& native) {
  std::vector<ConfiguredAddresses> interfaces;
  const auto* top = find_native(native.roots, kInterfaceModule, "interface-configurations");
  if (top == nullptr) {
    return interfaces;
  }
  for (const DocumentNode& entry : top->children) {
    std::string name = native_leaf(entry, kInterfaceModule, "interface-name");
    if (!name.empty() && native_leaf(entry, kInterfaceModule, "active") == "act") {
      interfaces.push_back({std::move(name), ipv4_addresses(entry), ipv6_addresses(entry)});
    }
  }
  return interfaces;
}

}  // namespace ocifip
