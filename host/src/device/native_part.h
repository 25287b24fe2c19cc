// The part of a native configuration that concerns some of its interfaces.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_PART_H_
#define OCIFIP_HOST_DEVICE_NATIVE_PART_H_

#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "io/native_configuration.h"

namespace ocifip {

// Adds every value in a tree that may be the native name of an interface or subinterface.
void add_mentioned(const std::vector<DocumentNode>& nodes, InterfaceNames& names);

// What has all of a configuration that queries ask for.
const Document& part_asked(const Models& models, const NativeConfiguration& native,
                           const Document& queries);

// Whether a part of native data may be wrong for what stands in another.
bool has_far_constraints(const Models& models, const Document& native);

// Whether there are lists of interfaces below a node of the models.
bool leads_to_interfaces(const Models& models, const lysc_node* node);

// Whether there is an entry, such as a VRF, that has entries of several interfaces in it: what it
// holds, only all of the configuration tells.
bool has_entry_around_interfaces(const Models& models, const std::vector<DocumentNode>& nodes);

// Native data without the entries that a key names after other interfaces.
Document part_of(const Document& native, const InterfaceNames& interfaces);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_PART_H_
