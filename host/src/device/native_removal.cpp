#include "device/native_removal.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "device/native_nodes.h"
#include "io/document_nodes.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

constexpr std::string_view kArpModule = "Halvane-Ombrix-ipv4-arp-cfg";
constexpr std::string_view kNeighborModule = "Halvane-Ombrix-ipv6-nd-cfg";
constexpr std::string_view kVrrpModule = "Halvane-Ombrix-ipv4-vrrp-cfg";

// A leaf that the mapping writes along with its sibling and never reads: it goes along, too.
struct Companion {
  std::string_view module;
  std::string_view leaf;
  std::string_view companion;
};

constexpr Companion kCompanions[] = {
    {kVrrpModule, "advertisement-time-in-msec", "forced"},
    {kVrrpModule, "ip-address", "auto-configure"},
    {kNeighborModule, "maximum", "minimum"},
};

// Entries that lead to the configuration of interfaces.
bool leads_to_interfaces(const DocumentNode& entry) {
  return is_native_node(entry, kArpModule, "vrf") ||
         is_native_node(entry, kVrrpModule, "interface");
}

std::size_t count(const Nodes& nodes) {
  std::size_t sum = nodes.size();
  for (const DocumentNode& node : nodes) sum += count(node.children);
  return sum;
}

const Nodes& children_of(const DocumentNode* node) {
  static const Nodes kNothing;
  return node == nullptr ? kNothing : node->children;
}

DocumentNode removal_of(const DocumentNode& node) {
  DocumentNode removal = bare(node);
  if (removal.kind == NodeKind::kLeaf) removal.value.reset();
  removal.operation = Operation::kRemove;
  return removal;
}

// One level of the held configuration beside the same level of the edit, of the way to what is held
// and of the device's configuration; each of these may have nothing there.
class Level {
 public:
  Level(const Nodes& held, const Nodes& edit, const Nodes& way, const Nodes& native)
      : held_(held), native_nodes_(native), edit_(edit), way_(way), native_(native) {
    for (const DocumentNode& node : edit) {
      const bool is_whole_list = node.kind == NodeKind::kList && node.children.empty();
      if (is_whole_list && is_deleted(node)) deleted_lists_.push_back(node.schema);
    }
  }

  // What is to be added to the edit's level, and below nodes that it has.
  Nodes removals() {
    Nodes result;
    for (const DocumentNode& node : held_) {
      if (!is_key(node)) add(node, result);
    }
    return result;
  }

 private:
  void add(const DocumentNode& node, Nodes& result) {
    if (is_decided(node)) return;
    if (node.kind >= NodeKind::kLeaf) {
      if (edit_.find(node) == nullptr && way_.find(node) == nullptr) add_leaf(node, result);
    } else if (goes_as_a_whole(node)) {
      result.push_back(removal_of(node));
    } else {
      add_below(node, result);
    }
  }

  // Whether the edit deletes or replaces a node, by itself or with its whole list: what is below is
  // settled.
  [[nodiscard]] bool is_decided(const DocumentNode& node) const {
    const DocumentNode* edited = edit_.find(node);
    if (edited != nullptr && edited->operation) {
      return is_deleted(*edited) || *edited->operation == Operation::kReplace;
    }
    return std::find(deleted_lists_.begin(), deleted_lists_.end(), node.schema) !=
           deleted_lists_.end();
  }

  void add_leaf(const DocumentNode& node, Nodes& result) {
    result.push_back(removal_of(node));
    for (const Companion& row : kCompanions) {
      if (!is_native_node(node, row.module, row.leaf)) continue;
      const DocumentNode* companion = find_native(native_nodes_, row.module, row.companion);
      if (companion != nullptr && edit_.find(*companion) == nullptr) {
        result.push_back(removal_of(*companion));
      }
    }
  }

  [[nodiscard]] bool goes_as_a_whole(const DocumentNode& entry) const {
    if (entry.kind != NodeKind::kList || is_native_interface(entry) ||
        edit_.find(entry) != nullptr || way_.find(entry) != nullptr) {
      return false;
    }
    if (!leads_to_interfaces(entry)) return true;
    const DocumentNode* native = native_.find(entry);
    return !has_only_keys(entry) && native != nullptr &&
           count(entry.children) == count(native->children);
  }

  void add_below(const DocumentNode& node, Nodes& result) {
    Nodes removals = Level(node.children, children_of(edit_.find(node)),
                           children_of(way_.find(node)), children_of(native_.find(node)))
                         .removals();
    if (removals.empty()) return;
    DocumentNode way = bare(node);
    way.children.insert(way.children.end(), std::make_move_iterator(removals.begin()),
                        std::make_move_iterator(removals.end()));
    result.push_back(std::move(way));
  }

  const Nodes& held_;
  const Nodes& native_nodes_;
  Siblings edit_;
  Siblings way_;
  Siblings native_;
  std::vector<const lysc_node*> deleted_lists_;
};

// Joins removals to an edit: of what both have, the removals only lead to more.
void add_removals(Nodes& edit, Nodes removals) {
  edit.reserve(edit.size() + removals.size());  // the index points into it
  SiblingIndex index;
  for (DocumentNode& node : edit) index.add(node);
  for (DocumentNode& removal : removals) {
    DocumentNode* same = index.find(removal);
    if (same == nullptr) {
      edit.push_back(std::move(removal));
      continue;
    }
    std::erase_if(removal.children, is_key);
    add_removals(same->children, std::move(removal.children));
  }
  arrange(edit);
}

}  // namespace

bool remove_omitted(Document& edit, const HeldConfiguration& subtrees) {
  if (subtrees.native == nullptr) return false;
  Nodes removals =
      Level(subtrees.held.roots, edit.roots, subtrees.way.roots, subtrees.native->roots).removals();
  const bool removes = !removals.empty();
  add_removals(edit.roots, std::move(removals));
  return removes;
}

}  // namespace ocifip
