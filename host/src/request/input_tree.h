// A client's document as the mapping is handed it.
#ifndef OCIFIP_HOST_REQUEST_INPUT_TREE_H_
#define OCIFIP_HOST_REQUEST_INPUT_TREE_H_

#include <span>
#include <string>
#include <string_view>
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
  // Whether a node's annotation asks for a replacement.
  [[nodiscard]] bool replaces() const { return replaces_; }
  // Whether the client asks for the deletion of a leaf, whatever operation the mapping has given
  // it.
  [[nodiscard]] bool deletes(const InputNode& leaf) const {
    return deleted_leaves_.contains(&leaf);
  }

 private:
  std::span<InputNode> build(const std::vector<DocumentNode>& nodes, Operation inherited);
  void fill(InputNode& node, const DocumentNode& from, Operation inherited);
  // One text for all nodes of a name: names are compared all the time, and a few texts stay in the
  // processor's cache.
  const char* shared(const std::string& name);

  Arena arena_;
  std::unordered_set<std::string_view> names_;
  std::unordered_set<const InputNode*> deleted_leaves_;
  std::span<InputNode> roots_;
  bool replaces_ = false;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_INPUT_TREE_H_
