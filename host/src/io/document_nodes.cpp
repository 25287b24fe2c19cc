#include "io/document_nodes.h"

#include <algorithm>
#include <functional>

#include "io/ipv6_text.h"

namespace ocifip {
namespace {

// Up to this number of nodes, looking through them is cheaper than hashing.
constexpr std::size_t kFewNodes = 8;

// Goes through the keys that an entry's children begin with, but for those without a value, which a
// path that names a key leaf has beside the one that chooses the entry.
class Keys {
 public:
  explicit Keys(const DocumentNode& entry)
      : at_(entry.children.data()), end_(at_ + entry.children.size()) {}

  const DocumentNode* next() {
    while (at_ != end_ && is_key(*at_)) {
      const auto* key = at_++;
      if (key->value) return key;
    }
    return nullptr;
  }

 private:
  const DocumentNode* at_;
  const DocumentNode* end_;
};

// Entries without keys are never the same.
bool has_same_keys(const DocumentNode& left, const DocumentNode& right) {
  Keys left_keys(left);
  Keys right_keys(right);
  const auto* one = left_keys.next();
  const auto* other = right_keys.next();
  if (one == nullptr) return false;
  while (one != nullptr && other != nullptr) {
    if (one->schema != other->schema || !has_same_value(*one, *other)) return false;
    one = left_keys.next();
    other = right_keys.next();
  }
  return one == other;
}

}  // namespace

std::string qualified_name(const DocumentNode& node) {
  std::string name = node.module.empty() ? node.module_namespace : node.module;
  return name.append(name.empty() ? "" : ":").append(node.tag);
}

DocumentNode bare(const DocumentNode& node) {
  DocumentNode result;
  result.tag = node.tag;
  result.module = node.module;
  result.module_namespace = node.module_namespace;
  result.kind = node.kind;
  result.value = node.value;
  result.line = node.line;
  result.schema = node.schema;
  // Keys are the first children: what follows them may be a long list.
  const auto last = std::find_if_not(node.children.begin(), node.children.end(), is_key);
  result.children.assign(node.children.begin(), last);
  return result;
}

bool has_same_value(const DocumentNode& left, const DocumentNode& right) {
  return left.value == right.value ||
         (left.value && right.value && Models::names_by_ipv6(left.schema) &&
          is_same_ipv6(*left.value, *right.value));
}

std::size_t hash_value(const DocumentNode& node) {
  const std::string_view value = node.value ? *node.value : std::string_view();
  return Models::names_by_ipv6(node.schema) ? hash_ipv6(value)
                                            : std::hash<std::string_view>()(value);
}

const DocumentNode* find_key(const DocumentNode& entry, std::string_view key) {
  const auto found =
      std::find_if(entry.children.begin(), entry.children.end(), [&](const DocumentNode& child) {
        return child.tag == key && child.module_namespace == entry.module_namespace && child.value;
      });
  return found == entry.children.end() ? nullptr : &*found;
}

const std::string* key_value(const DocumentNode& entry, std::string_view key) {
  const auto* leaf = find_key(entry, key);
  return leaf == nullptr ? nullptr : &*leaf->value;
}

bool lacks_key(const DocumentNode& entry) {
  if (entry.kind != NodeKind::kList || entry.schema == nullptr) return false;
  const auto& keys = Models::keys(entry.schema);
  return std::any_of(keys.begin(), keys.end(),
                     [&entry](const std::string& key) { return key_value(entry, key) == nullptr; });
}

bool has_only_keys(const DocumentNode& node) {
  return std::all_of(node.children.begin(), node.children.end(), is_key);
}

bool asks_for_all(const DocumentNode& query) {
  return std::all_of(query.children.begin(), query.children.end(), chooses_entry);
}

bool is_same_node(const DocumentNode& left, const DocumentNode& right) {
  if (left.kind != right.kind || left.tag != right.tag ||
      left.module_namespace != right.module_namespace) {
    return false;
  }
  switch (left.kind) {
    case NodeKind::kList:
      return has_same_keys(left, right);
    case NodeKind::kLeafList:
      return has_same_value(left, right);
    case NodeKind::kLeaf:
      return !is_key(left) || left.value.has_value() == right.value.has_value();
    default:
      return true;
  }
}

std::size_t SiblingIndex::Hash::operator()(const DocumentNode* node) const {
  std::size_t result = std::hash<std::string_view>()(node->tag);
  const auto add = [&result](const DocumentNode& from) { result = result * 31 + hash_value(from); };
  if (node->kind == NodeKind::kLeafList) add(*node);
  if (node->kind == NodeKind::kList) {
    Keys keys(*node);
    while (const auto* key = keys.next()) add(*key);
  }
  return result;
}

DocumentNode* SiblingIndex::find(const DocumentNode& node) const {
  if (many_.empty()) {
    const auto found = std::find_if(few_.begin(), few_.end(), [&node](const DocumentNode* other) {
      return is_same_node(*other, node);
    });
    return found == few_.end() ? nullptr : *found;
  }
  // A set of pointers is searched with a pointer; the node is only looked at.
  const auto found = many_.find(const_cast<DocumentNode*>(&node));
  return found == many_.end() ? nullptr : *found;
}

void SiblingIndex::add(DocumentNode& node) {
  // Entries without keys would be found by none, and all have the same hash.
  if (!is_same_node(node, node)) return;
  if (few_.size() < kFewNodes) {
    few_.push_back(&node);
    return;
  }
  if (many_.empty()) many_.insert(few_.begin(), few_.end());
  many_.insert(&node);
}

}  // namespace ocifip
