#include "ymap_augment.h"

#include "yfw/text.h"
#include "ymap_request.h"

namespace ymap {

namespace {

// One call of an entry callback.
struct Entering {
  const Call& call;
  const AugmentEntry& entry;
  AugmentEntrySites& sites;

  [[nodiscard]] Site site(std::uint32_t& word) const { return {call.name, sites.line, &word}; }
  [[nodiscard]] bool is_family(const Node& node) const {
    return yfw_map_do_these_match(node.tag, entry.model.rows[entry.row].tag) != 0;
  }
  // The entry's key belongs to the augmented model, whose walker has seen to it.
  [[nodiscard]] bool is_entry_key(const Node& node) const {
    return entry.entry_key != nullptr && yfw_map_do_these_match(node.tag, entry.entry_key) != 0;
  }
  cerrno walk_family(const Node& node, const Node* parent) const {
    return walk(entry.model, entry.row, call.ctx, &node, call.out, parent);
  }
  cerrno hand_to_augments(const Node& node) const {
    return entry.parse_augments(call.ctx, &node, call.out);
  }
};

cerrno first_pass(const Entering& entering, const Node& node, const Node* parent) {
  if (entering.is_family(node)) {
    return entering.walk_family(node, parent);
  }
  yfw_map_ctx* ctx = entering.call.ctx;
  if (yfw_map_do_these_match(node.module_namespace, entering.entry.model.module_namespace) == 0) {
    return entering.hand_to_augments(node);
  }
  if (is_read(ctx)) {
    return YMAP_OK;
  }
  emit(ctx, entering.site(entering.sites.unsupported_tag), kUnsupportedTag);
  return refuse_tag(ctx, node.tag, YMAP_ERR_UNSUPPORTED);
}

// Walks a node once more. A delete turns into a remove for it, since the native node may be gone by
// then; the mark of that stays. What this walk returns is not looked at, by design.
void walk_again(const Entering& entering, const Node& node, const Node* parent) {
  if (node.edit_operation == NIDL_YFW_EDIT_DELETE) {
    const OperationOverride removing(node, NIDL_YFW_EDIT_REMOVE);
    entering.walk_family(node, parent);
  } else {
    entering.walk_family(node, parent);
  }
}

cerrno enter_node(const Entering& entering, const Node& node, const Node* parent) {
  const cerrno result = first_pass(entering, node, parent);
  if (result == YMAP_OK && (is_read(entering.call.ctx) || is_delete(node))) {
    if (entering.is_family(node)) {
      walk_again(entering, node, parent);
    }
    entering.hand_to_augments(node);
  }
  return result;
}

// The entry that the framework is in when it hands over the family's node itself, or null. A delete
// that the node merely inherits from it is not the node's own.
const Node* enclosing_entry(const yfw_map_ctx* ctx) {
  const Node* entry = nullptr;
  if (ctx->request_state != nullptr && ctx->request_state->visited_entries != nullptr &&
      yfw_map_util_itree_stack_peak(ctx->request_state->visited_entries, &entry) != YMAP_OK) {
    return nullptr;
  }
  return entry;
}

cerrno enter_single_node(const Entering& entering) {
  const Call& call = entering.call;
  if (entering.entry.announces && call.in->tag != nullptr) {
    emit(call.ctx, entering.site(entering.sites.processing), kProcessing, call.in->tag);
  }
  return enter_node(entering, *call.in, enclosing_entry(call.ctx));
}

Node without_children(const Node& node) {
  Node bare = node;
  bare.children = nullptr;
  bare.child_count = 0;
  bare.flags &= static_cast<std::uint8_t>(~NIDL_YFW_FLAG_HAS_SUBTREE);
  return bare;
}

// An augmented node that is deleted takes the family's native configuration along: the family's
// container hook is shown the delete. Children of other families, and keys, are not the hook's.
void delete_family(const Entering& entering) {
  const Node& entry = *entering.call.in;
  if (entry.child_count == 0) {
    walk_again(entering, entry, nullptr);
  } else {
    walk_again(entering, without_children(entry), nullptr);
  }
}

// What goes with the augmented node but is native configuration of its own. It may not be there.
cerrno delete_with_entry(const Entering& entering) {
  const Call& call = entering.call;
  const Node bare = without_children(*call.in);
  const OperationOverride removing(bare, NIDL_YFW_EDIT_REMOVE);
  return entering.entry.delete_with_entry(call.ctx, &bare, 0, call.out);
}

cerrno enter_augmented_node(const Entering& entering, const Children& children) {
  const Call& call = entering.call;
  bool has_family = false;
  for (const Node& child : children) {
    if (child.tag == nullptr) {
      emit(call.ctx, entering.site(entering.sites.tag_missing), kTagMissing);
      return YMAP_ERR_NO_SUBTREE;
    }
    emit(call.ctx, entering.site(entering.sites.processing), kProcessing, child.tag);
    if (entering.is_entry_key(child)) {
      continue;
    }
    const cerrno result = enter_node(entering, child, call.in);
    if (result != YMAP_OK) {
      return result;
    }
    has_family = has_family || entering.is_family(child);
  }
  if (is_read(call.ctx) || !is_delete(*call.in)) {
    return YMAP_OK;
  }
  if (!has_family) {
    delete_family(entering);
  }
  return entering.entry.delete_with_entry != nullptr ? delete_with_entry(entering) : YMAP_OK;
}

// The row of the model's node that a child of the augmented node is, or kNoRow.
RowIndex row_of(const ReadBackEntry& entry, const Node& child) {
  for (const RowIndex row : {entry.row, entry.second_row}) {
    if (row != kNoRow && yfw_map_do_these_match(child.tag, entry.model.rows[row].tag) != 0) {
      return row;
    }
  }
  return kNoRow;
}

}  // namespace

cerrno enter_read_back(const Call& call, const ReadBackEntry& entry, AugmentEntrySites& sites) {
  const auto line = [&](std::uint32_t& word, const Message& message, auto... arguments) {
    emit(call.ctx, Site{call.name, sites.line, &word}, message, arguments...);
  };
  Children children;
  if (!read_children(*call.in, children)) {
    line(sites.failed_subtrees, kFailedSubtrees);
    return YMAP_ERR_NO_SUBTREE;
  }
  for (const Node& child : children) {
    if (child.tag == nullptr) {
      line(sites.tag_missing, kTagMissing);
      return YMAP_ERR_NO_SUBTREE;
    }
    line(sites.processing, kProcessing, child.tag);
    cerrno result = YMAP_OK;
    if (const RowIndex row = row_of(entry, child); row != kNoRow) {
      result = walk(entry.model, row, call.ctx, &child, call.out, call.in);
    } else if (yfw_map_do_these_match(entry.model.module_namespace, child.module_namespace) != 0) {
      line(sites.unsupported_tag, kUnsupportedIgnoring);
    } else {
      result = entry.parse_augments(call.ctx, &child, call.out);
    }
    if (result != YMAP_OK) {
      return result;
    }
  }
  return YMAP_OK;
}

cerrno enter_augment(const Call& call, const AugmentEntry& entry, AugmentEntrySites& sites) {
  const Entering entering{call, entry, sites};
  Children children;
  if (!read_children(*call.in, children)) {
    emit(call.ctx, entering.site(sites.failed_subtrees), kFailedSubtrees);
    return YMAP_ERR_NO_SUBTREE;
  }
  return yfw_map_do_these_match(call.in->tag, entry.entry_tag) != 0
             ? enter_augmented_node(entering, children)
             : enter_single_node(entering);
}

}  // namespace ymap
