// The table, the walkers and the entry callbacks of openconfig-if-ip.

#include "ymap_augment.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip.inc"
#include "ymap_model_walkers.inc"
// clang-format on

// An entry callback and its augment hook.
#define YMAP_AUGMENT_ENTRY(name, hook, row, tag, key)                                              \
  YMAP_EXPORT cerrno hook(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out) { \
    static constinit std::array words = ymap::fresh_site_words<ymap::kHookSiteCount>();            \
    YMAP_ASSERT_CONTEXT(ctx, hook, kLeafForm);                                                     \
    return ymap::refuse_augment({#hook, __LINE__, words.data()}, ctx, in, out);                    \
  }                                                                                                \
  YMAP_GENERATED_LEAF(name) {                                                                      \
    static constinit ymap::AugmentEntrySites sites{__LINE__};                                      \
    return ymap::enter_augment(call, {ymap::openconfig_if_ip::kModel, row, tag, key, hook},        \
                               sites);                                                             \
  }

YMAP_AUGMENT_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface,
                   ymap_ox_ocifip_openconfigifip_lvla_subinterface_parse_augments,
                   ymap::openconfig_if_ip::row_lvla_ipv4, "subinterface", "index")
YMAP_AUGMENT_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvlb_subinterface,
                   ymap_ox_ocifip_openconfigifip_lvlb_subinterface_parse_augments,
                   ymap::openconfig_if_ip::row_lvla_ipv6, "subinterface", "index")
YMAP_AUGMENT_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvla_routed_vlan,
                   ymap_ox_ocifip_openconfigifip_lvla_routed_vlan_parse_augments,
                   ymap::openconfig_if_ip::row_lvlb_ipv4, "routed-vlan", nullptr)
YMAP_AUGMENT_ENTRY(ymap_ox_ocifip_openconfigifip_augment_lvlb_routed_vlan,
                   ymap_ox_ocifip_openconfigifip_lvlb_routed_vlan_parse_augments,
                   ymap::openconfig_if_ip::row_lvlb_ipv6, "routed-vlan", nullptr)
