// The table, the walkers and the entry callback of Halvane-Ombrix-ipv6-nd-cfg.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.h"
#include "ymap_paths.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_READ_BACK_ENTRY(lvla, lvlb_ipv6neighbor)
