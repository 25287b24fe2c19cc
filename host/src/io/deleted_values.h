// Values of leaves that are deleted.
#ifndef OCIFIP_HOST_IO_DELETED_VALUES_H_
#define OCIFIP_HOST_IO_DELETED_VALUES_H_

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/document.h"
#include "io/document_nodes.h"

namespace ocifip {

// Gives each leaf of an edit that is deleted and has no value the one that the data has there, or
// else one that its type takes. No value counts for a deletion, but parsers of edits hold even that
// of a deleted leaf against its type.
class DeletedValues {
 public:
  // Tells the data of what an edit is about. They outlive the object, and nobody changes them.
  using DataOf = std::function<const std::vector<DocumentNode>&(const Document& edit)>;
  explicit DeletedValues(DataOf data_of) : data_of_(std::move(data_of)) {}

  void give(Document& edit);

 private:
  void give(std::vector<DocumentNode>& edit, const std::vector<DocumentNode>& data);

  DataOf data_of_;
  // Of nodes of the data: an edit may come in many parts, for each of which a long list is
  // searched.
  std::unordered_map<const std::vector<DocumentNode>*, Siblings> siblings_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DELETED_VALUES_H_
