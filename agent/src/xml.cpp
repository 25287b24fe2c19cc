#include "xml.h"

#include <libxml/parser.h>

#include <climits>

#include "names.h"
#include "ocifip/messages.h"

namespace ocifip::agent {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kLongestTag = 16384;

// A prefix that no client has.
constexpr const char* kWrapper = "ocifip-netconf";

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

const xmlChar* chars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

// A copy of an element, at the top of a document of its own, with the namespaces that are known
// where the original stands.
struct Copy {
  explicit Copy(const xmlNode* element)
      : document(xmlNewDoc(nullptr)),
        top(xmlDocCopyNode(const_cast<xmlNode*>(element), document.get(), 1)) {
    if (top == nullptr) throw std::bad_alloc();
    xmlDocSetRootElement(document.get(), top);
    for (const auto& [prefix, meaning] : namespaces_at(element)) {
      // Null for one that it has.
      xmlNewNs(top, chars(meaning), prefix.empty() ? nullptr : chars(prefix));
    }
  }

  XmlDocument document;
  xmlNode* top;
};

std::string dumped(xmlDoc* document, xmlNode* node) {
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, document, node, 0, 0);
  std::string text(view(xmlBufferContent(buffer)));
  xmlBufferFree(buffer);
  return text;
}

bool is_utf8(const xmlChar* encoding) {
  return xmlStrcasecmp(encoding, reinterpret_cast<const xmlChar*>("UTF-8")) == 0;
}

void trim_leaves(xmlNode* node) {
  const auto children = elements(node);
  for (const xmlNode* child : children) trim_leaves(const_cast<xmlNode*>(child));
  if (!children.empty() || node->children == nullptr) return;
  const std::string text = text_of(node);
  xmlNodeSetContent(node, nullptr);
  xmlNodeAddContentLen(node, reinterpret_cast<const xmlChar*>(text.data()),
                       static_cast<int>(text.size()));
}

// Where what begins at a place ends; the end of the text when it does not.
std::size_t end_behind(std::string_view text, std::size_t at, std::string_view end) {
  const std::size_t found = text.find(end, at);
  return found == std::string_view::npos ? text.size() : found + end.size();
}

// Where a tag ends, whose attributes may have any text in quotes.
std::size_t end_of_tag(std::string_view text, std::size_t at) {
  char quote = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at + 1;
    }
  }
  return at;
}

void check_tags(std::string_view text) {
  std::size_t at = 0;
  while ((at = text.find('<', at)) != std::string_view::npos) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<!--")) {
      at = end_behind(text, at, "-->");
    } else if (rest.starts_with("<![CDATA[")) {
      at = end_behind(text, at, "]]>");
    } else if (rest.starts_with("<?")) {
      at = end_behind(text, at, "?>");
    } else {
      const std::size_t end = end_of_tag(text, at);
      if (end - at > kLongestTag) throw XmlError("a tag of more than 16384 bytes");
      at = end;
    }
  }
}

}  // namespace

void begin_xml() { xmlInitParser(); }

XmlDocument parse_xml(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) throw XmlError("a message without content");
  text.remove_prefix(first);
  if (text.size() > INT_MAX) throw XmlError("a message of more than 2 GB");
  // All encodings of wider characters have it.
  if (text.find('\0') != std::string_view::npos) throw XmlError("a message that is not UTF-8");
  check_tags(text);
  const std::unique_ptr<xmlParserCtxt, ContextDeleter> context(xmlNewParserCtxt());
  if (!context) throw std::bad_alloc();
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  XmlDocument document(xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                         nullptr, nullptr, kOptions));
  if (!document) throw XmlError(reason(xmlCtxtGetLastError(context.get())));
  if (context->nsWellFormed == 0) throw XmlError(reason(xmlCtxtGetLastError(context.get())));
  if (document->encoding != nullptr && !is_utf8(document->encoding)) {
    throw XmlError("the encoding is " + in_quotes(view(document->encoding)) + ", and not UTF-8");
  }
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

std::string_view attribute_name(const xmlAttr* attribute) { return view(attribute->name); }

std::string value_of(const xmlAttr* attribute) {
  const Text text(xmlNodeGetContent(reinterpret_cast<const xmlNode*>(attribute)));
  return std::string(view(text.get()));
}

// The innermost declaration of a prefix comes first, and is the one that counts.
Namespaces namespaces_at(const xmlNode* element) {
  Namespaces found;
  xmlNs** known = xmlGetNsList(element->doc, element);
  for (xmlNs** each = known; each != nullptr && *each != nullptr; ++each) {
    found.emplace_back(view((*each)->prefix), view((*each)->href));
  }
  if (known != nullptr) xmlFree(known);
  return found;
}

XmlDocument copy_of(const xmlNode* element) { return std::move(Copy(element).document); }

std::string print(const xmlNode* element) {
  const Copy copy(element);
  return dumped(copy.document.get(), copy.top);
}

std::string print_content(const xmlNode* element, std::string_view name, Blanks blanks,
                          const std::function<bool(const xmlNode*)>& keeps) {
  const Copy copy(element);
  if (blanks == Blanks::kTrimmed) trim_leaves(copy.top);
  const std::string tag = kWrapper + std::string(":") + std::string(name);
  std::string text = "<" + tag + " xmlns:" + kWrapper + "=\"" + std::string(kBase) + "\"";
  for (const xmlNs* each = copy.top->nsDef; each != nullptr; each = each->next) {
    text += each->prefix == nullptr ? " xmlns" : " xmlns:" + std::string(view(each->prefix));
    text += "=\"" + escaped(view(each->href)) + "\"";
  }
  text += ">";
  for (xmlNode* child = copy.top->children; child != nullptr; child = child->next) {
    const bool is_kept = child->type == XML_ELEMENT_NODE && (!keeps || keeps(child));
    if (is_kept) text += dumped(copy.document.get(), child);
  }
  return text + "</" + tag + ">";
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

std::string escaped_value(std::string_view value) {
  std::string out;
  for (const char c : escaped(value)) {
    const bool is_kept = c != '\n' && c != '\r' && c != '\t';
    out += is_kept ? std::string(1, c) : "&#" + std::to_string(int{c}) + ";";
  }
  return out;
}

std::string element(std::string_view name, std::string_view text) {
  std::string out;
  out.append("<").append(name).append(">").append(escaped(text));
  return out.append("</").append(name).append(">");
}

}  // namespace ocifip::agent
