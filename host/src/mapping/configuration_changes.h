// What two configurations of a device differ in.
#ifndef OCIFIP_HOST_MAPPING_CONFIGURATION_CHANGES_H_
#define OCIFIP_HOST_MAPPING_CONFIGURATION_CHANGES_H_

#include <vector>

#include "io/models.h"
#include "mapping/device_views.h"
#include "ocifip/configuration.h"

namespace ocifip {

// The topmost nodes that are new or gone, and the leaves that have other values: those of the
// native models, and then those that OpenConfig shows of the subinterfaces concerned.
std::vector<ChangedNode> find_changes(const Models& models, DeviceView& before, DeviceView& after);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_CONFIGURATION_CHANGES_H_
