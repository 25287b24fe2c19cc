// The walker engine: visits an input tree by a constant table, one row a schema node, and hands
// each child to the callback that owns its tag. One engine serves both directions.
#ifndef YMAP_WALKER_H_
#define YMAP_WALKER_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "ymap_frame.h"

namespace ymap {

enum class Direction : std::uint8_t { kToOpenConfig, kToNative };

enum class RowKind : std::uint8_t { kContainer, kList, kLeaf };

// Index of a row in its model's table.
using RowIndex = std::uint16_t;

inline constexpr RowIndex kNoRow = 0xffff;
inline constexpr std::size_t kMaxKeys = 3;

enum RowFlag : std::uint8_t {
  kRefusesEdits = 1,  // containers, lists: nothing below is mapped, no edit may end here
  kPlaces = 2,        // lists: what the hook makes current, and its trim prefix, end with the entry
  kReadsOnly = 4,     // leaves: the callback is called on reads alone
  kHasFrame = 8       // leaves: the callback runs in a frame of the row's
};

// A schema node. A container or list is followed by the rows of its children.
struct Row {
  const char* tag;
  const char* name;  // the callback's own, for its lines
  union {
    yfw_map_container_callback hook;  // containers, lists: null is the model's fallback
    yfw_map_leaf_callback leaf;       // leaves: null is the model's duck_map_leaf
  } callback;
  std::uint16_t line = 0;
  RowIndex list = kNoRow;  // lists: index in the model's lists
  RowKind kind;
  std::uint8_t flags = 0;  // enum RowFlag, or-ed

  [[nodiscard]] constexpr bool has(RowFlag flag) const { return (flags & flag) != 0; }
};

// What is particular to a list.
struct List {
  const char* path;  // as yfw_map_update_current_list_node takes it
  std::array<const char*, kMaxKeys> keys;
};

// A row, or the end of one.
struct Nesting {
  RowIndex row;
  bool is_end;
};

// The lines that an augment hook can write.
enum AugmentHookSite : std::uint8_t { kHookStart, kHookInvalidArguments, kHookEnd, kHookSiteCount };

// The lines that a walker or a leaf's dispatch can write; each site has a word of its own.
enum WalkerSite : std::uint8_t {
  kSiteStart,
  kSiteInvalidArguments,
  kSiteEnd,
  kSharedSiteCount,
  // leaves
  kSiteXpathError = kSharedSiteCount,
  kLeafSiteCount,
  kSiteFrame = kLeafSiteCount,  // the first of the callback's frame
  kFramedLeafSiteCount = kSiteFrame + kFrameSiteCount,
  // containers
  kSiteFailedSubtrees = kSharedSiteCount,
  kSiteTagMissing,
  kSiteUnsupportedTag,
  kSiteDeleteWithSubtree,
  kSiteAugmentHook,  // the first of the augment hook's
  kContainerSiteCount = kSiteAugmentHook + kHookSiteCount,
  // lists, which have those of containers, too
  kSiteNoKeys = kContainerSiteCount,
  kSiteEmptyKey,
  kSiteLeafref,
  kSiteKeyDelete,
  kSiteKeyCount,
  kListSiteCount
};

// A model's table and its fallbacks.
struct Model {
  const char* module_namespace;
  Direction direction;
  yfw_map_container_callback duck_map_container;
  yfw_map_leaf_callback duck_map_list;
  yfw_map_leaf_callback duck_map_leaf;
  const char* file;  // that the rows stand in
  const Row* rows;
  RowIndex row_count;
  const List* lists;
  const RowIndex* first_site;  // a row's first site word
  const RowIndex* slots;       // hash table of the rows, by parent and tag
  std::uint32_t slot_mask;
  const RowIndex* parents;  // a row's parent, kNoRow at the top
  std::uint32_t* words;     // the site words of all rows
};

// Hash of a tag below a parent row.
constexpr std::uint32_t tag_hash(RowIndex parent, const char* tag) {
  std::uint32_t hash = (2166136261u ^ parent) * 16777619u;
  for (; *tag != '\0'; ++tag) {
    hash = (hash ^ static_cast<std::uint8_t>(*tag)) * 16777619u;
  }
  return hash ^ (hash >> 15);
}

// What is computed from a model's rows when it is compiled.
template <std::size_t kRows>
struct Index {
  static constexpr std::size_t slot_count() {
    std::size_t count = 4;
    while (count < 3 * kRows) {
      count *= 2;
    }
    return count;
  }

  std::array<RowIndex, kRows> parents{};
  std::array<RowIndex, kRows> first_site{};
  std::array<RowIndex, slot_count()> slots{};
  std::uint16_t site_count = 0;
};

// Not constant: calling it ends a compilation.
void table_is_wrong(const char* reason);

constexpr std::uint8_t site_count(const Row& row) {
  switch (row.kind) {
    case RowKind::kLeaf:
      return row.has(kHasFrame) ? kFramedLeafSiteCount : kLeafSiteCount;
    case RowKind::kList:
      return kListSiteCount;
    default:
      return kContainerSiteCount;
  }
}

template <std::size_t kRows, std::size_t kSteps>
consteval Index<kRows> make_index(const Row (&rows)[kRows], const Nesting (&nesting)[kSteps]) {
  static_assert(kRows < kNoRow);
  Index<kRows> index;
  index.slots.fill(kNoRow);
  RowIndex parent = kNoRow;
  for (const Nesting& step : nesting) {
    if (step.is_end) {
      if (step.row != parent) {
        table_is_wrong("an end row does not name the row that it closes");
      }
      parent = index.parents[parent];
      continue;
    }
    const Row& row = rows[step.row];
    index.parents[step.row] = parent;
    index.first_site[step.row] = index.site_count;
    index.site_count += site_count(row);
    std::size_t slot = tag_hash(parent, row.tag) & (index.slots.size() - 1);
    while (index.slots[slot] != kNoRow) {
      slot = (slot + 1) & (index.slots.size() - 1);
    }
    index.slots[slot] = step.row;
    if (row.kind != RowKind::kLeaf) {
      parent = step.row;
    }
  }
  if (parent != kNoRow) {
    table_is_wrong("a container or list is not closed");
  }
  return index;
}

// --- what rows become ----------------------------------------------------------------------------

// The exported callbacks of a row: its walker, the augment hook of that, a leaf's dispatcher, and a
// leaf's callback with its body. The arguments of a callback come first, as in run_leaf.
cerrno run_walker(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model, RowIndex index);
cerrno run_augment_hook(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model,
                        RowIndex index);
cerrno run_dispatcher(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model,
                      RowIndex index);
cerrno run_row(yfw_map_ctx* ctx, const Node* in, Node* out, const Model& model, RowIndex index,
               Body body);

// Walks a container or a list entry.
//
//   index    its row
//   in, out  as in a callback of the leaf form
//   parent   the node that holds `in`, or null when the caller does not know it
//
// Returns the first non-zero result of the hook or a child.
cerrno walk(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in, Node* out,
            const Node* parent = nullptr);

// Hands a leaf to its callback, between the lines of the callback's own name.
cerrno dispatch_leaf(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in,
                     Node* out);

// An augment hook: takes a child of another module.
struct AugmentHook {
  const char* name;
  int line;
  std::uint32_t* words;     // a word for each AugmentHookSite
  const char* ending = "";  // of the name

  [[nodiscard]] Site site(AugmentHookSite which) const {
    return {name, line, &words[which], ending};
  }
};

// The hook of the OpenConfig direction: refuses the child when it is to be added, passes it over
// otherwise. It writes neither a start nor an end line.
cerrno refuse_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out);

// The hook of the native direction: passes every child over, between the lines of its own name.
cerrno ignore_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out);

// The augment hook of a walker.
cerrno parse_augments(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in,
                      Node* out);

}  // namespace ymap

#endif  // YMAP_WALKER_H_
