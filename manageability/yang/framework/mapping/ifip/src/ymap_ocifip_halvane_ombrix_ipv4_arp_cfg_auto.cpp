// The generated callbacks of Halvane-Ombrix-ipv4-arp-cfg.

#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
