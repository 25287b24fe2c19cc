// The tree that a mapping writes. Nodes keep their addresses until the tree goes.
#ifndef OCIFIP_HOST_TREE_OUTPUT_TREE_H_
#define OCIFIP_HOST_TREE_OUTPUT_TREE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "tree/arena.h"
#include "tree/key_index.h"
#include "tree/path_cache.h"
#include "yfw/datatree.h"

namespace ocifip {

struct OutputNode;

// Several nodes in one place.
struct ListedNodes {
  OutputNode* last = nullptr;
  OutputNode* current = nullptr;  // of a list: the entry last found, created or stitched
  std::size_t count = 0;
  // Of a list that has grown long: its entries by all their keys and, once entries are looked for
  // by one of several, those by each one.
  KeyIndex* index = nullptr;
  KeyIndex* index_of_single_keys = nullptr;
};

// The children of a node that stand in one place: one container or leaf, or the entries of a list.
struct ChildSlot {
  const Place* place = nullptr;
  ChildSlot* next = nullptr;
  OutputNode* first = nullptr;
  ListedNodes* listed =
      nullptr;  // null for a single node, as nearly all are, without a current one

  [[nodiscard]] std::size_t count() const {
    return listed != nullptr ? listed->count : std::size_t{first != nullptr};
  }
};

struct OutputNode {
  nidl_yfw_datatree head{};  // first: the contract's pointers to nodes are pointers to this
  const Place* place = nullptr;
  OutputNode* parent = nullptr;
  OutputNode* next = nullptr;       // in the same slot
  OutputNode* joined = nullptr;     // the older entry that this one turned out to be, or null
  ChildSlot* slots = nullptr;       // in order of first use
  bool is_asked_for = false;        // in queries: a path ended here
  bool is_shown = false;            // false: only writes that are part of a deletion led here
  bool may_be_missing = false;      // of a deletion: nobody has asked that there be something
  const void* cause = nullptr;      // of a deletion: the input node that asks for it
  const char* interface = nullptr;  // of a native entry: the one being mapped when it was made
};

// Values of a list's keys, in the order of its key statement.
using KeyValues = std::span<const std::string_view>;

class OutputTree {
 public:
  OutputTree(Arena& arena, const Place* root);
  OutputTree(const OutputTree&) = delete;
  OutputTree& operator=(const OutputTree&) = delete;

  [[nodiscard]] OutputNode* root() const { return root_; }
  [[nodiscard]] bool is_empty() const { return root_->slots == nullptr; }

  // The node behind a contract pointer, which may have become part of an older entry.
  static OutputNode* node_of(nidl_yfw_datatree* head);
  static const OutputNode* resolved(const OutputNode* node);
  static OutputNode* resolved(OutputNode* node);

  // A container or leaf, or null; null, too, for a null parent.
  static OutputNode* find_child(const OutputNode* parent, const Place* place);
  // Whether a node is part of what was written: keys are, whatever gave them.
  static bool is_shown(const OutputNode* node);
  // A container or leaf, found or made.
  OutputNode* child(OutputNode* parent, const Place* place);
  // The node of a leaf-list with a value, found or made.
  OutputNode* leaf_list_node(OutputNode* parent, const Place* place, const char* value);

  void set_value(OutputNode* node, std::string_view value);
  // Makes a node part of what was written, with all that leads to it.
  static void show(OutputNode* node);

  // The current entry of a list, or null.
  static OutputNode* current_entry(const OutputNode* parent, const Place* list);
  void make_current(OutputNode* entry);
  // Leaves no list with a current entry, as at the start of a request.
  void forget_current_entries();
  // The entry with all its keys given, or null.
  static OutputNode* find_entry(const OutputNode* parent, const Place* list, KeyValues values);
  // The first entry with one key's value, or null.
  OutputNode* find_entry_by_key(const OutputNode* parent, const Place* list, const Place* key,
                                std::string_view value);
  // The entry with all its keys given, found or made; what is current stays so.
  OutputNode* entry(OutputNode* parent, const Place* list, KeyValues values);
  // A new entry without keys, which becomes current.
  OutputNode* add_entry(OutputNode* parent, const Place* list);

  // Writes a key leaf of an entry. An entry without the key takes it, and is one with an older
  // sibling that has the same keys; another value than the entry's goes to the sibling with that
  // value, made when absent. The entry that is meant becomes current and is returned.
  OutputNode* name_entry(OutputNode* entry, const Place* key, std::string_view value);
  // The sibling of an entry that differs in one key, found or made.
  OutputNode* sibling_with(const OutputNode* entry, const Place* key, std::string_view value);
  // The value of an entry's key; the view's data is null when the entry lacks it.
  static std::string_view key_value(const OutputNode* entry, const Place* key);
  static bool has_any_key(const OutputNode* entry);

  // Keeps the interface that an entry was made for, which becomes its key when no other is written.
  void set_interface(OutputNode* entry, std::string_view interface);
  // Gives entries the keys that nobody has written.
  void complete_keys();

 private:
  static ChildSlot* find_slot(const OutputNode* parent, const Place* place);
  static const KeyIndex* index_for(const ChildSlot* slot, KeyValues wanted);
  // The first entry with the keys that are given, but for one; null when there is none.
  static OutputNode* find(const ChildSlot* slot, KeyValues wanted, const OutputNode* but = nullptr);
  ChildSlot* slot(OutputNode* parent, const Place* place);
  ListedNodes& listed(ChildSlot* slot);
  OutputNode* append(ChildSlot* slot, OutputNode* parent);
  void set_current(ChildSlot* slot, OutputNode* entry);
  void give_key(OutputNode* entry, const Place* key, std::string_view value);
  OutputNode* append_entry(OutputNode* parent, const Place* list);
  OutputNode* complete_entry(OutputNode* entry);
  void index_all(ChildSlot* slot);
  void index_keys(ChildSlot* slot, OutputNode* entry);
  void index_single_keys(ChildSlot* slot, OutputNode* entry);
  void absorb(OutputNode* target, OutputNode* source);
  OutputNode* counterpart(OutputNode* target, const OutputNode* child);
  OutputNode* list_counterpart(OutputNode* target, const OutputNode* child);

  Arena& arena_;
  OutputNode* root_;
  std::vector<ChildSlot*> current_slots_;       // those with a current entry
  std::vector<OutputNode*> interface_entries_;  // those with an interface
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_OUTPUT_TREE_H_
