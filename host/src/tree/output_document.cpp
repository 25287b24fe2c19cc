#include "tree/output_document.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "io/document_nodes.h"
#include "tree/operations.h"

namespace ocifip {
namespace {

std::vector<const ChildSlot*> slots_in_order(const OutputNode& node) {
  std::vector<const ChildSlot*> slots;
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    slots.push_back(slot);
  }
  const auto stands_before = [](const ChildSlot* first, const ChildSlot* second) {
    return first->place->order < second->place->order;
  };
  // A sort takes memory, and mappings nearly always write in schema order.
  if (!std::is_sorted(slots.begin(), slots.end(), stands_before)) {
    std::stable_sort(slots.begin(), slots.end(), stands_before);
  }
  return slots;
}

std::vector<DocumentNode> children_of(const OutputNode& node);

DocumentNode node_at(const Place& place) {
  if (place.schema != nullptr) {
    return node_of(place.schema);
  }
  DocumentNode document;
  document.tag = place.tag;
  document.module = place.module;
  document.module_namespace = place.module_namespace;
  return document;
}

DocumentNode to_document(const OutputNode& node) {
  const Place& place = *node.place;
  DocumentNode document = node_at(place);
  document.kind = place.kind;
  if (node.head.value != nullptr) {
    document.value = node.head.value;
  }
  const std::uint8_t operation = operation_of(node);
  if (operation != NIDL_YFW_EDIT_WRITE && !place.is_key) {
    document.operation = static_cast<Operation>(operation);
  }
  document.cause = node.cause;
  document.may_be_missing = node.may_be_missing;
  document.children = children_of(node);
  return document;
}

// Recursion is as deep as the longest path that was written.
std::vector<DocumentNode> children_of(const OutputNode& node) {
  const auto slots = slots_in_order(node);
  std::size_t count = 0;
  for (const ChildSlot* slot : slots) {
    count += slot->count;
  }
  std::vector<DocumentNode> children;
  children.reserve(count);
  for (const ChildSlot* slot : slots) {
    for (const OutputNode* child = slot->first; child != nullptr; child = child->next) {
      if (OutputTree::is_shown(child)) {
        children.push_back(to_document(*child));
      }
    }
  }
  return children;
}

}  // namespace

Document to_document(OutputTree& tree, std::string name) {
  tree.complete_keys();
  return {std::move(name), children_of(*tree.root())};
}

}  // namespace ocifip
