#include <utility>
#include <vector>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io/text.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

// Joins documents; the path to where it is serves messages.
class Merger {
 public:
  // `takes_last`: of two values of a leaf, the second counts; else they are an error.
  explicit Merger(bool takes_last) : takes_last_(takes_last) {}

  void merge(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition);

 private:
  void merge_node(DocumentNode& target, DocumentNode addition);
  void refuse_conflict(const DocumentNode& target, const DocumentNode& addition) const;
  [[noreturn]] void fail(const std::string& reason) const;

  bool takes_last_;
  std::vector<const DocumentNode*> path_;
};

// A node that one document deletes may not be anything else in the other.
void Merger::refuse_conflict(const DocumentNode& target, const DocumentNode& addition) const {
  if (is_key(target)) return;
  if (is_deleted(target) != is_deleted(addition)) fail("deleted and written in one request");
  const bool has_values = target.kind == NodeKind::kLeaf && target.value && addition.value;
  if (!takes_last_ && has_values && *target.value != *addition.value) {
    fail("two values in one request, " + in_quotes(*target.value) + " and " +
         in_quotes(*addition.value));
  }
}

void Merger::fail(const std::string& reason) const {
  const std::string path = instance_path(path_);
  throw InputError(path + ": " + reason,
                   {InputFault::Kind::kBadValue, path_.back()->tag, path, reason});
}

void Merger::merge_node(DocumentNode& target, DocumentNode addition) {
  path_.push_back(&addition);
  refuse_conflict(target, addition);
  path_.pop_back();
  if (target.kind == NodeKind::kLeaf) {
    target = std::move(addition);
    return;
  }
  if (addition.operation) target.operation = addition.operation;
  target.is_created = target.is_created || addition.is_created;
  auto children = std::exchange(addition.children, {});
  path_.push_back(&target);
  merge(target.children, std::move(children));
  path_.pop_back();
  arrange(target.children);
}

void Merger::merge(std::vector<DocumentNode>& target, std::vector<DocumentNode> addition) {
  target.reserve(target.size() + addition.size());  // the index points into it
  SiblingIndex index;
  for (auto& node : target) index.add(node);
  for (auto& node : addition) {
    if (DocumentNode* same = index.find(node)) {
      merge_node(*same, std::move(node));
    } else {
      target.push_back(std::move(node));
      index.add(target.back());
    }
  }
}

}  // namespace

void merge_document(Document& target, Document addition) {
  Merger(true).merge(target.roots, std::move(addition.roots));
}

Document merged(std::vector<Document> documents) {
  for (std::size_t step = 1; step < documents.size(); step *= 2) {
    for (std::size_t at = 0; at + step < documents.size(); at += 2 * step) {
      merge_document(documents[at], std::move(documents[at + step]));
    }
  }
  return documents.empty() ? Document() : std::move(documents.front());
}

void merge_edit(Document& target, Document addition) {
  Merger(false).merge(target.roots, std::move(addition.roots));
}

}  // namespace ocifip
