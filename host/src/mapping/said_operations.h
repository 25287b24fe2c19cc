// The operations that the nodes of an edit say.
#ifndef OCIFIP_HOST_MAPPING_SAID_OPERATIONS_H_
#define OCIFIP_HOST_MAPPING_SAID_OPERATIONS_H_

#include <vector>

#include "io/document.h"

namespace ocifip {

// Which of them there are anywhere. Most edits say none, and the passes that look for one are left
// out: each takes two hundredths of an edit of 100,000 subinterfaces.
struct SaidOperations {
  bool write = false;
  bool replace = false;
  bool deletion = false;  // a delete or a remove
  bool none = false;
  bool creation = false;
};

SaidOperations said_operations(const std::vector<DocumentNode>& nodes);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_SAID_OPERATIONS_H_
