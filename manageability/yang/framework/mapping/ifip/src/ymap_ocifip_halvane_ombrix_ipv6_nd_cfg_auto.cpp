// The generated callbacks of Halvane-Ombrix-ipv6-nd-cfg.

#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
