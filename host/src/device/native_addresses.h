// IPv4 addresses as the device's native configuration has them.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_
#define OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_

#include <string>
#include <utility>
#include <vector>

#include "io/device_file.h"

namespace ocifip {

// The interfaces with an active configuration, by native name, with their IPv4 addresses. What is
// no address or netmask counts as absent.
std::vector<std::pair<std::string, DeviceAddresses>> native_addresses(const Document& native);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_
