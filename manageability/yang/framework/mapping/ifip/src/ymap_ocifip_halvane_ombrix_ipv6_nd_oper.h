// The callbacks of Halvane-Ombrix-ipv6-nd-oper in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_OPER_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_OPER_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_oper.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_OPER_H_
