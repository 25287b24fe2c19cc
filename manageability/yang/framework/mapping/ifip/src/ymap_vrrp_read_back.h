// Native virtual routers as VRRP groups of OpenConfig. A native router hangs on an interface, a
// group on an address of one: it is placed under the interface's own address of the family.
#ifndef YMAP_VRRP_READ_BACK_H_
#define YMAP_VRRP_READ_BACK_H_

#include "ymap_frame.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"

namespace ymap {

// What the read-backs of the two families differ in.
struct VrrpGroups {
  EntryList addresses;
  EntryList groups;
  const char* group_key;           // where a group's key is written
  const char* native_router;       // path of the native list
  const char* operational_router;  // path of the list of operational data
  std::uint32_t family;            // of the interface's address, OMBRIX_AF_...
  Twins virtual_address;
  Twins preempt;  // without a twin, as the following
  Twins preempt_delay;
  Twins accept_mode;
  Twins advertisement_interval;
};

#define YMAP_VRRP_GROUPS(text, number)                                                            \
  {                                                                                               \
    .addresses = {.path = YMAP_ADDRESS(text),                                                     \
                  .below = "/" text "/addresses/address",                                         \
                  .key = "ip",                                                                    \
                  .key_path = YMAP_ADDRESS(text) "/ip",                                           \
                  .module_namespace = kNamespaceIfIp,                                             \
                  .searched_namespace = kNamespaceIfIp,                                           \
                  .trim_prefix = kSubinterface,                                                   \
                  .flags = YFW_MAP_PATH_INTERFACE,                                                \
                  .key_flags = YFW_MAP_PATH_SUBINTERFACE,                                         \
                  .key_create = false},                                                           \
    .groups = {.path = YMAP_VRRP_GROUP(text),                                                     \
               .below = "/vrrp/vrrp-group",                                                       \
               .key = "virtual-router-id",                                                        \
               .key_path = nullptr,                                                               \
               .module_namespace = kNamespaceIfIp,                                                \
               .searched_namespace = kNamespaceIfIp,                                              \
               .trim_prefix = YMAP_ADDRESS(text),                                                 \
               .flags = YFW_MAP_PATH_SUBINTERFACE,                                                \
               .key_flags = YFW_MAP_PATH_SUBINTERFACE,                                            \
               .key_create = false},                                                              \
    .group_key = YMAP_VRRP_GROUP(text) "/virtual-router-id",                                      \
    .native_router = YMAP_VRRP_ROUTER(text), .operational_router = YMAP_VRRP_OPER_ROUTER(text),   \
    .family = number, .virtual_address = YMAP_TWINS_AT(YMAP_VRRP_GROUP(text), "virtual-address"), \
    .preempt = {YMAP_VRRP_GROUP(text) "/config/preempt", nullptr},                                \
    .preempt_delay = {YMAP_VRRP_GROUP(text) "/config/preempt-delay", nullptr},                    \
    .accept_mode = {YMAP_VRRP_GROUP(text) "/config/accept-mode", nullptr},                        \
    .advertisement_interval = YMAP_TWINS_AT(YMAP_VRRP_GROUP(text), "advertisement-interval"),     \
  }

extern const VrrpGroups kGroupsIpv4;
extern const VrrpGroups kGroupsIpv6;

// Places the native router being walked, of configuration or of operational data: makes its group
// current, for its leaves. A router of an interface without an address of the family has none.
//
// Returns 0, the failure of the framework's lookup of the router's number, or that of a write.
cerrno place_configured_router(const Call& call, const VrrpGroups& groups);
cerrno place_operational_router(const Call& call, const VrrpGroups& groups);

// Leaves of a native router.
cerrno read_back_preempt(const Call& call, const VrrpGroups& groups);
cerrno read_back_accept_mode(const Call& call, const VrrpGroups& groups);
cerrno read_back_advertisement_time(const Call& call, const VrrpGroups& groups);
cerrno read_back_virtual_address(const Call& call, const VrrpGroups& groups);

}  // namespace ymap

#endif  // YMAP_VRRP_READ_BACK_H_
