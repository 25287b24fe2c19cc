// The callbacks of Halvane-Ombrix-ipv4-io-cfg in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_IO_CFG_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_IO_CFG_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// Entered with an interface-configuration entry: the first reads "ipv4-network" back, the second
// passes "ipv4-network-forwarding" over.
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration)
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvlb_interface_configuration)

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_IO_CFG_H_
