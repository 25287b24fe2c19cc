// Edits of the virtual addresses of VRRP groups that the mapping cannot make by parts.
#ifndef OCIFIP_HOST_MAPPING_VIRTUAL_ADDRESSES_H_
#define OCIFIP_HOST_MAPPING_VIRTUAL_ADDRESSES_H_

#include <functional>

#include "io/document.h"

namespace ocifip {

// Makes a replace, with what comes of it, of each edit of a group that deletes the first of its
// virtual addresses and does something to others. The device keeps that one apart, and the mapping
// decides for each address alone, by what is on the device, which one takes its place.
// `answer` gives the configuration that the device has of a read.
void settle_virtual_addresses(Document& edit, const std::function<Document(Document read)>& answer);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_VIRTUAL_ADDRESSES_H_
