#include "device/native_addresses.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "inet/inet.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceModule = "Halvane-Ombrix-ifmgr-cfg";
constexpr std::string_view kIpv4Module = "Halvane-Ombrix-ipv4-io-cfg";

const DocumentNode* find(const std::vector<DocumentNode>& nodes, std::string_view module,
                         std::string_view tag) {
  const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const DocumentNode& node) {
    return node.tag == tag && node.module == module;
  });
  return found == nodes.end() ? nullptr : &*found;
}

const DocumentNode* find_below(const DocumentNode* node, std::string_view module,
                               std::initializer_list<std::string_view> tags) {
  for (const std::string_view tag : tags) {
    node = node == nullptr ? nullptr : find(node->children, module, tag);
  }
  return node;
}

const std::string* value_below(const DocumentNode& node, std::string_view module,
                               std::string_view tag) {
  const DocumentNode* leaf = find(node.children, module, tag);
  return leaf == nullptr || !leaf->value ? nullptr : &*leaf->value;
}

// The address of a container or entry that holds "address" and "netmask".
std::optional<DeviceAddress> read_address(const DocumentNode& node) {
  const std::string* text = value_below(node, kIpv4Module, "address");
  const std::string* netmask = value_below(node, kIpv4Module, "netmask");
  DeviceAddress address;
  std::uint32_t mask = 0;
  if (text == nullptr || netmask == nullptr || ombrix_inet_aton(netmask->c_str(), &mask) == 0 ||
      ombrix_inet_pton(OMBRIX_AF_INET, text->c_str(), address.bytes.data()) != 1) {
    return std::nullopt;
  }
  address.prefix_length = ipv4_mask2prefixlen(mask);
  return address;
}

DeviceAddresses read_addresses(const DocumentNode& entry) {
  DeviceAddresses addresses;
  const auto* primary = find_below(&entry, kIpv4Module, {"ipv4-network", "addresses", "primary"});
  const auto* secondaries =
      find_below(&entry, kIpv4Module, {"ipv4-network", "addresses", "secondaries"});
  if (primary != nullptr) {
    addresses.primary = read_address(*primary);
  }
  for (const auto& secondary :
       secondaries == nullptr ? std::vector<DocumentNode>() : secondaries->children) {
    if (const auto address = read_address(secondary)) {
      addresses.secondaries.push_back(*address);
    }
  }
  return addresses;
}

}  // namespace

std::vector<std::pair<std::string, DeviceAddresses>> native_addresses(const Document& native) {
  std::vector<std::pair<std::string, DeviceAddresses>> interfaces;
  const DocumentNode* top = find(native.roots, kInterfaceModule, "interface-configurations");
  if (top == nullptr) {
    return interfaces;
  }
  for (const DocumentNode& entry : top->children) {
    const std::string* active = value_below(entry, kInterfaceModule, "active");
    const std::string* name = value_below(entry, kInterfaceModule, "interface-name");
    if (active != nullptr && *active == "act" && name != nullptr) {
      interfaces.emplace_back(*name, read_addresses(entry));
    }
  }
  return interfaces;
}

}  // namespace ocifip
