#include "io/check_input.h"

#include <string_view>
#include <utility>
#include <vector>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/leaf_types.h"
#include "io/meant_node.h"
#include "io/text.h"

namespace ocifip {
namespace {

using NodePath = std::vector<const DocumentNode*>;

class InputCheck {
 public:
  InputCheck(const Models& models, const Document& document, InputUse use)
      : models_(models), document_(document), use_(use) {}

  StateNodes check(std::vector<DocumentNode>& roots) {
    check_all(roots, false, false);
    return state_;
  }

 private:
  [[noreturn]] void fail(const DocumentNode& node, InputFault::Kind kind,
                         const std::string& reason) const {
    NodePath path = path_;
    if (path.empty() || path.back() != &node) path.push_back(&node);
    InputFault fault = {kind, node.tag, instance_path(path)};
    if (kind == InputFault::Kind::kUnknownNamespace) fault.name_space = node.module_namespace;
    throw input_error(document_.name, node.line, reason, std::move(fault));
  }
  [[noreturn]] void fail_unknown(const DocumentNode& node) const;
  [[noreturn]] void fail_leaf(const DocumentNode& leaf, const std::string& reason);

  void check_all(std::vector<DocumentNode>& nodes, bool is_deleted, bool is_state);
  void check_leaf(DocumentNode& leaf, bool is_deleted);

  const Models& models_;
  const Document& document_;
  InputUse use_;
  ValueCheck values_;
  StateNodes state_;
  NodePath path_;  // from the top to the parent of the node at hand
};

void InputCheck::fail_unknown(const DocumentNode& node) const {
  const auto* parent = path_.empty() ? nullptr : path_.back();
  const bool is_unknown_module = node.module.empty() && !node.module_namespace.empty();
  const bool is_of_parent = parent != nullptr && parent->module == node.module;
  const auto name = is_of_parent ? node.tag : qualified_name(node);
  const auto where = parent == nullptr ? " at the top" : " below " + instance_path(path_);
  const auto kind =
      is_unknown_module ? InputFault::Kind::kUnknownNamespace : InputFault::Kind::kUnknownNode;
  fail(node, kind,
       (is_unknown_module ? "unknown module of node " : "unknown node ") + in_quotes(name) + where +
           meant_node(models_, parent == nullptr ? nullptr : parent->schema, node.tag));
}

void InputCheck::fail_leaf(const DocumentNode& leaf, const std::string& reason) {
  path_.push_back(&leaf);
  // The name of a document that is a path says where.
  const bool is_path = leaf.line == 0 && document_.name.starts_with('/');
  fail(leaf, InputFault::Kind::kBadValue,
       is_path ? in_quotes(leaf.tag) + ": " + reason : reason + ", at " + instance_path(path_));
}

void InputCheck::check_leaf(DocumentNode& leaf, bool is_deleted) {
  const bool may_lack_value = use_ == InputUse::kQuery || is_deleted;
  if (!leaf.value) {
    if (!may_lack_value) fail_leaf(leaf, "a leaf without a value");
    return;
  }
  // XML has no other way to name a leaf below a node that is deleted.
  if (is_deleted && leaf.value->empty() && !is_key(leaf)) return;
  if (values_.settle(leaf.schema, *leaf.value)) return;
  fail_leaf(leaf, in_quotes(*leaf.value) + " is not " + expected_value(leaf.schema));
}

void InputCheck::check_all(std::vector<DocumentNode>& nodes, bool is_deleted, bool is_state) {
  for (auto& node : nodes) {
    if (node.schema == nullptr) fail_unknown(node);
    const bool is_deleted_here = node.operation ? is_deleting(*node.operation) : is_deleted;
    const bool is_state_here = Models::is_state(node.schema);
    if (Models::is_leaf(node.schema)) {
      check_leaf(node, is_deleted_here);
    }
    path_.push_back(&node);
    if (is_state_here && !is_state && use_ == InputUse::kEdit) {
      if (state_.count == 0) state_.first = instance_path(path_);
      state_.count += 1;
    }
    // The content of anydata is nobody's.
    if (!Models::is_any(node.schema)) check_all(node.children, is_deleted_here, is_state_here);
    path_.pop_back();
  }
}

}  // namespace

StateNodes check_against_models(const Models& models, Document& document, InputUse use) {
  return InputCheck(models, document, use).check(document.roots);
}

}  // namespace ocifip
