#include <algorithm>
#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "io/read_document.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

// Up to this number of additions, looking through the siblings is cheaper than indexing them.
constexpr std::size_t kFewNodes = 3;

bool is_key(const DocumentNode& node) {
  return node.schema != nullptr && Models::is_key(node.schema);
}

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
    if (one->schema != other->schema || one->value != other->value) return false;
    one = left_keys.next();
    other = right_keys.next();
  }
  return one == other;
}

// Whether two siblings stand for the same node.
struct IsSame {
  bool operator()(const DocumentNode* left, const DocumentNode* right) const {
    if (left->kind != right->kind || left->tag != right->tag ||
        left->module_namespace != right->module_namespace) {
      return false;
    }
    switch (left->kind) {
      case NodeKind::kList:
        return has_same_keys(*left, *right);
      case NodeKind::kLeafList:
        return left->value == right->value;
      case NodeKind::kLeaf:
        return !is_key(*left) || left->value.has_value() == right->value.has_value();
      default:
        return true;
    }
  }
};

struct Hash {
  std::size_t operator()(const DocumentNode* node) const {
    std::size_t result = std::hash<std::string_view>()(node->tag);
    const auto add = [&result](const DocumentNode& from) {
      result = result * 31 + std::hash<std::string_view>()(from.value.value_or(""));
    };
    if (node->kind == NodeKind::kLeafList) add(*node);
    if (node->kind == NodeKind::kList) {
      Keys keys(*node);
      while (const auto* key = keys.next()) add(*key);
    }
    return result;
  }
};

void merge_nodes(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition);

void merge_node(DocumentNode& target, DocumentNode addition) {
  if (target.kind == NodeKind::kLeaf) {
    target = std::move(addition);
    return;
  }
  if (addition.operation) target.operation = addition.operation;
  merge_nodes(target.children, std::move(addition.children));
  arrange(target.children);
}

void merge_few(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition) {
  for (auto& node : addition) {
    const auto found = std::find_if(target.begin(), target.end(),
                                    [&node](const auto& other) { return IsSame()(&other, &node); });
    if (found == target.end()) {
      target.push_back(std::move(node));
    } else {
      merge_node(*found, std::move(node));
    }
  }
}

void merge_many(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition) {
  target.reserve(target.size() + addition.size());  // the index points into it
  std::unordered_set<DocumentNode*, Hash, IsSame> index(target.size() + addition.size());
  // Entries without keys are left out: they would be found by none, and all have the same hash.
  const auto add = [&index](DocumentNode& node) {
    if (IsSame()(&node, &node)) index.insert(&node);
  };
  std::for_each(target.begin(), target.end(), add);
  for (auto& node : addition) {
    const auto found = index.find(&node);
    if (found == index.end()) {
      target.push_back(std::move(node));
      add(target.back());
    } else {
      merge_node(**found, std::move(node));
    }
  }
}

void merge_nodes(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition) {
  if (addition.size() <= kFewNodes) {
    merge_few(target, std::move(addition));
  } else {
    merge_many(target, std::move(addition));
  }
}

}  // namespace

void merge_document(Document& target, Document addition) {
  merge_nodes(target.roots, std::move(addition.roots));
}

}  // namespace ocifip
