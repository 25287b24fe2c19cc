#include <algorithm>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/growing_text.h"
#include "io/json_value.h"
#include "io/models.h"
#include "io/netconf.h"
#include "io/print_parts.h"
#include "io/text.h"

namespace ocifip {
namespace {

using Nodes = std::vector<const DocumentNode*>;
using Range = std::span<const DocumentNode* const>;

// Whether a node is an object in JSON, which holds its own metadata.
bool is_object(const DocumentNode* node) {
  return node->kind == NodeKind::kContainer || node->kind == NodeKind::kList;
}

bool is_in_array(const DocumentNode* node) {
  return node->kind == NodeKind::kList || node->kind == NodeKind::kLeafList;
}

bool has_same_name(const DocumentNode* left, const DocumentNode* right) {
  return left->tag == right->tag && left->module_namespace == right->module_namespace;
}

// The names of known modules have one text each, so that nearly always a pointer tells.
bool has_same_module(const DocumentNode& left, const DocumentNode& right) {
  const bool are_known = !left.module.empty() && !right.module.empty();
  return are_known ? left.module == right.module : module_name(left) == module_name(right);
}

// Whether it is certain, from their order in the schema, that nodes of one name stand together.
bool is_grouped(const Nodes& nodes) {
  std::size_t last = 0;
  std::size_t unknown = 0;
  for (const auto* node : nodes) {
    if (node->schema == nullptr) {
      ++unknown;
      continue;
    }
    const auto position = Models::position(node->schema);
    if (position < last) return false;
    last = position;
  }
  return unknown <= 1;
}

// Brings nodes of one name together, where the first of them stands.
void group(Nodes& nodes) {
  std::unordered_map<std::string, std::size_t> places;
  std::vector<std::pair<std::size_t, const DocumentNode*>> placed;
  for (const auto* node : nodes) {
    const auto name = node->tag + ':' + node->module_namespace;
    placed.emplace_back(places.emplace(name, places.size()).first->second, node);
  }
  std::stable_sort(placed.begin(), placed.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::transform(placed.begin(), placed.end(), nodes.begin(),
                 [](const auto& row) { return row.second; });
}

bool is_as_read(const Nodes& nodes) {
  int last = 0;
  for (const auto* node : nodes) {
    if (node->place == 0) continue;
    if (node->place < last) return false;
    last = node->place;
  }
  return true;
}

// Puts nodes that stand in schema order into that of the source that they were read from. A node
// that was made goes behind the one before it.
void arrange_as_read(Nodes& nodes) {
  if (is_as_read(nodes)) return;
  std::vector<std::pair<int, const DocumentNode*>> placed;
  placed.reserve(nodes.size());
  int place = 0;
  for (const auto* node : nodes) {
    if (node->place != 0) place = node->place;
    placed.emplace_back(place, node);
  }
  std::stable_sort(placed.begin(), placed.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  std::transform(placed.begin(), placed.end(), nodes.begin(),
                 [](const auto& row) { return row.second; });
}

class JsonPrinter {
 public:
  JsonPrinter(std::vector<std::string>& notes, NodeOrder order) : notes_(notes), order_(order) {}

  std::string print(const Document& document) {
    append_object(document.roots, {});
    out_.add('\n');
    return out_.text();
  }

 private:
  void append_object(const std::vector<DocumentNode>& children, std::string_view operation);
  void append_members(Range nodes);
  void append_array(Range elements);
  void append_array_metadata(Range elements);
  void append_node(const DocumentNode& node, std::string_view without_value);
  void append_operation(const DocumentNode& node);
  void append_name(const DocumentNode& node, std::string_view before);
  void append_value(std::string_view value);

  void open(char bracket);
  void close(char bracket);
  void separate();

  std::vector<std::string>& notes_;
  NodeOrder order_;
  GrowingText out_;
  NodePath path_;
  std::size_t depth_ = 0;
  bool is_first_ = true;  // nothing stands yet in the innermost object or array
};

// Appends an object with an operation as its own metadata, or "".
void JsonPrinter::append_object(const std::vector<DocumentNode>& children,
                                std::string_view operation) {
  open('{');
  if (!operation.empty()) {
    separate();
    out_.add("\"@\": ");
    append_operation(*path_.back());
  }
  auto nodes = shown_nodes(children, path_, notes_);
  if (order_ == NodeOrder::kAsRead) arrange_as_read(nodes);
  if (!is_grouped(nodes)) group(nodes);
  for (auto first = nodes.begin(); first != nodes.end();) {
    const auto last = std::find_if_not(
        first, nodes.end(), [first](const auto* node) { return has_same_name(*first, node); });
    append_members({first, last});
    first = last;
  }
  close('}');
}

// Appends nodes of one name: as one array, or else as a member each.
void JsonPrinter::append_members(Range nodes) {
  if (std::any_of(nodes.begin(), nodes.end(), is_in_array)) {
    append_array(nodes);
    return;
  }
  for (const auto* node : nodes) {
    separate();
    append_name(*node, "");
    append_node(*node, "[null]");
    if (is_object(node) || shown_operation(*node).empty()) continue;
    separate();
    append_name(*node, "@");
    append_operation(*node);
  }
}

void JsonPrinter::append_array(Range elements) {
  separate();
  append_name(*elements.front(), "");
  open('[');
  for (const auto* element : elements) {
    separate();
    append_node(*element, "null");
  }
  close(']');

  const bool has_metadata = std::any_of(elements.begin(), elements.end(), [](const auto* element) {
    return !is_object(element) && !shown_operation(*element).empty();
  });
  if (has_metadata) append_array_metadata(elements);
}

void JsonPrinter::append_array_metadata(Range elements) {
  separate();
  append_name(*elements.front(), "@");
  open('[');
  for (const auto* element : elements) {
    separate();
    if (is_object(element) || shown_operation(*element).empty()) {
      out_.add("null");
    } else {
      append_operation(*element);
    }
  }
  close(']');
}

void JsonPrinter::append_node(const DocumentNode& node, std::string_view without_value) {
  if (is_object(&node)) {
    path_.push_back(&node);
    append_object(node.children, shown_operation(node));
    path_.pop_back();
  } else if (!node.value) {
    out_.add(without_value);
  } else {
    switch (json_form(node)) {
      case JsonForm::kString:
        append_value(*node.value);
        break;
      case JsonForm::kBare:
        out_.add(*node.value);
        break;
      case JsonForm::kEmpty:
        out_.add("[null]");
        break;
    }
  }
}

void JsonPrinter::append_operation(const DocumentNode& node) {
  open('{');
  separate();
  append_value(kOperationAnnotation);
  out_.add(": ");
  append_value(shown_operation(node));
  close('}');
}

// Appends the name of the member that a node is, with its module where that is not its parent's.
void JsonPrinter::append_name(const DocumentNode& node, std::string_view before) {
  const bool is_inherited =
      path_.empty() ? module_name(node).empty() : has_same_module(node, *path_.back());
  if (node.schema == nullptr) {
    std::string name(before);
    if (!is_inherited) name.append(module_name(node)).append(":");
    append_value(name.append(node.tag));
  } else {  // identifiers have nothing to be escaped
    out_.add('"');
    out_.add(before);
    if (!is_inherited) {
      out_.add(module_name(node));
      out_.add(':');
    }
    out_.add(node.tag);
    out_.add('"');
  }
  out_.add(": ");
}

void JsonPrinter::append_value(std::string_view value) {
  if (is_plain(value)) {
    out_.add('"');
    out_.add(value);
    out_.add('"');
  } else {
    std::string quoted;
    ocifip::append_value(quoted, value);
    out_.add(quoted);
  }
}

void JsonPrinter::open(char bracket) {
  out_.add(bracket);
  ++depth_;
  is_first_ = true;
}

void JsonPrinter::close(char bracket) {
  --depth_;
  if (!is_first_) {
    out_.add('\n');
    out_.add(2 * depth_, ' ');
  }
  out_.add(bracket);
  is_first_ = false;
}

void JsonPrinter::separate() {
  out_.add(is_first_ ? "\n" : ",\n");
  out_.add(2 * depth_, ' ');
  is_first_ = false;
}

}  // namespace

std::string print_json(const Document& document, std::vector<std::string>& notes, NodeOrder order) {
  return JsonPrinter(notes, order).print(document);
}

}  // namespace ocifip
