// The generated callbacks of openconfig-if-ip-ext.

#include "ymap_ocifip_openconfig_if_ip_ext.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip_ext.inc"
#include "ymap_model_leaves.inc"
// clang-format on
