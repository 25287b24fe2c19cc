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

void fill_children(std::vector<DocumentNode>& children, const OutputNode& node);

void set_place(DocumentNode& document, const Place& place) {
  if (place.schema == nullptr) {
    document.tag = place.tag;
    document.module = place.module;
    document.module_namespace = place.module_namespace;
    document.schema = nullptr;
  } else if (document.schema != place.schema) {
    auto children = std::move(document.children);
    document = node_of(place.schema);
    document.children = std::move(children);
  }
  document.kind = place.kind;
}

// Makes a node of a document, which may be another one's, into an output node's, but for its
// children.
void fill_alone(DocumentNode& document, const OutputNode& node) {
  const Place& place = *node.place;
  set_place(document, place);
  if (node.head.value != nullptr) {
    document.value = node.head.value;
  } else {
    document.value.reset();
  }
  const std::uint8_t operation = operation_of(node);
  if (operation != NIDL_YFW_EDIT_WRITE && !place.is_key) {
    document.operation = static_cast<Operation>(operation);
  } else {
    document.operation.reset();
  }
  document.cause = node.cause;
  document.may_be_missing = node.may_be_missing;
}

void fill(DocumentNode& document, const OutputNode& node) {
  fill_alone(document, node);
  fill_children(document.children, node);
}

// Appends a node of a document behind the first ones: the next that there is, or a new one.
void put(std::vector<DocumentNode>& nodes, std::size_t& count, const OutputNode& node) {
  if (count == nodes.size()) nodes.emplace_back();
  fill(nodes[count++], node);
}

// Recursion is as deep as the longest path that was written.
void fill_children(std::vector<DocumentNode>& children, const OutputNode& node) {
  std::size_t most = 0;
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    most += slot->count();
  }
  children.reserve(most);
  std::size_t count = 0;
  each_slot(node, [&](const ChildSlot& slot) {
    for (const OutputNode* child = slot.first; child != nullptr; child = child->next) {
      if (OutputTree::is_shown(child)) put(children, count, *child);
    }
  });
  children.resize(count);
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
  Document document = {std::move(name), {}};
  fill_children(document.roots, *tree.root());
  return document;
}

bool to_documents(OutputTree& tree, const std::string& name,
                  const std::function<void(Document& part)>& take) {
  tree.complete_keys();
  const ChildSlot* list = long_list(*tree.root());
  if (list == nullptr) return false;
  Document part = {name, std::vector<DocumentNode>(1)};
  fill_alone(part.roots.front(), *list->first->parent);
  auto& entries = part.roots.front().children;
  for (const OutputNode* entry = list->first; entry != nullptr;) {
    std::size_t count = 0;
    for (; entry != nullptr && count < kEntriesOfPart; entry = entry->next) {
      if (OutputTree::is_shown(entry)) put(entries, count, *entry);
    }
    entries.resize(count);
    if (count != 0) take(part);
  }
  return true;
}

}  // namespace ocifip
