// The attribute that an interface's addresses are encoded in: elements of a type, a length and a
// value.
#ifndef OCIFIP_HOST_DEVICE_ADDRESS_CODEC_H_
#define OCIFIP_HOST_DEVICE_ADDRESS_CODEC_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "io/device_file.h"

namespace ocifip {

// Encodes addresses of a family in at most a number of bytes. Secondaries that find no room are
// left with the interface manager, and an element says where.
std::vector<std::uint8_t> encode_addresses(const DeviceAddresses& addresses, std::uint32_t family,
                                           std::uint32_t handle, std::size_t room);

// Whether a number of bytes has room for any addresses at all.
bool is_room_for_addresses(std::size_t room);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_ADDRESS_CODEC_H_
