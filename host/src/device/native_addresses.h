// Addresses as the device's native configuration has them.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_
#define OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_

#include <string>
#include <vector>

#include "io/device_file.h"
#include "io/document.h"

namespace ocifip {

// The addresses of an interface that has an active configuration.
struct ConfiguredAddresses {
  std::string name;  // the interface's, in native form
  DeviceAddresses ipv4;
  DeviceAddresses ipv6;  // its first address is the primary one
};

// What is no address, netmask or prefix length counts as absent.
std::vector<ConfiguredAddresses> native_addresses(const Document& native);

// The names of interfaces that have an active configuration, and then of those that have static
// neighbors or VRRP, which the native configuration keeps apart; a name may come several times.
std::vector<std::string> configured_interfaces(const std::vector<InterfaceEntry>& entries);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_ADDRESSES_H_
