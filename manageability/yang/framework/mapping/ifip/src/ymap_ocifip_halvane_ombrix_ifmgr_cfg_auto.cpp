// The generated callbacks of Halvane-Ombrix-ifmgr-cfg.

#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.inc"
#include "ymap_model_leaves.inc"
// clang-format on
