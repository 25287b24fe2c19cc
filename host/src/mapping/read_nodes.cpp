#include "mapping/read_nodes.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "mapping/interface_nodes.h"

namespace ocifip {

void forget_empty_values(std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    if (node.value && node.value->empty()) {
      node.value.reset();
    }
    forget_empty_values(node.children);
  }
}

void put_whole_lists_first(std::vector<DocumentNode>& nodes) {
  const auto is_whole_list = [](const DocumentNode& node) {
    return std::none_of(node.children.begin(), node.children.end(),
                        [](const DocumentNode& child) { return is_key(child) && child.value; });
  };
  for (auto first = nodes.begin(); first != nodes.end();) {
    const auto last = std::find_if(first, nodes.end(), [&](const DocumentNode& node) {
      return node.schema != first->schema || node.tag != first->tag;
    });
    if (first->kind == NodeKind::kList) {
      std::stable_partition(first, last, is_whole_list);
    }
    first = last;
  }
  for (DocumentNode& node : nodes) {
    put_whole_lists_first(node.children);
  }
}

std::vector<DocumentNode> families_in_part(const std::vector<DocumentNode>& nodes) {
  std::vector<DocumentNode> found;
  for (const DocumentNode& node : nodes) {
    if (is_family(node)) {
      if (!node.children.empty()) found.push_back(bare(node));
      continue;
    }
    std::vector<DocumentNode> below = families_in_part(node.children);
    if (below.empty()) continue;
    DocumentNode way = bare(node);
    std::move(below.begin(), below.end(), std::back_inserter(way.children));
    found.push_back(std::move(way));
  }
  return found;
}

bool asks_for_a_leaf(const DocumentNode& node) {
  return std::any_of(node.children.begin(), node.children.end(), [](const DocumentNode& child) {
    return child.kind >= NodeKind::kLeaf ? !is_key(child) || !child.value : asks_for_a_leaf(child);
  });
}

}  // namespace ocifip
