#include "mapping/native_input.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "device/native_part.h"
#include "io/check_input.h"
#include "io/data_path.h"
#include "io/device_file.h"
#include "io/document_nodes.h"
#include "io/text.h"
#include "mapping/input_checks.h"
#include "result_codes.h"

namespace ocifip {
namespace {

using NodePath = std::vector<const DocumentNode*>;

// Modules that are no device's: of OpenConfig, and of protocols and their types.
bool is_foreign(std::string_view module) {
  return module.starts_with("openconfig-") || module.starts_with("ietf-") ||
         module.starts_with("iana-");
}

// The path to the first state in an edit; empty without any.
NodePath find_state(const std::vector<DocumentNode>& nodes) {
  for (const DocumentNode& node : nodes) {
    NodePath path;
    if (!is_state(node)) {
      path = find_state(node.children);
      if (path.empty()) continue;
    }
    path.insert(path.begin(), &node);
    return path;
  }
  return {};
}

// An operation by default is said by the topmost nodes that it is of.
void replace_topmost(const Models& models, std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    if (is_key(node) || node.operation) continue;
    const bool is_way =
        interface_key(node.schema) == nullptr && leads_to_interfaces(models, node.schema);
    if (is_way) {
      replace_topmost(models, node.children);
    } else {
      node.operation = Operation::kReplace;
    }
  }
}

// Says "none" of the nodes that inherit it.
void pass_none(std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    if (is_key(node) || node.operation) continue;
    node.operation = Operation::kNone;
    pass_none(node.children);
  }
}

std::optional<Refusal> find_deleted_key(const std::vector<DocumentNode>& nodes, NodePath& path) {
  for (const DocumentNode& node : nodes) {
    if (is_deleted(node) && !is_key(node)) continue;
    path.push_back(&node);
    if (is_deleted(node)) {
      return Refusal{kKeyDelete, node.tag, instance_path(path), cerr_strerror(kKeyDelete)};
    }
    auto refusal = find_deleted_key(node.children, path);
    if (refusal) return refusal;
    path.pop_back();
  }
  return std::nullopt;
}

}  // namespace

bool is_native_root(const DocumentNode& root) {
  return root.schema != nullptr && !is_foreign(root.module.text());
}

Document take_native(Document& document, NativeNodes which) {
  auto& roots = document.roots;
  const auto first = std::stable_partition(roots.begin(), roots.end(), [&](const auto& root) {
    return !is_native_root(root) || (which == NativeNodes::kConfiguration && is_state(root));
  });
  Document native = {document.name, {}};
  native.roots.assign(std::make_move_iterator(first), std::make_move_iterator(roots.end()));
  roots.erase(first, roots.end());
  return native;
}

void check_native_edit(const Models& models, Document& edit) {
  if (check_against_models(models, edit, InputUse::kEdit).count > 0) {
    const NodePath path = find_state(edit.roots);
    const std::string place = instance_path(path);
    throw input_error(
        edit.name, path.back()->line,
        in_quotes(path.back()->tag) + " is state, which cannot be edited, at " + place,
        {InputFault::Kind::kBadValue, path.back()->tag, place});
  }
  check_native_names(edit);
}

void check_native_query(const Models& models, Document& query) {
  check_no_operations(query);
  check_against_models(models, query, InputUse::kQuery);
}

void settle_native_operations(const Models& models, DefaultOperation operation, Document& edit) {
  if (operation == DefaultOperation::kReplace) replace_topmost(models, edit.roots);
  if (operation == DefaultOperation::kNone) pass_none(edit.roots);
}

std::optional<Refusal> find_deleted_key(const Document& edit) {
  NodePath path;
  return find_deleted_key(edit.roots, path);
}

}  // namespace ocifip
