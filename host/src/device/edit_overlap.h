// Two native edits that are to be one.
#ifndef OCIFIP_HOST_DEVICE_EDIT_OVERLAP_H_
#define OCIFIP_HOST_DEVICE_EDIT_OVERLAP_H_

#include <cstddef>
#include <vector>

#include "io/document.h"
#include "ocifip/outcome.h"

namespace ocifip {

// The refusals of the nodes that both of two native edits change, up to a number of them: leaves
// that both write, and nodes that one of them deletes or replaces as a whole while the other
// changes something of them. Keys, and nodes that only lead to others, are no change.
std::vector<Refusal> find_overlaps(const Document& first, const Document& second, std::size_t most);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_EDIT_OVERLAP_H_
