#include "device/native_part.h"

#include <algorithm>
#include <utility>

#include "device/native_nodes.h"
#include "io/document_nodes.h"

namespace ocifip {
namespace {

std::string interface_of(const std::string& name) { return name.substr(0, name.find('.')); }

// The key of an entry that names its interface, or null.
const DocumentNode* name_of(const DocumentNode& entry) {
  if (entry.kind != NodeKind::kList) return nullptr;
  const auto found = std::find_if(
      entry.children.begin(), entry.children.end(),
      [](const DocumentNode& leaf) { return is_key(leaf) && leaf.value && names_interface(leaf); });
  return found == entry.children.end() ? nullptr : &*found;
}

std::vector<DocumentNode> part_of(const std::vector<DocumentNode>& nodes,
                                  const InterfaceNames& interfaces) {
  std::vector<DocumentNode> part;
  for (const DocumentNode& node : nodes) {
    if (const DocumentNode* name = name_of(node)) {
      if (interfaces.contains(interface_of(*name->value))) part.push_back(node);
      continue;
    }
    DocumentNode& copy = part.emplace_back(bare(node));
    for (DocumentNode& child : part_of(node.children, interfaces)) {
      if (!is_key(child)) copy.children.push_back(std::move(child));
    }
  }
  return part;
}

}  // namespace

void add_mentioned(const std::vector<DocumentNode>& nodes, InterfaceNames& names) {
  for (const DocumentNode& node : nodes) {
    if (node.value) names.insert(interface_of(*node.value));
    add_mentioned(node.children, names);
  }
}

bool has_far_constraints(const Models& models, const Document& native) {
  return std::any_of(native.roots.begin(), native.roots.end(), [&](const DocumentNode& root) {
    return root.schema != nullptr && models.has_far_constraints(root.schema);
  });
}

Document part_of(const Document& native, const InterfaceNames& interfaces) {
  return {native.name, part_of(native.roots, interfaces)};
}

}  // namespace ocifip
