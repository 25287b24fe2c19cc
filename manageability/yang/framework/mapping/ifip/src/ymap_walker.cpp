#include "ymap_walker.h"

#include "yfw/text.h"
#include "ymap_request.h"

namespace ymap {

namespace {

// What the name of an augment hook adds to its walker's.
constexpr const char* kHookEnding = "_parse_augments";

constexpr Message kXpathError = YMAP_TRACE_TEXT("got xpath error node ");
constexpr Message kNoKeys = YMAP_ERROR_TEXT("No keys specified with a list node.");
constexpr Message kDeleteWithSubtree = YMAP_TRACE_TEXT("Delete request with subtree present");
constexpr Message kEmptyKey = YMAP_ERROR_TEXT("Empty list key specified.");
constexpr Message kKeyCount = YMAP_ERROR_TEXT("List key node error.");
constexpr Message kKeyDelete = YMAP_ERROR_TEXT("The key node should not have delete operation.");
constexpr Message kLeafref = YMAP_ERROR_TEXT("leafref value check fail");

// One visit of a node by its row.
struct Visit {
  const Model& model;
  RowIndex index;
  yfw_map_ctx* ctx;
  const Node* in;
  Node* out;

  [[nodiscard]] const Row& row() const { return model.rows[index]; }
  [[nodiscard]] const List& list() const { return model.lists[row().list]; }
  [[nodiscard]] bool to_native() const { return model.direction == Direction::kToNative; }
  [[nodiscard]] bool is_openconfig_edit() const { return to_native() && is_edit(ctx); }

  [[nodiscard]] Site site(WalkerSite which) const {
    return {row().name, row().line, &model.words[model.first_site[index] + which]};
  }

  void line(WalkerSite which, const Message& message) const { emit(ctx, site(which), message); }
};

// Keeps the node hierarchy balanced.
class ContainerGuard {
 public:
  explicit ContainerGuard(const Visit& visit) : visit_(visit) {
    yfw_map_add_to_node_hierarchy(visit.ctx, visit.in, YFW_MAP_HIERARCHY_CONTAINER);
  }
  ~ContainerGuard() { yfw_map_remove_from_node_hierarchy(visit_.ctx, visit_.in); }
  ContainerGuard(const ContainerGuard&) = delete;
  ContainerGuard& operator=(const ContainerGuard&) = delete;

 private:
  const Visit& visit_;
};

// Keeps the node hierarchy, the stack of request entries and the output list balanced.
class EntryGuard {
 public:
  explicit EntryGuard(const Visit& visit) : visit_(visit) {
    yfw_map_add_to_node_hierarchy(visit.ctx, visit.in, YFW_MAP_HIERARCHY_LIST_ENTRY);
    remembered_ =
        visit.to_native() && state() != nullptr && state()->visited_entries != nullptr &&
        yfw_map_util_itree_stack_push(state()->visited_entries, visit.in, nullptr, 0) == YMAP_OK;
  }
  ~EntryGuard() {
    if (remembered_) {
      yfw_map_util_itree_stack_pop(state()->visited_entries);
    }
    yfw_map_remove_from_node_hierarchy(visit_.ctx, visit_.in);
    if (listed_) {
      yfw_remove_from_output_list_ctx(visit_.ctx, visit_.in, visit_.out);
    }
  }
  EntryGuard(const EntryGuard&) = delete;
  EntryGuard& operator=(const EntryGuard&) = delete;

  // Enters the entry into the output list; the framework may decline it, which the depth tells.
  void enter_output_list() {
    const std::uint8_t depth = depth_now();
    yfw_add_to_output_list_ctx(visit_.ctx, visit_.in, visit_.out);
    listed_ = depth_now() > depth;
  }

 private:
  [[nodiscard]] yfw_map_request_state* state() const { return visit_.ctx->request_state; }
  [[nodiscard]] std::uint8_t depth_now() const {
    return state() != nullptr ? state()->output_list_depth : std::uint8_t{0};
  }

  const Visit& visit_;
  bool remembered_ = false;
  bool listed_ = false;
};

// Of a list whose entries are placed by their hook: makes sure that what the hook makes current,
// and the trim prefix that it leaves, are this entry's alone.
class Placing {
 public:
  explicit Placing(const Visit& visit) : ctx_(visit.ctx), applies_(visit.row().has(kPlaces)) {
    if (Node** slot = this->slot(); slot != nullptr) {
      outer_ = *slot;
      *slot = nullptr;
    }
  }
  ~Placing() {
    if (applies_) {
      yfw_map_free_trim_path_list_ctx(ctx_);
    }
    if (Node** slot = this->slot(); slot != nullptr) {
      *slot = outer_;
    }
  }
  Placing(const Placing&) = delete;
  Placing& operator=(const Placing&) = delete;

  // Whether the hook has made nothing current: the entry's content has nowhere to go.
  [[nodiscard]] bool found_none() const {
    Node* const* slot = this->slot();
    return slot != nullptr && *slot == nullptr;
  }

 private:
  [[nodiscard]] Node** slot() const {
    return applies_ && ctx_->request_state != nullptr ? &ctx_->request_state->current_list_node
                                                      : nullptr;
  }

  yfw_map_ctx* ctx_;
  bool applies_;
  Node* outer_ = nullptr;
};

// The row of a child's tag, or kNoRow. The hash finds the candidate, the framework confirms it.
RowIndex find_row(const Visit& visit, const char* tag) {
  const Model& model = visit.model;
  std::uint32_t slot = tag_hash(visit.index, tag) & model.slot_mask;
  for (; model.slots[slot] != kNoRow; slot = (slot + 1) & model.slot_mask) {
    const RowIndex candidate = model.slots[slot];
    if (model.parents[candidate] == visit.index &&
        yfw_map_do_these_match(tag, model.rows[candidate].tag) != 0) {
      return candidate;
    }
  }
  return kNoRow;
}

// A child that no row matches: ignored or refused in the walker's own module, handed to the augment
// hook in another.
cerrno handle_unmatched(const Visit& visit, const Node& child) {
  if (yfw_map_do_these_match(visit.model.module_namespace, child.module_namespace) == 0) {
    return parse_augments(visit.model, visit.index, visit.ctx, &child, visit.out);
  }
  if (!visit.to_native()) {
    visit.line(kSiteUnsupportedTag, kUnsupportedIgnoring);
    return YMAP_OK;
  }
  if (is_read(visit.ctx)) {
    return YMAP_OK;
  }
  visit.line(kSiteUnsupportedTag, kUnsupportedTag);
  return refuse_tag(visit.ctx, child.tag, YMAP_ERR_UNSUPPORTED);
}

cerrno handle_child(const Visit& visit, const Node& child) {
  const RowIndex index = find_row(visit, child.tag);
  if (index == kNoRow) {
    return handle_unmatched(visit, child);
  }
  const RowKind kind = visit.model.rows[index].kind;
  if (kind == RowKind::kLeaf) {
    return dispatch_leaf(visit.model, index, visit.ctx, &child, visit.out);
  }
  const cerrno result = walk(visit.model, index, visit.ctx, &child, visit.out, visit.in);
  // An entry that its list hook refuses is skipped.
  return kind == RowKind::kList && result == YMAP_ERR_NO_KEYS ? YMAP_OK : result;
}

cerrno walk_children(const Visit& visit, const Children& children) {
  for (const Node& child : children) {
    if (child.tag == nullptr) {
      visit.line(kSiteTagMissing, kTagMissing);
      return YMAP_ERR_NO_SUBTREE;
    }
    const cerrno result = handle_child(visit, child);
    if (result != YMAP_OK) {
      return result;
    }
  }
  return YMAP_OK;
}

// An edit that ends where nothing is mapped, such as a delete of all that is below, would otherwise
// pass without effect.
cerrno refuse_end_of_edit(const Visit& visit, const Children& children) {
  return visit.row().has(kRefusesEdits) && children.count == 0 && is_edit(visit.ctx)
             ? refuse_leaf(Call{visit.ctx, visit.in, visit.out, 0, visit.row().name})
             : YMAP_OK;
}

// A client that deletes a container does not describe its content. Content that merely lies below a
// deleted node inherits the delete and passes; where nothing is mapped, the content is refused.
bool describes_deleted(const Visit& visit, const Children& children, const Node* parent) {
  return children.count != 0 && visit.is_openconfig_edit() && is_delete(*visit.in) &&
         (parent == nullptr || !is_delete(*parent)) && !visit.row().has(kRefusesEdits);
}

cerrno walk_container(const Visit& visit, const Children& children, const Node* parent) {
  if (describes_deleted(visit, children, parent)) {
    visit.line(kSiteDeleteWithSubtree, kDeleteWithSubtree);
    return refuse_tag(visit.ctx, visit.in->tag, YMAP_ERR_INVALID_ARGS);
  }
  const ContainerGuard pushed(visit);
  const yfw_map_container_callback own = visit.row().callback.hook;
  const yfw_map_container_callback hook = own != nullptr ? own : visit.model.duck_map_container;
  if (const cerrno result = hook(visit.ctx, visit.in, children.count, visit.out);
      result != YMAP_OK) {
    return result;
  }
  return children.count == 0 ? refuse_end_of_edit(visit, children) : walk_children(visit, children);
}

bool is_key(const Node& child, const char* key) {
  return key != nullptr && yfw_map_do_these_match(child.tag, key) != 0;
}

bool is_any_key(const List& list, const Node& child) {
  for (const char* key : list.keys) {
    if (is_key(child, key)) {
      return true;
    }
  }
  return false;
}

void mark_key(const Node& key, unsigned flags) {
  writable(key).key_mark = 1;
  writable(key).flags |= static_cast<std::uint8_t>(flags);
}

// Whether the request is one whose list keys are held against the leaves that they refer to.
bool checks_leafrefs(const yfw_map_ctx* ctx) {
  const std::uint32_t operation = request_op(ctx);
  return operation == YFW_MAP_REQUEST_MERGE || operation == YFW_MAP_REQUEST_REPLACE ||
         operation == YFW_MAP_REQUEST_CREATE;
}

// Checks one key of an edit.
cerrno check_request_key(const Visit& visit, const Node& key) {
  if (key.value == nullptr || key.value[0] == '\0') {
    visit.line(kSiteEmptyKey, kEmptyKey);
    return refuse_tag(visit.ctx, key.tag, YMAP_ERR_LIST_KEY);
  }
  if (checks_leafrefs(visit.ctx)) {
    const cerrno result =
        yfw_map_check_oc_leafref(visit.ctx, visit.list().path, "config", key.value, visit.in);
    if (result != YMAP_OK) {
      visit.line(kSiteLeafref, kLeafref);
      return refuse_tag(visit.ctx, key.tag, result);
    }
  }
  if (is_delete(key) && !is_delete(*visit.in)) {
    visit.line(kSiteKeyDelete, kKeyDelete);
    return refuse_tag(visit.ctx, key.tag, YMAP_ERR_KEY_DELETE);
  }
  return YMAP_OK;
}

// An edit names an entry by every key, once; only a list that is deleted as a whole has none.
cerrno check_key_counts(const Visit& visit, const Children& children) {
  std::uint32_t total = 0;
  const char* wrong = nullptr;
  for (const char* key : visit.list().keys) {
    std::uint32_t count = 0;
    for (const Node& child : children) {
      count += is_key(child, key) ? 1 : 0;
    }
    total += count;
    if (key != nullptr && count != 1 && wrong == nullptr) {
      wrong = key;
    }
  }
  const bool whole_list = total == 0 && is_delete(*visit.in) && is_list_wide(visit.ctx);
  if (wrong == nullptr || whole_list) {
    return YMAP_OK;
  }
  visit.line(kSiteKeyCount, kKeyCount);
  return refuse_tag(visit.ctx, wrong, YMAP_ERR_LIST_KEY);
}

// Checks, marks and counts the keys of an OpenConfig entry.
cerrno take_request_keys(const Visit& visit, const Children& children, bool is_current) {
  const bool edit = is_edit(visit.ctx);
  for (const Node& child : children) {
    if (!is_any_key(visit.list(), child)) {
      continue;
    }
    const cerrno result = edit ? check_request_key(visit, child) : YMAP_OK;
    if (result != YMAP_OK) {
      return result;
    }
    if (is_current) {
      mark_key(child, NIDL_YFW_FLAG_KEY | NIDL_YFW_FLAG_REQUEST_KEY);
    }
  }
  return edit ? check_key_counts(visit, children) : YMAP_OK;
}

void mark_native_keys(const Visit& visit, const Children& children) {
  for (const Node& child : children) {
    if (is_any_key(visit.list(), child)) {
      mark_key(child, NIDL_YFW_FLAG_KEY);
    }
  }
}

cerrno call_list_hook(const Visit& visit, const Children& children) {
  const yfw_map_container_callback own = visit.row().callback.hook;
  const cerrno result = own != nullptr ? own(visit.ctx, visit.in, children.count, visit.out)
                                       : visit.model.duck_map_list(visit.ctx, visit.in, visit.out);
  return result != YMAP_OK ? result : refuse_end_of_edit(visit, children);
}

// Calls the hook, and walks on to the children of an entry that has a place.
cerrno walk_placed(const Visit& visit, const Children& children, EntryGuard& entry) {
  const Placing placing(visit);
  if (const cerrno result = call_list_hook(visit, children); result != YMAP_OK) {
    return result;
  }
  if (placing.found_none()) {
    return YMAP_OK;
  }
  entry.enter_output_list();
  return walk_children(visit, children);
}

cerrno walk_entry(const Visit& visit, const Children& children) {
  if (children.count == 0) {
    visit.line(kSiteNoKeys, kNoKeys);
  }
  EntryGuard entry(visit);
  const bool is_current = yfw_map_update_current_list_node(visit.ctx, visit.list().path) == YMAP_OK;
  if (visit.to_native()) {
    const cerrno result = take_request_keys(visit, children, is_current);
    if (result != YMAP_OK) {
      return result;
    }
  } else if (is_current) {
    mark_native_keys(visit, children);
  }
  return walk_placed(visit, children, entry);
}

// Stops the process when a row's callback is entered without a context.
void assert_context(const yfw_map_ctx* ctx, const Model& model, RowIndex index,
                    const char* ending = "") {
  if (ctx == nullptr) {
    const Row& row = model.rows[index];
    fail_without_context(model.file, row.line, row.name, kLeafForm, ending);
  }
}

}  // namespace

cerrno walk(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in, Node* out,
            const Node* parent) {
  const Visit visit{model, index, ctx, in, out};
  visit.line(kSiteStart, kStart);
  if (in == nullptr || out == nullptr) {
    return reject_arguments(ctx, visit.site(kSiteInvalidArguments));
  }
  Children children;
  cerrno result = YMAP_ERR_NO_SUBTREE;
  if (!read_children(*in, children)) {
    visit.line(kSiteFailedSubtrees, kFailedSubtrees);
  } else if (visit.row().kind == RowKind::kList) {
    result = walk_entry(visit, children);
  } else {
    result = walk_container(visit, children, parent);
  }
  visit.line(kSiteEnd, kEnd);
  return result;
}

cerrno dispatch_leaf(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in,
                     Node* out) {
  const Visit visit{model, index, ctx, in, out};
  visit.line(kSiteStart, kStart);
  if (in == nullptr || out == nullptr) {
    return reject_arguments(ctx, visit.site(kSiteInvalidArguments));
  }
  if (in->kind == NIDL_YFW_KIND_XPATH_ERROR && has_flag(*in, NIDL_YFW_FLAG_XPATH_ERROR)) {
    visit.line(kSiteXpathError, kXpathError);
    if (ctx->request_state != nullptr) {
      ctx->request_state->flags |= YFW_MAP_STATE_XPATH_ERROR;
    }
  }
  const yfw_map_leaf_callback own = visit.row().callback.leaf;
  const bool is_passed_over = visit.row().has(kReadsOnly) && is_edit(ctx);
  const cerrno result =
      is_passed_over ? YMAP_OK : (own != nullptr ? own : model.duck_map_leaf)(ctx, in, out);
  visit.line(kSiteEnd, kEnd);
  return result;
}

cerrno refuse_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out) {
  if (in == nullptr || out == nullptr) {
    return reject_arguments(ctx, hook.site(kHookInvalidArguments));
  }
  if (yfw_map_is_request_add(ctx, in, out) == 0) {
    return YMAP_OK;
  }
  return refuse_tag(ctx, in->tag, YMAP_ERR_UNSUPPORTED_AUGMENT);
}

cerrno ignore_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out) {
  emit(ctx, hook.site(kHookStart), kStart);
  if (in == nullptr || out == nullptr) {
    return reject_arguments(ctx, hook.site(kHookInvalidArguments));
  }
  emit(ctx, hook.site(kHookEnd), kEnd);
  return YMAP_OK;
}

cerrno parse_augments(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in,
                      Node* out) {
  const Row& row = model.rows[index];
  const AugmentHook hook{row.name, row.line,
                         &model.words[model.first_site[index] + kSiteAugmentHook], kHookEnding};
  return model.direction == Direction::kToNative ? refuse_augment(hook, ctx, in, out)
                                                 : ignore_augment(hook, ctx, in, out);
}

// --- what rows become ----------------------------------------------------------------------------

cerrno run_walker(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model, RowIndex index) {
  assert_context(ctx, model, index);
  return walk(model, index, ctx, in, out);
}

cerrno run_augment_hook(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model,
                        RowIndex index) {
  assert_context(ctx, model, index, kHookEnding);
  return parse_augments(model, index, ctx, in, out);
}

cerrno run_dispatcher(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model,
                      RowIndex index) {
  assert_context(ctx, model, index);
  return dispatch_leaf(model, index, ctx, in, out);
}

cerrno run_row(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model, RowIndex index,
               Body body) {
  assert_context(ctx, model, index);
  const Row& row = model.rows[index];
  return run_framed({ctx, in, out, 0, row.name},
                    {row.line, FrameKind::kGenerated,
                     &model.words[model.first_site[index] + kSiteFrame], nullptr},
                    body);
}

}  // namespace ymap
