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

// Unload hooks. The first releases the DHCP read-back's database binding, if there is one; the
// second does nothing, by design: the framework calls both alike.
YMAP_EXPORT void yfw_map_oc_dhcp_sysdb_unbind(void);
YMAP_EXPORT void yfw_map_oc_ipv6_sysdb_unbind(void);

#endif  // YFW_MAP_IFIP_REGISTRATION_H_
