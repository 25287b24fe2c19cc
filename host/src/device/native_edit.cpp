#include "device/native_edit.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "device/native_nodes.h"
#include "device/native_part.h"
#include "io/check_data.h"
#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "result_codes.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

Operation operation_of(const DocumentNode& node) {
  return node.operation.value_or(Operation::kWrite);
}

bool is_leaf(const DocumentNode& node) {
  return node.kind == NodeKind::kLeaf || node.kind == NodeKind::kLeafList;
}

// A list or leaf-list that is meant as a whole: an entry without any key, or no value.
bool names_all(const DocumentNode& node) {
  return node.kind == NodeKind::kLeafList ? !node.value
                                          : node.kind == NodeKind::kList && node.children.empty();
}

bool is_of(const DocumentNode& node, const DocumentNode& list) {
  return node.tag == list.tag && node.module_namespace == list.module_namespace;
}

// Siblings as an edit changes them.
struct Level {
  Nodes& nodes;
  SiblingIndex index;
  // What was there before a replace of the parent, or null: deletions are judged by it.
  Nodes* replaced;
  SiblingIndex replaced_index;
  std::unordered_set<const DocumentNode*> deleted;

  // Has room for so many more nodes, which the indexes need to stay where they are.
  Level(Nodes& siblings, Nodes* former, std::size_t more) : nodes(siblings), replaced(former) {
    nodes.reserve(nodes.size() + more);
    for (auto& node : nodes) index.add(node);
    if (replaced == nullptr) return;
    for (auto& node : *replaced) replaced_index.add(node);
  }

  // What stands for a node of the edit now, and what stood for it before the edit.
  [[nodiscard]] DocumentNode* find(const DocumentNode& node) const {
    auto* found = index.find(node);
    return deleted.contains(found) ? nullptr : found;
  }
  [[nodiscard]] DocumentNode* find_former(const DocumentNode& node) const {
    return replaced == nullptr ? find(node) : replaced_index.find(node);
  }

  DocumentNode& add(DocumentNode node) {
    nodes.push_back(std::move(node));
    index.add(nodes.back());
    return nodes.back();
  }
};

std::string missing_key(const DocumentNode& entry) {
  for (const auto& key : Models::keys(entry.schema)) {
    if (find_key(entry, key) == nullptr) return key;
  }
  return {};
}

// The cause of the first deletion below an entry; null when there is none.
const void* cause_below(const DocumentNode& entry) {
  for (const DocumentNode& child : entry.children) {
    const void* cause = child.cause != nullptr ? child.cause : cause_below(child);
    if (cause != nullptr) return cause;
  }
  return nullptr;
}

class NativeEditor {
 public:
  explicit NativeEditor(bool names_interfaces = false) : names_interfaces_(names_interfaces) {}

  // Why the edit is refused; nothing when the target has been edited.
  std::optional<Refusal> edit(Nodes& target, const Nodes& edit,
                              const JudgeDeletion& judge_deletion);

 private:
  // Deletions with one cause, as far as what they delete is not there: one of them stands for all.
  struct Cause {
    const void* name = nullptr;
    bool has_effect = false;
    std::optional<Refusal> missing;
  };

  // False when the edit is refused.
  bool apply(Nodes& target, const Nodes& edit, Nodes* replaced = nullptr);
  [[nodiscard]] bool stands_alone(const DocumentNode& node) const;
  [[nodiscard]] Refusal refusal(cerrno code) const;
  bool refuse(cerrno code);
  bool note_deletion(const DocumentNode& edit, bool is_there);
  bool apply_node(Level& level, const DocumentNode& edit);
  bool remove(Level& level, const DocumentNode& edit);
  bool remove_all(Level& level, const DocumentNode& edit);
  static bool write_leaf(Level& level, const DocumentNode& edit);
  bool write_inner(Level& level, const DocumentNode& edit);
  bool add_inner(Level& level, const DocumentNode& edit);
  bool change_inner(Level& level, const DocumentNode& edit, DocumentNode& target);

  bool names_interfaces_;
  std::vector<const DocumentNode*> path_;  // in the edit
  std::vector<Cause> causes_;              // in the order of the edit
  std::unordered_map<const void*, std::size_t> positions_;
  std::optional<Refusal> refusal_;
  const void* keyless_ = nullptr;  // of a deletion below an entry that is refused for its keys
};

std::optional<Refusal> NativeEditor::edit(Nodes& target, const Nodes& edit,
                                          const JudgeDeletion& judge_deletion) {
  if (!apply(target, edit)) {
    return keyless_ && judge_deletion ? judge_deletion(keyless_, *refusal_) : refusal_;
  }
  for (const auto& cause : causes_) {
    if (cause.has_effect || !cause.missing) continue;
    auto refusal = judge_deletion ? judge_deletion(cause.name, *cause.missing) : cause.missing;
    if (refusal) return refusal;
  }
  return std::nullopt;
}

Refusal NativeEditor::refusal(cerrno code) const {
  return {code, path_.back()->tag, instance_path(path_), cerr_strerror(code)};
}

// Always false.
bool NativeEditor::refuse(cerrno code) {
  refusal_ = refusal(code);
  return false;
}

bool NativeEditor::note_deletion(const DocumentNode& edit, bool is_there) {
  const bool must_be_there = operation_of(edit) == Operation::kDelete && !edit.may_be_missing;
  if (edit.cause == nullptr) return is_there || !must_be_there || refuse(kDataMissing);
  const auto [known, is_new] = positions_.try_emplace(edit.cause, causes_.size());
  if (is_new) causes_.emplace_back().name = edit.cause;
  auto& cause = causes_[known->second];
  cause.has_effect = cause.has_effect || is_there;
  if (!is_there && must_be_there && !cause.missing) cause.missing = refusal(kDataMissing);
  return true;
}

bool NativeEditor::apply(Nodes& target, const Nodes& edit, Nodes* replaced) {
  Level level(target, replaced, edit.size());
  for (const auto& node : edit) {
    if (is_key(node)) continue;
    path_.push_back(&node);
    const bool is_applied = apply_node(level, node);
    path_.pop_back();
    if (!is_applied) return false;
  }
  std::erase_if(target, [&](const DocumentNode& node) { return level.deleted.contains(&node); });
  arrange(target);
  return true;
}

bool NativeEditor::apply_node(Level& level, const DocumentNode& edit) {
  const bool is_deletion = is_deleting(operation_of(edit));
  if (is_deletion && names_all(edit)) return remove_all(level, edit);
  if (lacks_key(edit)) {
    refuse(kListKey);
    refusal_->missing_key = missing_key(edit);
    refusal_->hint = "the key " + in_quotes(refusal_->missing_key) + " is missing";
    keyless_ = cause_below(edit);
    return false;
  }
  if (is_deletion) return remove(level, edit);
  const bool is_single = edit.kind != NodeKind::kContainer ||
                         (edit.schema != nullptr && !Models::is_plain_container(edit.schema));
  if (edit.is_created && is_single && level.find(edit) != nullptr) return refuse(kDataExists);
  return is_leaf(edit) ? write_leaf(level, edit) : write_inner(level, edit);
}

bool NativeEditor::remove(Level& level, const DocumentNode& edit) {
  const bool is_there = level.find_former(edit) != nullptr;
  if (const auto* node = level.find(edit)) level.deleted.insert(node);
  return note_deletion(edit, is_there);
}

bool NativeEditor::remove_all(Level& level, const DocumentNode& edit) {
  bool is_there = false;
  for (const auto& node : level.replaced == nullptr ? level.nodes : *level.replaced) {
    is_there = is_there || is_of(node, edit);
  }
  for (const auto& node : level.nodes) {
    if (is_of(node, edit)) level.deleted.insert(&node);
  }
  return note_deletion(edit, is_there);
}

bool NativeEditor::write_leaf(Level& level, const DocumentNode& edit) {
  if (operation_of(edit) == Operation::kNone) return true;
  auto* target = level.find(edit);
  if (target == nullptr) target = &level.add(bare(edit));
  target->value = edit.value;
  // A leaf of type empty has no other value, whether the mapping gives it or not.
  if (!target->value && edit.schema != nullptr && Models::is_empty_leaf(edit.schema)) {
    target->value.emplace();
  }
  return true;
}

bool NativeEditor::write_inner(Level& level, const DocumentNode& edit) {
  auto* target = level.find(edit);
  return target == nullptr ? add_inner(level, edit) : change_inner(level, edit, *target);
}

// Whether a container or entry is something when nothing is below it.
bool NativeEditor::stands_alone(const DocumentNode& node) const {
  if (node.kind == NodeKind::kList) return names_interfaces_ || !is_native_interface(node);
  return node.schema == nullptr || !Models::is_plain_container(node.schema);
}

bool NativeEditor::add_inner(Level& level, const DocumentNode& edit) {
  auto* former = level.find_former(edit);
  DocumentNode made = bare(edit);
  if (!apply(made.children, edit.children, former == nullptr ? nullptr : &former->children)) {
    return false;
  }
  const bool is_passed_through = operation_of(edit) == Operation::kNone;
  const bool is_absent = is_passed_through && former == nullptr && stands_alone(made);
  const bool is_empty = has_only_keys(made) && (is_passed_through || !stands_alone(made));
  // Whom a client leads through is there; a mapping may lead to nothing.
  if (is_absent && (names_interfaces_ || !is_empty)) return refuse(kDataMissing);
  if (is_empty) return true;
  level.add(std::move(made));
  return true;
}

bool NativeEditor::change_inner(Level& level, const DocumentNode& edit, DocumentNode& target) {
  const bool was_empty = target.children.empty();
  if (operation_of(edit) == Operation::kReplace) {
    DocumentNode replaced = std::exchange(target, bare(target));
    if (!apply(target.children, edit.children, &replaced.children)) return false;
  } else if (!apply(target.children, edit.children)) {
    return false;
  }
  const bool is_left_empty = target.children.empty() && !was_empty;
  if (is_left_empty && !stands_alone(target)) {
    level.deleted.insert(&target);
  }
  return true;
}

Refusal invalid(const DataFault& fault) {
  return {kInvalidData, fault.tag, fault.path, fault.reason};
}

// Finds a fault in what edits touch.
std::optional<DataFault> check_part(const Models& models, const Document& native,
                                    std::span<const NativeEdit> edits) {
  if (has_far_constraints(models, native)) return check_data(models, native);
  InterfaceNames touched;
  for (const NativeEdit& each : edits) add_mentioned(each.edit.roots, touched);
  return check_data(models, part_of(native, touched));
}

}  // namespace

std::optional<Refusal> edit_tree(std::vector<DocumentNode>& nodes,
                                 const std::vector<DocumentNode>& edit) {
  return NativeEditor().edit(nodes, edit, {});
}

EditedNative edit_native(const Models& models, const Document& native, const Document& edit,
                         const JudgeDeletion& judge_deletion) {
  const NativeEdit only = {edit, judge_deletion, false};
  return edit_native(models, native, std::span(&only, 1));
}

EditedNative edit_native(const Models& models, const Document& native,
                         std::span<const NativeEdit> edits) {
  EditedNative result{native, std::nullopt};
  for (const NativeEdit& each : edits) {
    if (result.refusal) break;
    NativeEditor editor(each.names_interfaces);
    result.refusal = editor.edit(result.native.roots, each.edit.roots, each.judge_deletion);
  }
  if (!result.refusal) {
    const auto fault = check_part(models, result.native, edits);
    if (fault) result.refusal = invalid(*fault);
  }
  if (result.refusal) result.native = {};
  return result;
}

std::optional<Refusal> find_fault(const Models& models, const Document& native) {
  const auto fault = check_data(models, native);
  return fault ? std::optional(invalid(*fault)) : std::nullopt;
}

}  // namespace ocifip
