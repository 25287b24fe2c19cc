#include "io/read_xml.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include "io/netconf.h"
#include "io/quiet_libyang.h"
#include "io/text.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

using Context = std::unique_ptr<ly_ctx, decltype(&ly_ctx_destroy)>;
using Elements = std::unique_ptr<lyd_node, decltype(&lyd_free_all)>;

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string_view text_of(const char* text) { return text == nullptr ? "" : text; }

// Gives each element the line that its tag begins on: libyang's trees have the text's order, but
// no lines.
class TagLines {
 public:
  explicit TagLines(std::string_view text) : text_(text) {}

  int next() {
    while (!text_.empty() && !find_opening_tag()) {
    }
    const int line = line_;
    pass(1);
    return line;
  }

 private:
  // Goes to the next "<", and past what it begins when that is no opening tag.
  bool find_opening_tag() {
    pass(text_.find('<'));
    if (text_.starts_with("<!--")) return pass_through("-->");
    if (text_.starts_with("<![CDATA[")) return pass_through("]]>");
    if (text_.starts_with("<?")) return pass_through("?>");
    if (text_.starts_with("</")) return pass_through(">");
    return true;
  }

  bool pass_through(std::string_view mark) {
    pass(text_.find(mark));
    pass(mark.size());
    return false;
  }

  void pass(std::size_t count) {
    const auto passed = text_.substr(0, count);
    line_ += static_cast<int>(std::count(passed.begin(), passed.end(), '\n'));
    text_.remove_prefix(passed.size());
  }

  std::string_view text_;
  int line_ = 1;
};

// libyang as a reader of XML alone: it knows no module here, and keeps every element as it came.
class XmlReader {
 public:
  XmlReader(const Models& models, const std::string& name, std::string_view text)
      : name_(name), text_(text), lines_(text_), builder_(models, name) {}

  Document read();

 private:
  Elements parse(ly_ctx* context);
  void add_top(const lyd_node_opaq& element);
  void add(const lyd_node_opaq& element);
  void add_children(const lyd_node_opaq& element);
  void annotate(const lyd_node_opaq& element, DocumentNode* node, int line);
  void settle(DocumentNode& node, const lyd_node_opaq& element);
  [[noreturn]] void fail(int line, const std::string& reason) const {
    throw input_error(name_, line, reason);
  }

  const std::string& name_;
  std::string text_;
  TagLines lines_;
  TreeBuilder builder_;
};

// libyang's reason for refusing a text, with its line.
[[noreturn]] void fail_with_reason(const ly_ctx* context, const std::string& name) {
  const auto* const item = ly_err_first(context);
  if (item == nullptr) throw input_error(name, 0, "not valid XML");
  constexpr std::string_view kLine = "Line number ";
  int line = 0;
  const auto place = text_of(item->path);
  if (const auto at = place.find(kLine); at != std::string_view::npos) {
    std::from_chars(place.data() + at + kLine.size(), place.data() + place.size(), line);
  }
  throw input_error(name, line, "not valid XML: " + std::string(text_of(item->msg)));
}

Elements XmlReader::parse(ly_ctx* context) {
  const QuietLibyang quiet;
  lyd_node* first = nullptr;
  const auto result = lyd_parse_data_mem(context, text_.c_str(), LYD_XML,
                                         LYD_PARSE_ONLY | LYD_PARSE_OPAQ, 0, &first);
  Elements elements(first, &lyd_free_all);
  if (result != LY_SUCCESS) fail_with_reason(context, name_);
  return elements;
}

const lyd_node_opaq& opaque(const lyd_node* node) {
  return *reinterpret_cast<const lyd_node_opaq*>(node);
}

Document XmlReader::read() {
  ly_ctx* created = nullptr;
  if (ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD, &created) !=
      LY_SUCCESS) {
    fail(0, "no memory to read it");
  }
  const Context context(created, &ly_ctx_destroy);
  const auto elements = parse(context.get());
  if (!elements) fail(0, "no element in it");
  for (const auto* node = elements.get(); node != nullptr; node = node->next) add_top(opaque(node));
  return builder_.finish();
}

// A top-level element is a node, or the "config" or "data" around the nodes.
void XmlReader::add_top(const lyd_node_opaq& element) {
  const std::string_view name = element.name.name;
  const bool is_wrapper =
      text_of(element.name.module_ns) == kNetconfNamespace && (name == "config" || name == "data");
  if (!is_wrapper) return add(element);
  const int line = lines_.next();
  annotate(element, nullptr, line);
  if (!is_blank(text_of(element.value))) fail(line, "text outside of a node");
  add_children(element);
}

void XmlReader::add(const lyd_node_opaq& element) {
  const int line = lines_.next();
  auto node = builder_.xml_node(text_of(element.name.module_ns), element.name.name, line);
  annotate(element, &node, line);
  if (element.child != nullptr && !is_blank(text_of(element.value))) {
    fail(line, "text and elements side by side in " + in_quotes(element.name.name));
  }
  builder_.open(std::move(node));
  add_children(element);
  settle(builder_.current(), element);
  builder_.close();
}

void XmlReader::add_children(const lyd_node_opaq& element) {
  for (const auto* node = element.child; node != nullptr; node = node->next) add(opaque(node));
}

// Takes over the operation among an element's attributes; the others mean nothing here.
void XmlReader::annotate(const lyd_node_opaq& element, DocumentNode* node, int line) {
  for (const auto* attribute = element.attr; attribute != nullptr; attribute = attribute->next) {
    const std::string_view name = attribute->name.name;
    if (name != "operation") continue;
    if (text_of(attribute->name.module_ns) != kNetconfNamespace) {
      // Passed over, it would turn a delete into a write.
      fail(line, "attribute " + in_quotes(name) + " is not in the namespace " +
                     std::string(kNetconfNamespace));
    }
    if (node == nullptr) fail(line, "an operation outside of a node");
    builder_.annotate(*node, attribute->value, line);
  }
}

// What an element is when all of it is known.
void XmlReader::settle(DocumentNode& node, const lyd_node_opaq& element) {
  const auto known = node.schema == nullptr ? NodeKind::kContainer : Models::kind(node.schema);
  const bool is_known_inner =
      node.schema != nullptr && (known == NodeKind::kContainer || known == NodeKind::kList);
  const bool is_empty = is_blank(text_of(element.value));
  if (element.child != nullptr || (is_empty && is_known_inner)) {
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
    node.value = text_of(element.value);
  }
}

}  // namespace

Document read_xml(const Models& models, const std::string& name, std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return XmlReader(models, name, text).read();
}

}  // namespace ocifip
