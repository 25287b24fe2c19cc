// One address of an interface, written as two.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_PROMOTION_H_
#define OCIFIP_HOST_DEVICE_NATIVE_PROMOTION_H_

#include "io/document.h"

namespace ocifip {

// Settles a native edit that makes an address the primary one, in place of another that it deletes,
// and writes it as a secondary one, too, because the request does: the primary takes the netmask
// that was written, and the secondary is removed.
void settle_promotions(Document& edit);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_PROMOTION_H_
