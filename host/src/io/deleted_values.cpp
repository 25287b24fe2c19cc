#include "io/deleted_values.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <optional>
#include <string>

#include "io/document_nodes.h"
#include "io/leaf_types.h"
#include "io/models.h"

namespace ocifip {
namespace {

// A value of a leaf, found by trying: patterns and ranges cannot be read backwards.
std::optional<std::string> some_value(const lysc_node* leaf) {
  std::vector<std::string> texts = {"deleted", "0",       "1",  "16",        "256",  "1024",
                                    "65536",   "0.0.0.0", "::", "0.0.0.0/0", "::/0", "false"};
  const lysc_type* type = reinterpret_cast<const lysc_node_leaf*>(leaf)->type;
  if (type->basetype == LY_TYPE_ENUM) {
    texts.emplace_back(reinterpret_cast<const lysc_type_enum*>(type)->enums[0].name);
  }
  const auto found = std::find_if(texts.begin(), texts.end(),
                                  [leaf](const auto& text) { return takes(leaf, text); });
  return found == texts.end() ? std::nullopt : std::optional(*found);
}

bool is_without_value(const DocumentNode& node) {
  return node.kind == NodeKind::kLeaf && node.schema != nullptr && !node.value && is_deleted(node);
}

bool lacks_deleted_value(const DocumentNode& node) {
  return is_without_value(node) ||
         std::any_of(node.children.begin(), node.children.end(), lacks_deleted_value);
}

void give_value(DocumentNode& leaf, const DocumentNode* data) {
  if (Models::is_empty_leaf(leaf.schema)) return;
  leaf.value = data != nullptr && data->value ? data->value : some_value(leaf.schema);
}

}  // namespace

void DeletedValues::give(Document& edit) {
  const auto& nodes = edit.roots;
  if (std::any_of(nodes.begin(), nodes.end(), lacks_deleted_value)) {
    give(edit.roots, data_of_(edit));
  }
}

void DeletedValues::give(std::vector<DocumentNode>& edit, const std::vector<DocumentNode>& data) {
  static const std::vector<DocumentNode> kNothing;
  if (std::none_of(edit.begin(), edit.end(), lacks_deleted_value)) return;
  const Siblings& siblings = siblings_.try_emplace(&data, data).first->second;
  for (auto& node : edit) {
    const DocumentNode* there = siblings.find(node);
    if (is_without_value(node)) {
      give_value(node, there);
    } else {
      give(node.children, there == nullptr ? kNothing : there->children);
    }
  }
}

}  // namespace ocifip
