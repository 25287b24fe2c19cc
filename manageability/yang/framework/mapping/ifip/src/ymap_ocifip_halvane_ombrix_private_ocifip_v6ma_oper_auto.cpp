// The generated callbacks of Halvane-Ombrix-PRIVATE-ocifip-v6ma-oper.

#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.inc"
#include "ymap_model_leaves.inc"
// clang-format on
