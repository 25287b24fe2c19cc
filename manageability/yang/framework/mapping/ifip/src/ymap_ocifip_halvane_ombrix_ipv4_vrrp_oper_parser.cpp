// The table and the walkers of Halvane-Ombrix-ipv4-vrrp-oper.

#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.h"
#include "ymap_paths.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.inc"
#include "ymap_model_walkers.inc"
// clang-format on
