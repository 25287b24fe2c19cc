#include "yfw_map_ifip_registration.h"

#include "yfw/interfaces_mapping.h"
#include "yfw/text.h"
#include "ymap_database.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_oper.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_oper.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_oper.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_nd_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"
#include "ymap_ocifip_openconfig_if_ip.h"

namespace ymap {

void fill_registration(const Registration& row, yfw_map_reg_record* record) {
  const auto copy = [&row](char(&field)[YFW_MAP_REG_TEXT_SIZE], const char* text) {
    yfw_strncpy_s(row.function, field, sizeof field, text, sizeof field);
  };
  copy(record->native_namespace, row.native_namespace);
  copy(record->openconfig_namespace, kNamespaceInterfaces);
  copy(record->tree_name, row.tree_name);
  copy(record->native_tag, row.native_tag);
  copy(record->openconfig_tag, "interfaces");
  record->to_native = row.to_native;
  record->to_openconfig = row.to_openconfig;
  record->last = nullptr;
}

}  // namespace ymap

#define DEFINE_REGISTRATION(function, tree_name, native_namespace, ...)                           \
  YMAP_EXPORT void function(yfw_map_reg_record* record) {                                         \
    ymap::fill_registration({#function, tree_name, ymap::native_namespace, __VA_ARGS__}, record); \
  }
YMAP_REGISTRATIONS(DEFINE_REGISTRATION)

YMAP_EXPORT void yfw_map_oc_dhcp_sysdb_unbind(void) { ymap::release_database(ymap::dhcp_database); }

YMAP_EXPORT void yfw_map_oc_ipv6_sysdb_unbind(void) {}
