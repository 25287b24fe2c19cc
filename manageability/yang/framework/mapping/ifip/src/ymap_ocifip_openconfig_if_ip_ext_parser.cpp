// The table, the walkers and the entry callback of openconfig-if-ip-ext.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip_ext.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip_ext.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_AUGMENT_ENTRY(lvla, ipv6, lvla_autoconf, "ipv6", nullptr, true)
