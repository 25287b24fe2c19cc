// A client's document as the mapping is handed it.
#ifndef OCIFIP_HOST_REQUEST_INPUT_TREE_H_
#define OCIFIP_HOST_REQUEST_INPUT_TREE_H_

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "io/document.h"
#include "request/hierarchy.h"
#include "tree/arena.h"

namespace ocifip {

// Nodes with their operations, the children of each one after another.
class InputTree {
 public:
  // The operation of a node is its own, else its parent's, else the request's. A key leaf is never
  // deleted but by its own annotation.
  InputTree(const Document& document, Operation request_operation);

  [[nodiscard]] std::span<InputNode> roots() const { return roots_; }
  // The cause that the document gives the deletion which a node is part of, or null.
  [[nodiscard]] const void* cause_of(const InputNode& node) const {
    const auto found = causes_.find(&node);
    return found == causes_.end() ? nullptr : found->second;
  }
  // Whether the client asks for the deletion of a leaf, whatever operation the mapping has given
  // it.
  [[nodiscard]] bool deletes(const InputNode& leaf) const {
    return deleted_leaves_.contains(&leaf);
  }

 private:
  std::span<InputNode> build(const std::vector<DocumentNode>& nodes, Operation inherited,
                             const void* cause);
  void fill(InputNode& node, const DocumentNode& from, Operation inherited, const void* cause);
  // One text for all nodes of a name: names are compared all the time, and a few texts stay in the
  // processor's cache.
  const char* shared(const std::string& name);

  Arena arena_;
  std::unordered_set<std::string_view> names_;
  std::unordered_set<const InputNode*> deleted_leaves_;
  std::unordered_map<const InputNode*, const void*> causes_;
  std::span<InputNode> roots_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_INPUT_TREE_H_
