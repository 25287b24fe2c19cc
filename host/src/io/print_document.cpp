#include "io/print_document.h"

#include <algorithm>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/print_parts.h"
#include "io/text.h"
#include "io/xml_printer.h"

namespace ocifip {
namespace {

// Whether a node is there without doing anything: neither JSON nor XML has a word for that. Keys
// say which entry is meant.
bool is_idle(const DocumentNode& node) {
  const bool is_key = node.schema != nullptr && Models::is_key(node.schema);
  return node.operation == Operation::kNone && !is_key &&
         std::all_of(node.children.begin(), node.children.end(), [](const DocumentNode& child) {
           return is_idle(child) || (child.schema != nullptr && Models::is_key(child.schema));
         });
}

}  // namespace

std::string print_document(const Document& document, Format format,
                           std::vector<std::string>& notes) {
  switch (format) {
    case Format::kJson:
      return print_json(document, notes);
    case Format::kXml:
      return print_xml(document, notes);
    default:
      return print_tree(document);
  }
}

std::string print_elements(const Document& document, std::vector<std::string>& notes) {
  XmlPrinter printer(notes);
  printer.add(document.roots);
  return printer.take();
}

std::string_view operation_name(Operation operation) {
  switch (operation) {
    case Operation::kReplace:
      return "replace";
    case Operation::kDelete:
      return "delete";
    case Operation::kRemove:
      return "remove";
    case Operation::kNone:
      return "none";
    default:
      return "write";
  }
}

std::string_view shown_operation(const DocumentNode& node) {
  const bool is_key = node.schema != nullptr && Models::is_key(node.schema);
  if (is_key || !node.operation || *node.operation == Operation::kWrite ||
      *node.operation == Operation::kNone) {
    return {};
  }
  return operation_name(*node.operation);
}

std::vector<const DocumentNode*> shown_nodes(const std::vector<DocumentNode>& siblings,
                                             NodePath& path, std::vector<std::string>& notes) {
  std::vector<const DocumentNode*> shown;
  shown.reserve(siblings.size());
  for (const auto& node : siblings) {
    if (is_idle(node)) continue;
    if (!lacks_key(node)) {
      shown.push_back(&node);
      continue;
    }
    path.push_back(&node);
    notes.push_back("an entry without its keys is left out (the formats tree and calls show it): " +
                    instance_path(path));
    path.pop_back();
  }
  return shown;
}

std::string_view module_name(const DocumentNode& node) {
  return node.module.empty() ? node.module_namespace : node.module;
}

void indent(std::string& out, std::size_t depth) { out.append(2 * depth, ' '); }

void append_value(std::string& out, std::string_view value) {
  if (utf8_length(value) == value.size()) {
    append_quoted(out, value);
  } else {
    append_quoted(out, valid_utf8(value));
  }
}

}  // namespace ocifip
