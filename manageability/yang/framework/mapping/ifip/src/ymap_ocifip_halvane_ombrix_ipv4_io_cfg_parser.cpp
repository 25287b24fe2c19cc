// The table, the walkers and the entry callbacks of Halvane-Ombrix-ipv4-io-cfg.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_READ_BACK_ENTRY(lvla, lvla_ipv4network)
YMAP_READ_BACK_ENTRY(lvlb, lvla_ipv4networkforwarding)
