// What the client is told of a request that was mapped.
#ifndef OCIFIP_HOST_MAPPING_OUTCOMES_H_
#define OCIFIP_HOST_MAPPING_OUTCOMES_H_

#include "ocifip/host.h"
#include "request/request.h"

namespace ocifip {

// What the mapping itself made of a request: its calls if they were recorded, and its refusal or
// its remarks.
Outcome outcome_of(Request& request, cerrno result);

// Whether an output holds more than the way to something: a leaf, an operation, or an entry of a
// list. Native interfaces are no more than the way. A query may end at a container, which stands
// for all that it holds.
bool has_effect(const OutputNode& node);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_OUTCOMES_H_
