// What the mapping callbacks ask of a request, and the few things that they do to it: the kind of
// the request, the writing of output paths, the record of a refusal, and the guards that undo what
// a callback changes for a while.
#ifndef YMAP_REQUEST_H_
#define YMAP_REQUEST_H_

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "yfw/context.h"
#include "yfw/mapping.h"
#include "ymap_frame.h"

namespace ymap {

// --- nodes ---------------------------------------------------------------------------------------

inline bool has_flag(const Node& node, nidl_yfw_node_flag flag) { return (node.flags & flag) != 0; }

// The input tree is read-only but for its operations, key marks, flags and the texts of its values,
// which the framework lets a mapping write; this is the one place that takes the const away.
inline Node& writable(const Node& node) { return const_cast<Node&>(node); }
inline char* writable_value(const Node& node) { return const_cast<char*>(node.value); }

// Turns a node's value into upper case, in the input tree itself, by design. Returns it; null when
// the node has none.
const char* upper_case_value(const Node& node);

// The children of a node: none when the node does not claim a subtree.
struct Children {
  const Node* first = nullptr;
  std::uint32_t count = 0;

  [[nodiscard]] const Node* begin() const { return first; }
  [[nodiscard]] const Node* end() const { return first + count; }
  // The first child with a tag, or null.
  [[nodiscard]] const Node* find(const char* tag) const;
};

// Reads a node's children; false when it claims children that cannot be read.
[[nodiscard]] inline bool read_children(const Node& node, Children& children) {
  children = {};
  if (!has_flag(node, NIDL_YFW_FLAG_HAS_SUBTREE)) {
    return true;
  }
  if (node.children == nullptr) {
    return node.child_count == 0;
  }
  children = {node.children, node.child_count};
  return true;
}

// The children of a node that a walker has read before.
[[nodiscard]] inline Children children_of(const Node& node) {
  Children children;
  return read_children(node, children) ? children : Children{};
}

// --- kind of the request -------------------------------------------------------------------------

// Code of the whole request (enum yfw_map_request_op); without a request state, a configuration
// read, which changes nothing.
[[nodiscard]] inline std::uint32_t request_op(const yfw_map_ctx* ctx) {
  return ctx->request_state != nullptr ? ctx->request_state->request.request_op
                                       : std::uint32_t{YFW_MAP_REQUEST_READ_CONFIG};
}
[[nodiscard]] inline bool is_read(const yfw_map_ctx* ctx) {
  const std::uint32_t operation = request_op(ctx);
  return operation == YFW_MAP_REQUEST_READ_CONFIG || operation == YFW_MAP_REQUEST_READ_STATE;
}
[[nodiscard]] inline bool is_edit(const yfw_map_ctx* ctx) { return !is_read(ctx); }

// Whether a node carries a delete or remove.
[[nodiscard]] inline bool is_delete(const Node& node) {
  return yfw_map_is_request_delete(&node) != 0;
}
[[nodiscard]] inline bool is_delete_operation(std::uint32_t operation) {
  return operation == NIDL_YFW_EDIT_DELETE || operation == NIDL_YFW_EDIT_REMOVE;
}

// Whether a list of the request is deleted as a whole, without keys.
[[nodiscard]] inline bool is_list_wide(const yfw_map_ctx* ctx) {
  return ctx->request_state != nullptr && ctx->request_state->list_wide != 0;
}

// --- writing -------------------------------------------------------------------------------------

// One path to write. What is not said is as most writes have it: under the request's current list
// entries, to the output tree.
struct PathWrite {
  const char* path;
  const char* value = nullptr;
  const Node* source = nullptr;  // the node whose operation the written one takes
  bool create = false;           // the create flag: an entry of a list is a new one
  Node* base = nullptr;          // where the path begins; null: at the output tree's root
  Node** created = nullptr;      // where to store the written node
  std::uint32_t flags = YFW_MAP_PATH_CURRENT;
};

// Adds a path to the output tree in a module's namespace. Returns the framework's result.
cerrno add_path(const Call& call, const char* module_namespace, const PathWrite& write);

// Adds paths in turn, until one fails. Returns the first failure.
cerrno add_all(const Call& call, const char* module_namespace,
               std::initializer_list<PathWrite> writes);

// --- words ---------------------------------------------------------------------------------------

// A word of one model and what the other one has for it.
struct Word {
  const char* from;
  const char* to;
};

// The words of an enumeration. A value that is longer than `longest` characters is none of them.
struct Words {
  std::span<const Word> words;
  std::size_t longest;
};

// Whether a value, of which `longest` characters are looked at, is a word; null is none.
[[nodiscard]] bool is_same_word(const char* value, const char* word, std::size_t longest);

// What a value is translated to, or null when it is none of the words, or null.
[[nodiscard]] const char* translate(const Words& words, const char* value);

// "true" sets an empty leaf. Neither "false" nor any other value takes it away, deliberately: a
// delete does.
inline constexpr Word kTrueIsPresenceWords[] = {{"true", ""}};
inline constexpr Words kTrueIsPresence = {kTrueIsPresenceWords, 10};

// --- edited leaves -------------------------------------------------------------------------------

// The numbers that a leaf may hold, and what a refusal of others says.
struct Bounds {
  std::uint32_t least;
  std::uint32_t greatest;
  const char* refusal;  // null: there are no bounds

  [[nodiscard]] bool allow(std::uint32_t number) const {
    return refusal == nullptr || (least <= number && number <= greatest);
  }
};

struct EditOptions {
  Bounds bounds = {};             // of the number that the value begins with
  const Words* words = nullptr;   // null: the value goes out as it is; a value that is none of the
                                  // words writes nothing
  const char* instead = nullptr;  // what goes out whatever the value is; null: the value
  bool needs_value = false;       // a leaf without a value writes nothing
  std::uint32_t flags = YFW_MAP_PATH_CURRENT;
};

// The leaf in three ways: a read asks for the path with the node's value if any, a delete deletes
// it, and anything else writes the value. Returns the framework's result, or 0xaaf2f400 for a value
// out of bounds.
cerrno edit_leaf(const Call& call, const char* module_namespace, const char* path,
                 const EditOptions& options = {});

// The number that a text begins with, in decimal; 0 without one. What exceeds 32 bits is cut off.
[[nodiscard]] std::uint32_t number_of(const char* text);

// --- refusals ------------------------------------------------------------------------------------

// Label of the texts that the library hands to the framework.
inline constexpr const char* kAllocationName = "YFW MAP";

// Refuses the request for a node: records its tag, marks the error path. Returns `result`.
cerrno refuse_tag(yfw_map_ctx* ctx, const char* tag, cerrno result);

// Refuses the value of a leaf and records why, in a sentence. Returns 0xaaf2f400.
cerrno refuse_value(yfw_map_ctx* ctx, const char* sentence);

// The body of a leaf's callback that does nothing.
inline cerrno idle_leaf(const Call& /*call*/) { return YMAP_OK; }

// Passes over a leaf that has no mapping.
inline cerrno ignore_leaf(const Call& /*call*/) { return YMAP_OK; }

// Refuses a leaf that has no mapping: marks the error path, records the tag, YMAP_ERR_UNSUPPORTED.
cerrno refuse_leaf(const Call& call);

// --- guards --------------------------------------------------------------------------------------

// Gives a node another edit operation for as long as the guard lives, marked as an override, which
// stays: nodes written from it carry the operation.
class OperationOverride {
 public:
  OperationOverride(const Node& node, nidl_yfw_edit_oper operation)
      : node_(writable(node)), saved_(node.edit_operation) {
    set(operation);
  }
  // With the operation that the node has, whatever it is: marks it as an override.
  explicit OperationOverride(const Node& node)
      : node_(writable(node)), saved_(node.edit_operation) {
    node_.flags |= NIDL_YFW_FLAG_OPERATION_OVERRIDE;
  }
  ~OperationOverride() { node_.edit_operation = saved_; }
  OperationOverride(const OperationOverride&) = delete;
  OperationOverride& operator=(const OperationOverride&) = delete;

  void set(nidl_yfw_edit_oper operation) {
    node_.edit_operation = static_cast<std::uint8_t>(operation);
    node_.flags |= NIDL_YFW_FLAG_OPERATION_OVERRIDE;
  }

 private:
  Node& node_;
  std::uint8_t saved_;
};

// Sets the trim prefix for as long as the guard lives: the part of a path that equals it stands for
// the base node. Null sets none, and leaves alone what is set.
class TrimPrefix {
 public:
  TrimPrefix(yfw_map_ctx* ctx, const char* prefix) : ctx_(prefix != nullptr ? ctx : nullptr) {
    if (ctx_ != nullptr) {
      yfw_map_copy_trim_path_list_ctx(ctx_, prefix);
    }
  }
  ~TrimPrefix() {
    if (ctx_ != nullptr) {
      yfw_map_free_trim_path_list_ctx(ctx_);
    }
  }
  TrimPrefix(const TrimPrefix&) = delete;
  TrimPrefix& operator=(const TrimPrefix&) = delete;

 private:
  yfw_map_ctx* ctx_;
};

// Keeps the framework from reusing a list's current entry while a callback adds one of its own.
class NewListEntries {
 public:
  explicit NewListEntries(yfw_map_ctx* ctx);
  ~NewListEntries();
  NewListEntries(const NewListEntries&) = delete;
  NewListEntries& operator=(const NewListEntries&) = delete;

 private:
  yfw_map_request_state* state_;
  std::uint8_t saved_ = 0;
};

}  // namespace ymap

#endif  // YMAP_REQUEST_H_
