#include "mapping/unaffected.h"

#include <vector>

#include "io/document_nodes.h"

namespace ocifip {
namespace {

void drop(std::vector<DocumentNode>& nodes, Operation inherited) {
  std::erase_if(nodes, [inherited](DocumentNode& node) {
    const Operation operation = node.operation.value_or(inherited);
    if (is_key(node) || node.schema == nullptr || is_deleting(operation)) return false;
    drop(node.children, operation);
    return operation == Operation::kNone && has_only_keys(node);
  });
}

}  // namespace

void drop_unaffected(Document& edit, Operation operation) { drop(edit.roots, operation); }

}  // namespace ocifip
