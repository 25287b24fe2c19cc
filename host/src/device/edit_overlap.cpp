#include "device/edit_overlap.h"

#include <algorithm>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "result_codes.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

// Whether an edit deletes or replaces all that there is of a node.
bool is_whole(const DocumentNode& node) {
  return is_deleted(node) || (is_inner(node) && node.operation == Operation::kReplace);
}

// A list or leaf-list that is deleted as a whole: an entry without keys, or no value.
bool is_whole_list(const DocumentNode& node) {
  if (!is_deleted(node)) return false;
  return node.kind == NodeKind::kLeafList ? !node.value
                                          : node.kind == NodeKind::kList && node.children.empty();
}

bool changes(const DocumentNode& node) {
  if (is_key(node)) return false;
  if (is_whole(node)) return true;
  if (!is_inner(node)) return node.operation != Operation::kNone;
  return std::any_of(node.children.begin(), node.children.end(), changes);
}

class Overlaps {
 public:
  explicit Overlaps(std::size_t most) : most_(most) {}

  void find(const Nodes& first, const Nodes& second) {
    const Siblings others(second);
    for (const DocumentNode& node : first) {
      if (is_key(node)) continue;
      if (const DocumentNode* other = others.find(node)) compare(node, *other);
    }
    find_whole_lists(first, second);
    find_whole_lists(second, first);
  }

  std::vector<Refusal> take() { return std::move(found_); }

 private:
  void compare(const DocumentNode& node, const DocumentNode& other) {
    path_.push_back(&node);
    if (is_whole(node) || is_whole(other) || !is_inner(node)) {
      if (changes(node) && changes(other)) add();
    } else {
      find(node.children, other.children);
    }
    path_.pop_back();
  }

  // Lists that one edit deletes without naming entries, of which the other changes some.
  void find_whole_lists(const Nodes& deleting, const Nodes& others) {
    for (const DocumentNode& list : deleting) {
      if (!is_whole_list(list)) continue;
      for (const DocumentNode& other : others) {
        if (other.schema != list.schema || !changes(other)) continue;
        path_.push_back(&other);
        add();
        path_.pop_back();
      }
    }
  }

  void add() {
    if (found_.size() == most_) return;
    std::string path = instance_path(path_);
    const bool is_known = std::any_of(found_.begin(), found_.end(),
                                      [&](const Refusal& refusal) { return refusal.path == path; });
    if (is_known) return;
    found_.push_back({kSameNode, path_.back()->tag, std::move(path), cerr_strerror(kSameNode)});
  }

  std::size_t most_;
  std::vector<const DocumentNode*> path_;
  std::vector<Refusal> found_;
};

}  // namespace

std::vector<Refusal> find_overlaps(const Document& first, const Document& second,
                                   std::size_t most) {
  Overlaps overlaps(most);
  overlaps.find(first.roots, second.roots);
  return overlaps.take();
}

}  // namespace ocifip
