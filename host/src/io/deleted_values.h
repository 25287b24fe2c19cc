// Values of leaves that are deleted.
#ifndef OCIFIP_HOST_IO_DELETED_VALUES_H_
#define OCIFIP_HOST_IO_DELETED_VALUES_H_

#include <vector>

#include "io/document.h"

namespace ocifip {

// Gives each leaf of an edit that is deleted and has no value the one that the data has there, or
// else one that its type takes. No value counts for a deletion, but parsers of edits hold even that
// of a deleted leaf against its type.
void give_deleted_values(std::vector<DocumentNode>& edit, const std::vector<DocumentNode>& data);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DELETED_VALUES_H_
