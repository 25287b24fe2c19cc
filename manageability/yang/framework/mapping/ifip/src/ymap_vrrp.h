// VRRP groups of OpenConfig as native virtual routers: the paths of the two families, what their
// rows call, and the working set by which the virtual addresses of a group become a primary address
// and secondary ones.
//
// Native routers are always those of version 3; both families stand in one native module.
#ifndef YMAP_VRRP_H_
#define YMAP_VRRP_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "yfw_map_ifip_util.h"
#include "ymap_frame.h"
#include "ymap_paths.h"

namespace ymap {

// What the callbacks of the two families differ in.
struct VrrpFamily {
  const char* group_config;  // the group's "config" in OpenConfig
  const char* interface;     // the family's container below the native interface
  const char* not_added;     // what is logged when that cannot be written
  const char* routers;
  const char* router;
  const char* preempt;
  const char* accept_mode_disable;
  const char* timer;
  const char* advertisement_time;
  const char* forced;
  const char* tracks;
  const char* track;
  const char* track_interface;
  const char* track_enable;
  const char* track_decrement;
  const char* operational_routers;
  const char* operational_router;
  const char* operational_interface;
  bool elects_primary;  // one of the virtual addresses is the primary one
};

#define YMAP_VRRP_FAMILY(family, elects)                                                \
  {                                                                                     \
    .group_config = YMAP_VRRP_GROUP(family) "/config",                                  \
    .interface = YMAP_VRRP_INTERFACE "/" family,                                        \
    .not_added = "Interface/" family " could not be added in low model.",               \
    .routers = YMAP_VRRP_ROUTERS(family), .router = YMAP_VRRP_ROUTER(family),           \
    .preempt = YMAP_VRRP_ROUTER(family) "/preempt",                                     \
    .accept_mode_disable = YMAP_VRRP_ROUTER(family) "/accept-mode-disable",             \
    .timer = YMAP_VRRP_ROUTER(family) "/timer",                                         \
    .advertisement_time = YMAP_VRRP_ROUTER(family) "/timer/advertisement-time-in-msec", \
    .forced = YMAP_VRRP_ROUTER(family) "/timer/forced",                                 \
    .tracks = YMAP_VRRP_ROUTER(family) "/tracks", .track = YMAP_VRRP_TRACK(family),     \
    .track_interface = YMAP_VRRP_TRACK(family) "/interface-name",                       \
    .track_enable = YMAP_VRRP_TRACK(family) "/enable",                                  \
    .track_decrement = YMAP_VRRP_TRACK(family) "/priority-decrement",                   \
    .operational_routers = YMAP_VRRP_OPER_ROUTERS(family),                              \
    .operational_router = YMAP_VRRP_OPER_ROUTER(family),                                \
    .operational_interface = YMAP_VRRP_OPER_ROUTER(family) "/interface-name",           \
    .elects_primary = elects,                                                           \
  }

inline constexpr VrrpFamily kVrrpIpv4 = YMAP_VRRP_FAMILY("ipv4", true);
inline constexpr VrrpFamily kVrrpIpv6 = YMAP_VRRP_FAMILY("ipv6", false);

// --- what the rows call --------------------------------------------------------------------------

// Hooks: the address's "vrrp", a group, its "config", "interface-tracking" and the "config" of
// that.
cerrno map_vrrp(const Call& call, const VrrpFamily& family);
cerrno map_vrrp_group(const Call& call, const VrrpFamily& family);
cerrno map_vrrp_config(const Call& call, const VrrpFamily& family);
cerrno map_tracking(const Call& call, const VrrpFamily& family);
cerrno map_tracking_config(const Call& call, const VrrpFamily& family);

// Leaves of a group's "config" and of its tracking's.
cerrno map_preempt(const Call& call, const VrrpFamily& family);
cerrno map_accept_mode(const Call& call, const VrrpFamily& family);
cerrno map_advertisement_interval(const Call& call, const VrrpFamily& family);
cerrno map_tracked_interface(const Call& call, const VrrpFamily& family);

// --- the working set -----------------------------------------------------------------------------

// More addresses of a group than these are refused.
inline constexpr std::size_t kMaxVirtualAddresses = 255;

struct RequestedAddress {
  std::uint32_t deleted;  // 1 when the request deletes the address
  AddressText address;
};

// What is known of the virtual addresses of the group being edited: those that the router has, and
// those that the request names. It lives in the request state's slot, allocated with calloc, from
// the group's entry to its last address.
struct VipDb {
  AddressText primary_vip;                                       // empty: none is known
  std::array<AddressText, kMaxVirtualAddresses> secondary_vips;  // without the primary
  std::int32_t request_count;
  std::uint32_t secondary_count;
  std::array<RequestedAddress, kMaxVirtualAddresses> request_vips;
  std::uint32_t expected_count;   // addresses in the group's "config"
  std::uint32_t processed_count;  // of them, those that have been seen
  std::uint32_t no_primary;       // 1 while the router has no primary address
  std::uint32_t primary_deleted;  // 1 when the request deletes the primary address
};

// The request's working set, or null.
[[nodiscard]] VipDb* vip_db(const yfw_map_ctx* ctx);

// Makes the working set a new one; null without a request state or memory.
VipDb* renew_vip_db(yfw_map_ctx* ctx);

void free_vip_db(yfw_map_ctx* ctx);

// Fills the working set with the addresses that the operational database has of a router. A router,
// or an interface, that is not known has none.
//
//   ifname     native name of the interface
//   router_id  the router's number
//
// Returns 0, the failure of the interface manager, the database or the codec, or a refusal when
// there are more addresses than the working set holds.
cerrno vrrp_get_info_from_sysdb(const Call& call, VipDb& db, const char* ifname,
                                std::uint32_t router_id);

// Adds the address of a leaf to what the request names. Returns 0, or a refusal when there are more
// addresses than the working set holds.
cerrno prepare_ip_list_to_process(const Call& call, VipDb& db);

// Writes what becomes of the router's addresses, when the request's last one is known. The
// operation of its leaf is that of the whole: a replace takes the place of all addresses.
//
// Returns 0 or the framework's failure.
cerrno process_ip_list_based_on_vip_status(const Call& call, const VipDb& db);

// The sort order of two dotted addresses: by their octets as numbers, -1, 0 or 1.
[[nodiscard]] int ipv4_addr_compare(const char* first, const char* second);

// Native paths of the virtual addresses of an IPv4 router.
inline constexpr const char* kPrimaryVip = YMAP_VRRP_ROUTER("ipv4") "/primary-ipv4-address";
inline constexpr const char* kSecondaryVips = YMAP_VRRP_ROUTER("ipv4") "/secondary-ipv4-addresses";
inline constexpr const char* kSecondaryVip =
    YMAP_VRRP_ROUTER("ipv4") "/secondary-ipv4-addresses/secondary-ipv4-address";
inline constexpr const char* kSecondaryVipAddress =
    YMAP_VRRP_ROUTER("ipv4") "/secondary-ipv4-addresses/secondary-ipv4-address/ip-address";

}  // namespace ymap

#endif  // YMAP_VRRP_H_
