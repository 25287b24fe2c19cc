#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "io/data_path.h"
#include "io/netconf.h"
#include "io/print_parts.h"
#include "io/text.h"
#include "io/xml_printer.h"

namespace ocifip {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

// What stands for a character. A carriage return as such would be read as a line feed.
constexpr std::array<std::pair<char, std::string_view>, 5> kEscapes{
    {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\r', "&#13;"}}};

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

bool has_operation(const DocumentNode& node) {
  return !shown_operation(node).empty() ||
         std::any_of(node.children.begin(), node.children.end(), has_operation);
}

}  // namespace

// XML has one element at the top: several nodes stand in the one that NETCONF has for that.
std::string XmlPrinter::print(const Document& document) {
  const auto roots = shown_nodes(document.roots, path_, notes_);
  outer_depth_ = roots.size() > 1 ? 1 : 0;
  if (outer_depth_ != 0) {
    out_ += "<config";
    append_attribute("xmlns", kNetconfNamespace);
    out_ += ">\n";
  }
  append_nodes(roots);
  if (outer_depth_ != 0) out_ += "</config>\n";
  return std::move(out_);
}

void XmlPrinter::add(const std::vector<DocumentNode>& siblings) {
  append_nodes(shown_nodes(siblings, path_, notes_));
}

void XmlPrinter::begin(DocumentNode node) {
  around_.push_back(std::move(node));
  path_.push_back(&around_.back());
  append_begin(around_.back());
  out_ += ">\n";
  add(around_.back().children);
}

void XmlPrinter::end() {
  append_end(around_.back());
  path_.pop_back();
  around_.pop_back();
}

void XmlPrinter::append_nodes(const std::vector<const DocumentNode*>& nodes) {
  for (const auto* node : nodes) {
    path_.push_back(node);
    append_node(*node);
    path_.pop_back();
  }
}

void XmlPrinter::append_node(const DocumentNode& node) {
  append_begin(node);
  const auto children = shown_nodes(node.children, path_, notes_);
  if (!children.empty()) {
    out_ += ">\n";
    append_nodes(children);
    append_end(node);
  } else if (node.value && !node.value->empty()) {
    out_ += '>';
    append_text(*node.value);
    out_ += "</" + node.tag + ">\n";
  } else {
    out_ += "/>\n";
  }
}

// The start tag of the node that the path ends with, but for what ends it.
void XmlPrinter::append_begin(const DocumentNode& node) {
  const auto depth = path_.size() - 1;
  indent(out_, outer_depth_ + depth);
  out_ += '<' + node.tag;
  const std::string_view outer =
      depth == 0 ? std::string_view() : path_[depth - 1]->module_namespace;
  if (node.module_namespace != outer) append_attribute("xmlns", node.module_namespace);
  if (depth == 0 && has_operation(node)) append_attribute("xmlns:nc", kNetconfNamespace);
  const auto operation = shown_operation(node);
  if (!operation.empty()) append_attribute("nc:operation", operation);
}

void XmlPrinter::append_end(const DocumentNode& node) {
  indent(out_, outer_depth_ + path_.size() - 1);
  out_ += "</" + node.tag + ">\n";
}

void XmlPrinter::append_attribute(std::string_view name, std::string_view value) {
  out_ += ' ';
  out_ += name;
  out_ += "=\"";
  append_text(value);
  out_ += '"';
}

void XmlPrinter::append_text(std::string_view text) {
  const auto valid = utf8_length(text) == text.size() ? std::string() : valid_utf8(text);
  if (!valid.empty()) text = valid;
  bool is_replaced = false;
  for (const char c : text) {
    const auto* const escape = std::find_if(kEscapes.begin(), kEscapes.end(),
                                            [c](const auto& row) { return row.first == c; });
    if (escape != kEscapes.end()) {
      out_ += escape->second;
    } else if (is_control(c)) {
      out_ += kReplacement;
      is_replaced = true;
    } else {
      out_ += c;
    }
  }
  if (is_replaced) {
    notes_.push_back("control characters, which XML cannot hold, are replaced: " +
                     instance_path(path_));
  }
}

std::string print_xml(const Document& document, std::vector<std::string>& notes) {
  return XmlPrinter(notes).print(document);
}

}  // namespace ocifip
