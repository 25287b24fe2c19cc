#include "io/tree_builder.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <utility>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/text.h"

namespace ocifip {
namespace {

constexpr std::array<std::pair<std::string_view, Operation>, 5> kOperations{{
    {"merge", Operation::kWrite},
    {"create", Operation::kWrite},
    {"replace", Operation::kReplace},
    {"delete", Operation::kDelete},
    {"remove", Operation::kRemove},
}};

// A node that a model knows, of the kind that a container has until it is known better.
DocumentNode node_at(const lysc_node* schema, int line) {
  DocumentNode node = node_of(schema);
  node.kind = NodeKind::kContainer;
  node.line = line;
  return node;
}

constexpr std::string_view kind_name(NodeKind kind) {
  switch (kind) {
    case NodeKind::kList:
      return "a list";
    case NodeKind::kLeaf:
      return "a leaf";
    case NodeKind::kLeafList:
      return "a leaf-list";
    default:
      return "a container";
  }
}

// Up to this number of siblings, to compare them costs less than the memory of an index.
constexpr std::size_t kFewSiblings = 8;

// Whether a node that a model knows is among others.
bool is_among(std::span<const DocumentNode> nodes, const DocumentNode& node) {
  return std::any_of(nodes.begin(), nodes.end(), [&node](const DocumentNode& other) {
    return other.schema != nullptr && is_same_node(other, node);
  });
}

bool is_attribute(InputFault::Kind kind) {
  return kind == InputFault::Kind::kUnknownAttribute || kind == InputFault::Kind::kBadAttribute;
}

// How often an entry names a key is for the mapping to see. State may repeat a value.
bool may_be_repeated(const DocumentNode& node) {
  return is_key(node) || (node.kind == NodeKind::kLeafList && is_state(node));
}

std::string repeated(const DocumentNode& node) {
  return "a second " + in_quotes(node.tag) +
         (node.kind == NodeKind::kLeafList ? " with the same value"
          : node.kind == NodeKind::kList   ? " with the same keys"
                                           : "");
}

std::size_t order(const DocumentNode& node) {
  return node.schema == nullptr ? std::numeric_limits<std::size_t>::max()
                                : Models::position(node.schema);
}

bool is_before(const DocumentNode& left, const DocumentNode& right) {
  return order(left) < order(right);
}

}  // namespace

TreeBuilder::TreeBuilder(const Models& models, std::string name, DocumentUse use)
    : models_(models), name_(std::move(name)), use_(use) {}

void TreeBuilder::fail(int line, const std::string& reason, InputFault::Kind kind) const {
  throw input_error(name_, line, reason, {kind});
}

void TreeBuilder::fail_at(int line, const std::string& reason, InputFault::Kind kind,
                          std::string_view tag, const DocumentNode* node) const {
  InputFault fault = {kind, std::string(tag), path(node)};
  if (node == nullptr && !open_.empty()) node = &open_.back().node;
  if (is_attribute(kind) && node != nullptr) fault.element = node->tag;
  throw input_error(name_, line, reason, std::move(fault));
}

std::string TreeBuilder::here(const DocumentNode* node) const {
  const std::string way = path(node);
  return way.empty() ? way : ", at " + way;
}

// Of the innermost open node, or of one below it; "" at the top.
std::string TreeBuilder::path(const DocumentNode* node) const {
  std::vector<DocumentNode> way;
  for (std::size_t at = 0; at < open_.size(); ++at) {
    const auto end = at + 1 < open_.size() ? open_[at + 1].first_child : pending_.size();
    const auto first = pending_.begin() + static_cast<std::ptrdiff_t>(open_[at].first_child);
    const auto last = pending_.begin() + static_cast<std::ptrdiff_t>(end);
    DocumentNode& step = way.emplace_back(bare(open_[at].node));
    std::copy_if(first, last, std::back_inserter(step.children), is_key);
  }
  std::vector<const DocumentNode*> path;
  path.reserve(way.size() + 1);
  for (const auto& step : way) path.push_back(&step);
  if (node != nullptr) path.push_back(node);
  return path.empty() ? "" : instance_path(path);
}

DocumentNode TreeBuilder::json_node(std::string_view member, int line) const {
  const DocumentNode* parent = open_.empty() ? nullptr : &open_.back().node;
  const auto* parent_schema = parent ? parent->schema : nullptr;
  const bool is_known_place = parent == nullptr || parent_schema != nullptr;

  // The namespace of an unknown module, which stands for its name, may have colons itself.
  const auto colon = member.rfind(':');
  const bool is_bare = colon == std::string_view::npos;
  const auto tag = is_bare ? member : member.substr(colon + 1);
  const auto prefix = is_bare ? std::string_view() : member.substr(0, colon);
  const auto known_namespace = is_bare ? std::string_view() : models_.namespace_of(prefix);
  const lysc_node* schema = nullptr;
  if (is_known_place && is_bare) {
    const auto inherited = parent == nullptr ? "" : std::string_view(parent->module_namespace);
    schema = models_.child(parent_schema, tag, inherited);
    if (schema == nullptr) schema = only_child(parent_schema, tag, line);
  } else if (is_known_place && !known_namespace.empty()) {
    schema = models_.child(parent_schema, tag, known_namespace);
  }
  if (schema != nullptr) return node_at(schema, line);
  if (colon == 0 || !is_identifier(tag)) {
    fail_at(line, in_quotes(member) + " is not the name of a node" + here(),
            InputFault::Kind::kUnknownNode, member);
  }
  DocumentNode node;
  node.tag = tag;
  node.line = line;
  if (!is_bare) {
    node.module = known_namespace.empty() ? std::string_view() : prefix;
    node.module_namespace = known_namespace.empty() ? prefix : known_namespace;
  } else if (parent != nullptr) {
    node.module = parent->module;
    node.module_namespace = parent->module_namespace;
  }
  return node;
}

DocumentNode TreeBuilder::xml_node(std::string_view module_namespace, std::string_view tag,
                                   int line) const {
  const auto* parent_schema = open_.empty() ? nullptr : open_.back().node.schema;
  const bool is_known_place = open_.empty() || parent_schema != nullptr;

  const lysc_node* schema = nullptr;
  if (is_known_place) {
    const bool is_bare = module_namespace.empty();
    if (!is_bare || parent_schema == nullptr) {
      schema = models_.child(parent_schema, tag, module_namespace);
    }
    if (is_bare && schema == nullptr) schema = only_child(parent_schema, tag, line);
  }
  if (schema != nullptr) return node_at(schema, line);
  if (!is_identifier(tag)) {
    fail_at(line, in_quotes(tag) + " is not the name of a node" + here(),
            InputFault::Kind::kUnknownNode, tag);
  }
  DocumentNode node;
  node.tag = tag;
  node.line = line;
  node.module = models_.module_of(module_namespace);
  node.module_namespace = module_namespace;
  return node;
}

const lysc_node* TreeBuilder::only_child(const lysc_node* parent, std::string_view tag, int line,
                                         const std::string& where) const {
  const lysc_node* found = nullptr;
  for (const auto* child : models_.children(parent)) {
    if (Models::tag(child) != tag) continue;
    if (found != nullptr) {
      fail_at(line,
              in_quotes(tag) + where + " needs a module: it is in " +
                  std::string(Models::module(found)) + " and in " +
                  std::string(Models::module(child)),
              InputFault::Kind::kUnknownNamespace, tag);
    }
    found = child;
  }
  return found;
}

void TreeBuilder::annotate(DocumentNode& node, std::string_view operation, int line) const {
  const bool is_current = !at_top() && &node == &open_.back().node;
  const DocumentNode* at = is_current ? nullptr : &node;
  const auto fail_with = [&](const std::string& reason) {
    fail_at(line, reason + here(at), InputFault::Kind::kBadAttribute, "operation", at);
  };
  if (node.operation) fail_with("two operations for one node");
  const auto* const found = std::find_if(kOperations.begin(), kOperations.end(),
                                         [&](const auto& row) { return row.first == operation; });
  if (found == kOperations.end()) fail_with("unknown operation " + in_quotes(operation));
  node.operation = found->second;
  node.is_created = operation == "create";
}

void TreeBuilder::check_depth(int line) const {
  if (open_.size() < kDeepestNode) return;
  fail(line, "nodes are nested deeper than " + std::to_string(kDeepestNode) + " levels");
}

void TreeBuilder::check_kind(const DocumentNode& node) const {
  if (Models::kind(node.schema) == node.kind) return;
  fail_at(node.line,
          in_quotes(node.tag) + " is " + std::string(kind_name(Models::kind(node.schema))) +
              " in the model, but " + std::string(kind_name(node.kind)) + " here" + here(&node),
          InputFault::Kind::kBadValue, node.tag, &node);
}

// Nodes that no model knows are what they look like.
void TreeBuilder::check_siblings(std::span<DocumentNode> nodes) const {
  if (use_ == DocumentUse::kFilter) return;
  // Most nodes have one child, or two.
  const bool are_few = nodes.size() <= kFewSiblings;
  SiblingIndex index;
  for (std::size_t at = 0; at < nodes.size(); ++at) {
    auto& node = nodes[at];
    if (node.schema == nullptr) continue;
    check_kind(node);
    if (may_be_repeated(node)) continue;
    const bool is_repeated =
        are_few ? is_among(nodes.first(at), node) : index.find(node) != nullptr;
    if (is_repeated) {
      fail_at(node.line, repeated(node) + here(&node), InputFault::Kind::kBadValue, node.tag,
              &node);
    }
    if (!are_few) index.add(node);
  }
}

void TreeBuilder::open(DocumentNode node) {
  check_depth(node.line);
  node.place = ++count_;
  open_.push_back({std::move(node), pending_.size()});
}

void TreeBuilder::close() {
  check_siblings(children());
  auto [node, first_child] = std::move(open_.back());
  open_.pop_back();
  const auto first = pending_.begin() + static_cast<std::ptrdiff_t>(first_child);
  node.children.assign(std::make_move_iterator(first), std::make_move_iterator(pending_.end()));
  pending_.erase(first, pending_.end());
  arrange(node.children);
  pending_.push_back(std::move(node));
}

void TreeBuilder::add(DocumentNode node) {
  check_depth(node.line);
  node.place = ++count_;
  pending_.push_back(std::move(node));
}

std::span<DocumentNode> TreeBuilder::children() {
  return std::span(pending_).subspan(open_.empty() ? 0 : open_.back().first_child);
}

Document TreeBuilder::finish() {
  check_siblings(pending_);
  return {std::move(name_), std::move(pending_)};
}

void arrange_all(std::vector<DocumentNode>& nodes) {
  arrange(nodes);
  for (auto& node : nodes) arrange_all(node.children);
}

void arrange(std::vector<DocumentNode>& children) {
  if (std::is_sorted(children.begin(), children.end(), is_before)) return;
  std::stable_sort(children.begin(), children.end(), is_before);
}

}  // namespace ocifip
