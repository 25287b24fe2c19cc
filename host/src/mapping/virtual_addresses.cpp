#include "mapping/virtual_addresses.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "device/native_edit.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

Nodes virtual_addresses(const DocumentNode& group) {
  Nodes found;
  for (const DocumentNode& config : group.children) {
    if (is_state(config)) continue;
    std::copy_if(
        config.children.begin(), config.children.end(), std::back_inserter(found),
        [](const DocumentNode& node) { return is_named(node, kIpModule, "virtual-address"); });
  }
  return found;
}

// Whether the first address that the device has goes, and something is done to others.
bool is_mixed(const Nodes& edited, const Nodes& former) {
  return edited.size() > 1 &&
         std::any_of(edited.begin(), edited.end(), [&](const DocumentNode& node) {
           const bool is_first = !former.empty() && has_same_value(node, former.front());
           return is_deleted(node) && (!node.value || is_first);
         });
}

class Settler {
 public:
  explicit Settler(const std::function<Document(Document read)>& answer) : answer_(answer) {}

  void visit(Nodes& nodes) {
    for (DocumentNode& node : nodes) {
      if (node.operation && *node.operation != Operation::kWrite) continue;
      path_.push_back(&node);
      if (is_named(node, kIpModule, "vrrp-group")) {
        settle(node);
      } else {
        visit(node.children);
      }
      path_.pop_back();
    }
  }

 private:
  void settle(DocumentNode& group) {
    const Nodes edited = virtual_addresses(group);
    if (std::none_of(edited.begin(), edited.end(), is_deleted)) return;
    const Document shown = answer_({"group", {read(0)}});
    const DocumentNode* former = find(shown.roots, 0);
    if (former == nullptr || !is_mixed(edited, virtual_addresses(*former))) return;
    Document settled = {"group", former->children};
    forget_state(settled.roots);
    // What is deleted but not there is refused when the edit is carried out.
    if (edit_tree(settled.roots, group.children)) return;
    merge_document(settled, {"deletions", deletions(group.children)});
    group.children = std::move(settled.roots);
    group.operation = Operation::kReplace;
  }

  // The read of the group, from a node of its path on.
  [[nodiscard]] DocumentNode read(std::size_t depth) const {
    DocumentNode node = bare(*path_[depth]);
    if (depth + 1 < path_.size()) node.children.push_back(read(depth + 1));
    return node;
  }

  [[nodiscard]] const DocumentNode* find(const Nodes& nodes, std::size_t depth) const {
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const DocumentNode& node) {
      return is_same_node(node, *path_[depth]);
    });
    if (found == nodes.end()) return nullptr;
    return depth + 1 == path_.size() ? &*found : find(found->children, depth + 1);
  }

  static void forget_state(Nodes& nodes) {
    std::erase_if(nodes, [](DocumentNode& node) {
      forget_state(node.children);
      return is_state(node);
    });
  }

  // The deletions among nodes, with what leads to them.
  static Nodes deletions(const Nodes& nodes) {
    Nodes found;
    for (const DocumentNode& node : nodes) {
      DocumentNode way = is_deleted(node) ? node : bare(node);
      if (!is_deleted(node)) {
        Nodes below = deletions(node.children);
        if (below.empty()) continue;
        std::move(below.begin(), below.end(), std::back_inserter(way.children));
      }
      found.push_back(std::move(way));
    }
    return found;
  }

  const std::function<Document(Document read)>& answer_;
  std::vector<const DocumentNode*> path_;
};

}  // namespace

void settle_virtual_addresses(Document& edit,
                              const std::function<Document(Document read)>& answer) {
  Settler(answer).visit(edit.roots);
}

}  // namespace ocifip
