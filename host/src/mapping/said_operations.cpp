#include "mapping/said_operations.h"

namespace ocifip {
namespace {

void add(Operation operation, SaidOperations& said) {
  switch (operation) {
    case Operation::kWrite:
      said.write = true;
      break;
    case Operation::kReplace:
      said.replace = true;
      break;
    case Operation::kDelete:
    case Operation::kRemove:
      said.deletion = true;
      break;
    case Operation::kNone:
      said.none = true;
      break;
  }
}

void add_all(const std::vector<DocumentNode>& nodes, SaidOperations& said) {
  for (const DocumentNode& node : nodes) {
    if (node.operation) add(*node.operation, said);
    if (node.is_created) said.creation = true;
    if (!node.children.empty()) add_all(node.children, said);
  }
}

}  // namespace

SaidOperations said_operations(const std::vector<DocumentNode>& nodes) {
  SaidOperations said;
  add_all(nodes, said);
  return said;
}

}  // namespace ocifip
