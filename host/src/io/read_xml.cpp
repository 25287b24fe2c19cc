#include "io/read_xml.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "io/netconf.h"
#include "io/netconf_envelope.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "ocifip/nearest_name.h"

namespace ocifip {
namespace {

// The parser is fed in parts, so that it needs no more than one at a time.
constexpr std::size_t kPartSize = 65536;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::string_view kBlanks = " \t\r\n";

bool is_blank(std::string_view text) {
  return text.find_first_not_of(kBlanks) == std::string_view::npos;
}

using Fault = InputFault::Kind;

std::string_view text_of(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

std::string trimmed(std::string_view text) {
  const auto first = std::min(text.find_first_not_of(kBlanks), text.size());
  const auto last = text.find_last_not_of(kBlanks);
  return std::string(text.substr(first, last + 1 - first));
}

// The name of the encoding that a document declares; "" when it declares none.
std::string_view declared_encoding(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (!text.starts_with("<?xml")) return {};
  text = text.substr(0, text.find("?>"));
  text.remove_prefix(std::min(text.find("encoding"), text.size()));
  const auto quote = text.find_first_of("\"'");
  if (quote == std::string_view::npos) return {};
  const auto end = text.find(text[quote], quote + 1);
  return text.substr(quote + 1, end - quote - 1);
}

// The parser takes all text for UTF-8. ASCII text is the same in what a declaration may name.
void check_encoding(const std::string& name, std::string_view text) {
  const std::string encoding(declared_encoding(text));
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (encoding.empty() || strcasecmp(encoding.c_str(), "UTF-8") == 0 ||
      std::all_of(text.begin(), text.end(), is_ascii)) {
    return;
  }
  throw input_error(name, 1, "the encoding is " + in_quotes(encoding) + ", only UTF-8 is read",
                    {Fault::kMalformed});
}

// An attribute as the parser gives it: five pointers.
struct Attribute {
  const xmlChar* name;
  const xmlChar* prefix;
  const xmlChar* module_namespace;
  const xmlChar* value;
  const xmlChar* value_end;

  [[nodiscard]] std::string_view text() const {
    return {reinterpret_cast<const char*>(value), static_cast<std::size_t>(value_end - value)};
  }
};

// Takes libxml2's events. None of its functions may leave with an exception: what fails is kept,
// and the parser stopped.
class XmlReader {
 public:
  XmlReader(const Models& models, const std::string& name, DocumentUse use)
      : models_(models), name_(name), builder_(models, name, use), handler_(make_handler()) {}

  Document read(std::string_view text);
  Document read_body(std::string_view text, const BodyPlace& place);

 private:
  struct Element {
    const EnvelopePart* part = nullptr;  // null for a node
    bool has_children = false;
    std::string text{};
    std::vector<const EnvelopePart*> parts{};  // its children that are no nodes
  };

  static xmlSAXHandler make_handler();
  template <typename Step>
  static void take(void* reader, const Step& step);

  void open(std::string_view tag, std::string_view module_namespace,
            std::span<const Attribute> attributes);
  [[nodiscard]] const EnvelopePart* part_of(std::string_view tag,
                                            std::string_view module_namespace) const;
  void open_part(const EnvelopePart& part, std::span<const Attribute> attributes);
  void add_part(Element& around, const EnvelopePart& part) const;
  void close_part(const Element& element);
  void take_parameter(std::string_view tag, std::string_view text);
  void close();
  void make_parser();
  void feed(std::string_view text, bool is_last);
  void add_text(std::string_view text);
  [[noreturn]] void fail_attribute(std::string_view name, const std::string& whose,
                                   const DocumentNode& node) const;
  void annotate(std::span<const Attribute> attributes, DocumentNode* node);
  static void settle(DocumentNode& node, Element& element);
  [[nodiscard]] int line() const { return xmlSAX2GetLineNumber(parser_.get()); }
  [[noreturn]] void fail(const std::string& reason, Fault kind = Fault::kMalformed,
                         std::string_view tag = {}) const {
    throw input_error(name_, line(), reason, {kind, std::string(tag)});
  }

  const Models& models_;
  const std::string& name_;
  TreeBuilder builder_;
  xmlSAXHandler handler_;
  std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser_{nullptr, &xmlFreeParserCtxt};
  std::vector<Element> open_;
  Envelope envelope_ = Envelope::kNone;
  std::optional<Operation> operation_;
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
      throw input_error(self.name_, error->line, "not valid XML: " + in_one_line(error->message),
                        {Fault::kMalformed});
    });
  };
  return handler;
}

void XmlReader::make_parser() {
  parser_.reset(xmlCreatePushParserCtxt(&handler_, this, nullptr, 0, nullptr));
  if (parser_ == nullptr) throw std::bad_alloc();
  xmlCtxtUseOptions(parser_.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
}

Document XmlReader::read(std::string_view text) {
  make_parser();
  feed(text, true);
  Document document = builder_.finish();
  document.envelope = envelope_;
  document.operation = operation_;
  return document;
}

// A document has one element at the top, which a body has not.
Document XmlReader::read_body(std::string_view text, const BodyPlace& place) {
  if (place.target.kind == NodeKind::kLeaf || place.target.kind == NodeKind::kLeafList) {
    throw input_error(name_, 1, "the body of " + in_quotes(place.target.tag) + " is a JSON value",
                      {Fault::kMalformed});
  }
  if (place.target.kind == NodeKind::kList && place.keys.empty()) {
    throw input_error(name_, 1, "XML elements are the body of one entry: its keys are missing",
                      {Fault::kMissingNode});
  }
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (text.starts_with("<?xml")) text.remove_prefix(std::min(text.find("?>") + 2, text.size()));
  place.open_way(builder_);
  builder_.open(place.target);
  make_parser();
  feed("<nc:data xmlns:nc=\"" + std::string(kNetconfNamespace) + "\">", false);
  feed(text, false);
  if (open_.size() > 1) fail("not valid XML: an element is not closed");
  feed("</nc:data>", true);
  while (!builder_.at_top()) builder_.close();
  return builder_.finish();
}

void XmlReader::feed(std::string_view text, bool is_last) {
  while (!text.empty() && !failure_) {
    const auto part = text.substr(0, kPartSize);
    text.remove_prefix(part.size());
    const bool ends = is_last && text.empty();
    xmlParseChunk(parser_.get(), part.data(), static_cast<int>(part.size()), ends ? 1 : 0);
  }
  if (failure_) std::rethrow_exception(failure_);
}

// The part of an envelope that an element is, or null for a node. Only a model's node is not taken
// for a part when it has no namespace.
const EnvelopePart* XmlReader::part_of(std::string_view tag,
                                       std::string_view module_namespace) const {
  if (open_.empty()) {
    const bool is_netconf = module_namespace == kNetconfNamespace;
    const bool is_unnamed = module_namespace.empty() && models_.child(nullptr, tag, {}) == nullptr;
    return is_netconf || is_unnamed ? find_part(tag, "") : nullptr;
  }
  const EnvelopePart* around = open_.back().part;
  if (around == nullptr || around->role == EnvelopePart::Role::kHolder) return nullptr;
  const auto* part = find_part(tag, around->tag);
  if (part == nullptr) {
    fail(in_quotes(tag) + " is not supported in a NETCONF " + in_quotes(around->tag),
         Fault::kUnknownNode, tag);
  }
  return part;
}

void XmlReader::open_part(const EnvelopePart& part, std::span<const Attribute> attributes) {
  annotate(attributes, nullptr);
  for (const auto& attribute : attributes) {
    const auto name = text_of(attribute.name);
    // A request may have any attribute, which its reply use.
    const bool is_free =
        part.tag.starts_with("rpc") || !text_of(attribute.module_namespace).empty();
    if (part.tag == "filter" && name == "type") {
      if (attribute.text() == "subtree") continue;
      fail("only subtree filters are supported, not " + in_quotes(attribute.text()),
           Fault::kBadValue, name);
    }
    if (!is_free) {
      fail("unknown attribute " + in_quotes(name) + " of " + in_quotes(part.tag) +
               (part.tag == "filter" ? did_you_mean(name, {"type"}) : ""),
           Fault::kUnknownAttribute, name);
    }
  }
  if (!open_.empty()) add_part(open_.back(), part);
  if (part.envelope != Envelope::kNone) envelope_ = part.envelope;
}

void XmlReader::add_part(Element& around, const EnvelopePart& part) const {
  const auto holds_one = around.part->holds_one;
  auto& parts = around.parts;
  const bool is_second = holds_one.empty()
                             ? std::find(parts.begin(), parts.end(), &part) != parts.end()
                             : !parts.empty();
  if (is_second) {
    fail("a second " + (holds_one.empty() ? in_quotes(part.tag) : std::string(holds_one)) +
         " in one " + in_quotes(around.part->tag));
  }
  parts.push_back(&part);
}

void XmlReader::close_part(const Element& element) {
  const auto& part = *element.part;
  if (!part.holds_one.empty() && element.parts.empty()) {
    fail(in_quotes(part.tag) + " without a " + std::string(part.holds_one), Fault::kMissingNode,
         part.tag);
  }
  const auto missing = missing_part(part, element.parts);
  if (!missing.empty()) {
    fail(in_quotes(part.tag) + " without its " + in_quotes(missing), Fault::kMissingNode, missing);
  }
  if (part.role == EnvelopePart::Role::kParameter) take_parameter(part.tag, trimmed(element.text));
}

// Takes over a parameter of an edit. Edits are tested and atomic, whatever their other options say.
void XmlReader::take_parameter(std::string_view tag, std::string_view text) {
  if (tag == "test-option") {
    if (text == "test-only")
      fail("the test option \"test-only\" is not supported", Fault::kBadValue, tag);
    if (text != "set" && text != "test-then-set")
      fail("unknown test option " + in_quotes(text), Fault::kBadValue, tag);
  } else if (tag == "error-option") {
    const bool is_known =
        text == "stop-on-error" || text == "continue-on-error" || text == "rollback-on-error";
    if (!is_known) fail("unknown error option " + in_quotes(text), Fault::kBadValue, tag);
  } else {
    const std::array<std::pair<std::string_view, Operation>, 3> operations{
        {{"merge", Operation::kWrite},
         {"replace", Operation::kReplace},
         {"none", Operation::kNone}}};
    for (const auto& [name, operation] : operations) {
      if (text == name) operation_ = operation;
    }
    if (!operation_) fail("unknown default operation " + in_quotes(text), Fault::kBadValue, tag);
  }
}

void XmlReader::open(std::string_view tag, std::string_view module_namespace,
                     std::span<const Attribute> attributes) {
  if (!open_.empty()) {
    if (!is_blank(open_.back().text)) {
      fail("text and elements side by side, before " + in_quotes(tag));
    }
    open_.back().has_children = true;
  }
  const EnvelopePart* part = part_of(tag, module_namespace);
  if (part != nullptr) {
    open_part(*part, attributes);
  } else {
    auto node = builder_.xml_node(module_namespace, tag, line());
    annotate(attributes, &node);
    builder_.open(std::move(node));
  }
  open_.push_back({.part = part});
}

void XmlReader::close() {
  Element& element = open_.back();
  if (element.part != nullptr) {
    close_part(element);
  } else {
    settle(builder_.current(), element);
    builder_.close();
  }
  open_.pop_back();
}

void XmlReader::add_text(std::string_view text) {
  Element& element = open_.back();
  const bool has_text =
      element.part == nullptr || element.part->role == EnvelopePart::Role::kParameter;
  if (has_text && !element.has_children) {
    element.text += text;
  } else if (!is_blank(text)) {
    fail(element.part != nullptr ? "text outside of a node" : "text and elements side by side");
  }
}

void XmlReader::fail_attribute(std::string_view name, const std::string& whose,
                               const DocumentNode& node) const {
  builder_.fail_at(line(),
                   "unknown attribute " + in_quotes(name) + whose + builder_.here(&node) +
                       did_you_mean(name, {"operation"}),
                   Fault::kUnknownAttribute, name, &node);
}

// Takes over the operation among an element's attributes; those of other namespaces mean nothing
// here.
void XmlReader::annotate(std::span<const Attribute> attributes, DocumentNode* node) {
  for (const auto& attribute : attributes) {
    const auto name = text_of(attribute.name);
    const bool is_netconf = text_of(attribute.module_namespace) == kNetconfNamespace;
    if (name != "operation" && is_netconf && node != nullptr) {
      fail_attribute(name, " of NETCONF", *node);
    }
    if (name != "operation" && text_of(attribute.module_namespace).empty() && node != nullptr) {
      fail_attribute(name, "", *node);
    }
    if (name != "operation") continue;
    if (!is_netconf) {
      // Passed over, it would turn a delete into a write.
      fail("attribute " + in_quotes(name) + " is not in the namespace " +
               std::string(kNetconfNamespace),
           Fault::kUnknownAttribute, name);
    }
    if (node == nullptr) fail("an operation outside of a node", Fault::kUnknownAttribute, name);
    builder_.annotate(*node, attribute.text(), line());
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

Document read_xml(const Models& models, const std::string& name, std::string_view text,
                  DocumentUse use) {
  check_encoding(name, text);
  return XmlReader(models, name, use).read(text);
}

Document read_xml(const Models& models, const std::string& name, std::string_view text,
                  const BodyPlace& place) {
  check_encoding(name, text);
  return XmlReader(models, name, DocumentUse::kData).read_body(text, place);
}

}  // namespace ocifip
