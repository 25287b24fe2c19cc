// The callbacks of openconfig-interfaces in the direction from OpenConfig to the native models.
// They carry a request down to a subinterface and refuse every leaf on the way: those are the
// interfaces mapping's. Nothing in the library calls them.
#ifndef YMAP_OCIFIP_OPENCONFIG_INTERFACES_H_
#define YMAP_OCIFIP_OPENCONFIG_INTERFACES_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_openconfig_interfaces.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

#endif  // YMAP_OCIFIP_OPENCONFIG_INTERFACES_H_
