// The kinds of request that one edit is made of.
#ifndef OCIFIP_HOST_MAPPING_EDIT_PARTS_H_
#define OCIFIP_HOST_MAPPING_EDIT_PARTS_H_

#include <cstdint>
#include <vector>

#include "io/document.h"
#include "ocifip/host.h"

namespace ocifip {

// What the mapping is entered with once.
struct EditPart {
  Document document;
  std::uint32_t request_op;  // YFW_MAP_REQUEST_REPLACE, CREATE or MERGE
};

// The parts of an edit: IP of the families, of whichever subinterfaces, whose address list is
// replaced, and all the rest. A list is replaced by an annotation on it or above it. The part that
// the document begins with comes first, and a part with nothing in it is left out.
std::vector<EditPart> parts_of(Document document, DefaultOperation operation);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_EDIT_PARTS_H_
