// The callbacks and tables of both OpenConfig models, and the entries that no table names.
#ifndef MODELS_H_
#define MODELS_H_

#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_ocifip_openconfig_interfaces.h"

#define DECLARE_ENTRY(entry, hook) \
  YMAP_DECLARE_LEAF_FORM(entry)    \
  YMAP_DECLARE_LEAF_FORM(hook)
DECLARE_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface,
              ymap_ox_ocifip_openconfigifip_lvla_subinterface_parse_augments)
DECLARE_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvlb_subinterface,
              ymap_ox_ocifip_openconfigifip_lvlb_subinterface_parse_augments)
DECLARE_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvla_routed_vlan,
              ymap_ox_ocifip_openconfigifip_lvla_routed_vlan_parse_augments)
DECLARE_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvlb_routed_vlan,
              ymap_ox_ocifip_openconfigifip_lvlb_routed_vlan_parse_augments)
#undef DECLARE_ENTRY

#endif  // MODELS_H_
