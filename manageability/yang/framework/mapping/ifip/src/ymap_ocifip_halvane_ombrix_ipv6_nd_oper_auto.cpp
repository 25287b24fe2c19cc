// The generated callbacks of Halvane-Ombrix-ipv6-nd-oper.

#include "ymap_ocifip_halvane_ombrix_ipv6_nd_oper.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_oper.inc"
#include "ymap_model_leaves.inc"
// clang-format on
