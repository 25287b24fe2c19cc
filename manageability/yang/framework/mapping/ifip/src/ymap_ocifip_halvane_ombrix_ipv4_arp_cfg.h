// The callbacks of Halvane-Ombrix-ipv4-arp-cfg in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_ARP_CFG_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_ARP_CFG_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// Entered with an interface-configuration entry: reads "ipv4arp" back and passes "dagrs" over.
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixipv4arpcfg_augment_lvla_interface_configuration)

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV4_ARP_CFG_H_
