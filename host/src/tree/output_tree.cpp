#include "tree/output_tree.h"

#include <algorithm>
#include <vector>

#include "tree/operations.h"

namespace ocifip {
namespace {

// A list of at most this many entries is searched one by one.
constexpr std::size_t kShortList = 8;

std::uint8_t contract_kind(const Place& place) { return static_cast<std::uint8_t>(place.kind); }

bool is_complete(KeyValues values) {
  return std::all_of(values.begin(), values.end(),
                     [](std::string_view value) { return value.data() != nullptr; });
}

bool is_complete(const OutputNode* entry) {
  const auto& keys = entry->place->keys;
  return !keys.empty() && std::all_of(keys.begin(), keys.end(), [&](const Place* key) {
    return OutputTree::key_value(entry, key).data() != nullptr;
  });
}

std::vector<std::string_view> key_values(const OutputNode* entry) {
  std::vector<std::string_view> values;
  for (const Place* key : entry->place->keys) {
    values.push_back(OutputTree::key_value(entry, key));
  }
  return values;
}

std::size_t ordinal_of(const Place* list, const Place* key) {
  return static_cast<std::size_t>(std::find(list->keys.begin(), list->keys.end(), key) -
                                  list->keys.begin());
}

// Hash of the keys that are given of a list; one without data may have any value.
std::size_t hash_keys(const Place* list, KeyValues values) {
  std::size_t hash = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    hash *= 0x9e3779b97f4a7c15u;
    if (values[i].data() != nullptr) {
      hash += list->keys[i]->hash_value(values[i]) | 1u;
    }
  }
  return hash ^ (hash >> 32);
}

bool matches(const OutputNode* entry, KeyValues wanted) {
  const auto& keys = entry->place->keys;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (wanted[i].data() == nullptr) {
      continue;
    }
    const std::string_view value = OutputTree::key_value(entry, keys[i]);
    if (value.data() == nullptr || !keys[i]->is_same_value(value, wanted[i])) {
      return false;
    }
  }
  return true;
}

template <class Visit>
void for_each_entry(ChildSlot* slot, const Visit& visit) {
  for (OutputNode* entry = slot->first; entry != nullptr; entry = entry->next) {
    if (entry->joined == nullptr) {
      visit(entry);
    }
  }
}

// Whether one of two siblings in the same slot stands before the other.
bool stands_before(const OutputNode* node, const OutputNode* other) {
  while (node != nullptr && node != other) {
    node = node->next;
  }
  return node == other;
}

}  // namespace

OutputTree::OutputTree(Arena& arena, const Place* root)
    : arena_(arena), root_(arena.make<OutputNode>()) {
  root_->place = root;
  root_->head.tag = "";
  root_->head.module_namespace = "";
  root_->head.kind = NIDL_YFW_KIND_CONTAINER;
  root_->is_shown = true;
}

OutputNode* OutputTree::resolved(OutputNode* node) {
  while (node != nullptr && node->joined != nullptr) {
    node = node->joined;
  }
  return node;
}

const OutputNode* OutputTree::resolved(const OutputNode* node) {
  return resolved(const_cast<OutputNode*>(node));
}

OutputNode* OutputTree::node_of(nidl_yfw_datatree* head) {
  return resolved(reinterpret_cast<OutputNode*>(head));
}

ChildSlot* OutputTree::find_slot(const OutputNode* parent, const Place* place) {
  ChildSlot* slot = parent == nullptr ? nullptr : parent->slots;
  while (slot != nullptr && slot->place != place) {
    slot = slot->next;
  }
  return slot;
}

ChildSlot* OutputTree::slot(OutputNode* parent, const Place* place) {
  ChildSlot** link = &parent->slots;
  while (*link != nullptr && (*link)->place != place) {
    link = &(*link)->next;
  }
  if (*link == nullptr) {
    *link = arena_.make<ChildSlot>();
    (*link)->place = place;
  }
  return *link;
}

ListedNodes& OutputTree::listed(ChildSlot* slot) {
  if (slot->listed == nullptr) {
    slot->listed = arena_.make<ListedNodes>();
    slot->listed->last = slot->first;
    slot->listed->count = std::size_t{slot->first != nullptr};
  }
  return *slot->listed;
}

OutputNode* OutputTree::append(ChildSlot* slot, OutputNode* parent) {
  OutputNode* node = arena_.make<OutputNode>();
  node->place = slot->place;
  node->parent = parent;
  node->head.tag = slot->place->tag.c_str();
  node->head.module_namespace = slot->place->module_namespace.c_str();
  node->head.kind = contract_kind(*slot->place);
  if (slot->first == nullptr && slot->listed == nullptr) {
    slot->first = node;
  } else {
    ListedNodes& nodes = listed(slot);
    (nodes.last == nullptr ? slot->first : nodes.last->next) = node;
    nodes.last = node;
    ++nodes.count;
  }
  // A node that no model knows was taken for a leaf until it had a child.
  parent->head.kind = contract_kind(*parent->place);
  return node;
}

OutputNode* OutputTree::find_child(const OutputNode* parent, const Place* place) {
  const ChildSlot* slot = find_slot(parent, place);
  return slot == nullptr ? nullptr : slot->first;
}

OutputNode* OutputTree::child(OutputNode* parent, const Place* place) {
  ChildSlot* children = slot(parent, place);
  return children->first != nullptr ? children->first : append(children, parent);
}

OutputNode* OutputTree::leaf_list_node(OutputNode* parent, const Place* place, const char* value) {
  ChildSlot* nodes = slot(parent, place);
  for (OutputNode* node = nodes->first; node != nullptr; node = node->next) {
    const bool same = value == nullptr || node->head.value == nullptr
                          ? value == node->head.value
                          : place->is_same_value(value, node->head.value);
    if (same) {
      return node;
    }
  }
  return append(nodes, parent);
}

void OutputTree::set_value(OutputNode* node, std::string_view value) {
  if (node->head.value == nullptr || !node->place->is_same_value(node->head.value, value)) {
    node->head.value = arena_.copy(value);
  }
  node->head.flags |= NIDL_YFW_FLAG_HAS_VALUE;
}

bool OutputTree::is_shown(const OutputNode* node) {
  return node->joined == nullptr &&
         (node->is_shown || (node->place->is_key && node->head.value != nullptr));
}

void OutputTree::show(OutputNode* node) {
  for (; node != nullptr && !node->is_shown; node = node->parent) {
    node->is_shown = true;
  }
}

// --- lists ---------------------------------------------------------------------------------------

OutputNode* OutputTree::current_entry(const OutputNode* parent, const Place* list) {
  const ChildSlot* entries = find_slot(parent, list);
  return entries == nullptr || entries->listed == nullptr ? nullptr
                                                          : resolved(entries->listed->current);
}

void OutputTree::make_current(OutputNode* entry) {
  set_current(find_slot(entry->parent, entry->place), entry);
}

void OutputTree::set_current(ChildSlot* slot, OutputNode* entry) {
  OutputNode*& current = listed(slot).current;
  if (current == nullptr) {
    current_slots_.push_back(slot);
  }
  current = entry;
}

void OutputTree::forget_current_entries() {
  for (ChildSlot* slot : current_slots_) {
    slot->listed->current = nullptr;
  }
  current_slots_.clear();
}

// The index of a list by the keys that are given; null when it has none.
const KeyIndex* OutputTree::index_for(const ChildSlot* slot, KeyValues wanted) {
  const ListedNodes* entries = slot->listed;
  if (entries == nullptr || entries->index == nullptr) {
    return nullptr;
  }
  return is_complete(wanted) ? entries->index : entries->index_of_single_keys;
}

OutputNode* OutputTree::find(const ChildSlot* slot, KeyValues wanted, const OutputNode* but) {
  if (slot == nullptr) {
    return nullptr;
  }
  const auto is_wanted = [&](const OutputNode* entry) {
    return entry != but && entry->joined == nullptr && matches(entry, wanted);
  };
  if (const KeyIndex* index = index_for(slot, wanted)) {
    return index->find(hash_keys(slot->place, wanted), is_wanted);
  }
  OutputNode* entry = slot->first;
  while (entry != nullptr && !is_wanted(entry)) {
    entry = entry->next;
  }
  return entry;
}

OutputNode* OutputTree::find_entry(const OutputNode* parent, const Place* list, KeyValues values) {
  return find(find_slot(parent, list), values);
}

OutputNode* OutputTree::find_entry_by_key(const OutputNode* parent, const Place* list,
                                          const Place* key, std::string_view value) {
  const std::size_t ordinal = ordinal_of(list, key);
  ChildSlot* slot = find_slot(parent, list);
  if (ordinal == list->keys.size() || slot == nullptr) {
    return nullptr;
  }
  ListedNodes& entries = listed(slot);
  if (entries.index != nullptr && entries.index_of_single_keys == nullptr &&
      list->keys.size() > 1) {
    entries.index_of_single_keys = arena_.make<KeyIndex>();
    for_each_entry(slot, [&](OutputNode* entry) { index_single_keys(slot, entry); });
  }
  std::vector<std::string_view> wanted(list->keys.size());
  wanted[ordinal] = value;
  return find(slot, wanted);
}

OutputNode* OutputTree::entry(OutputNode* parent, const Place* list, KeyValues values) {
  OutputNode* entry = find_entry(parent, list, values);
  if (entry == nullptr) {
    entry = append_entry(parent, list);
    for (std::size_t i = 0; i < values.size(); ++i) {
      give_key(entry, list->keys[i], values[i]);
    }
    index_keys(find_slot(parent, list), entry);
  }
  return entry;
}

OutputNode* OutputTree::add_entry(OutputNode* parent, const Place* list) {
  OutputNode* entry = append_entry(parent, list);
  make_current(entry);
  return entry;
}

OutputNode* OutputTree::append_entry(OutputNode* parent, const Place* list) {
  ChildSlot* entries = slot(parent, list);
  OutputNode* entry = append(entries, parent);
  const bool is_long = entries->count() > kShortList && entries->listed->index == nullptr;
  if (is_long && !list->keys.empty()) {
    index_all(entries);
  }
  return entry;
}

std::string_view OutputTree::key_value(const OutputNode* entry, const Place* key) {
  const OutputNode* leaf = find_child(entry, key);
  return leaf == nullptr || leaf->head.value == nullptr ? std::string_view() : leaf->head.value;
}

bool OutputTree::has_any_key(const OutputNode* entry) {
  const auto& keys = entry->place->keys;
  return std::any_of(keys.begin(), keys.end(),
                     [&](const Place* key) { return key_value(entry, key).data() != nullptr; });
}

void OutputTree::give_key(OutputNode* entry, const Place* key, std::string_view value) {
  OutputNode* leaf = child(entry, key);
  leaf->head.flags |= NIDL_YFW_FLAG_KEY;
  set_value(leaf, value);
}

OutputNode* OutputTree::name_entry(OutputNode* entry, const Place* key, std::string_view value) {
  const std::string_view known = key_value(entry, key);
  if (known.data() == nullptr) {
    give_key(entry, key, value);
    entry = complete_entry(entry);
  } else if (!key->is_same_value(known, value)) {
    entry = sibling_with(entry, key, value);
  }
  make_current(entry);
  return entry;
}

// An entry that has just taken a key: of it and another one with the same keys, the older one takes
// the other in. That may be the entry itself, if it has waited for its key.
OutputNode* OutputTree::complete_entry(OutputNode* entry) {
  ChildSlot* entries = find_slot(entry->parent, entry->place);
  OutputNode* same = is_complete(entry) ? find(entries, key_values(entry), entry) : nullptr;
  if (same != nullptr && !stands_before(entry, same)) {
    absorb(same, entry);
    return same;
  }
  if (same != nullptr) {
    absorb(entry, same);
  }
  index_keys(entries, entry);
  return entry;
}

// The sibling that differs in one key. A new one takes over the keys before that one; those after
// it are still to be written.
OutputNode* OutputTree::sibling_with(const OutputNode* entry, const Place* key,
                                     std::string_view value) {
  const Place* list = entry->place;
  const std::size_t ordinal = ordinal_of(list, key);
  std::vector<std::string_view> values = key_values(entry);
  values[ordinal] = value;
  if (is_complete(entry)) {
    if (OutputNode* sibling = find_entry(entry->parent, list, values)) {
      return sibling;
    }
  }
  OutputNode* sibling = add_entry(entry->parent, list);
  for (std::size_t i = 0; i <= ordinal; ++i) {
    if (values[i].data() != nullptr) {
      give_key(sibling, list->keys[i], values[i]);
    }
  }
  return complete_entry(sibling);
}

void OutputTree::set_interface(OutputNode* entry, std::string_view interface) {
  entry->interface = arena_.copy(interface);
  interface_entries_.push_back(entry);
}

void OutputTree::complete_keys() {
  for (OutputNode* made : interface_entries_) {
    OutputNode* entry = resolved(made);
    const Place* key = entry->place->interface_key;
    if (key_value(entry, key).data() == nullptr) {
      give_key(entry, key, made->interface);
      complete_entry(entry);
    }
  }
  interface_entries_.clear();
}

void OutputTree::index_all(ChildSlot* slot) {
  listed(slot).index = arena_.make<KeyIndex>();
  for_each_entry(slot, [&](OutputNode* entry) { index_keys(slot, entry); });
}

void OutputTree::index_keys(ChildSlot* slot, OutputNode* entry) {
  const ListedNodes* entries = slot->listed;
  if (entries == nullptr || entries->index == nullptr) {
    return;
  }
  if (is_complete(entry)) {
    entries->index->insert(arena_, hash_keys(slot->place, key_values(entry)), entry);
  }
  if (entries->index_of_single_keys != nullptr) {
    index_single_keys(slot, entry);
  }
}

// Enters an entry under each of its keys that no other entry has.
void OutputTree::index_single_keys(ChildSlot* slot, OutputNode* entry) {
  const std::vector<std::string_view> values = key_values(entry);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::vector<std::string_view> single(values.size());
    single[i] = values[i];
    if (values[i].data() != nullptr && find(slot, single) == nullptr) {
      slot->listed->index_of_single_keys->insert(arena_, hash_keys(slot->place, single), entry);
    }
  }
}

// --- joining -------------------------------------------------------------------------------------

// Takes an entry's content over into an older one. Its nodes stay where they are, since a mapping
// may hold them, and lead to the older one's.
void OutputTree::absorb(OutputNode* target, OutputNode* source) {
  source->joined = target;
  if (source->head.value != nullptr) {
    set_value(target, source->head.value);
  }
  if (source->is_shown) {
    show(target);
  }
  // The input node of the newer deletion is the one that may still be being walked.
  if (source->cause != nullptr) {
    target->cause = source->cause;
    target->may_be_missing = source->may_be_missing;
  }
  combine_operation(target, operation_of(*source));
  for (ChildSlot* slot = source->slots; slot != nullptr; slot = slot->next) {
    for (OutputNode* child = slot->first; child != nullptr; child = child->next) {
      if (child->joined == nullptr) {
        absorb(counterpart(target, child), child);
      }
    }
  }
}

OutputNode* OutputTree::counterpart(OutputNode* target, const OutputNode* child) {
  switch (child->place->kind) {
    case NodeKind::kLeafList:
      return leaf_list_node(target, child->place, child->head.value);
    case NodeKind::kList:
      return list_counterpart(target, child);
    default:
      return this->child(target, child->place);
  }
}

// It becomes current: what follows for the child is written to it.
OutputNode* OutputTree::list_counterpart(OutputNode* target, const OutputNode* child) {
  if (!is_complete(child)) {
    return add_entry(target, child->place);
  }
  OutputNode* counterpart = entry(target, child->place, key_values(child));
  make_current(counterpart);
  return counterpart;
}

}  // namespace ocifip
