// The way of an OpenConfig request through the mapping.
#ifndef OCIFIP_HOST_MAPPING_MAP_INPUT_H_
#define OCIFIP_HOST_MAPPING_MAP_INPUT_H_

#include "request/request.h"

namespace ocifip {

// Hands each top-level node of the request's input to a callback until one fails. Returns the first
// result that is not 0.
cerrno map_input(Request& request, yfw_map_leaf_callback entry);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_MAP_INPUT_H_
