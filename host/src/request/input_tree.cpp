#include "request/input_tree.h"

#include "io/document_nodes.h"

namespace ocifip {
namespace {

Operation operation_of(const DocumentNode& node, Operation inherited) {
  if (node.operation) {
    return *node.operation;
  }
  return is_key(node) && is_deleting(inherited) ? Operation::kWrite : inherited;
}

}  // namespace

InputTree::InputTree(const Document& document, Operation request_operation) {
  roots_ = build(document.roots, request_operation, nullptr);
}

std::span<InputNode> InputTree::build(const std::vector<DocumentNode>& nodes, Operation inherited,
                                      const void* cause) {
  const auto built = arena_.make_array<InputNode>(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    fill(built[i], nodes[i], inherited, cause);
  }
  return built;
}

// Recursion is as deep as the document, whose depth its reader bounds.
void InputTree::fill(InputNode& node, const DocumentNode& from, Operation inherited,
                     const void* cause) {
  const Operation operation = operation_of(from, inherited);
  const bool is_known = from.schema != nullptr;  // then the models keep the names
  node.tag = is_known ? Models::tag(from.schema).c_str() : shared(from.tag);
  node.module_namespace =
      is_known ? Models::module_namespace(from.schema).c_str() : shared(from.module_namespace);
  node.kind = static_cast<std::uint8_t>(from.kind);
  node.edit_operation = static_cast<std::uint8_t>(operation);
  cause = from.cause == nullptr ? cause : from.cause;
  if (cause != nullptr) {
    causes_.emplace(&node, cause);
  }
  if (operation == Operation::kDelete && node.kind >= NIDL_YFW_KIND_LEAF) {
    deleted_leaves_.insert(&node);
  }
  if (from.value) {
    node.value = arena_.copy(*from.value);
    node.flags |= NIDL_YFW_FLAG_HAS_VALUE;
  }
  if (!from.children.empty()) {
    const auto children = build(from.children, operation, cause);
    node.children = children.data();
    node.child_count = static_cast<std::uint32_t>(children.size());
    node.flags |= NIDL_YFW_FLAG_HAS_SUBTREE;
  }
}

const char* InputTree::shared(const std::string& name) {
  const auto known = names_.find(name);
  return known != names_.end() ? known->data() : names_.insert(arena_.copy(name)).first->data();
}

}  // namespace ocifip
