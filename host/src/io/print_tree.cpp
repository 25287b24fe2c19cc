#include "io/document_nodes.h"
#include "io/print_parts.h"

namespace ocifip {
namespace {

void append_keys(std::string& out, const DocumentNode& entry) {
  const auto& keys = Models::keys(entry.schema);
  std::string given;
  std::string missing;
  for (const auto& key : keys) {
    const auto* value = key_value(entry, key);
    if (value == nullptr) {
      missing += "[no " + key + ']';
      continue;
    }
    given += '[' + key + '=';
    append_value(given, *value);
    given += ']';
  }
  if (keys.empty()) return;
  out += ' ';
  out += given.empty() ? "[no keys]" : given + missing;
}

void append_node(std::string& out, const DocumentNode& node, const DocumentNode* parent,
                 std::size_t depth) {
  indent(out, depth);
  const auto module = module_name(node);
  if ((parent == nullptr || module != module_name(*parent)) && !module.empty()) {
    out += module;
    out += ':';
  }
  out += node.tag;
  if (node.kind == NodeKind::kList && node.schema != nullptr) append_keys(out, node);
  if (node.value) {
    out += " = ";
    append_value(out, *node.value);
  }
  if (node.operation && *node.operation != Operation::kWrite) {
    out += " (";
    out += operation_name(*node.operation);
    out += ')';
  }
  out += '\n';
  for (const auto& child : node.children) append_node(out, child, &node, depth + 1);
}

}  // namespace

std::string print_tree(const Document& document) {
  std::string out;
  for (const auto& root : document.roots) append_node(out, root, nullptr, 0);
  return out;
}

}  // namespace ocifip
