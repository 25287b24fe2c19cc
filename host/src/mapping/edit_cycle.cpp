#include "mapping/edit_cycle.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>

#include "device/native_part.h"
#include "device/native_promotion.h"
#include "device/subinterface_name.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io/select_data.h"
#include "mapping/interface_nodes.h"
#include "mapping/map_input.h"
#include "mapping/outcomes.h"
#include "mapping/said_operations.h"
#include "mapping/unaffected.h"
#include "mapping/virtual_addresses.h"
#include "result_codes.h"
#include "tree/output_document.h"

namespace ocifip {
namespace {

// Subtrees that are read at once, which bounds the memory for them: a whole interface has a hundred
// leaves to be asked for.
constexpr std::size_t kMostAtOnce = 1000;

constexpr const char* kDeletedWithMore = "it is deleted only with the container around it";
constexpr const char* kNothingMapped = "nothing of it is configuration that is mapped";

// Gives deletions the causes that the document names.
void name_causes(const Request& request, std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    if (node.cause != nullptr) {
      const void* cause = request.cause_of(static_cast<const InputNode*>(node.cause));
      node.cause = cause == nullptr ? node.cause : cause;
    }
    name_causes(request, node.children);
  }
}

// The read of the node that a path of single nodes ends at, in data; null when it is not there.
const DocumentNode* follow(const DocumentNode& read, const std::vector<DocumentNode>& data) {
  const bool is_whole_list = (read.kind == NodeKind::kList && read.children.empty()) ||
                             (read.kind == NodeKind::kLeafList && !read.value);
  const auto found = std::find_if(data.begin(), data.end(), [&](const DocumentNode& node) {
    return is_whole_list ? node.schema == read.schema : is_same_node(node, read);
  });
  if (found == data.end()) return nullptr;
  const auto below = std::find_if(read.children.begin(), read.children.end(),
                                  [](const DocumentNode& child) { return !is_key(child); });
  return below == read.children.end() ? &*found : follow(*below, found->children);
}

using SubinterfaceVisitor = std::function<void(const std::string& name, const DocumentNode& entry)>;

// Calls a function with the subinterfaces of data that have their keys, and with their native
// names.
void each_subinterface(const std::vector<DocumentNode>& nodes, const std::string* interface,
                       const SubinterfaceVisitor& visit) {
  for (const DocumentNode& node : nodes) {
    if (const std::string* name = key_value(node, "name")) interface = name;
    if (!is_subinterface(node)) {
      each_subinterface(node.children, interface, visit);
    } else if (const std::string* index = key_value(node, "index");
               index != nullptr && interface != nullptr) {
      visit(native_name(*interface, *index), node);
    }
  }
}

// Whether data has something at the end of a read's path: an entry, a leaf, or content.
bool has(const DocumentNode& read, const std::vector<DocumentNode>& data) {
  const DocumentNode* node = follow(read, data);
  if (node == nullptr) return false;
  return (node->kind != NodeKind::kContainer && !is_subinterface(*node)) || !has_only_keys(*node);
}

// A read asks for all values of a leaf-list.
void forget_value(DocumentNode& read) {
  if (read.kind == NodeKind::kLeafList) read.value.reset();
  if (!read.children.empty()) forget_value(read.children.back());
}

Document read_of(DocumentNode node) {
  Document document;
  forget_value(document.roots.emplace_back(std::move(node)));
  return document;
}

bool is_same_query(const DocumentNode& left, const DocumentNode& right) {
  const bool is_whole_list = left.kind == NodeKind::kList && left.schema == right.schema &&
                             lacks_key(left) && lacks_key(right);
  return is_whole_list || is_same_node(left, right);
}

// Takes out of queries what others ask for as well.
void forget_queries(std::vector<DocumentNode>& queries, const std::vector<DocumentNode>& others) {
  std::erase_if(queries, [&](DocumentNode& query) {
    const auto other = std::find_if(others.begin(), others.end(), [&](const DocumentNode& each) {
      return is_same_query(query, each);
    });
    if (is_key(query) || other == others.end()) return false;
    forget_queries(query.children, other->children);
    return has_only_keys(query);
  });
}

// Reads of subtrees that can be made together: what is around one of them, and stays, is no part of
// another.
struct HeldReads {
  std::vector<Document> held;
  std::vector<Document> way;
};

// Of the node at the end of a path of single nodes.
std::size_t depth_of(const DocumentNode& path) {
  const bool is_end = path.children.empty() || is_key(path.children.back());
  return is_end ? 1 : 1 + depth_of(path.children.back());
}

// Entries alone have no value by default, which would be shown when they are gone.
bool is_deleted_entry(const Subtree& subtree) {
  return subtree.is_deleted && subtree.is_entry && subtree.is_read_back;
}

Refusal missing(const Subtree& subtree) {
  return {kDataMissing, subtree.tag, subtree.path, cerr_strerror(kDataMissing)};
}

Refusal existing(const Subtree& subtree) {
  return {kDataExists, subtree.tag, subtree.path, cerr_strerror(kDataExists)};
}

}  // namespace

MappedEdit EditCycle::map(Document edit, DefaultOperation operation, Purpose purpose,
                          const RequestSettings& settings, const NativePartTaker& take) {
  const Operation inherited =
      operation == DefaultOperation::kNone ? Operation::kNone : Operation::kWrite;
  MappedEdit mapped;
  try {
    const SaidOperations said = said_operations(edit.roots);
    if (purpose != Purpose::kCalls && inherited == Operation::kWrite && said.deletion) {
      settle_virtual_addresses(edit, [&](Document read) {
        return reads_.expand(read) ? reads_.answer(read) : Document();
      });
    }
    subtrees_ = find_subtrees(framework_.models, device_, inherited, said, edit);
    const bool has_none = inherited == Operation::kNone || said.none;
    if (purpose != Purpose::kCalls && has_none) drop_unaffected(edit, inherited);
    if (purpose == Purpose::kDevice) drop_absent(edit.roots, inherited, mapped.outcome.refusal);
    std::vector<EditPart> parts = parts_of(std::move(edit), operation);
    const NativePartTaker& taker = parts.size() == 1 ? take : NativePartTaker();
    for (EditPart& part : parts) {
      if (mapped.outcome.refusal) break;
      map_part(std::move(part), inherited, settings, taker, mapped);
    }
    if (!mapped.outcome.refusal) complete(mapped);
  } catch (ReadRefused& refused) {
    mapped.outcome.refusal = std::move(refused.refusal);
  }
  if (mapped.outcome.refusal) mapped.outcome.notes.clear();
  return mapped;
}

void EditCycle::map_part(EditPart part, Operation operation, RequestSettings settings,
                         const NativePartTaker& take, MappedEdit& mapped) {
  std::optional<InputTree> input(std::in_place, part.document, operation);
  part.document = {};  // the largest thing in memory, if it were kept
  settings.request_op = part.request_op;
  settings.operation = operation;
  Request request(framework_, *input, settings);
  Outcome outcome = outcome_of(request, map_input(request, plugin_.openconfig));
  mapped.outcome.text += outcome.text;
  mapped.outcome.refusal = std::move(outcome.refusal);
  if (mapped.outcome.refusal) return;
  mapped.outcome.notes.insert(mapped.outcome.notes.end(), outcome.notes.begin(),
                              outcome.notes.end());
  mapped.has_effect = mapped.has_effect || has_effect(*request.output().root());
  if (take && is_complete()) {
    mapped.is_in_parts = to_documents(request.output(), "output", [&](Document& native) {
      input.reset();  // only the output is asked for any more: that makes room for the text
      settle_promotions(native);
      take(native);
    });
    if (mapped.is_in_parts) return;
  }
  Document native = to_document(request.output(), "output");
  if (!subtrees_.empty()) name_causes(request, native.roots);
  if (mapped.native.roots.empty()) {
    mapped.native = std::move(native);
  } else {
    merge_document(mapped.native, std::move(native));
  }
}

void EditCycle::find_traces(const std::vector<DocumentNode>& nodes) {
  if (subtrees_.empty()) return;
  for (const DocumentNode& node : nodes) {
    if (node.cause != nullptr && is_deleted(node)) traces_.insert(node.cause);
    find_traces(node.children);
  }
}

// The refusal of the first deletion that no mapping makes.
std::optional<Refusal> EditCycle::find_undeletable() const {
  for (const Subtree& subtree : subtrees_) {
    const char* reason = subtree.undeletable;
    if (subtree.is_deleted && reason == nullptr && !traces_.contains(&subtree)) {
      Document all = read_of(subtree.all);
      reason = reads_.expand(all) ? nullptr : kNothingMapped;
    }
    if (reason != nullptr) return Refusal{kUnsupported, subtree.tag, subtree.path, reason};
  }
  return std::nullopt;
}

// Completes what the mapping wrote, or refuses what it deletes nothing of.
void EditCycle::complete(MappedEdit& mapped) {
  settle_promotions(mapped.native);
  find_traces(mapped.native.roots);
  mapped.outcome.refusal = find_undeletable();
  if (!mapped.outcome.refusal) remove_held(mapped);
}

// Adds the removal of what subtrees hold.
void EditCycle::remove_held(MappedEdit& mapped) {
  each_held([&](const HeldConfiguration& held) {
    if (remove_omitted(mapped.native, held)) mapped.has_effect = true;
    return true;
  });
}

// Whether nothing of the device, and no refusal, comes to what the mapping makes of the edit.
bool EditCycle::is_complete() const {
  return std::none_of(subtrees_.begin(), subtrees_.end(),
                      [](const Subtree& subtree) { return subtree.is_deleted; }) &&
         each_held([](const HeldConfiguration& held) { return held.held.roots.empty(); });
}

// Calls a function with what subtrees hold, a bounded part at a time, while it returns true.
// Returns whether it always did.
bool EditCycle::each_held(const std::function<bool(const HeldConfiguration&)>& visit) const {
  std::map<std::size_t, HeldReads> reads;  // by the depth of the entries around the subtrees
  const auto visit_part = [&](HeldReads& part) {
    HeldReads taken = std::exchange(part, {});
    return visit(held_configuration(merged(std::move(taken.held)), merged(std::move(taken.way))));
  };
  for (const Subtree& subtree : subtrees_) {
    const bool is_known = subtree.interface.empty() || device_.knows(subtree.interface);
    if (!is_known || !subtree.held || absent_.contains(&subtree)) continue;
    HeldReads& part = reads[subtree.way ? depth_of(*subtree.way) : 0];
    Document read = read_of(*subtree.held);
    reads_.expand(read);
    part.held.push_back(std::move(read));
    if (subtree.way) part.way.push_back(read_of(*subtree.way));
    if (part.held.size() == kMostAtOnce && !visit_part(part)) return false;
  }
  return std::all_of(reads.begin(), reads.end(), [&](auto& row) { return visit_part(row.second); });
}

// What reads select on the device.
HeldConfiguration EditCycle::held_configuration(const Document& held, const Document& way) const {
  HeldConfiguration configuration;
  if (held.roots.empty()) return configuration;
  Document queries = reads_.native_queries(held);
  const Document& native = part_asked(framework_.models, device_.device().native, queries);
  configuration.native = &native;
  if (!way.roots.empty()) {
    const Document around = reads_.native_queries(way);
    forget_queries(queries.roots, around.roots);
    configuration.way = select_named(native, around);
  }
  configuration.held = select_data(native, queries);
  std::erase_if(configuration.held.roots, is_state);
  if (has_entry_around_interfaces(framework_.models, configuration.held.roots)) {
    configuration.native = &device_.device().native.whole();
  }
  return configuration;
}

std::optional<Refusal> EditCycle::judge_deletion(const void* cause, const Refusal& native) {
  const auto subtree = std::find_if(subtrees_.begin(), subtrees_.end(),
                                    [&](const Subtree& each) { return &each == cause; });
  if (subtree == subtrees_.end()) return native;
  if (native.code == kListKey) {
    return Refusal{kUnsupported, subtree->tag, subtree->path, kDeletedWithMore};
  }
  return is_on_device(*subtree) ? std::nullopt : std::optional(missing(*subtree));
}

std::optional<Refusal> EditCycle::find_misplaced() {
  for (const Subtree& subtree : subtrees_) {
    if (subtree.must_be_absent && is_on_device(subtree)) return existing(subtree);
    const bool is_judged =
        subtree.is_single || subtree.is_subinterface || !traces_.contains(&subtree);
    if (subtree.must_be_there && is_judged && !is_on_device(subtree)) {
      return missing(subtree);
    }
  }
  return std::nullopt;
}

bool EditCycle::deletes_entries() const {
  return std::any_of(subtrees_.begin(), subtrees_.end(), is_deleted_entry);
}

std::optional<Refusal> EditCycle::find_left(const ConfigurationReads& reads) const {
  std::vector<Document> parts;
  for (const Subtree& subtree : subtrees_) {
    if (is_deleted_entry(subtree)) reads.expand(parts.emplace_back(read_of(subtree.all)));
  }
  const Document left = reads.answer(merged(std::move(parts)));
  for (const Subtree& subtree : subtrees_) {
    if (is_deleted_entry(subtree) && has(subtree.all, left.roots)) {
      return Refusal{kUnsupported, subtree.tag, subtree.path,
                     "the device shows it all the same after the edit"};
    }
  }
  return std::nullopt;
}

bool EditCycle::is_on_device(const Subtree& subtree) {
  if (subtree.is_subinterface) return device_.knows(subtree.interface);
  return subtree.is_read_back ? is_shown(subtree, subtree.all) : holds(subtree);
}

// Whether the answer of the device has what a read in the subinterface of a subtree asks for.
bool EditCycle::is_shown(const Subtree& subtree, const DocumentNode& asked) {
  if (!deleted_) read_deleted();
  const auto known = subinterfaces_.find(subtree.interface);
  if (known == subinterfaces_.end()) return has(asked, deleted_->roots);
  const DocumentNode* read = &asked;
  while (!is_subinterface(*read)) read = &read->children.back();
  // A subinterface that the device knows is there, with or without configuration.
  return read->children.empty() || is_key(read->children.back()) ||
         has(read->children.back(), known->second->children);
}

// Takes out of an edit what it removes from entries that are not there. A delete there is the
// refusal. Returns whether something was taken out.
bool EditCycle::drop_absent(std::vector<DocumentNode>& nodes, Operation inherited,
                            std::optional<Refusal>& refusal) {
  const std::size_t count = nodes.size();
  bool is_changed = false;
  std::erase_if(nodes, [&](DocumentNode& node) {
    const auto* subtree = static_cast<const Subtree*>(node.cause);
    if (subtree != nullptr && subtree->entry && !is_shown(*subtree, *subtree->entry)) {
      if (subtree->must_be_there && !refusal) refusal = missing(*subtree);
      absent_.insert(subtree);
      return true;
    }
    const Operation operation = node.operation.value_or(inherited);
    if (!drop_absent(node.children, operation, refusal)) return false;
    is_changed = true;
    // An address without a prefix length would be of no use.
    const bool is_made = node.kind == NodeKind::kList && !is_walked_entry(node) &&
                         !is_named(node, kIpModule, "address") && operation == Operation::kWrite;
    return !is_made && !node.operation && has_only_keys(node);
  });
  return is_changed || nodes.size() != count;
}

// Whether there would be something to remove.
bool EditCycle::holds(const Subtree& subtree) const {
  if (!subtree.held) return false;
  Document read = read_of(*subtree.held);
  reads_.expand(read);
  Document removals;
  const HeldConfiguration held =
      held_configuration(read, subtree.way ? read_of(*subtree.way) : Document());
  return remove_omitted(removals, held);
}

// Reads all that is deleted or created at once.
void EditCycle::read_deleted() {
  std::vector<Document> reads;
  const auto add = [&](const DocumentNode& asked) {
    Document all = read_of(asked);
    if (reads_.expand(all)) reads.push_back(std::move(all));
  };
  for (const Subtree& subtree : subtrees_) {
    const bool is_known = subtree.interface.empty() || device_.knows(subtree.interface);
    if (!is_known) continue;
    const bool is_judged = subtree.must_be_there || subtree.must_be_absent;
    if (is_judged && !subtree.is_subinterface) add(subtree.all);
    if (subtree.entry) add(*subtree.entry);
  }
  deleted_ = reads_.answer(merged(std::move(reads)));
  each_subinterface(deleted_->roots, nullptr,
                    [&](const std::string& name, const DocumentNode& entry) {
                      subinterfaces_.emplace(name, &entry);
                    });
}

}  // namespace ocifip
