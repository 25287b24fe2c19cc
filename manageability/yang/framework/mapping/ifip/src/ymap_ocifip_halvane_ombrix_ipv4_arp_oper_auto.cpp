// The generated callbacks of Halvane-Ombrix-ipv4-arp-oper.

#include "ymap_ocifip_halvane_ombrix_ipv4_arp_oper.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_oper.inc"
#include "ymap_model_leaves.inc"
// clang-format on
