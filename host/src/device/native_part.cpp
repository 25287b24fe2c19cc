#include "device/native_part.h"

#include <algorithm>
#include <utility>

#include "io/document_nodes.h"

namespace ocifip {
namespace {

// The name of the interface that an entry is of, or null.
const std::string* name_of(const DocumentNode& entry) {
  const std::string* key = interface_key(entry.schema);
  return key == nullptr ? nullptr : key_value(entry, *key);
}

// Adds the interfaces that a query names; false when it asks for others, too.
bool add_asked(const Models& models, const DocumentNode& query, InterfaceNames& names) {
  if (query.schema == nullptr) return false;
  if (interface_key(query.schema) != nullptr) {
    const std::string* name = name_of(query);
    if (name != nullptr) names.add(*name);
    return name != nullptr;
  }
  if (asks_for_all(query)) return !leads_to_interfaces(models, query.schema);
  return std::all_of(query.children.begin(), query.children.end(),
                     [&](const DocumentNode& child) { return add_asked(models, child, names); });
}

std::vector<DocumentNode> part_of(const std::vector<DocumentNode>& nodes,
                                  const InterfaceNames& interfaces) {
  std::vector<DocumentNode> part;
  for (const DocumentNode& node : nodes) {
    if (const std::string* name = name_of(node)) {
      if (interfaces.contains(*name)) part.push_back(node);
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

bool leads_to_interfaces(const Models& models, const lysc_node* node) {
  const auto& children = models.children(node);
  return std::any_of(children.begin(), children.end(), [&](const lysc_node* child) {
    return interface_key(child) != nullptr || leads_to_interfaces(models, child);
  });
}

void add_mentioned(const std::vector<DocumentNode>& nodes, InterfaceNames& names) {
  for (const DocumentNode& node : nodes) {
    if (node.value) names.add(*node.value);
    add_mentioned(node.children, names);
  }
}

const Document& part_asked(const Models& models, const NativeConfiguration& native,
                           const Document& queries) {
  if (native.is_read()) return native.whole();
  InterfaceNames names;
  const bool names_all =
      std::all_of(queries.roots.begin(), queries.roots.end(),
                  [&](const DocumentNode& root) { return add_asked(models, root, names); });
  return names_all ? native.part(names) : native.whole();
}

bool has_far_constraints(const Models& models, const Document& native) {
  return std::any_of(native.roots.begin(), native.roots.end(), [&](const DocumentNode& root) {
    return root.schema != nullptr && models.has_far_constraints(root.schema);
  });
}

bool has_entry_around_interfaces(const Models& models, const std::vector<DocumentNode>& nodes) {
  return std::any_of(nodes.begin(), nodes.end(), [&](const DocumentNode& node) {
    if (node.schema == nullptr || interface_key(node.schema) != nullptr) return false;
    return node.kind == NodeKind::kList ? leads_to_interfaces(models, node.schema)
                                        : has_entry_around_interfaces(models, node.children);
  });
}

Document part_of(const Document& native, const InterfaceNames& interfaces) {
  return {native.name, part_of(native.roots, interfaces)};
}

}  // namespace ocifip
