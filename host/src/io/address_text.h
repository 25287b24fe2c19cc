// Addresses with prefix lengths, as the device file writes them.
#ifndef OCIFIP_HOST_IO_ADDRESS_TEXT_H_
#define OCIFIP_HOST_IO_ADDRESS_TEXT_H_

#include <string>

#include "io/device_file.h"

namespace ocifip {

enum class AddressFamily { kIpv4, kIpv6 };

// Reads "10.0.0.1/24" or "2001:db8::1/64" strictly: no blanks, no leading zeros, no zone. On
// failure returns false and says in reason what is wrong with the text.
bool read_address(AddressFamily family, const std::string& text, DeviceAddress& address,
                  std::string& reason);

// The address alone: "10.0.0.1".
std::string address_text(AddressFamily family, const DeviceAddress& address);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_ADDRESS_TEXT_H_
