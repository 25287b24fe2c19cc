#include "tree/output_document.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "io/document_nodes.h"
#include "tree/operations.h"

namespace ocifip {
namespace {

// Entries of a part, which is small enough to stay in the processor's cache while it is printed.
constexpr std::size_t kEntriesOfPart = 100;

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

// A node without its children.
DocumentNode bare_document(const OutputNode& node) {
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
  return document;
}

DocumentNode to_document(const OutputNode& node) {
  DocumentNode document = bare_document(node);
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

// The one node below another, or null.
const ChildSlot* only_slot(const OutputNode& node) {
  return node.slots != nullptr && node.slots->next == nullptr ? node.slots : nullptr;
}

bool has_keys(const OutputNode& entry) {
  const auto& keys = entry.place->keys;
  return !keys.empty() && std::all_of(keys.begin(), keys.end(), [&](const Place* key) {
    return OutputTree::key_value(&entry, key).data() != nullptr;
  });
}

// The list that all of a tree is, when it can be handed over in parts, or null.
const ChildSlot* long_list(const OutputNode& root) {
  const ChildSlot* top = only_slot(root);
  if (top == nullptr || top->place->kind != NodeKind::kContainer ||
      !OutputTree::is_shown(top->first) || operation_of(*top->first) != NIDL_YFW_EDIT_WRITE) {
    return nullptr;
  }
  const ChildSlot* list = only_slot(*top->first);
  if (list == nullptr || !list->place->is_list() || list->place->schema == nullptr) return nullptr;
  for (const OutputNode* entry = list->first; entry != nullptr; entry = entry->next) {
    if (!OutputTree::is_shown(entry)) continue;
    if (!has_keys(*entry) || operation_of(*entry) == NIDL_YFW_EDIT_NONE) return nullptr;
  }
  return list;
}

}  // namespace

Document to_document(OutputTree& tree, std::string name) {
  tree.complete_keys();
  return {std::move(name), children_of(*tree.root())};
}

bool to_documents(OutputTree& tree, const std::string& name,
                  const std::function<void(Document part)>& take) {
  tree.complete_keys();
  const ChildSlot* list = long_list(*tree.root());
  if (list == nullptr) return false;
  const DocumentNode container = bare_document(*list->first->parent);
  for (const OutputNode* entry = list->first; entry != nullptr;) {
    Document part = {name, {container}};
    auto& entries = part.roots.front().children;
    entries.reserve(kEntriesOfPart);
    for (; entry != nullptr && entries.size() < kEntriesOfPart; entry = entry->next) {
      if (OutputTree::is_shown(entry)) entries.push_back(to_document(*entry));
    }
    if (!entries.empty()) take(std::move(part));
  }
  return true;
}

}  // namespace ocifip
