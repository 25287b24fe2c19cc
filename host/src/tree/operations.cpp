#include "tree/operations.h"

namespace ocifip {
namespace {

// A key of an entry that has the operation "none", or null.
OutputNode* idle_key(const OutputNode& entry) {
  for (const Place* key : entry.place->keys) {
    OutputNode* leaf = OutputTree::find_child(&entry, key);
    if (leaf != nullptr && leaf->head.edit_operation == NIDL_YFW_EDIT_NONE) {
      return leaf;
    }
  }
  return nullptr;
}

std::uint8_t combined(std::uint8_t existing, std::uint8_t incoming) {
  if (is_deleting(existing) && is_writing(incoming)) {
    return NIDL_YFW_EDIT_REPLACE;
  }
  const bool yields = existing == NIDL_YFW_EDIT_WRITE || existing == NIDL_YFW_EDIT_NONE;
  return yields ? incoming : existing;
}

// What a key says of its entry becomes the entry's own: what is written to the key later does not
// take it back.
void settle(OutputNode* entry) { entry->head.edit_operation = operation_of(*entry); }

// Nearly no node on the way up is deleted, and only what is has anything to settle.
void keep_from_deletion(OutputNode* node) {
  for (; node != nullptr; node = node->parent) {
    if (is_deleting(node->head.edit_operation)) {
      const bool leads_on = operation_of(*node) == NIDL_YFW_EDIT_NONE;
      node->head.edit_operation = leads_on ? NIDL_YFW_EDIT_NONE : NIDL_YFW_EDIT_REPLACE;
    }
  }
}

}  // namespace

std::uint8_t operation_of(const OutputNode& node) {
  const std::uint8_t own = node.head.edit_operation;
  return is_deleting(own) && idle_key(node) != nullptr ? std::uint8_t{NIDL_YFW_EDIT_NONE} : own;
}

void combine_operation(OutputNode* node, std::uint8_t incoming) {
  settle(node);
  const std::uint8_t operation = combined(node->head.edit_operation, incoming);
  if (is_deleting(operation) && !is_deleting(node->head.edit_operation)) {
    // What keys said before is not about this deletion.
    while (OutputNode* key = idle_key(*node)) {
      key->head.edit_operation = NIDL_YFW_EDIT_WRITE;
    }
  }
  node->head.edit_operation = operation;
}

void apply_operation(OutputNode* node, std::uint8_t operation, BelowDeleted below_deleted) {
  if (node->place->is_key) {
    settle(node->parent);
  }
  const bool names_deleted_entry =
      node->place->is_key && is_deleting(node->parent->head.edit_operation);
  if (is_writing(operation) && !names_deleted_entry && below_deleted == BelowDeleted::kReplaces) {
    keep_from_deletion(node->parent);
  }
  combine_operation(node, operation);
}

}  // namespace ocifip
