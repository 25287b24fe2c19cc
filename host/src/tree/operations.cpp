#include "tree/operations.h"

namespace ocifip {
namespace {

bool is_writing(std::uint8_t operation) {
  return operation == NIDL_YFW_EDIT_WRITE || operation == NIDL_YFW_EDIT_REPLACE;
}

void keep_from_deletion(OutputNode* node) {
  for (; node != nullptr; node = node->parent) {
    if (is_deleting(node->head.edit_operation)) {
      node->head.edit_operation = NIDL_YFW_EDIT_REPLACE;
    }
  }
}

}  // namespace

bool is_deleting(std::uint8_t operation) {
  return operation == NIDL_YFW_EDIT_DELETE || operation == NIDL_YFW_EDIT_REMOVE;
}

std::uint8_t combined_operation(std::uint8_t existing, std::uint8_t incoming) {
  if (is_deleting(existing) && is_writing(incoming)) {
    return NIDL_YFW_EDIT_REPLACE;
  }
  const bool yields = existing == NIDL_YFW_EDIT_WRITE || existing == NIDL_YFW_EDIT_NONE;
  return yields ? incoming : existing;
}

void apply_operation(OutputNode* node, std::uint8_t operation, BelowDeleted below_deleted) {
  const bool names_deleted_entry =
      node->place->is_key && is_deleting(node->parent->head.edit_operation);
  if (is_writing(operation) && !names_deleted_entry && below_deleted == BelowDeleted::kReplaces) {
    keep_from_deletion(node->parent);
  }
  node->head.edit_operation = combined_operation(node->head.edit_operation, operation);
}

}  // namespace ocifip
