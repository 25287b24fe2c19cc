// The way of native data through the plug-in: which callback takes what, and in which order.
#ifndef OCIFIP_HOST_MAPPING_READ_BACK_H_
#define OCIFIP_HOST_MAPPING_READ_BACK_H_

#include <vector>

#include "request/request.h"
#include "yfw/context.h"

namespace ocifip {

// The callbacks of the plug-in that native data is handed to.
struct ReadBackEntries {
  yfw_map_leaf_callback global_interface_configuration = nullptr;
  // Each takes one interface-configuration entry, in this order: the walker of the list, then those
  // of the models that augment it.
  std::vector<yfw_map_leaf_callback> interface_configuration;
};

// Maps the request's input, native data, until a callback fails. Returns the first result that is
// not 0.
cerrno read_back(Request& request, const ReadBackEntries& entries);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_BACK_H_
