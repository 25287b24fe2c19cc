// The generated callbacks of Halvane-Ombrix-ipv6-ma-cfg.

#include "ymap_ocifip_halvane_ombrix_ipv6_ma_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
