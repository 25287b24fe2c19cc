#include "selection.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <memory>
#include <unordered_set>

#include "names.h"
#include "ocifip/messages.h"
#include "rpc_error.h"

namespace ocifip::agent {
namespace {

// Steps that an evaluation may take, each of which may look at a text.
constexpr unsigned long kMostSteps = 5'000'000;

constexpr int kTooManySteps = int{XML_XPATH_EXPRESSION_OK} + int{XPATH_OP_LIMIT_EXCEEDED};

const xmlChar* chars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

// Data as a tree whose top elements are those of the data.
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

// Nodes that are chosen with all that is below them, and those on the way to them.
struct Chosen {
  std::unordered_set<const xmlNode*> whole;
  std::unordered_set<const xmlNode*> way;

  void add(const xmlNode* node) {
    whole.insert(node);
    for (node = node->parent; node != nullptr && node->type == XML_ELEMENT_NODE;
         node = node->parent) {
      if (!way.insert(node).second) break;
    }
  }
};

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

Elements print_chosen(const XmlDocument& tree, const Chosen& chosen) {
  Elements out;
  print_chosen(tree->children, chosen, out);
  return out;
}

bool is_content_match(const xmlNode* filter) {
  return elements(filter).empty() && !text_of(filter).empty();
}

bool is_same(const xmlNode* data, const xmlNode* filter) {
  const std::string_view meant = namespace_of(filter);
  return name_of(data) == name_of(filter) && (meant.empty() || meant == namespace_of(data)) &&
         filter->properties == nullptr;
}

bool has_match(const xmlNode* data, const xmlNode* match) {
  const auto children = elements(data);
  return std::any_of(children.begin(), children.end(), [&](const xmlNode* child) {
    return is_same(child, match) && text_of(child) == text_of(match);
  });
}

void choose(const std::vector<const xmlNode*>& data, const std::vector<const xmlNode*>& filters,
            Chosen& chosen);

void choose(const xmlNode* data, const xmlNode* filter, Chosen& chosen) {
  const auto filters = elements(filter);
  if (filters.empty()) {
    if (!is_content_match(filter) || text_of(data) == text_of(filter)) chosen.add(data);
    return;
  }
  std::vector<const xmlNode*> others;
  for (const xmlNode* each : filters) {
    if (!is_content_match(each)) {
      others.push_back(each);
    } else if (!has_match(data, each)) {
      return;
    }
  }
  if (others.empty()) {
    chosen.add(data);
  } else {
    choose(elements(data), filters, chosen);
  }
}

void choose(const std::vector<const xmlNode*>& data, const std::vector<const xmlNode*>& filters,
            Chosen& chosen) {
  for (const xmlNode* filter : filters) {
    for (const xmlNode* each : data) {
      if (is_same(each, filter)) choose(each, filter, chosen);
    }
  }
}

std::vector<const xmlNode*> top_elements(const XmlDocument& tree) {
  return elements(reinterpret_cast<const xmlNode*>(tree.get()));
}

[[noreturn]] void fail_xpath(const XPath& xpath, const std::string& reason) {
  throw OperationError(RpcError{tags::kInvalidValue, in_quotes(xpath.text) + " " + reason});
}

struct ContextDeleter {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ObjectDeleter {
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};
using XPathObject = std::unique_ptr<xmlXPathObject, ObjectDeleter>;

void ignore(void* /*user*/, xmlError* /*error*/) {}

XPathObject evaluate(const XmlDocument& tree, const XPath& xpath) {
  const std::unique_ptr<xmlXPathContext, ContextDeleter> context(xmlXPathNewContext(tree.get()));
  if (!context) throw std::bad_alloc();
  context->opLimit = kMostSteps;
  context->error = ignore;
  for (const auto& [prefix, meaning] : xpath.namespaces) {
    xmlXPathRegisterNs(context.get(), chars(prefix), chars(meaning));
  }
  XPathObject object(xmlXPathEvalExpression(chars(xpath.text), context.get()));
  if (!object) {
    const bool is_too_much = context->lastError.code == kTooManySteps;
    fail_xpath(xpath,
               is_too_much ? "takes too long" : "is no XPath expression that can be evaluated");
  }
  if (object->type != XPATH_NODESET) fail_xpath(xpath, "selects no nodes");
  return object;
}

Path path_of(const xmlNode* node) {
  Path path;
  for (; node != nullptr && node->type == XML_ELEMENT_NODE; node = node->parent) {
    path.emplace_back(namespace_of(node), name_of(node));
  }
  std::reverse(path.begin(), path.end());
  return path;
}

// Of entries on the way, the keys are chosen, too.
void add_keys(const std::vector<const xmlNode*>& nodes, const ListKeys& keys, Chosen& chosen) {
  for (const xmlNode* node : nodes) {
    if (!chosen.way.contains(node) || chosen.whole.contains(node)) continue;
    const auto children = elements(node);
    for (const std::string& key : keys(path_of(node))) {
      for (const xmlNode* child : children) {
        if (is_named(child, namespace_of(node), key)) chosen.whole.insert(child);
      }
    }
    add_keys(children, keys, chosen);
  }
}

}  // namespace

Elements select_subtree(std::string_view data, const xmlNode* filter) {
  if (data.empty()) return {};
  const XmlDocument tree = tree_of(data);
  Chosen chosen;
  choose(top_elements(tree), elements(filter), chosen);
  return print_chosen(tree, chosen);
}

XPath xpath_of(const xmlNode* filter) {
  const auto text = attribute(filter, "select");
  if (!text) {
    throw OperationError(attribute_error(tags::kMissingAttribute, "select", "filter",
                                         "a filter of type \"xpath\" without its \"select\""));
  }
  XPath xpath = {*text, namespaces_at(filter)};
  // A name without a prefix has no namespace in an expression.
  std::erase_if(xpath.namespaces, [](const auto& each) { return each.first.empty(); });
  return xpath;
}

Elements select_xpath(std::string_view data, const XPath& xpath, const ListKeys& keys) {
  const XmlDocument tree = tree_of(data);
  const XPathObject object = evaluate(tree, xpath);
  Chosen chosen;
  const xmlNodeSet* found = object->nodesetval;
  for (int i = 0; found != nullptr && i < found->nodeNr; ++i) {
    const xmlNode* node = found->nodeTab[i];
    if (node->type == XML_DOCUMENT_NODE) return Elements(data);
    if (node->type == XML_TEXT_NODE) node = node->parent;
    if (node->type != XML_ELEMENT_NODE) fail_xpath(xpath, "selects what is no node of data");
    chosen.add(node);
  }
  add_keys(top_elements(tree), keys, chosen);
  return print_chosen(tree, chosen);
}

}  // namespace ocifip::agent
