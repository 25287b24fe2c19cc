// What becomes of the edit operation of a node that is written more than once.
#ifndef OCIFIP_HOST_TREE_OPERATIONS_H_
#define OCIFIP_HOST_TREE_OPERATIONS_H_

#include <cstdint>

#include "tree/output_tree.h"

namespace ocifip {

bool is_deleting(std::uint8_t operation);

// The operation of a node that has one and is written with another. The first that does
// more than a plain write stays, but for a write to what was deleted: that replaces it, so that
// neither is lost.
std::uint8_t combined_operation(std::uint8_t existing, std::uint8_t incoming);

// Whether a write below a node that is deleted is meant for its successor (an edit), or describes
// what is deleted (data that is read back).
enum class BelowDeleted { kReplaces, kDescribes };

// Writes a node with an operation; a write that is meant for the successor of deleted nodes turns
// their operations, too. A key leaf of a deleted entry only says which entry is deleted.
void apply_operation(OutputNode* node, std::uint8_t operation, BelowDeleted below_deleted);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_OPERATIONS_H_
