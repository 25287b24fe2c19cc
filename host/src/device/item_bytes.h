// The bytes of the database's items.
#ifndef OCIFIP_HOST_DEVICE_ITEM_BYTES_H_
#define OCIFIP_HOST_DEVICE_ITEM_BYTES_H_

#include <string>

#include "device/device_directory.h"

namespace ocifip {

// An item's text, or its record encoded. Throws InputError that names the place of what cannot be
// encoded.
std::string item_bytes(const DatabaseItem& item, const DeviceDirectory& directory);

// Encodes every record of the device file, once the plug-in has registered its records, so that a
// fault is found before a request meets it. Throws InputError.
void check_items(const DeviceDirectory& directory);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_ITEM_BYTES_H_
