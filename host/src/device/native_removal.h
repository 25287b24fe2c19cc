// What a replaced or deleted subtree leaves of a device's native configuration.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_REMOVAL_H_
#define OCIFIP_HOST_DEVICE_NATIVE_REMOVAL_H_

#include "io/document.h"

namespace ocifip {

// The native configuration of subtrees that a request replaces or deletes, as their queries select
// it from a device's.
struct HeldConfiguration {
  Document held;
  Document way;  // the part of it that belongs to what is around the subtrees: it stays
  // The device's, or what has all of it that was asked for; null when nothing was.
  const Document* native = nullptr;
};

// Adds to a native edit the removal of what subtrees hold and the edit neither writes nor deletes
// nor replaces. The entry of a list that only leads to interfaces is removed when nothing else is
// in it; any other entry goes as a whole. Returns whether something was added.
bool remove_omitted(Document& edit, const HeldConfiguration& subtrees);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_REMOVAL_H_
