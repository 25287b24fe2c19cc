// Registration records, and the unload hooks.
#ifndef YFW_MAP_IFIP_REGISTRATION_H_
#define YFW_MAP_IFIP_REGISTRATION_H_

#include "yfw/registration.h"
#include "ymap_frame.h"

namespace ymap {

// What one registration function announces. A row joins the library with the native entry walker
// that it names.
struct Registration {
  const char* function;  // the registration function's own name
  const char* tree_name;
  const char* native_namespace;
  const char* native_tag;
  yfw_map_leaf_callback to_native;
  yfw_map_leaf_callback to_openconfig;
};

// Fills a record from a row. The OpenConfig side is "interfaces" of openconfig-interfaces in every
// row. The framework's own slots are left alone.
void fill_registration(const Registration& row, yfw_map_reg_record* record);

}  // namespace ymap

// The registration functions, a row each. Each fills the record that it is given, which the
// framework owns, and leaves the framework's slots in it alone. A row is read to declare its
// function and to define it, where its other columns are those of a Registration.
// clang-format off
#define YMAP_REGISTRATIONS(ROW)                                                                    \
  ROW(yfw_map_reg_ifip_conf, "IF-IP tree", kNamespaceIpv4ArpCfg, "arpgmp",                        \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixipv4arpcfg_lvla_arpgmp)                                         \
  ROW(yfw_map_reg_ifip_conf_ipv6, "IF-IP tree", kNamespaceIpv6NdCfg, "ipv6-neighbor",             \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixipv6ndcfg_lvla_ipv6neighbor)                                    \
  ROW(yfw_map_reg_ifip_oper_ipv6_nd, "IF-IP tree", kNamespaceIpv6NdOper, "ipv6-node-discovery",   \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixipv6ndoper_lvla_ipv6nodediscovery)                              \
  ROW(yfw_map_reg_ifip_ma_ipv6, "IF-IP tree", kNamespaceIpv6MaOper, "ipv6-network",               \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixipv6maoper_lvla_ipv6network)                                    \
  ROW(yfw_map_reg_ifip_origin_ipv4, "IF-IP tree", kNamespaceIpv4ArpOper, "arp",                   \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixipv4arpoper_lvla_arp)                                           \
  ROW(yfw_map_reg_ocifip_vrrp_conf, "OC IFVRRP tree", kNamespaceIpv4VrrpCfg, "vrrp",               \
      ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface,                                    \
      ymap_xo_ocifip_halvaneombrixipv4vrrpcfg_lvla_vrrp)                                          \
  ROW(yfw_map_reg_ocifip_vrrp_oper, "OC IFVRRP oper tree", kNamespaceIpv4VrrpOper, "vrrp",         \
      ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface,                                    \
      ymap_xo_ocifip_halvaneombrixipv4vrrpoper_lvla_vrrp)                                         \
  ROW(yfw_map_reg_ocifip_v6ma_oper, "OC IFIP V6MA OPER", kNamespacePrivateV6maOper, "ocifipv6ma", \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixprivateocifipv6maoper_lvla_ocifipv6ma)                          \
  ROW(yfw_map_reg_ocifip_v4ma_oper, "OC IFIP V4MA OPER", kNamespacePrivateV4maOper, "ocifipv4ma", \
      ymap_ox_ocif_openconfiginterfaces_lvla_interfaces,                                          \
      ymap_xo_ocifip_halvaneombrixprivateocifipv4maoper_lvla_ocifipv4ma)
// clang-format on

#define YMAP_DECLARE_REGISTRATION(function, ...) \
  YMAP_EXPORT void function(yfw_map_reg_record* record);
YMAP_REGISTRATIONS(YMAP_DECLARE_REGISTRATION)

// Unload hooks. The first releases the DHCP read-back's database binding, if there is one; the
// second does nothing, by design: the framework calls both alike.
YMAP_EXPORT void yfw_map_oc_dhcp_sysdb_unbind(void);
YMAP_EXPORT void yfw_map_oc_ipv6_sysdb_unbind(void);

#endif  // YFW_MAP_IFIP_REGISTRATION_H_
