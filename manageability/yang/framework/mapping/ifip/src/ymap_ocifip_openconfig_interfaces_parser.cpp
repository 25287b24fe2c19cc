// The table and the walkers of openconfig-interfaces.

#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_interfaces.h"

// clang-format off
#include "ymap_ocifip_openconfig_interfaces.inc"
#include "ymap_model_walkers.inc"
// clang-format on
