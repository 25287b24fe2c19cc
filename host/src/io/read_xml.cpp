#include "io/read_xml.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <exception>
#include <memory>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "io/netconf.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "ocifip/nearest_name.h"

namespace ocifip {
namespace {

// The parser is fed in parts, so that it needs no more than one at a time.
constexpr std::size_t kPartSize = 65536;

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view text_of(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

// An attribute as the parser gives it: five pointers.
struct Attribute {
  const xmlChar* name;
  const xmlChar* prefix;
  const xmlChar* module_namespace;
  const xmlChar* value;
  const xmlChar* value_end;
};

// Takes libxml2's events. None of its functions may leave with an exception: what fails is kept,
// and the parser stopped.
class XmlReader {
 public:
  XmlReader(const Models& models, const std::string& name)
      : name_(name), builder_(models, name), handler_(make_handler()) {}

  Document read(std::string_view text);

 private:
  struct Element {
    bool is_wrapper = false;  // "config" or "data" around the nodes
    bool has_children = false;
    std::string text{};
  };

  static xmlSAXHandler make_handler();
  template <typename Step>
  static void take(void* reader, const Step& step);

  void open(std::string_view tag, std::string_view module_namespace,
            std::span<const Attribute> attributes);
  void close();
  void add_text(std::string_view text);
  void annotate(std::span<const Attribute> attributes, DocumentNode* node);
  static void settle(DocumentNode& node, Element& element);
  [[nodiscard]] int line() const { return xmlSAX2GetLineNumber(parser_.get()); }
  [[noreturn]] void fail(const std::string& reason) const {
    throw input_error(name_, line(), reason);
  }

  const std::string& name_;
  TreeBuilder builder_;
  xmlSAXHandler handler_;
  std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser_{nullptr, &xmlFreeParserCtxt};
  std::vector<Element> open_;
  std::exception_ptr failure_;
};

// Takes one event, unless an earlier one failed.
template <typename Step>
void XmlReader::take(void* reader, const Step& step) {
  auto& self = *static_cast<XmlReader*>(reader);
  if (self.failure_) return;
  try {
    step(self);
  } catch (...) {
    self.failure_ = std::current_exception();
    xmlStopParser(self.parser_.get());
  }
}

xmlSAXHandler XmlReader::make_handler() {
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.startElementNs = [](void* reader, const xmlChar* tag, const xmlChar* /*prefix*/,
                              const xmlChar* module_namespace, int /*namespace_count*/,
                              const xmlChar** /*namespaces*/, int attribute_count,
                              int /*defaulted_count*/, const xmlChar** attributes) {
    const std::span all(reinterpret_cast<const Attribute*>(attributes),
                        static_cast<std::size_t>(attribute_count));
    take(reader, [&](XmlReader& self) { self.open(text_of(tag), text_of(module_namespace), all); });
  };
  handler.endElementNs = [](void* reader, const xmlChar*, const xmlChar*, const xmlChar*) {
    take(reader, [](XmlReader& self) { self.close(); });
  };
  handler.characters = [](void* reader, const xmlChar* text, int length) {
    take(reader, [&](XmlReader& self) {
      self.add_text({reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
    });
  };
  handler.ignorableWhitespace = handler.characters;
  handler.cdataBlock = handler.characters;
  // Nothing here needs a document type, which can hold bombs.
  handler.internalSubset = [](void* reader, const xmlChar*, const xmlChar*, const xmlChar*) {
    take(reader, [](XmlReader& self) { self.fail("a document type is not accepted"); });
  };
  handler.serror = [](void* reader, xmlErrorPtr error) {
    if (error->level == XML_ERR_WARNING) return;
    take(reader, [&](XmlReader& self) {
      throw input_error(self.name_, error->line, "not valid XML: " + in_one_line(error->message));
    });
  };
  return handler;
}

Document XmlReader::read(std::string_view text) {
  parser_.reset(xmlCreatePushParserCtxt(&handler_, this, nullptr, 0, nullptr));
  if (parser_ == nullptr) throw std::bad_alloc();
  xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
  while (!text.empty() && !failure_) {
    const auto part = text.substr(0, kPartSize);
    text.remove_prefix(part.size());
    xmlParseChunk(parser_.get(), part.data(), static_cast<int>(part.size()), text.empty() ? 1 : 0);
  }
  if (failure_) std::rethrow_exception(failure_);
  return builder_.finish();
}

void XmlReader::open(std::string_view tag, std::string_view module_namespace,
                     std::span<const Attribute> attributes) {
  if (!open_.empty()) {
    if (!is_blank(open_.back().text)) {
      fail("text and elements side by side, before " + in_quotes(tag));
    }
    open_.back().has_children = true;
  }
  const bool is_wrapper =
      open_.empty() && module_namespace == kNetconfNamespace && (tag == "config" || tag == "data");
  if (is_wrapper) {
    annotate(attributes, nullptr);
  } else {
    auto node = builder_.xml_node(module_namespace, tag, line());
    annotate(attributes, &node);
    builder_.open(std::move(node));
  }
  open_.push_back({.is_wrapper = is_wrapper});
}

void XmlReader::close() {
  Element& element = open_.back();
  if (!element.is_wrapper) {
    settle(builder_.current(), element);
    builder_.close();
  }
  open_.pop_back();
}

void XmlReader::add_text(std::string_view text) {
  Element& element = open_.back();
  if (!element.is_wrapper && !element.has_children) {
    element.text += text;
  } else if (!is_blank(text)) {
    fail(element.is_wrapper ? "text outside of a node" : "text and elements side by side");
  }
}

// Takes over the operation among an element's attributes; those of other namespaces mean nothing
// here.
void XmlReader::annotate(std::span<const Attribute> attributes, DocumentNode* node) {
  for (const auto& attribute : attributes) {
    const auto name = text_of(attribute.name);
    const bool is_netconf = text_of(attribute.module_namespace) == kNetconfNamespace;
    if (name != "operation" && is_netconf && node != nullptr) {
      fail("unknown attribute " + in_quotes(name) + " of NETCONF" +
           did_you_mean(name, {"operation"}));
    }
    if (name != "operation") continue;
    if (!is_netconf) {
      // Passed over, it would turn a delete into a write.
      fail("attribute " + in_quotes(name) + " is not in the namespace " +
           std::string(kNetconfNamespace));
    }
    if (node == nullptr) fail("an operation outside of a node");
    const std::string_view operation(
        reinterpret_cast<const char*>(attribute.value),
        static_cast<std::size_t>(attribute.value_end - attribute.value));
    builder_.annotate(*node, operation, line());
  }
}

// What an element is when all of it is known.
void XmlReader::settle(DocumentNode& node, Element& element) {
  const auto known = node.schema == nullptr ? NodeKind::kContainer : Models::kind(node.schema);
  const bool is_known_inner =
      node.schema != nullptr && (known == NodeKind::kContainer || known == NodeKind::kList);
  const bool is_empty = is_blank(element.text);
  if (element.has_children || (is_empty && is_known_inner)) {
    node.kind = is_known_inner ? known : NodeKind::kContainer;
    return;
  }
  node.kind = known == NodeKind::kLeafList ? NodeKind::kLeafList : NodeKind::kLeaf;

  const bool is_of_type_empty = node.schema != nullptr && Models::is_empty_leaf(node.schema);
  const bool is_deleted =
      node.operation == Operation::kDelete || node.operation == Operation::kRemove;
  if (is_empty && is_of_type_empty) {
    node.value.emplace();
  } else if (!is_empty || !is_deleted) {
    node.value = std::move(element.text);
  }
}

}  // namespace

Document read_xml(const Models& models, const std::string& name, std::string_view text) {
  return XmlReader(models, name).read(text);
}

}  // namespace ocifip
