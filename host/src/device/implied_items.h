// Items of the database that nobody wrote down: what the device's configuration and its interfaces
// imply that the daemons publish. A source for a further model is a function beside these.
#ifndef OCIFIP_HOST_DEVICE_IMPLIED_ITEMS_H_
#define OCIFIP_HOST_DEVICE_IMPLIED_ITEMS_H_

#include <optional>
#include <string>
#include <string_view>

#include "device/device_directory.h"

namespace ocifip {

// What the native configuration alone implies: the proxy ARP settings of the active interfaces, and
// the static ARP entries. Entries without an address or an interface are left out.
DatabaseItems items_configured_by(const Document& native);

// An item that the running device implies: the detail record of an interface that has an IPv4
// address, or a static IPv6 neighbor of the device's own node.
std::optional<DatabaseItem> running_item(const DeviceDirectory& directory, const std::string& path);

// All such items whose path begins with a text.
DatabaseItems running_items(const DeviceDirectory& directory, std::string_view path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_IMPLIED_ITEMS_H_
