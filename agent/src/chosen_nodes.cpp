#include "chosen_nodes.h"

namespace ocifip::agent {
namespace {

void print_chosen(const xmlNode* first, const Chosen& chosen, Elements& out);

void print_way(const xmlNode* node, const Chosen& chosen, Elements& out) {
  out.append("<").append(name_of(node));
  const bool is_declared =
      node->parent->type == XML_ELEMENT_NODE && namespace_of(node->parent) == namespace_of(node);
  if (!is_declared) out.append(" xmlns=\"").append(escaped(namespace_of(node))).append("\"");
  out += ">";
  print_chosen(node->children, chosen, out);
  out.append("</").append(name_of(node)).append(">");
}

void print_chosen(const xmlNode* first, const Chosen& chosen, Elements& out) {
  for (const xmlNode* node = first; node != nullptr; node = node->next) {
    if (chosen.whole.contains(node)) {
      out += print(node);
    } else if (chosen.way.contains(node)) {
      print_way(node, chosen, out);
    }
  }
}

}  // namespace

XmlDocument tree_of(std::string_view data) {
  XmlDocument document = parse_xml("<data>" + std::string(data) + "</data>");
  xmlNode* data_element = xmlDocGetRootElement(document.get());
  document->children = data_element->children;
  document->last = data_element->last;
  for (xmlNode* each = document->children; each != nullptr; each = each->next) {
    each->parent = reinterpret_cast<xmlNode*>(document.get());
  }
  data_element->children = nullptr;
  data_element->last = nullptr;
  data_element->parent = nullptr;
  xmlFreeNode(data_element);
  return document;
}

std::vector<const xmlNode*> top_elements(const XmlDocument& tree) {
  return elements(reinterpret_cast<const xmlNode*>(tree.get()));
}

Elements print_chosen(const XmlDocument& tree, const Chosen& chosen) {
  Elements out;
  print_chosen(tree->children, chosen, out);
  return out;
}

}  // namespace ocifip::agent
