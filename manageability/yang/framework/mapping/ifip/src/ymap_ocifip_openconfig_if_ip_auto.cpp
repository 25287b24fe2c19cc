// The generated callbacks of openconfig-if-ip.

#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_vrrp.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip.inc"
#include "ymap_model_leaves.inc"
// clang-format on
