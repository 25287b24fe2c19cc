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
  yfw_map_leaf_callback parse_augments;  // takes nodes of other modules
  const char* entry_tag;                 // tag of the augmented node
  const char* entry_key = nullptr;       // its key when it is a list entry
  bool announces = false;                // names the family's node also when it comes by itself
  // Also shown a deleted augmented node, without its children; null: there is none.
  yfw_map_container_callback delete_with_entry = nullptr;
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
  RowIndex second_row = kNoRow;          // walker of a second augmenting node, if there is one
};

// Enters with the augmented node: the model's nodes among its children are walked, all others are
// passed over.
cerrno enter_read_back(const Call& call, const ReadBackEntry& entry, AugmentEntrySites& sites);

}  // namespace ymap

// Define an entry callback, YMAP_SYMBOL(augment_<level>_<node>), and its augment hook, of the model
// whose .inc file is in use. `row` is the augmenting node's, as level_path; the further columns are
// those of an AugmentEntry, and of a ReadBackEntry the row of the second node.
#define YMAP_AUGMENT_ENTRY(level, node, row, ...)                                                 \
  YMAP_ENTRY(YMAP_SYMBOL(augment_##level##_##node), YMAP_SYMBOL(level##_##node##_parse_augments), \
             refuse_augment, enter_augment, ymap::AugmentEntry, row, __VA_ARGS__)
#define YMAP_READ_BACK_ENTRY(level, row, ...)                                             \
  YMAP_ENTRY(YMAP_SYMBOL(augment_##level##_interface_configuration),                      \
             YMAP_SYMBOL(level##_interface_configuration_parse_augments), ignore_augment, \
             enter_read_back, ymap::ReadBackEntry, row __VA_OPT__(, ) __VA_ARGS__)

#define YMAP_ENTRY(name, hook, ...) YMAP_ENTRY_(name, hook, __VA_ARGS__)
#define YMAP_ENTRY_(name, hook, run_hook, enter, Entry, row, ...)                                  \
  YMAP_EXPORT cerrno hook(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out) { \
    static constinit std::array words = ymap::fresh_site_words<ymap::kHookSiteCount>();            \
    YMAP_ASSERT_CONTEXT(ctx, hook, kLeafForm);                                                     \
    return ymap::run_hook({#hook, __LINE__, words.data()}, ctx, in, out);                          \
  }                                                                                                \
  YMAP_GENERATED_LEAF(name) {                                                                      \
    static constinit ymap::AugmentEntrySites sites{__LINE__};                                      \
    return ymap::enter(call,                                                                       \
                       Entry{ymap::YMAP_MODEL::kModel, ymap::YMAP_MODEL::row_##row,                \
                             hook __VA_OPT__(, ) __VA_ARGS__},                                     \
                       sites);                                                                     \
  }

#endif  // YMAP_AUGMENT_H_
