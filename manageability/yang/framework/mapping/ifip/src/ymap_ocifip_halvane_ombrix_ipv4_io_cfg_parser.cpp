// The table, the walkers and the entry callbacks of Halvane-Ombrix-ipv4-io-cfg.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_READ_BACK_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration,
    ymap_xo_ocifip_halvaneombrixipv4iocfg_lvla_interface_configuration_parse_augments,
    ymap::halvane_ombrix_ipv4_io_cfg::row_lvla_ipv4network)
YMAP_READ_BACK_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvlb_interface_configuration,
    ymap_xo_ocifip_halvaneombrixipv4iocfg_lvlb_interface_configuration_parse_augments,
    ymap::halvane_ombrix_ipv4_io_cfg::row_lvla_ipv4networkforwarding)
