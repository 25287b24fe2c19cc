#include "mapping/query_expansion.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "device/subinterface_name.h"
#include "io/data_path.h"
#include "io/document_nodes.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

// A node of the interfaces model, by its tag and that of its parent's.
bool is_own(const lysc_node* node, std::string_view tag) {
  return Models::module(node) == kInterfacesModule && Models::tag(node) == tag;
}

bool is_interface(const lysc_node* node) { return is_own(node, "interface"); }
bool is_subinterface(const lysc_node* node) { return is_own(node, "subinterface"); }

bool is_leaf(NodeKind kind) { return kind == NodeKind::kLeaf || kind == NodeKind::kLeafList; }

const std::string* key_value(const DocumentNode& entry) {
  const auto key = std::find_if(entry.children.begin(), entry.children.end(), is_key);
  return key == entry.children.end() || !key->value ? nullptr : &*key->value;
}

bool has_child(const DocumentNode& node, const lysc_node* schema) {
  return std::any_of(node.children.begin(), node.children.end(),
                     [&](const DocumentNode& child) { return child.schema == schema; });
}

}  // namespace

void QueryExpansion::expand(Document& document, std::vector<std::string>& notes) {
  notes_ = &notes;
  for (DocumentNode& root : document.roots) {
    expand_node(root);
  }
}

void QueryExpansion::expand_node(DocumentNode& node) {
  if (node.schema == nullptr || is_leaf(node.kind) || is_left_alone(node)) {
    return;
  }
  schema_path_.push_back(node.schema);
  nodes_.push_back(&node);
  if (asks_for_all(node)) {
    add_below(node);
  } else {
    multiply_entries(node);
    expand_children(node);
  }
  nodes_.pop_back();
  schema_path_.pop_back();
}

// What belongs to the interface or subinterface itself is passed on as it is.
bool QueryExpansion::is_left_alone(const DocumentNode& node) const {
  if (schema_path_.empty()) {
    return !is_own(node.schema, "interfaces");
  }
  if (is_interface(schema_path_.back())) {
    return !is_own(node.schema, "subinterfaces") && node.tag != "routed-vlan";
  }
  return is_subinterface(schema_path_.back()) && node.module != kIpModule;
}

void QueryExpansion::expand_children(DocumentNode& node) {
  for (DocumentNode& child : node.children) {
    expand_node(child);
  }
}

void QueryExpansion::add_below(DocumentNode& node) {
  const bool is_of_interfaces = node.module == kInterfacesModule;
  if (!is_of_interfaces) {
    const std::size_t keys = node.children.size();
    add_leaves(node);
    if (node.children.size() == keys) {
      notes_->push_back("the mapping reads nothing of " + instance_path(nodes_));
    }
    return;
  }
  for (const lysc_node* child : models_.children(node.schema)) {
    const bool leads_to_ip = is_interface(child) || is_own(child, "subinterfaces") ||
                             is_subinterface(child) ||
                             (is_subinterface(node.schema) && Models::module(child) == kIpModule);
    if (leads_to_ip) {
      node.children.push_back(node_of(child));
    }
  }
  multiply_entries(node);
  // The children are this function's own, so that one of which nothing is read goes unmentioned.
  std::vector<std::string> unmentioned;
  auto* const notes = std::exchange(notes_, &unmentioned);
  expand_children(node);
  notes_ = notes;
}

// Adds the wanted leaves below a node, and what leads to them.
void QueryExpansion::add_leaves(DocumentNode& node) {
  for (const lysc_node* schema : models_.children(node.schema)) {
    if (has_child(node, schema)) {
      continue;
    }
    DocumentNode child = node_of(schema);
    schema_path_.push_back(schema);
    bool wanted = false;
    if (is_leaf(child.kind)) {
      wanted = is_wanted(schema);
    } else {
      add_leaves(child);
      wanted = !child.children.empty();
    }
    schema_path_.pop_back();
    if (wanted) {
      node.children.push_back(std::move(child));
    }
  }
}

bool QueryExpansion::is_wanted(const lysc_node* leaf) {
  const bool is_left_out = content_ == Content::kConfig && Models::is_state(leaf);
  return !is_left_out && !is_refused_(schema_path_);
}

// Puts the device's interfaces or subinterfaces in the place of an entry without its key.
void QueryExpansion::multiply_entries(DocumentNode& node) {
  std::vector<DocumentNode> children;
  for (DocumentNode& child : node.children) {
    const bool is_walked_list =
        child.schema != nullptr && (is_interface(child.schema) || is_subinterface(child.schema));
    if (!is_walked_list || key_value(child) != nullptr) {
      children.push_back(std::move(child));
      continue;
    }
    std::erase_if(child.children, is_key);
    DocumentNode key = node_of(models_.child(child.schema, Models::keys(child.schema).front(), {}));
    for (const std::string& value : keys_on_device(child)) {
      key.value = value;
      DocumentNode& entry = children.emplace_back(child);
      entry.children.insert(entry.children.begin(), key);
    }
  }
  if (children.empty() && !node.children.empty()) {
    notes_->push_back("the device has no interfaces to read");
  }
  node.children = std::move(children);
}

// Names of the device's interfaces, or indexes of the subinterfaces of the interface being
// expanded. An interface that the device does not have is asked for its subinterface 0.
std::vector<std::string> QueryExpansion::keys_on_device(const DocumentNode& entry) {
  sort_names();
  if (is_interface(entry.schema)) {
    return interfaces_;
  }
  const std::string* interface = nullptr;
  for (const DocumentNode* node : nodes_) {
    interface = is_interface(node->schema) ? key_value(*node) : interface;
  }
  const auto indexes = interface == nullptr ? indexes_.end() : indexes_.find(*interface);
  return indexes == indexes_.end() ? std::vector<std::string>{"0"} : indexes->second;
}

// Finds out which interfaces and subinterfaces the device's names are, each once, when a query asks
// for all of them.
void QueryExpansion::sort_names() {
  if (!indexes_.empty()) {
    return;
  }
  std::unordered_set<std::string> known;
  for (const std::string& name : interface_names_) {
    const SubinterfaceName subinterface = subinterface_of(name);
    std::vector<std::string>& indexes = indexes_[subinterface.interface];
    if (indexes.empty()) {
      interfaces_.push_back(subinterface.interface);
    }
    if (known.insert(subinterface.interface + "." + subinterface.index).second) {
      indexes.push_back(subinterface.index);
    }
  }
}

}  // namespace ocifip
