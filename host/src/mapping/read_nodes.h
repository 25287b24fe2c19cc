// What the cycles of reads ask of the documents that clients send them, and change there.
#ifndef OCIFIP_HOST_MAPPING_READ_NODES_H_
#define OCIFIP_HOST_MAPPING_READ_NODES_H_

#include <vector>

#include "io/document.h"

namespace ocifip {

// An empty value selects nothing: whoever asks for a leaf in XML has no way to give none.
void forget_empty_values(std::vector<DocumentNode>& nodes);

// An entry without keys asks for its whole list. It goes first: behind an entry with keys, it would
// be taken for that one.
void put_whole_lists_first(std::vector<DocumentNode>& nodes);

// The families that a read asks for in part, as wholes, with what leads to them.
std::vector<DocumentNode> families_in_part(const std::vector<DocumentNode>& nodes);

// Whether a read names a leaf, keys that choose an entry aside.
bool asks_for_a_leaf(const DocumentNode& node);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_NODES_H_
