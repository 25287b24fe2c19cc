#include "ymap_vrrp_read_back.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "inet/inet.h"
#include "yfw_map_ifip_util.h"
#include "ymap_request.h"

namespace ymap {

constexpr VrrpGroups kGroupsIpv4 = YMAP_VRRP_GROUPS("ipv4", OMBRIX_AF_INET);
constexpr VrrpGroups kGroupsIpv6 = YMAP_VRRP_GROUPS("ipv6", OMBRIX_AF_INET6);

namespace {

// Missing entries are made with the flag of interfaces, down to the address.
constexpr EntryList kVrrpSubinterfaces = [] {
  EntryList list = kSubinterfaces;
  list.flags = YFW_MAP_PATH_INTERFACE;
  return list;
}();

// Longest index of a subinterface.
constexpr std::size_t kLongestIndex = 10;

// A router's interface and number in native data; null where there is none.
struct Router {
  const char* interface;
  const char* number;
};

// Finds or makes the group of a router under the interface's own address, and makes it current.
cerrno determine_correct_config_list_for_low_to_high_mapping(const Call& call,
                                                             const VrrpGroups& groups,
                                                             const EntryList& group_list,
                                                             const Router& router) {
  IpAddressText address{};
  std::uint32_t prefix_length = 0;
  if (get_interface_addr_info(call.ctx, router.interface, address, &prefix_length, groups.family) !=
      YMAP_OK) {
    return YMAP_OK;
  }
  OpenConfigKeys keys = split_interface_name(router.interface);
  keys.index[kLongestIndex] = '\0';
  EntryCursor cursor(call);
  cerrno result = cursor.find_or_add(kInterfaces, keys.interface.data());
  if (result == YMAP_OK) {
    result = cursor.find_or_add(kVrrpSubinterfaces, keys.index.data());
  }
  if (result == YMAP_OK) {
    result = cursor.find_or_add(groups.addresses, address.data());
  }
  if (result == YMAP_OK) {
    result = cursor.find_or_add(group_list, router.number, current_slot(call));
  }
  if (result == YMAP_OK) {
    // For the leaves of the router; the walker clears it behind them.
    yfw_map_copy_trim_path_list_ctx(call.ctx, groups.groups.path);
  }
  return result;
}

}  // namespace

cerrno place_configured_router(const Call& call, const VrrpGroups& groups) {
  const EntryKey interface = entry_key(call, YMAP_VRRP_INTERFACE, "interface-name");
  const EntryKey number = entry_key(call, groups.native_router, "vr-id");
  if (number.value == nullptr) {
    return number.result != YMAP_OK ? number.result : YMAP_ERR_NO_KEYS;
  }
  if (is_delete(*call.in)) {
    // Current, so that the leaf of the number names it.
    return add_path(call, kNamespaceIfIp,
                    {.path = groups.groups.path, .source = call.in, .created = current_slot(call)});
  }
  // The leaf of the number writes the group's key.
  return interface.value == nullptr
             ? YMAP_OK
             : determine_correct_config_list_for_low_to_high_mapping(
                   call, groups, groups.groups, {interface.value, number.value});
}

cerrno place_operational_router(const Call& call, const VrrpGroups& groups) {
  const EntryKey interface = entry_key(call, groups.operational_router, "interface-name");
  const EntryKey number = entry_key(call, groups.operational_router, "virtual-router-id");
  for (const EntryKey& key : {interface, number}) {
    if (key.value == nullptr) {
      return key.result != YMAP_OK ? key.result : YMAP_ERR_NO_KEYS;
    }
  }
  EntryList list = groups.groups;
  list.key_path = groups.group_key;
  return determine_correct_config_list_for_low_to_high_mapping(call, groups, list,
                                                               {interface.value, number.value});
}

// A delay of 0 stands for no preemption.
cerrno read_back_preempt(const Call& call, const VrrpGroups& groups) {
  const char* delay = call.in->value;
  if (delay == nullptr) {
    return YMAP_OK;
  }
  const bool preempts = std::strtol(delay, nullptr, 10) != 0;
  const cerrno result = add_twins(call, groups.preempt, preempts ? "true" : "false");
  return result != YMAP_OK || !preempts ? result : add_twins(call, groups.preempt_delay, delay);
}

// The native leaf says the opposite, deliberately.
cerrno read_back_accept_mode(const Call& call, const VrrpGroups& groups) {
  return add_twins(call, groups.accept_mode, call.in->value != nullptr ? "false" : "true");
}

constexpr std::size_t kLongestTime = 15;

// OpenConfig counts centiseconds, the native model milliseconds.
cerrno read_back_advertisement_time(const Call& call, const VrrpGroups& groups) {
  if (call.in->value == nullptr) {
    return YMAP_ERR_NO_SUBTREE;
  }
  std::array<char, 24> centiseconds;
  std::snprintf(centiseconds.data(), centiseconds.size(), "%lu",
                std::strtoul(call.in->value, nullptr, 10) / 10);
  centiseconds[kLongestTime] = '\0';
  return add_twins(call, groups.advertisement_interval, centiseconds.data());
}

cerrno read_back_virtual_address(const Call& call, const VrrpGroups& groups) {
  return add_twins(call, groups.virtual_address, call.in->value, true);
}

}  // namespace ymap
