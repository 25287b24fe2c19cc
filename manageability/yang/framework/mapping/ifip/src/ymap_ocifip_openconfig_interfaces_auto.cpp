// The generated callbacks of openconfig-interfaces.

#include "ymap_ocifip_openconfig_interfaces.h"

// clang-format off
#include "ymap_ocifip_openconfig_interfaces.inc"
#include "ymap_model_leaves.inc"
// clang-format on
