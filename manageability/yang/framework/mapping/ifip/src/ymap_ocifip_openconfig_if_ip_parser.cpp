// The table, the walkers and the entry callbacks of openconfig-if-ip.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip.inc"
#include "ymap_model_walkers.inc"
// clang-format on

YMAP_AUGMENT_ENTRY(lvla, subinterface, lvla_ipv4, "subinterface", "index", false,
                   YMAP_SYMBOL(cont_lvla_ipv4_address_vrrp))
YMAP_AUGMENT_ENTRY(lvlb, subinterface, lvla_ipv6, "subinterface", "index", false,
                   YMAP_SYMBOL(cont_lvla_ipv6_address_vrrp))
YMAP_AUGMENT_ENTRY(lvla, routed_vlan, lvlb_ipv4, "routed-vlan")
YMAP_AUGMENT_ENTRY(lvlb, routed_vlan, lvlb_ipv6, "routed-vlan")
