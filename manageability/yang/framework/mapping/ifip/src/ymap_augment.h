// The entry callbacks of the OpenConfig direction: entered from outside the library with a node at
// which a mapped model augments another.
#ifndef YMAP_AUGMENT_H_
#define YMAP_AUGMENT_H_

#include <cstdint>

#include "ymap_frame.h"
#include "ymap_walker.h"

namespace ymap {

// An entry: the family of nodes that it maps, and where it stands.
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

}  // namespace ymap

#endif  // YMAP_AUGMENT_H_
