// The two ways to name a subinterface: OpenConfig's and the device's.
#ifndef OCIFIP_HOST_DEVICE_SUBINTERFACE_NAME_H_
#define OCIFIP_HOST_DEVICE_SUBINTERFACE_NAME_H_

#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"

namespace ocifip {

// A subinterface, as OpenConfig names it.
struct SubinterfaceName {
  std::string interface;
  std::string index;
};

// "Eth1" for subinterface 0 of Eth1, "Eth1.20" for its subinterface 20. The index is used as it is;
// one that is no number names the interface itself.
std::string native_name(std::string_view interface, std::string_view index);

// The subinterface of a native name.
SubinterfaceName subinterface_of(std::string_view native_name);

// The subinterfaces of trees that arrange them as OpenConfig does, as they stand there. Entries
// without their keys are passed over.
std::vector<SubinterfaceName> subinterfaces_in(const std::vector<DocumentNode>& trees);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_SUBINTERFACE_NAME_H_
