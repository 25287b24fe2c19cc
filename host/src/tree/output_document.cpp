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

bool stands_before(const ChildSlot* first, const ChildSlot* second) {
  return first->place->order < second->place->order;
}

// Calls a function with the slots of a node in schema order.
template <class Visit>
void each_slot(const OutputNode& node, const Visit& visit) {
  std::vector<const ChildSlot*> slots;
  bool is_sorted = true;
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    is_sorted = is_sorted && (slot->next == nullptr || !stands_before(slot->next, slot));
  }
  // Mappings nearly always write in schema order: then nothing takes memory.
  if (is_sorted) {
    for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) visit(*slot);
    return;
  }
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    slots.push_back(slot);
  }
  std::stable_sort(slots.begin(), slots.end(), stands_before);
  for (const ChildSlot* slot : slots) visit(*slot);
}

std::vector<DocumentNode> children_of(const OutputNode& node);

// Fills a new node but for its children.
void fill_alone(DocumentNode& document, const OutputNode& node) {
  const Place& place = *node.place;
  if (place.schema != nullptr) {
    document = node_of(place.schema);
  } else {
    document.tag = place.tag;
    document.module = place.module;
    document.module_namespace = place.module_namespace;
  }
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
}

// Fills a new node: made in its place, it is not moved.
void fill(DocumentNode& document, const OutputNode& node) {
  fill_alone(document, node);
  document.children = children_of(node);
}

// Recursion is as deep as the longest path that was written.
std::vector<DocumentNode> children_of(const OutputNode& node) {
  std::size_t count = 0;
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    count += slot->count();
  }
  std::vector<DocumentNode> children;
  children.reserve(count);
  each_slot(node, [&children](const ChildSlot& slot) {
    for (const OutputNode* child = slot.first; child != nullptr; child = child->next) {
      if (OutputTree::is_shown(child)) fill(children.emplace_back(), *child);
    }
  });
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
  DocumentNode container;
  fill_alone(container, *list->first->parent);
  for (const OutputNode* entry = list->first; entry != nullptr;) {
    Document part = {name, {container}};
    auto& entries = part.roots.front().children;
    entries.reserve(kEntriesOfPart);
    for (; entry != nullptr && entries.size() < kEntriesOfPart; entry = entry->next) {
      if (OutputTree::is_shown(entry)) fill(entries.emplace_back(), *entry);
    }
    if (!entries.empty()) take(std::move(part));
  }
  return true;
}

}  // namespace ocifip
