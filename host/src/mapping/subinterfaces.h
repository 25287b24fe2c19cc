// OpenConfig entries of interfaces and subinterfaces in an output tree.
#ifndef OCIFIP_HOST_MAPPING_SUBINTERFACES_H_
#define OCIFIP_HOST_MAPPING_SUBINTERFACES_H_

#include <vector>

#include "device/subinterface_name.h"
#include "request/request.h"

namespace ocifip {

// Enters subinterfaces, and the interfaces that they belong to, into a request's output, as the
// sibling mapping of interfaces would. None of them is current.
void enter_subinterfaces(Request& request, const std::vector<SubinterfaceName>& names);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_SUBINTERFACES_H_
