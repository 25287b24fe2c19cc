// Native VRRP configuration to OpenConfig groups. lvlb is the level of IPv4, lvla that of IPv6.

#include "ymap_ocifip_halvane_ombrix_ipv4_vrrp_cfg.h"
#include "ymap_read_back.h"
#include "ymap_vrrp_read_back.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

YMAP_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv4vrrpcfg_list_lvlb_vrrp_virtualrouters_virtualrouter) {
  return place_configured_router(call, kGroupsIpv4);
}

YMAP_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv4vrrpcfg_list_lvla_vrrp_virtualrouters_virtualrouter) {
  return place_configured_router(call, kGroupsIpv6);
}
