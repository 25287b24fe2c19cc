#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "io/body_place.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io/read_json.h"
#include "io/read_xml.h"
#include "io/text.h"

namespace ocifip {
namespace {

bool leads_on(const DocumentNode& node) {
  return !node.children.empty() && !is_key(node.children.back());
}

// The siblings that a body became, behind the keys of the entry that they are in.
std::span<DocumentNode> bodies(Document& document, const BodyPlace& place) {
  std::span<DocumentNode> nodes = document.roots;
  for (std::size_t depth = 0; depth < place.way.size(); ++depth) nodes = nodes.back().children;
  const auto first = std::find_if_not(nodes.begin(), nodes.end(), is_key);
  return nodes.subspan(static_cast<std::size_t>(first - nodes.begin()));
}

// The container that holds the list which a body is of and nothing else: what is done to the list
// as a whole is done to it. Null when the body is of something else.
DocumentNode* holder_of_list(const Models& models, Document& document, const BodyPlace& place) {
  const bool is_list = place.target.kind == NodeKind::kList && place.keys.empty();
  if (!is_list || place.way.empty()) return nullptr;
  DocumentNode* holder = &document.roots.back();
  for (std::size_t depth = 1; depth < place.way.size(); ++depth) holder = &holder->children.back();
  return models.children(holder->schema).size() == 1 ? holder : nullptr;
}

// All values of a leaf-list go: there is none that a replace could be said of.
void remove_values(Document& document, const BodyPlace& place) {
  std::vector<DocumentNode>* nodes = &document.roots;
  for (std::size_t depth = 0; depth < place.way.size(); ++depth) nodes = &nodes->back().children;
  DocumentNode all = place.target;
  all.operation = Operation::kRemove;
  nodes->insert(std::find_if_not(nodes->begin(), nodes->end(), is_key), std::move(all));
}

// Gives the entry that a body describes the keys that its path names.
void add_keys(const Document& document, const BodyPlace& place, DocumentNode& entry) {
  for (const auto& key : place.keys) {
    const auto given = std::find_if(entry.children.begin(), entry.children.end(),
                                    [&](const auto& child) { return child.schema == key.schema; });
    if (given == entry.children.end()) {
      entry.children.push_back(key);
    } else if (!has_same_value(*given, key)) {
      throw input_error(document.name, given->line,
                        "the key " + in_quotes(key.tag) + " is " + in_quotes(*key.value) +
                            " in the path, but " + in_quotes(given->value.value_or("")) + " here",
                        {InputFault::Kind::kBadValue, key.tag});
    }
  }
  arrange(entry.children);
}

}  // namespace

void BodyPlace::open_way(TreeBuilder& builder) const {
  for (auto node : way) {
    auto children = std::exchange(node.children, {});
    builder.open(std::move(node));
    for (auto& child : children) builder.add(std::move(child));
  }
}

BodyPlace body_place(const Models& models, const std::string& path) {
  // Like a body, a deletion is of one node, which it marks.
  Document document = read_path(models, path, Operation::kDelete);
  BodyPlace place;
  DocumentNode node = std::move(document.roots.front());
  while (leads_on(node)) {
    DocumentNode below = std::move(node.children.back());
    node.children.pop_back();
    place.way.push_back(std::exchange(node, std::move(below)));
  }
  if (!node.operation) {
    throw input_error(in_short(path), 0, "a key has no body, give that of its entry");
  }
  if (node.value) throw input_error(in_short(path), 0, "a value of a leaf-list has no body");
  node.operation.reset();
  place.keys = std::exchange(node.children, {});
  place.target = std::move(node);
  return place;
}

Document read_body(const Models& models, const PathBody& body,
                   std::optional<BodyOperation> operation) {
  const BodyPlace place = body_place(models, body.path);
  const std::string name = in_short(body.body.name);
  const std::string& text = body.body.text;
  check_text(name, text);
  Document document = body.body.encoding == Encoding::kXml
                          ? read_xml(models, name, text, place)
                          : read_json(models, name, text, OtherAnnotations::kPassedOver, &place);
  const bool replaces = operation && operation->name == Operation::kReplace;
  DocumentNode* list_holder = replaces ? holder_of_list(models, document, place) : nullptr;
  const auto operate = [&](DocumentNode& node) {
    if (!operation) return;
    node.operation = operation->name;
    node.is_created = operation->creates;
  };
  if (list_holder != nullptr) operate(*list_holder);
  const std::span<DocumentNode> nodes = bodies(document, place);
  for (DocumentNode& node : nodes) {
    add_keys(document, place, node);
    if (!node.operation && list_holder == nullptr) operate(node);
  }
  const bool is_leaf_list = place.target.kind == NodeKind::kLeafList;
  if (replaces && is_leaf_list && nodes.empty()) remove_values(document, place);
  return document;
}

}  // namespace ocifip
