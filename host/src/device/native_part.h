// The part of a native configuration that concerns some of its interfaces.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_PART_H_
#define OCIFIP_HOST_DEVICE_NATIVE_PART_H_

#include <string>
#include <unordered_set>
#include <vector>

#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// Names of interfaces without their subinterfaces' indexes.
using InterfaceNames = std::unordered_set<std::string>;

// Adds every value in a tree that may be the name of an interface, or of one of its subinterfaces.
void add_mentioned(const std::vector<DocumentNode>& nodes, InterfaceNames& names);

// Whether a part of native data may be wrong for what stands in another.
bool has_far_constraints(const Models& models, const Document& native);

// Native data without the entries that a key names after other interfaces.
Document part_of(const Document& native, const InterfaceNames& interfaces);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_PART_H_
