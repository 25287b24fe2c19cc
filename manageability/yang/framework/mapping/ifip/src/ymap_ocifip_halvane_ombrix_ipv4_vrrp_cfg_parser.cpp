// The table and the walkers of Halvane-Ombrix-ipv4-vrrp-cfg.

#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.h"
#include "ymap_paths.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.inc"
#include "ymap_model_walkers.inc"
// clang-format on
