#include "io/check_plain_data.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "io/document_nodes.h"
#include "io/leaf_types.h"

namespace ocifip {
namespace {

// Mandatory nodes at the top are missing where another node of their module is there.
bool is_unconstrained(const Models& models, const DocumentNode& root) {
  const auto& tops = models.children(nullptr);
  return std::none_of(tops.begin(), tops.end(), [&](const lysc_node* top) {
    return Models::module(top) == Models::module(root.schema) && models.has_constraints(top);
  });
}

class PlainCheck {
 public:
  bool accepts(const std::vector<DocumentNode>& nodes) {
    return std::all_of(nodes.begin(), nodes.end(),
                       [this](const DocumentNode& node) { return accepts(node); });
  }

 private:
  bool accepts(const DocumentNode& node) {
    if (node.schema == nullptr || node.operation || node.kind != Models::kind(node.schema)) {
      return false;
    }
    if (node.kind == NodeKind::kLeaf || node.kind == NodeKind::kLeafList) {
      return node.value && values_.takes(node.schema, *node.value);
    }
    return (node.kind == NodeKind::kContainer || has_its_keys(node)) && accepts(node.children);
  }

  static bool has_its_keys(const DocumentNode& entry) {
    const auto given = std::count_if(entry.children.begin(), entry.children.end(), is_key);
    return static_cast<std::size_t>(given) == Models::keys(entry.schema).size() &&
           !lacks_key(entry);
  }

  ValueCheck values_;
};

}  // namespace

bool is_plainly_accepted(const Models& models, const Document& document) {
  const bool is_plain =
      std::all_of(document.roots.begin(), document.roots.end(), [&](const DocumentNode& root) {
        return root.schema != nullptr && is_unconstrained(models, root);
      });
  return is_plain && PlainCheck().accepts(document.roots);
}

}  // namespace ocifip
