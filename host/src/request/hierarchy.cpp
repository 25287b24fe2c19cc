#include "request/hierarchy.h"

#include <algorithm>

#include "tree/operations.h"
#include "tree/path_cache.h"
#include "yfw/mapping.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceList = "/interfaces/interface";
constexpr std::string_view kNativeInterfaceList =
    "/interface-configurations/interface-configuration";
constexpr std::string_view kSubinterfaceList = "/interfaces/interface/subinterfaces/subinterface";

bool is_entry(const InputNode& node) { return node.kind == NIDL_YFW_KIND_LIST; }

// A deleted entry that says nothing at all stands for its list: one with content lacks its keys by
// mistake.
bool deletes_whole_list(const InputNode& node) {
  return is_entry(node) && is_deleting(node.edit_operation) && children_of(node).empty();
}

bool has_tag(const InputNode& node, std::string_view tag) {
  return node.tag != nullptr && node.tag == tag;
}

// Stores an entry's key in a text of the request state; without an entry or key the text is empty.
void store_key(const InputNode* entry, std::string_view key, std::span<char> text) {
  const InputNode* leaf = entry == nullptr ? nullptr : find_child(*entry, key);
  const std::string_view value = leaf == nullptr || leaf->value == nullptr ? "" : leaf->value;
  const std::size_t length = value.copy(text.data(), text.size() - 1);
  text[length] = '\0';
}

}  // namespace

std::span<const InputNode> children_of(const InputNode& node) {
  const bool readable = (node.flags & NIDL_YFW_FLAG_HAS_SUBTREE) != 0 && node.children != nullptr;
  return readable ? std::span<const InputNode>(node.children, node.child_count)
                  : std::span<const InputNode>();
}

const InputNode* find_child(const InputNode& node, std::string_view tag) {
  const auto children = children_of(node);
  const auto found = std::find_if(children.begin(), children.end(),
                                  [&](const InputNode& child) { return has_tag(child, tag); });
  return found == children.end() ? nullptr : &*found;
}

void Hierarchy::push(const InputNode& node, std::uint32_t kind) {
  nodes_.resize(depth_);
  nodes_.push_back(&node);
  ++depth_;
  const bool is_list_entry = kind == YFW_MAP_HIERARCHY_LIST_ENTRY;
  enter_list_wide(node, is_list_entry);
  if (is_list_entry) {
    entries_.push_back(&node);
  } else {
    enter_list(node);
  }
}

bool Hierarchy::pop(const InputNode& node) {
  if (depth_ == 0 || nodes_[depth_ - 1] != &node) {
    return false;
  }
  if (!entries_.empty() && entries_.back() == &node) {
    entries_.pop_back();
  }
  leave_list();
  leave_list_wide();
  leave_current_entries();
  --depth_;
  return true;
}

// Each list has its own edit operation, which begins as that of the container around it.
void Hierarchy::enter_list(const InputNode& container) {
  const auto children = children_of(container);
  if (std::any_of(children.begin(), children.end(), is_entry)) {
    list_operations_.push_back({depth_, state_.list_edit_op});
    state_.list_edit_op = container.edit_operation;
  }
}

void Hierarchy::leave_list() {
  if (!list_operations_.empty() && list_operations_.back().depth == depth_) {
    state_.list_edit_op = list_operations_.back().outer;
    list_operations_.pop_back();
  }
}

// The flag belongs to the one list: to the container that holds it, whose callback comes before the
// entries, and to the entry that stands for all of them. Entries with keys beside that one are not
// meant, nor is anything below them.
void Hierarchy::enter_list_wide(const InputNode& node, bool is_list_entry) {
  outer_list_wide_.push_back(state_.list_wide);
  const auto children = children_of(node);
  const bool is_list_wide = is_list_entry
                                ? deletes_whole_list(node)
                                : std::any_of(children.begin(), children.end(), deletes_whole_list);
  state_.list_wide = is_list_wide ? 1 : 0;
}

void Hierarchy::leave_list_wide() {
  state_.list_wide = outer_list_wide_.back();
  outer_list_wide_.pop_back();
}

bool Hierarchy::make_current(const std::string& list_path) {
  if (depth_ == 0 || list_path.empty() || entries_.empty() ||
      entries_.back() != nodes_[depth_ - 1]) {
    return false;
  }
  current_.push_back({&list_path, entries_.back(), depth_});
  name_interface(list_path);
  return true;
}

void Hierarchy::leave_current_entries() {
  while (!current_.empty() && current_.back().depth == depth_) {
    const std::string& list_path = *current_.back().list_path;
    current_.pop_back();
    name_interface(list_path);
  }
}

// The state names the interface and the subinterface of the entries that are current.
void Hierarchy::name_interface(const std::string& list_path) {
  if (list_path == kInterfaceList) {
    store_key(current_entry(list_path), "name", state_.current_ifname);
  } else if (list_path == kNativeInterfaceList) {
    store_key(current_entry(list_path), "interface-name", state_.current_ifname);
  } else if (list_path == kSubinterfaceList) {
    store_key(current_entry(list_path), "index", state_.current_subif_index);
  }
}

const InputNode* Hierarchy::find(std::string_view path) const {
  const InputNode* entry = current_entry(path);
  return entry != nullptr ? entry : walked_at(path);
}

const InputNode* Hierarchy::current_entry(std::string_view list_path) const {
  const auto found =
      std::find_if(current_.rbegin(), current_.rend(),
                   [&](const CurrentEntry& entry) { return *entry.list_path == list_path; });
  return found == current_.rend() ? nullptr : found->entry;
}

const InputNode* Hierarchy::walked_at(std::string_view path) const {
  const auto tags = split_path(path);
  if (tags.empty() || tags.size() > depth_) {
    return nullptr;
  }
  for (std::size_t i = 0; i < tags.size(); ++i) {
    if (!has_tag(*nodes_[i], tags[i])) {
      return nullptr;
    }
  }
  const InputNode* node = nodes_[tags.size() - 1];
  return is_entry(*node) ? nullptr : node;
}

bool Hierarchy::is_walked(const void* node) const {
  const auto walked = nodes();
  return std::find(walked.begin(), walked.end(), node) != walked.end();
}

const InputNode* Hierarchy::innermost_entry_with(std::string_view tag) const {
  const auto found = std::find_if(entries_.rbegin(), entries_.rend(), [&](const InputNode* entry) {
    const InputNode* leaf = find_child(*entry, tag);
    return leaf != nullptr && leaf->value != nullptr;
  });
  return found == entries_.rend() ? nullptr : *found;
}

}  // namespace ocifip
