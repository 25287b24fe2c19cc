// What becomes of the edit operation of a node that is written more than once.
#ifndef OCIFIP_HOST_TREE_OPERATIONS_H_
#define OCIFIP_HOST_TREE_OPERATIONS_H_

#include <cstdint>

#include "tree/output_tree.h"

namespace ocifip {

inline bool is_deleting(std::uint8_t operation) {
  return operation == NIDL_YFW_EDIT_DELETE || operation == NIDL_YFW_EDIT_REMOVE;
}

// Whether an operation gives a node content: a plain write or a replace.
inline bool is_writing(std::uint8_t operation) {
  return operation == NIDL_YFW_EDIT_WRITE || operation == NIDL_YFW_EDIT_REPLACE;
}

// The operation of a node. A deleted entry of which a key has since got the operation "none",
// whoever wrote it there, only leads to its content.
std::uint8_t operation_of(const OutputNode& node);

// Writes a node that has an operation with another. The first that does more than a plain write
// stays, but for a write to what was deleted: that replaces it, so that neither is lost.
void combine_operation(OutputNode* node, std::uint8_t incoming);

// Whether a write below a node that is deleted is meant for its successor (an edit), or describes
// what is deleted (data that is read back).
enum class BelowDeleted { kReplaces, kDescribes };

// Writes a node with an operation; a write that is meant for the successor of deleted nodes turns
// their operations, too. A key leaf of a deleted entry only says which entry is deleted.
void apply_operation(OutputNode* node, std::uint8_t operation, BelowDeleted below_deleted);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_OPERATIONS_H_
