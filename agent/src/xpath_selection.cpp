// Choosing by XPath expressions. They may take any time: all but small ones are evaluated by a
// process of their own.
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "chosen_nodes.h"
#include "names.h"
#include "ocifip/messages.h"
#include "rpc_error.h"
#include "selection.h"

namespace ocifip::agent {
namespace {

// What is evaluated without a process of its own: an expression without functions, each step of
// which looks at the data or its own texts once at most, so that few steps take little time.
constexpr std::size_t kMostBytes = std::size_t{128} << 20;
constexpr std::size_t kMostData = std::size_t{64} << 10;

// Who asks for another one waits for one of them.
constexpr int kMostProcesses = 4;

constexpr unsigned long kNoLimit = 0;
constexpr std::chrono::milliseconds kNoTime{0};

// More than the trees of a large device and a large result have.
constexpr std::size_t kMostMemory = std::size_t{4} << 30;

constexpr int kTooManySteps = int{XML_XPATH_EXPRESSION_OK} + int{XPATH_OP_LIMIT_EXCEEDED};

// What a process says first: whether data follow, or why there are none.
constexpr char kData = 'd';
constexpr char kReason = 'r';

const xmlChar* chars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

[[noreturn]] void fail(const std::string& message) {
  throw OperationError(RpcError{tags::kInvalidValue, message});
}

[[noreturn]] void fail_xpath(const XPath& xpath, const std::string& reason) {
  fail(in_quotes(xpath.text) + " " + reason);
}

struct ContextDeleter {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct ObjectDeleter {
  void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};
using XPathObject = std::unique_ptr<xmlXPathObject, ObjectDeleter>;

void ignore(void* /*user*/, xmlError* /*error*/) {}

// Null when that takes too many steps.
XPathObject evaluate(const XmlDocument& tree, const XPath& xpath, unsigned long most_steps) {
  const std::unique_ptr<xmlXPathContext, ContextDeleter> context(xmlXPathNewContext(tree.get()));
  if (!context) throw std::bad_alloc();
  context->opLimit = most_steps;
  context->error = ignore;
  for (const auto& [prefix, meaning] : xpath.namespaces) {
    xmlXPathRegisterNs(context.get(), chars(prefix), chars(meaning));
  }
  XPathObject object(xmlXPathEvalExpression(chars(xpath.text), context.get()));
  if (!object && context->lastError.code == kTooManySteps) return nullptr;
  if (!object && context->lastError.code == XML_ERR_NO_MEMORY) throw std::bad_alloc();
  if (!object) fail_xpath(xpath, "is no XPath expression that can be evaluated");
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

// Nothing when it takes too many steps.
std::optional<Elements> select(std::string_view data, const XPath& xpath, const ListKeys& keys,
                               unsigned long most_steps) {
  const XmlDocument tree = tree_of(data);
  const XPathObject object = evaluate(tree, xpath, most_steps);
  if (!object) return std::nullopt;
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

// What the process says.
std::string select_or_reason(std::string_view data, const XPath& xpath, const ListKeys& keys) {
  try {
    return kData + *select(data, xpath, keys, kNoLimit);
  } catch (const OperationError& error) {
    return kReason + std::string(error.what());
  }
}

}  // namespace

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

XPathSelection::XPathSelection(Elements data, XPath xpath, ListKeys keys,
                               std::chrono::seconds patience)
    : data_(std::move(data)),
      xpath_(std::move(xpath)),
      keys_(std::move(keys)),
      patience_(patience) {
  const bool is_plain = xpath_.text.find('(') == std::string::npos;
  if (!is_plain || data_.size() > kMostData) return;
  const std::size_t steps = kMostBytes / (data_.size() + xpath_.text.size() + 1);
  result_ = select(data_, xpath_, keys_, steps);
}

void XPathSelection::begin() {
  process_.emplace([this] { return select_or_reason(data_, xpath_, keys_); },
                   LimitedProcess::Limits{patience_, kMostMemory});
  data_ = {};
}

Step XPathSelection::step() {
  if (result_) return Step::kDone;
  if (!process_ && LimitedProcess::count() >= kMostProcesses) return Step::kWaiting;
  if (!process_) begin();
  return process_->goes_on(kNoTime) ? Step::kWaiting : Step::kDone;
}

Elements XPathSelection::finish() {
  if (result_) return std::move(*result_);
  std::optional<std::string> said = process_->result();
  process_.reset();
  if (!said || said->empty()) {
    throw OperationError(RpcError{tags::kResourceDenied,
                                  in_quotes(xpath_.text) + " takes too long or too much memory"});
  }
  const bool is_data = said->front() == kData;
  said->erase(0, 1);
  if (!is_data) fail(*said);
  return std::move(*said);
}

Elements XPathSelection::select_now(Elements data, XPath xpath, ListKeys keys,
                                    std::chrono::seconds patience) {
  XPathSelection selection(std::move(data), std::move(xpath), std::move(keys), patience);
  if (!selection.result_) selection.begin();
  while (selection.process_ && selection.process_->goes_on(patience)) {
  }
  return selection.finish();
}

}  // namespace ocifip::agent
