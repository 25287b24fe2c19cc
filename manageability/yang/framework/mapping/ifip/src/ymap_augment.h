// The entry callbacks: entered from outside the library with a node at which a mapped model
// augments another.
#ifndef YMAP_AUGMENT_H_
#define YMAP_AUGMENT_H_

#include <cstdint>

#include "ymap_frame.h"
#include "ymap_walker.h"

namespace ymap {

// An entry of the OpenConfig direction: the family of nodes that it maps, and where it stands.
struct AugmentEntry {
  const Model& model;
  RowIndex row;                          // walker of the family's node
  const char* entry_tag;                 // tag of the augmented node
  const char* entry_key;                 // its key when it is a list entry, else null
  yfw_map_leaf_callback parse_augments;  // takes nodes of other modules
};

// The lines that an entry callback writes besides its frame's.
struct AugmentEntrySites {
  int line;
  std::uint32_t failed_subtrees = kFreshSiteWord;
  std::uint32_t tag_missing = kFreshSiteWord;
  std::uint32_t processing = kFreshSiteWord;
  std::uint32_t unsupported_tag = kFreshSiteWord;
};

// Enters with the family's node itself, or with the augmented node, each of whose children is then
// taken in turn. A read, or a delete, walks the node a second time; only the first pass has a
// result.
cerrno enter_augment(const Call& call, const AugmentEntry& entry, AugmentEntrySites& sites);

// An entry of the native direction.
struct ReadBackEntry {
  const Model& model;
  RowIndex row;                          // walker of the augmenting node
  yfw_map_leaf_callback parse_augments;  // takes nodes of other modules
};

// Enters with the augmented node: the model's node among its children is walked, all others are
// passed over.
cerrno enter_read_back(const Call& call, const ReadBackEntry& entry, AugmentEntrySites& sites);

}  // namespace ymap

// Defines an entry callback of the native direction, and its augment hook. `row` is the augmenting
// node's, of the model whose .inc file is in use.
#define YMAP_READ_BACK_ENTRY(name, hook, row)                                                      \
  YMAP_EXPORT cerrno hook(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out) { \
    static constinit std::array words = ymap::fresh_site_words<ymap::kHookSiteCount>();            \
    YMAP_ASSERT_CONTEXT(ctx, hook, kLeafForm);                                                     \
    return ymap::ignore_augment({#hook, __LINE__, words.data()}, ctx, in, out);                    \
  }                                                                                                \
  YMAP_GENERATED_LEAF(name) {                                                                      \
    static constinit ymap::AugmentEntrySites sites{__LINE__};                                      \
    return ymap::enter_read_back(call, {ymap::YMAP_MODEL::kModel, row, hook}, sites);              \
  }

#endif  // YMAP_AUGMENT_H_
