// The generated callbacks of Halvane-Ombrix-ipv4-io-cfg.

#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
