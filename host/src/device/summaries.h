// The private summaries that the device's address managers publish.
#ifndef OCIFIP_HOST_DEVICE_SUMMARIES_H_
#define OCIFIP_HOST_DEVICE_SUMMARIES_H_

#include <string>
#include <vector>

#include "device/device_directory.h"
#include "io/models.h"

namespace ocifip {

// Whether a top-level node is that of the IPv4 summary.
bool is_ipv4_summary(const DocumentNode& root);

// The IPv4 summary as the device publishes it: what the device file has of it, and, for each
// subinterface of which it has no addresses, those that the interface manager knows.
DocumentNode ipv4_summary(const Models& models, const DeviceDirectory& device);

// The part of it that concerns interfaces: those that the native names of an interface and of all
// its subinterfaces stand for.
DocumentNode ipv4_summary(const Models& models, const DeviceDirectory& device,
                          const std::vector<std::string>& native_names);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_SUMMARIES_H_
