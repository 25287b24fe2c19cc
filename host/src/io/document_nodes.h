// What the host's parts ask of document nodes.
#ifndef OCIFIP_HOST_IO_DOCUMENT_NODES_H_
#define OCIFIP_HOST_IO_DOCUMENT_NODES_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// A node as the schema describes it, without value and children.
inline DocumentNode node_of(const lysc_node* schema) {
  DocumentNode node;
  node.tag = Name::of(Models::tag(schema));
  node.module = Name::of(Models::module(schema));
  node.module_namespace = Name::of(Models::module_namespace(schema));
  node.kind = Models::kind(schema);
  node.schema = schema;
  return node;
}

// "MODULE:TAG" for messages; of a node of an unknown module, with what its source calls that.
std::string qualified_name(const DocumentNode& node);

inline bool is_key(const DocumentNode& node) {
  return node.schema != nullptr && Models::is_key(node.schema);
}

// Whether a node has others in it, and no value.
inline bool is_inner(const DocumentNode& node) {
  return node.kind == NodeKind::kContainer || node.kind == NodeKind::kList;
}

// Whether a node is a container that is nothing by itself.
inline bool is_plain_container(const DocumentNode& node) {
  return node.schema != nullptr && Models::is_plain_container(node.schema);
}

inline bool is_state(const DocumentNode& node) {
  return node.schema != nullptr && Models::is_state(node.schema);
}

// A node of the data, without an operation, that is what this one is but for all below it: an entry
// has its keys, a leaf its value.
DocumentNode bare(const DocumentNode& node);

// Whether two nodes of one schema node, keys or values of a leaf-list, have the same value: that of
// an IPv6 address counts, however it is written.
bool has_same_value(const DocumentNode& left, const DocumentNode& right);

// A hash that nodes with the same value share.
std::size_t hash_value(const DocumentNode& node);

// The leaf of an entry's key, which has a value; null when the entry lacks it.
const DocumentNode* find_key(const DocumentNode& entry, std::string_view key);

// The value of an entry's key; null when the entry lacks it.
const std::string* key_value(const DocumentNode& entry, std::string_view key);

// Whether an entry of a list that a model knows is without one of its keys.
bool lacks_key(const DocumentNode& entry);

inline bool is_deleting(Operation operation) {
  return operation == Operation::kDelete || operation == Operation::kRemove;
}

inline bool is_deleted(const DocumentNode& node) {
  return node.operation && is_deleting(*node.operation);
}

inline bool is_named(const DocumentNode& node, std::string_view module, std::string_view tag) {
  return node.module == module && node.tag == tag;
}

// Whether there is nothing below a node but keys.
bool has_only_keys(const DocumentNode& node);

// Whether a query's node is a key with a value, which only chooses an entry.
inline bool chooses_entry(const DocumentNode& node) { return is_key(node) && node.value; }

// Whether a query asks for all of what it names.
bool asks_for_all(const DocumentNode& query);

// Whether two siblings stand for the same node: a container or leaf of one name, entries with the
// same keys, or the same value of a leaf-list. Entries without keys are never the same.
bool is_same_node(const DocumentNode& left, const DocumentNode& right);

// Finds siblings that stand for the same node, also among many in constant time.
class SiblingIndex {
 public:
  // The node that was added and is the same as this one, or null.
  [[nodiscard]] DocumentNode* find(const DocumentNode& node) const;
  // Adds a node, which stays where it is for as long as the index is used.
  void add(DocumentNode& node);

 private:
  struct Hash {
    std::size_t operator()(const DocumentNode* node) const;
  };
  struct IsSame {
    bool operator()(const DocumentNode* left, const DocumentNode* right) const {
      return is_same_node(*left, *right);
    }
  };

  std::vector<DocumentNode*> few_;
  std::unordered_set<DocumentNode*, Hash, IsSame> many_;  // used when they are no longer few
};

// The same for siblings that nobody changes, which outlive it.
class Siblings {
 public:
  explicit Siblings(const std::vector<DocumentNode>& nodes) {
    // The index hands out what may be changed; nothing here does.
    for (const DocumentNode& node : nodes) index_.add(const_cast<DocumentNode&>(node));
  }
  [[nodiscard]] const DocumentNode* find(const DocumentNode& node) const {
    return index_.find(node);
  }

 private:
  SiblingIndex index_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DOCUMENT_NODES_H_
