#include "device/native_promotion.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "device/native_nodes.h"
#include "io/document_nodes.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceModule = "Halvane-Ombrix-ifmgr-cfg";
constexpr std::string_view kModule = "Halvane-Ombrix-ipv4-io-cfg";

DocumentNode* find(DocumentNode* parent, std::string_view tag) {
  if (parent == nullptr) return nullptr;
  auto& nodes = parent->children;
  const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const DocumentNode& node) {
    return is_native_node(node, kModule, tag) && !is_deleted(node);
  });
  return found == nodes.end() ? nullptr : &*found;
}

void settle(DocumentNode& interface) {
  DocumentNode* addresses = find(find(&interface, "ipv4-network"), "addresses");
  DocumentNode* primary = find(addresses, "primary");
  const DocumentNode* own = find(primary, "address");
  DocumentNode* secondaries = find(addresses, "secondaries");
  if (own == nullptr || secondaries == nullptr) return;
  for (DocumentNode& secondary : secondaries->children) {
    // The mapping deletes the entry itself when it is the last that the edit writes.
    const DocumentNode* address = find(&secondary, "address");
    if (address == nullptr || address->value != own->value) continue;
    const DocumentNode* written = find(&secondary, "netmask");
    DocumentNode* netmask = find(primary, "netmask");
    if (written != nullptr && netmask != nullptr) netmask->value = written->value;
    std::erase_if(secondary.children, [](const DocumentNode& child) { return !is_key(child); });
    if (!is_deleted(secondary)) secondary.operation = Operation::kRemove;
  }
}

}  // namespace

void settle_promotions(Document& edit) {
  for (DocumentNode& root : edit.roots) {
    if (!is_native_node(root, kInterfaceModule, "interface-configurations")) continue;
    for (DocumentNode& interface : root.children) settle(interface);
  }
}

}  // namespace ocifip
