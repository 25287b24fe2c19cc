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

enum class RowKind : std::uint8_t { kContainer, kList, kLeaf, kClose };

// Index of a row in its model's table.
using RowIndex = std::uint16_t;

inline constexpr RowIndex kNoRow = 0xffff;
inline constexpr std::size_t kMaxKeys = 2;

// A schema node. A container or list is followed by the rows of its children and closed by a kClose
// row.
struct Row {
  RowKind kind;
  const char* tag = nullptr;
  const char* name = nullptr;           // the callback's own name, for its lines
  const char* augments_name = nullptr;  // containers, lists: name of the augment hook
  int line = 0;
  bool announces_refusal = false;             // the augment hook announces a child that it refuses
  yfw_map_container_callback hook = nullptr;  // containers, lists: null is the model's fallback
  yfw_map_leaf_callback leaf = nullptr;       // leaves: null is the model's duck_map_leaf
  const char* list_path = nullptr;            // lists: as yfw_map_update_current_list_node takes it
  std::array<const char*, kMaxKeys> keys{};   // lists
};

// The lines that an augment hook can write.
enum AugmentHookSite : std::uint8_t {
  kHookStart,
  kHookInvalidArguments,
  kHookEnd,
  kHookProcessing,
  kHookSiteCount
};

// The lines that a walker or a leaf's dispatch can write; each site has a word of its own.
enum WalkerSite : std::uint8_t {
  kSiteStart,
  kSiteInvalidArguments,
  kSiteEnd,
  kSiteXpathError,
  kLeafSiteCount,
  kSiteFailedSubtrees = kLeafSiteCount,
  kSiteTagMissing,
  kSiteUnsupportedTag,
  kSiteDeleteWithSubtree,
  kSiteNoKeys,
  kSiteEmptyKey,
  kSiteLeafref,
  kSiteKeyDelete,
  kSiteKeyCount,
  kSiteAugmentHook,  // the first of its augment hook's
  kWalkerSiteCount = kSiteAugmentHook + kHookSiteCount
};

// A model's table and its fallbacks.
struct Model {
  const char* module_namespace;
  Direction direction;
  yfw_map_container_callback duck_map_container;
  yfw_map_leaf_callback duck_map_list;
  yfw_map_leaf_callback duck_map_leaf;
  const Row* rows;
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

consteval bool same_text(const char* first, const char* second) {
  for (; *first != '\0' && *first == *second; ++first, ++second) {
  }
  return *first == *second;
}

template <std::size_t kRows>
consteval Index<kRows> make_index(const Row (&rows)[kRows]) {
  static_assert(kRows < kNoRow);
  Index<kRows> index;
  index.slots.fill(kNoRow);
  RowIndex parent = kNoRow;
  for (std::size_t at = 0; at < kRows; ++at) {
    const auto i = static_cast<RowIndex>(at);
    const Row& row = rows[i];
    index.parents[i] = parent;
    index.first_site[i] = index.site_count;
    if (row.kind == RowKind::kClose) {
      if (parent == kNoRow || !same_text(row.name, rows[parent].name)) {
        table_is_wrong("an end row does not name the row that it closes");
      }
      parent = index.parents[parent];
      continue;
    }
    std::size_t slot = tag_hash(parent, row.tag) & (index.slots.size() - 1);
    while (index.slots[slot] != kNoRow) {
      slot = (slot + 1) & (index.slots.size() - 1);
    }
    index.slots[slot] = i;
    if (row.kind == RowKind::kLeaf) {
      index.site_count += kLeafSiteCount;
    } else {
      index.site_count += kWalkerSiteCount;
      parent = i;
    }
  }
  if (parent != kNoRow) {
    table_is_wrong("a container or list is not closed");
  }
  return index;
}

template <std::size_t kWords>
consteval std::array<std::uint32_t, kWords> fresh_site_words() {
  std::array<std::uint32_t, kWords> words{};
  words.fill(kFreshSiteWord);
  return words;
}

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
  std::uint32_t* words;            // a word for each AugmentHookSite
  bool announces_refusal = false;  // names a child that it refuses
};

// The hook of the OpenConfig direction: refuses the child when it is to be added, passes it over
// otherwise. It writes neither a start nor an end line.
cerrno refuse_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out);

// The hook of the native direction: passes every child over, between the lines of its own name.
cerrno ignore_augment(const AugmentHook& hook, yfw_map_ctx* ctx, const Node* in, Node* out);

// The augment hook of a walker.
cerrno parse_augments(const Model& model, RowIndex index, yfw_map_ctx* ctx, const Node* in,
                      Node* out);

// The hook of a container or list of which no leaf is mapped: accepts it, but refuses an edit that
// ends at it, such as a delete of all that is below, which would otherwise pass without effect.
cerrno refuse_childless_edit(yfw_map_ctx* ctx, const Node* in, std::uint32_t child_count,
                             Node* out);

}  // namespace ymap

#endif  // YMAP_WALKER_H_
