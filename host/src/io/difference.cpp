#include "io/difference.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/print_parts.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

const Nodes kNothing;

Nodes compare(const Nodes& before, const Nodes& after);

// A container or entry that both states have.
void compare_inner(const DocumentNode& before, const DocumentNode& after, Nodes& changes) {
  auto children = compare(before.children, after.children);
  if (children.empty()) return;
  auto& change = changes.emplace_back(bare(after));
  std::move(children.begin(), children.end(), std::back_inserter(change.children));
  arrange(change.children);
}

void add_new(const DocumentNode& node, Nodes& changes) {
  if (is_plain_container(node)) {
    compare_inner(bare(node), node, changes);
  } else {
    changes.push_back(node);
  }
}

void add_gone(const DocumentNode& node, Nodes& changes) {
  if (is_plain_container(node)) {
    compare_inner(node, bare(node), changes);
  } else {
    changes.emplace_back(bare(node)).operation = Operation::kDelete;
  }
}

// Recursion is as deep as documents may be.
Nodes compare(const Nodes& before, const Nodes& after) {
  const Siblings former(before);
  const Siblings present(after);
  Nodes changes;
  for (const auto& node : before) {
    if (!is_key(node) && present.find(node) == nullptr) add_gone(node, changes);
  }
  for (const auto& node : after) {
    if (is_key(node)) continue;
    const auto* old = former.find(node);
    if (old == nullptr) {
      add_new(node, changes);
    } else if (is_inner(node)) {
      compare_inner(*old, node, changes);
    } else if (old->value != node.value) {
      changes.push_back(node);
    }
  }
  arrange(changes);
  return changes;
}

class ChangePrinter {
 public:
  void append(const Nodes& changes, const Nodes& before);
  std::string text() { return std::move(text_); }

 private:
  void append_node(const DocumentNode& change, const DocumentNode* former);
  void append_line(char mark, const std::string* former, const std::string* value);

  std::string text_;
  std::vector<const DocumentNode*> path_;
};

void ChangePrinter::append_line(char mark, const std::string* former, const std::string* value) {
  text_.append(1, mark).append(" ").append(instance_path(path_));
  if (value != nullptr) text_ += " = ";
  if (former != nullptr) {
    append_value(text_, *former);
    text_ += " -> ";
  }
  if (value != nullptr) append_value(text_, *value);
  text_ += '\n';
}

void ChangePrinter::append_node(const DocumentNode& change, const DocumentNode* former) {
  const bool has_content = !has_only_keys(change);
  if (change.operation) {
    append_line('-', nullptr, nullptr);
  } else if (has_content) {
    append(change.children, former == nullptr ? kNothing : former->children);
  } else if (change.kind != NodeKind::kLeaf) {
    append_line('+', nullptr, nullptr);
  } else {
    const auto* old = former != nullptr && former->value ? &*former->value : nullptr;
    append_line(old == nullptr ? '+' : '~', old, change.value ? &*change.value : nullptr);
  }
}

void ChangePrinter::append(const Nodes& changes, const Nodes& before) {
  const Siblings former(before);
  for (const auto& change : changes) {
    if (is_key(change)) continue;
    path_.push_back(&change);
    append_node(change, former.find(change));
    path_.pop_back();
  }
}

}  // namespace

Document difference(const Document& before, const Document& after) {
  return {"difference", compare(before.roots, after.roots)};
}

std::string print_changes(const Document& difference, const Document& before) {
  ChangePrinter printer;
  printer.append(difference.roots, before.roots);
  return printer.text();
}

}  // namespace ocifip
