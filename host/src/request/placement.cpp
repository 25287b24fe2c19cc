#include "request/placement.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "result_codes.h"
#include "tree/operations.h"

namespace ocifip {
namespace {

constexpr std::string_view kActive = "act";
constexpr std::string_view kInterfaceName = "interface-name";

// What follows a prefix in a path that begins with its steps.
std::optional<std::string_view> rest_below(std::string_view prefix, std::string_view path) {
  if (!path.starts_with(prefix)) {
    return std::nullopt;
  }
  path.remove_prefix(prefix.size());
  return path.empty() || path.front() == '/' ? std::optional(path) : std::nullopt;
}

bool is_proper_prefix(const Place& place, std::string_view path) {
  const auto rest = rest_below(place.path, path);
  return place.parent != nullptr && rest && !rest->empty();
}

// A node or its nearest ancestor that is accepted, or null.
template <class Accepted>
OutputNode* nearest(OutputNode* node, const Accepted& accepted) {
  while (node != nullptr && !accepted(*node->place)) {
    node = node->parent;
  }
  return node;
}

// Keys of a list taken from an entry that is being walked and has the same tag and key names.
std::optional<std::vector<std::string_view>> same_keys(const InputNode& entry, const Place& list) {
  if (entry.tag == nullptr || entry.tag != list.tag) {
    return std::nullopt;
  }
  std::vector<std::string_view> values;
  for (const Place* key : list.keys) {
    const InputNode* leaf = find_child(entry, key->tag);
    if (leaf == nullptr || leaf->value == nullptr) {
      return std::nullopt;
    }
    values.emplace_back(leaf->value);
  }
  return values;
}

std::optional<std::vector<std::string_view>> keys_of_walked_entry(const Hierarchy& hierarchy,
                                                                  const Place& list) {
  const auto entries = hierarchy.entries();
  for (auto entry = entries.rbegin(); !list.keys.empty() && entry != entries.rend(); ++entry) {
    if (auto values = same_keys(**entry, list)) {
      return values;
    }
  }
  return std::nullopt;
}

// The subinterface's index in a native interface name: what follows the first dot, up to a blank;
// "0" without one. Mappings split names alike, with the pattern "%[^.].%s".
std::string_view index_in(std::string_view name) {
  constexpr std::string_view kBlanks = " \t\r\n\v\f";
  const std::size_t dot = name.find('.');
  if (dot == 0 || dot == std::string_view::npos) {
    return "0";
  }
  std::string_view index = name.substr(dot + 1);
  index.remove_prefix(std::min(index.find_first_not_of(kBlanks), index.size()));
  index = index.substr(0, index.find_first_of(kBlanks));
  return index.empty() ? "0" : index;
}

// The key that the native interface being walked gives to an OpenConfig list: what stands before
// the first dot of its name names the interface.
std::optional<std::string_view> key_from_native_name(const Hierarchy& hierarchy, PlaceRole role) {
  const bool is_open_config =
      role == PlaceRole::kOpenConfigInterface || role == PlaceRole::kOpenConfigSubinterface;
  const InputNode* entry =
      is_open_config ? hierarchy.innermost_entry_with(kInterfaceName) : nullptr;
  if (entry == nullptr) {
    return std::nullopt;
  }
  const std::string_view name = find_child(*entry, kInterfaceName)->value;
  return role == PlaceRole::kOpenConfigInterface ? name.substr(0, name.find('.')) : index_in(name);
}

// Whether an entry has a value for its list's first key, or none yet. What a native interface that
// was walked before has made current has another.
bool may_have_key(const OutputNode* entry, std::string_view value) {
  const std::string_view known = OutputTree::key_value(entry, entry->place->keys.front());
  return known.data() == nullptr || known == value;
}

// The key that the last of the steps from a list on repeats, or null: a leaf of its name in the
// entry's "config" or "state", to which OpenConfig keys refer.
const Place* named_key(Steps steps) {
  if (steps.size() != 3 || (steps[1]->tag != "config" && steps[1]->tag != "state")) {
    return nullptr;
  }
  const auto& keys = steps[0]->keys;
  const auto found = std::find_if(keys.begin(), keys.end(),
                                  [&](const Place* key) { return key->tag == steps[2]->tag; });
  return found == keys.end() ? nullptr : *found;
}

std::uint8_t operation_of_source(const InputNode* source) {
  return source == nullptr ? std::uint8_t{NIDL_YFW_EDIT_WRITE} : source->edit_operation;
}

// Whether a node is a container of an OpenConfig interface that nobody has named: one that was
// written under the current entries when there were none. It says nothing by itself.
bool is_of_no_interface(const OutputNode* node) {
  if (node->place->kind != NodeKind::kContainer) {
    return false;
  }
  while (node != nullptr && node->place->role != PlaceRole::kOpenConfigInterface) {
    node = node->parent;
  }
  return node != nullptr && !OutputTree::has_any_key(node);
}

std::vector<std::string_view> native_interface_keys(const Place& list, std::string_view name) {
  std::vector<std::string_view> values;
  for (const Place* key : list.keys) {
    values.push_back(key->tag == kInterfaceName ? name : kActive);
  }
  return values;
}

}  // namespace

cerrno Placement::write(const PathWrite& write, OutputNode** created) {
  const std::optional<Start> start = find_start(write);
  if (!start) {
    return split_path(write.path).empty() ? kPathMalformed : kPathUnwritable;
  }
  OutputNode* node = start->node;
  for (std::size_t i = 0; i < start->steps.size(); ++i) {
    const Place* step = start->steps[i];
    node = i + 1 < start->steps.size() ? through(node, step) : arrive(node, step, write);
    const Place* key = named_key(start->steps.subspan(i));
    if (key != nullptr && write.value != nullptr) {
      node = tree_.name_entry(node, key, write.value);
    }
    keep_interface(node->place->is_key ? node->parent : node);
    if (step->role == PlaceRole::kNativeInterface && i + 1 < start->steps.size()) {
      i += follow(&node, start->steps.subspan(i + 1));
    }
  }
  put(node, write.value, write.source);
  *created = node;
  return kOk;
}

// What is part of a deletion stays where it is, for what the mapping may write below it, and is not
// shown. A key has named its entry by then.
void Placement::put(OutputNode* node, const char* value, const InputNode* source) {
  if (is_part_of_deletion(node, source)) {
    return;
  }
  set_value(node, value);
  const std::uint8_t operation = operation_of_source(source);
  if (is_deleting(operation) && !request_.hierarchy().is_walked(node->cause)) {
    node->cause = source;
    node->may_be_missing = source != nullptr && is_mappings_own(*source);
  }
  apply_operation(node, operation,
                  request_.is_edit() ? BelowDeleted::kReplaces : BelowDeleted::kDescribes);
  if (!is_of_no_interface(node)) {
    OutputTree::show(node);
  }
  request_.note_written(node->place, value);
}

// Whether the deletion that a mapping makes of a leaf is its own doing: the client writes the leaf,
// or removes it if it is there.
bool Placement::is_mappings_own(const InputNode& source) const {
  return (source.flags & NIDL_YFW_FLAG_OPERATION_OVERRIDE) != 0 &&
         source.kind >= NIDL_YFW_KIND_LEAF && !request_.input().deletes(source);
}

// Whether a write only tells more of a deletion: the input node that asked for it, of the node
// itself or of one above, is being walked. That node's own operation, rewritten, means what it
// says.
bool Placement::is_part_of_deletion(const OutputNode* node, const InputNode* source) const {
  if (!request_.is_edit() || !is_writing(operation_of_source(source))) {
    return false;
  }
  for (; node != nullptr; node = node->parent) {
    if (is_deleting(node->head.edit_operation) && is_deleting(operation_of(*node)) &&
        node->cause != source && request_.hierarchy().is_walked(node->cause)) {
      return true;
    }
  }
  return false;
}

// A query that asked for a leaf whatever it holds, or for another value, goes on asking for any.
void Placement::set_value(OutputNode* node, const char* value) {
  const bool was_asked_for = request_.is_query() && std::exchange(node->is_asked_for, true);
  if (value == nullptr) {
    return;
  }
  const char* known = node->head.value;
  if (was_asked_for && (known == nullptr || !node->place->is_same_value(known, value))) {
    node->head.value = nullptr;
  } else {
    tree_.set_value(node, value);
  }
}

std::optional<Start> Placement::start_at(OutputNode* base, std::string_view path,
                                         std::string_view module_namespace) {
  const std::string_view rest = rest_below(base->place->path, path).value_or(path);
  if (rest.empty()) {
    return base == tree_.root() ? std::nullopt : std::optional(Start{base, {}});
  }
  const Steps steps = paths_.resolve(base->place, rest, module_namespace);
  return steps.empty() ? std::nullopt : std::optional(Start{base, steps});
}

std::optional<Start> Placement::find_start(const PathWrite& write) {
  const std::string& prefix = request_.trim_prefix();
  OutputNode* node = nullptr;
  if (!prefix.empty() && rest_below(prefix, write.path)) {
    node = under_trim_prefix(write);
  } else {
    node = under_current_entry(write);
  }
  return start_at(node == nullptr ? write.base : node, write.path, write.module_namespace);
}

// With a trim prefix: the slot's entry, or its nearest ancestor, that stands where the prefix ends.
OutputNode* Placement::under_trim_prefix(const PathWrite& write) const {
  if ((write.flags & YFW_MAP_PATH_CURRENT) == 0) {
    return nullptr;
  }
  return nearest(OutputTree::node_of(request_.state().current_list_node),
                 [&](const Place& place) { return place.path == request_.trim_prefix(); });
}

// Without one: the slot's entry, or its nearest ancestor, that the path leads on from.
OutputNode* Placement::under_current_entry(const PathWrite& write) const {
  if ((write.flags & YFW_MAP_PATH_CURRENT) == 0) {
    return nullptr;
  }
  return nearest(OutputTree::node_of(request_.state().current_list_node),
                 [&](const Place& place) { return is_proper_prefix(place, write.path); });
}

OutputNode* Placement::arrive(OutputNode* parent, const Place* step, const PathWrite& write) {
  if (step->is_list()) {
    return write.create ? new_entry(parent, step) : through(parent, step);
  }
  if (step->is_key && parent->place->is_list() && write.value != nullptr) {
    OutputNode* entry =
        stands_for_all(parent, step) ? tree_.sibling_with(parent, step, write.value) : parent;
    return tree_.child(tree_.name_entry(entry, step, write.value), step);
  }
  if (step->kind == NodeKind::kLeafList) {
    return tree_.leaf_list_node(parent, step, write.value);
  }
  return tree_.child(parent, step);
}

// Whether a query asks for all entries of a list by one whose key it gave no value.
bool Placement::stands_for_all(const OutputNode* entry, const Place* key) const {
  const OutputNode* leaf = OutputTree::find_child(entry, key);
  return request_.is_query() && leaf != nullptr && leaf->head.value == nullptr;
}

// The request may permit that an entry which still waits for its keys is taken for the new one. A
// query that asks for all entries need not ask again.
OutputNode* Placement::new_entry(OutputNode* parent, const Place* list) {
  if (list->role == PlaceRole::kNativeInterface) {
    return through(parent, list);
  }
  OutputNode* current = OutputTree::current_entry(parent, list);
  if (current == nullptr || OutputTree::has_any_key(current)) {
    return tree_.add_entry(parent, list);
  }
  const bool asks_for_all =
      std::any_of(list->keys.begin(), list->keys.end(),
                  [&](const Place* key) { return stands_for_all(current, key); });
  return request_.state().list_entry_reuse != 0 || asks_for_all ? current
                                                                : tree_.add_entry(parent, list);
}

OutputNode* Placement::through(OutputNode* parent, const Place* step) {
  return step->is_list() ? entry_on_the_way(parent, step, true) : tree_.child(parent, step);
}

OutputNode* Placement::existing(OutputNode* parent, const Place* step) {
  if (parent == nullptr) {
    return nullptr;
  }
  return step->is_list() ? entry_on_the_way(parent, step, false)
                         : OutputTree::find_child(parent, step);
}

// A native interface is the one of the subinterface being mapped, whatever was current before: a
// request has several.
OutputNode* Placement::entry_on_the_way(OutputNode* parent, const Place* list, bool make) {
  if (list->role == PlaceRole::kNativeInterface && request_.state().current_ifname[0] != '\0') {
    return native_interface(parent, list, make);
  }
  if (const auto values = keys_of_walked_entry(request_.hierarchy(), *list)) {
    return named_entry(parent, list, *values, make);
  }
  OutputNode* current = OutputTree::current_entry(parent, list);
  const auto value = key_from_native_name(request_.hierarchy(), list->role);
  if (current != nullptr && !is_of_another_interface(current) &&
      (!value || may_have_key(current, *value))) {
    return current;
  }
  if (value) {
    return named_entry(parent, list, {&*value, 1}, make);
  }
  return make ? tree_.add_entry(parent, list) : nullptr;
}

void Placement::keep_interface(OutputNode* entry) {
  const bool is_needed = entry->place->interface_key != nullptr && entry->interface == nullptr;
  if (is_needed && request_.state().current_ifname[0] != '\0') {
    tree_.set_interface(entry, request_.native_interface_name());
  }
}

// Goes from a native interface through the containers that begin a way; returns how many. Nearly
// all writes go through those that the last one went through: they stay where they are for as long
// as the interface does.
std::size_t Placement::follow(OutputNode** node, Steps way) {
  WayBelow& last = request_.last_way();
  if (last.interface != *node) {
    last.interface = *node;
    last.nodes.clear();
  }
  std::size_t count = 0;
  for (; count + 1 < way.size() && !way[count]->is_list(); ++count) {
    if (count == last.nodes.size() || last.nodes[count]->place != way[count]) {
      last.nodes.resize(count);
      last.nodes.push_back(tree_.child(*node, way[count]));
    }
    *node = last.nodes[count];
  }
  return count;
}

// Whether an entry waits for the name of another interface than the one being mapped.
bool Placement::is_of_another_interface(const OutputNode* entry) const {
  const Place* key = entry->place->interface_key;
  return key != nullptr && entry->interface != nullptr &&
         OutputTree::key_value(entry, key).data() == nullptr &&
         entry->interface != request_.native_interface_name();
}

// Nearly all writes are to the interface that the last one was to. Entries stay where they are, and
// keep their keys.
OutputNode* Placement::native_interface(OutputNode* parent, const Place* list, bool make) {
  const yfw_map_request_state& state = request_.state();
  NativeInterface& known = request_.last_native_interface();
  if (known.entry == nullptr || known.entry->parent != parent || known.entry->place != list ||
      std::strcmp(known.name.c_str(), state.current_ifname) != 0 ||
      std::strcmp(known.index.c_str(), state.current_subif_index) != 0) {
    const std::string name = request_.native_interface_name();
    known = {state.current_ifname, state.current_subif_index,
             named_entry(parent, list, native_interface_keys(*list, name), make)};
  }
  return OutputTree::resolved(known.entry);
}

OutputNode* Placement::named_entry(OutputNode* parent, const Place* list, KeyValues values,
                                   bool make) {
  return make ? tree_.entry(parent, list, values) : OutputTree::find_entry(parent, list, values);
}

}  // namespace ocifip
