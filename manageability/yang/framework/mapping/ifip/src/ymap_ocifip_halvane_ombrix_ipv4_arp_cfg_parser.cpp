// The table, the walkers and the entry callback of Halvane-Ombrix-ipv4-arp-cfg.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.h"
#include "ymap_paths.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_READ_BACK_ENTRY(lvla, lvla_ipv4arp, ymap::halvane_ombrix_ipv4_arp_cfg::row_lvla_dagrs)
