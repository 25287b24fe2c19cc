// The callbacks of Halvane-Ombrix-ipv6-ma-cfg in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_CFG_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_CFG_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_cfg.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// Entered with an interface-configuration entry: reads "ipv6-network" back.
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixipv6macfg_augment_lvla_interface_configuration)

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_CFG_H_
