// The callbacks of Halvane-Ombrix-ipv4-vrrp-oper in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_VRRP_OPER_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_VRRP_OPER_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_VRRP_OPER_H_
