// The generated callbacks of Halvane-Ombrix-ipv4-vrrp-cfg.

#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.h"
#include "ymap_vrrp_read_back.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
