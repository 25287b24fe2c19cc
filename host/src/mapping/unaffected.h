// What an edit names and does not edit.
#ifndef OCIFIP_HOST_MAPPING_UNAFFECTED_H_
#define OCIFIP_HOST_MAPPING_UNAFFECTED_H_

#include "io/document.h"

namespace ocifip {

// Drops from an edit the leaves whose operation is "none", their own or `operation`, which nodes
// have that say none, and then the entries and containers that are left with nothing: the mapping
// would write some of them. What no model knows stays, and is refused.
void drop_unaffected(Document& edit, Operation operation);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_UNAFFECTED_H_
