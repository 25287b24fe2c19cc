// The callbacks of Halvane-Ombrix-ipv6-nd-cfg in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_CFG_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_CFG_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// Entered with an interface-configuration entry: reads its "ipv6-neighbor" back.
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixipv6ndcfg_augment_lvla_interface_configuration)

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_ND_CFG_H_
