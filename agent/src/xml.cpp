#include "xml.h"

#include <libxml/parser.h>

#include <climits>

#include "names.h"
#include "ocifip/messages.h"

namespace ocifip::agent {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view view(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

struct TextDeleter {
  void operator()(xmlChar* text) const { xmlFree(text); }
};
using Text = std::unique_ptr<xmlChar, TextDeleter>;

struct ContextDeleter {
  void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};

// The parser's sentence for what is wrong; it advises programmers, too.
std::string reason(const xmlError* error) {
  if (error == nullptr || error->message == nullptr) return "not valid XML";
  const std::string_view message = error->message;
  if (message.find("Excessive depth") != std::string_view::npos) {
    return "elements are nested more than 256 deep";
  }
  return "not valid XML: " + in_short(trimmed(message));
}

}  // namespace

void begin_xml() { xmlInitParser(); }

XmlDocument parse_xml(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) throw XmlError("a message without content");
  text.remove_prefix(first);
  if (text.size() > INT_MAX) throw XmlError("a message of more than 2 GB");
  const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(xmlNewParserCtxt());
  if (!context) throw std::bad_alloc();
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  XmlDocument document(xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                         nullptr, nullptr, kOptions));
  if (!document) throw XmlError(reason(xmlCtxtGetLastError(context.get())));
  if (context->nsWellFormed == 0) throw XmlError(reason(xmlCtxtGetLastError(context.get())));
  if (document->intSubset != nullptr) throw XmlError("a document type has no place in a message");
  return document;
}

const xmlNode* top(const XmlDocument& document) { return xmlDocGetRootElement(document.get()); }

std::vector<const xmlNode*> elements(const xmlNode* node) {
  std::vector<const xmlNode*> found;
  for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
    if (child->type == XML_ELEMENT_NODE) found.push_back(child);
  }
  return found;
}

std::string_view name_of(const xmlNode* element) { return view(element->name); }

std::string_view namespace_of(const xmlNode* element) {
  return element->ns == nullptr ? std::string_view() : view(element->ns->href);
}

bool is_named(const xmlNode* element, std::string_view name_space, std::string_view name) {
  return name_of(element) == name && namespace_of(element) == name_space;
}

std::string text_of(const xmlNode* element) {
  const Text text(xmlNodeGetContent(element));
  return std::string(trimmed(view(text.get())));
}

std::optional<std::string> attribute(const xmlNode* element, const char* name) {
  const auto* tag = reinterpret_cast<const xmlChar*>(name);
  const xmlAttr* found = xmlHasNsProp(element, tag, nullptr);
  if (found == nullptr) {
    found = xmlHasNsProp(element, tag, reinterpret_cast<const xmlChar*>(kBase.data()));
  }
  return found == nullptr ? std::nullopt : std::optional(value_of(found));
}

std::string value_of(const xmlAttr* attribute) {
  const Text text(xmlNodeGetContent(reinterpret_cast<const xmlNode*>(attribute)));
  return std::string(view(text.get()));
}

std::string print(const xmlNode* element) {
  const XmlDocument document(xmlNewDoc(nullptr));
  xmlNode* copy = xmlDocCopyNode(const_cast<xmlNode*>(element), document.get(), 1);
  if (copy == nullptr) throw std::bad_alloc();
  xmlDocSetRootElement(document.get(), copy);
  // The innermost declaration of a prefix comes first, and is the one that counts.
  xmlNs** known = xmlGetNsList(element->doc, element);
  for (xmlNs** each = known; each != nullptr && *each != nullptr; ++each) {
    if ((*each)->prefix != nullptr) xmlNewNs(copy, (*each)->href, (*each)->prefix);
  }
  if (known != nullptr) xmlFree(known);
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, document.get(), copy, 0, 0);
  std::string text(view(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return text;
}

std::string escaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string element(std::string_view name, std::string_view text) {
  std::string out;
  out.append("<").append(name).append(">").append(escaped(text));
  return out.append("</").append(name).append(">");
}

}  // namespace ocifip::agent
