// The generated callbacks of Halvane-Ombrix-ipv4-vrrp-oper.

#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.inc"
#include "ymap_model_leaves.inc"
// clang-format on
