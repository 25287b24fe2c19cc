#include "device/native_nodes.h"

#include <algorithm>

namespace ocifip {

bool is_native_node(const DocumentNode& node, std::string_view module, std::string_view tag) {
  return node.tag == tag && (node.module.empty() ? node.module_namespace : node.module) == module;
}

const DocumentNode* find_native(const std::vector<DocumentNode>& nodes, std::string_view module,
                                std::string_view tag) {
  const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const DocumentNode& node) {
    return is_native_node(node, module, tag);
  });
  return found == nodes.end() ? nullptr : &*found;
}

const DocumentNode* find_native_below(const DocumentNode& node, std::string_view module,
                                      std::initializer_list<std::string_view> path) {
  const DocumentNode* found = &node;
  for (const std::string_view tag : path) {
    found = found == nullptr ? nullptr : find_native(found->children, module, tag);
  }
  return found;
}

void each_native(const std::vector<DocumentNode>& nodes, std::string_view module,
                 std::initializer_list<std::string_view> path, const NativeVisitor& visit) {
  const auto step = [&](const auto& self, const std::vector<DocumentNode>& level,
                        const std::string_view* tag) -> void {
    for (const DocumentNode& node : level) {
      if (!is_native_node(node, module, *tag)) continue;
      if (tag + 1 == path.end()) {
        visit(node);
      } else {
        self(self, node.children, tag + 1);
      }
    }
  };
  step(step, nodes, path.begin());
}

bool is_native_interface(const DocumentNode& node) {
  return is_native_node(node, "Halvane-Ombrix-ifmgr-cfg", "interface-configuration");
}

std::string native_leaf(const DocumentNode& node, std::string_view module, std::string_view tag) {
  const DocumentNode* found = find_native(node.children, module, tag);
  return found == nullptr || !found->value ? "" : *found->value;
}

}  // namespace ocifip
