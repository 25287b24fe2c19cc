// VRRP groups of an address to native virtual routers. What both families have is done by functions
// that their rows name.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "inet/inet.h"
#include "yfw/mapping.h"
#include "yfw/text.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_request.h"
#include "ymap_vrrp.h"

namespace ymap {

namespace {

cerrno add(const Call& call, const PathWrite& write) {
  return add_path(call, kNamespaceIpv4VrrpCfg, write);
}

cerrno ask_for(const Call& call, const char* path) { return add(call, {.path = path}); }

cerrno add_deleted(const Call& call, const char* path) {
  return add(call, {.path = path, .source = call.in});
}

// Deletes a native node whatever the operation of the request on the leaf is.
cerrno add_with(const Call& call, const char* path, nidl_yfw_edit_oper operation) {
  const OperationOverride overridden(*call.in, operation);
  return add_deleted(call, path);
}

// The native name of the subinterface being mapped. Here any index but "0" counts, by design, also
// one that is no number.
cerrno interface_name(const Call& call, NativeName& name) {
  const yfw_map_request_state* state = call.ctx->request_state;
  name.fill('\0');
  if (state == nullptr) {
    return YMAP_OK;
  }
  cerrno result =
      copy_reported(call.ctx, call.name, name, state->current_ifname, name.size(), __LINE__);
  const char* index = state->current_subif_index;
  if (result != YMAP_OK || index[0] == '\0' || std::strcmp(index, "0") == 0) {
    return result;
  }
  result = append_reported(call.ctx, call.name, name, ".", __LINE__);
  return result != YMAP_OK ? result : append_reported(call.ctx, call.name, name, index, __LINE__);
}

std::uint32_t count_of(const Children& children, const char* tag) {
  std::uint32_t count = 0;
  for (const Node& child : children) {
    count += yfw_map_do_these_match(child.tag, tag) != 0 ? 1 : 0;
  }
  return count;
}

bool is_word(const Call& call, const char* word) {
  return yfw_map_do_these_match(call.in->value, word) != 0;
}

// A value that is neither "true" nor "false".
cerrno refuse_word(const Call& call) {
  YMAP_ERROR(call, "Invalid value specified");
  yfw_oc_error_path(call.ctx);
  return YMAP_ERR_UNSUPPORTED;
}

// --- the address's "vrrp" ------------------------------------------------------------------------

// A deleted subinterface goes with all of its VRRP; of a deleted node below it, the family alone.
bool is_subinterface(const Call& call) {
  return yfw_map_do_these_match(call.in->tag, "subinterface") != 0;
}

cerrno fail_entry(const Call& call, bool keeps_interface) {
  if (keeps_interface) {
    YMAP_ERROR(call, "Interface could not be added in low mode. ");
  } else {
    YMAP_ERROR(call, "Interface could not be added in low model.");
  }
  return YMAP_ERR_NO_SUBTREE;
}

// The interface's entry, with its key: written, or deleted. Deleting the family alone keeps the
// entry, which only leads to it.
cerrno add_interface(const Call& call, const VrrpFamily& family, const char* name) {
  const bool deletes = is_delete(*call.in);
  const bool keeps_interface = deletes && !is_subinterface(call);
  if (add(call,
          {.path = YMAP_VRRP_INTERFACE, .source = deletes ? call.in : nullptr, .create = true}) !=
      YMAP_OK) {
    return fail_entry(call, keeps_interface);
  }
  if (keeps_interface && add_deleted(call, family.interface) != YMAP_OK) {
    YMAP_ERROR(call, "%s", family.not_added);
    return YMAP_ERR_NO_SUBTREE;
  }
  Node* key = nullptr;
  if (add(call, {.path = YMAP_VRRP_INTERFACE "/interface-name",
                 .value = name,
                 .created = deletes ? &key : nullptr}) != YMAP_OK) {
    YMAP_ERROR(call, "Interface name could not be added in low model.");
    return YMAP_ERR_NO_SUBTREE;
  }
  if (keeps_interface && key != nullptr) {
    key->edit_operation = NIDL_YFW_EDIT_NONE;
    key->flags |= NIDL_YFW_FLAG_OPERATION_OVERRIDE;
  }
  return YMAP_OK;
}

cerrno query_state(const Call& call, const VrrpFamily& family, const char* name) {
  return add_all(call, kNamespaceIpv4VrrpOper,
                 {{.path = family.operational_routers},
                  {.path = family.operational_router, .source = call.in, .create = true},
                  {.path = family.operational_interface, .value = name}});
}

}  // namespace

cerrno map_vrrp(const Call& call, const VrrpFamily& family) {
  NativeName name;
  if (const cerrno result = interface_name(call, name); result != YMAP_OK) {
    return result;
  }
  const NewListEntries new_entries(call.ctx);
  cerrno result = add_interface(call, family, name.data());
  if (result != YMAP_OK || (call.child_count == 0 && is_edit(call.ctx))) {
    return result;
  }
  result = ask_for(call, family.routers);
  const bool asks_for_state =
      call.child_count == 0 && request_op(call.ctx) == YFW_MAP_REQUEST_READ_STATE;
  return result == YMAP_OK && asks_for_state ? query_state(call, family, name.data()) : result;
}

// --- a group -------------------------------------------------------------------------------------

cerrno map_vrrp_group(const Call& call, const VrrpFamily& family) {
  const cerrno result = add(
      call,
      {.path = family.router, .source = is_delete(*call.in) ? call.in : nullptr, .create = true});
  // The group is written all the same: its addresses will find no working set.
  if (is_edit(call.ctx) && renew_vip_db(call.ctx) == nullptr) {
    YMAP_ERROR(call, "Memory allocation failed for VRRP.");
  }
  return result;
}

namespace {

// The entry of the group being mapped, or null.
const Node* group_of(const Call& call) {
  const Node* group = nullptr;
  const yfw_map_request_state* state = call.ctx->request_state;
  return state != nullptr && state->visited_entries != nullptr &&
                 yfw_map_util_itree_stack_peak(state->visited_entries, &group) == YMAP_OK
             ? group
             : nullptr;
}

// Looks up what is known of the router whose number a leaf of the request has.
cerrno take_router_id(const Call& call, const VrrpFamily& family, VipDb& db, const Node& leaf) {
  const char* text = leaf.value != nullptr ? leaf.value : "";
  const auto router_id = static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10));
  if (router_id == 0) {
    YMAP_ERROR(call, "Virtual router id is not valid :%s\n", text);
    return YMAP_ERR_NO_SUBTREE;
  }
  if (!family.elects_primary) {
    return YMAP_OK;
  }
  NativeName name;
  const cerrno result = interface_name(call, name);
  return result != YMAP_OK ? result : vrrp_get_info_from_sysdb(call, db, name.data(), router_id);
}

}  // namespace

// Where "config" does not say the router's number, the group's key does.
cerrno map_vrrp_config(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  VipDb* db = vip_db(call.ctx);
  if (db == nullptr) {
    YMAP_ERROR(call, "VRRP db found NULL which is unexpected\n");
    return YMAP_ERR_NO_SUBTREE;
  }
  const Node* group = group_of(call);
  Children children = children_of(*call.in);
  if (children.count == 0 && group != nullptr) {
    children = children_of(*group);
  }
  db->expected_count = count_of(children, "virtual-address");
  const Node* router_id = children.find("virtual-router-id");
  if (router_id == nullptr && group != nullptr) {
    router_id = children_of(*group).find("virtual-router-id");
  }
  return router_id != nullptr ? take_router_id(call, family, *db, *router_id) : YMAP_OK;
}

// --- leaves of a group's "config" ----------------------------------------------------------------

// "true" together with a delay is left to the delay, which is written to the same native leaf.
// "false" is written also beside a delay, deliberately.
cerrno map_preempt(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return ask_for(call, family.preempt);
  }
  if (is_delete(*call.in)) {
    return add_deleted(call, family.preempt);
  }
  if (call.in->value == nullptr) {
    return YMAP_OK;
  }
  if (is_word(call, "false")) {
    return add(call, {.path = family.preempt, .value = "0", .source = call.in});
  }
  if (!is_word(call, "true")) {
    return refuse_word(call);
  }
  const char* delay = nullptr;
  const bool has_delay =
      yfw_map_get_node_info(call.ctx, family.group_config, "preempt-delay", &delay) == YMAP_OK &&
      delay != nullptr;
  // Without the native leaf, its default holds: preemption without a delay.
  return has_delay ? YMAP_OK : add_with(call, family.preempt, NIDL_YFW_EDIT_DELETE);
}

// OpenConfig counts centiseconds, the native model milliseconds.
cerrno map_advertisement_interval(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return ask_for(call, family.advertisement_time);
  }
  if (is_delete(*call.in)) {
    return add_deleted(call, family.timer);
  }
  if (call.in->value == nullptr) {
    yfw_oc_error_path(call.ctx);
    return YMAP_ERR_INVALID_ARGS;
  }
  std::array<char, 16> milliseconds;
  std::snprintf(milliseconds.data(), milliseconds.size(), "%lu",
                static_cast<unsigned long>(std::strtol(call.in->value, nullptr, 10)) * 10);
  return add_all(
      call, kNamespaceIpv4VrrpCfg,
      {{.path = family.advertisement_time, .value = milliseconds.data(), .source = call.in},
       {.path = family.forced, .value = "", .source = call.in}});
}

// --- interface tracking --------------------------------------------------------------------------

// Any change replaces the native list as a whole, unless it is deleted.
cerrno map_tracking(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  if (call.child_count == 0) {
    return is_delete(*call.in) ? add_deleted(call, family.tracks) : YMAP_OK;
  }
  const Node* config = children_of(*call.in).find("config");
  const bool deletes = call.in->edit_operation == NIDL_YFW_EDIT_DELETE ||
                       (config != nullptr && config->edit_operation == NIDL_YFW_EDIT_DELETE);
  return deletes ? add_deleted(call, family.tracks)
                 : add_with(call, family.tracks, NIDL_YFW_EDIT_REPLACE);
}

namespace {

constexpr const char* kUsualDecrement = "10";

// What the tracking's "config" of an edit says that is not deleted.
struct Tracking {
  std::uint32_t count = 0;  // of interfaces
  const char* first = "";   // of them
  const char* decrement = kUsualDecrement;
};

Tracking tracking_in(const Children& config) {
  Tracking tracking;
  for (const Node& leaf : config) {
    if (leaf.value == nullptr || is_delete(leaf)) {
      continue;
    }
    if (yfw_map_do_these_match(leaf.tag, "priority-decrement") != 0) {
      tracking.decrement = leaf.value;
    } else if (yfw_map_do_these_match(leaf.tag, "track-interface") != 0 && tracking.count++ == 0) {
      tracking.first = leaf.value;
    }
  }
  return tracking;
}

// The same of the group being mapped.
Tracking tracking_of_group(const Call& call) {
  const Node* node = group_of(call);
  for (const char* tag : {"interface-tracking", "config"}) {
    node = node != nullptr ? children_of(*node).find(tag) : nullptr;
  }
  return node != nullptr ? tracking_in(children_of(*node)) : Tracking();
}

cerrno add_track(const Call& call, const VrrpFamily& family, const char* decrement) {
  const NewListEntries new_entries(call.ctx);
  return add_all(call, kNamespaceIpv4VrrpCfg,
                 {{.path = family.track, .create = true},
                  {.path = family.track_enable, .value = "", .source = call.in},
                  {.path = family.track_decrement, .value = decrement, .source = call.in}});
}

}  // namespace

// A tracked interface starts with the usual decrement, deliberately: where the request has another,
// its leaf follows. Of several interfaces it would reach the last alone, so each gets it at once.
cerrno map_tracking_config(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  if (is_delete(*call.in)) {
    return add(call, {.path = family.track, .source = call.in, .create = true});
  }
  const Tracking tracking = tracking_in(children_of(*call.in));
  return add_track(call, family, tracking.count > 1 ? tracking.decrement : kUsualDecrement);
}

// The first tracked interface names the entry that "config" has made, each further one has its own;
// beside them, one that is deleted goes with the list that is replaced.
cerrno map_tracked_interface(const Call& call, const VrrpFamily& family) {
  const Tracking tracking = is_edit(call.ctx) ? tracking_of_group(call) : Tracking();
  if (tracking.count > 0 && is_delete(*call.in)) {
    return YMAP_OK;
  }
  const bool is_further =
      tracking.count > 0 && yfw_map_do_these_match(tracking.first, call.in->value) == 0;
  const cerrno result = is_further ? add_track(call, family, tracking.decrement) : YMAP_OK;
  return result != YMAP_OK ? result
                           : edit_leaf(call, kNamespaceIpv4VrrpCfg, family.track_interface);
}

// The native leaf says the opposite, deliberately.
cerrno map_accept_mode(const Call& call, const VrrpFamily& family) {
  if (is_read(call.ctx)) {
    return ask_for(call, family.accept_mode_disable);
  }
  if (is_delete(*call.in)) {
    return add_deleted(call, family.accept_mode_disable);
  }
  if (call.in->value == nullptr) {
    return YMAP_OK;
  }
  if (is_word(call, "true")) {
    return add_with(call, family.accept_mode_disable, NIDL_YFW_EDIT_REMOVE);
  }
  return is_word(call, "false")
             ? add(call, {.path = family.accept_mode_disable, .value = "", .source = call.in})
             : refuse_word(call);
}

}  // namespace ymap

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

// --- virtual addresses ---------------------------------------------------------------------------

namespace {

bool is_ipv4_address(const char* text) {
  std::array<std::uint8_t, 4> address;
  return ombrix_inet_pton(OMBRIX_AF_INET, text, address.data()) == 1;
}

cerrno query_virtual_address(const Call& call) {
  return add_all(call, kNamespaceIpv4VrrpCfg,
                 {{.path = kSecondaryVipAddress, .value = call.in->value, .create = true},
                  {.path = kPrimaryVip, .value = call.in->value}});
}

// Deletes whatever virtual addresses the router has.
cerrno delete_virtual_addresses(const Call& call, const VipDb& db) {
  const bool has_secondaries = db.secondary_count > 0;
  cerrno result = add_deleted(call, kPrimaryVip);
  if (result == YMAP_OK && has_secondaries) {
    result = add_deleted(call, kSecondaryVips);
  }
  free_vip_db(call.ctx);
  return result;
}

// Notes the address; the last one of the group decides about all of them.
cerrno take_virtual_address(const Call& call, VipDb& db) {
  const bool is_last = db.processed_count + 1 == db.expected_count;
  // Only restores the operation, and leaves it marked.
  const OperationOverride unchanged(*call.in);
  cerrno result = prepare_ip_list_to_process(call, db);
  if (result == YMAP_OK && is_last) {
    result = process_ip_list_based_on_vip_status(call, db);
    free_vip_db(call.ctx);
  }
  return result;
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv4_config_virtualaddress) {
  if (is_read(call.ctx)) {
    return query_virtual_address(call);
  }
  VipDb* db = vip_db(call.ctx);
  if (db == nullptr) {
    YMAP_ERROR(call, "VRRP db found NULL which is unexpected while edit/delete config.\n");
    return YMAP_ERR_NO_SUBTREE;
  }
  const char* address = call.in->value;
  if (address == nullptr && is_delete(*call.in)) {
    return delete_virtual_addresses(call, *db);
  }
  if (address == nullptr || !is_ipv4_address(address)) {
    YMAP_ERROR(call, "VRRP virtual ip : %s is not valid.\n", address != nullptr ? address : "");
    yfw_oc_error_path(call.ctx);
    return YMAP_ERR_UNSUPPORTED;
  }
  return take_virtual_address(call, *db);
}

namespace {

#define GLOBAL_ADDRESSES YMAP_VRRP_ROUTER("ipv6") "/global-ipv6-addresses"
#define GLOBAL_ADDRESS GLOBAL_ADDRESSES "/global-ipv6-address"
#define LINK_LOCAL YMAP_VRRP_ROUTER("ipv6") "/link-local-ipv6-address"

cerrno write_global_address(const Call& call) {
  const NewListEntries new_entries(call.ctx);
  return add_all(
      call, kNamespaceIpv4VrrpCfg,
      {{.path = GLOBAL_ADDRESS, .source = call.in, .create = true},
       {.path = GLOBAL_ADDRESS "/ip-address", .value = call.in->value, .source = call.in}});
}

}  // namespace

// Native IPv6 routers have no primary address among the global ones.
YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv6_config_virtualaddress) {
  if (is_read(call.ctx)) {
    return add(call,
               {.path = GLOBAL_ADDRESS "/ip-address", .value = call.in->value, .create = true});
  }
  const bool deletes_all = is_delete(*call.in) && call.in->value == nullptr;
  if (deletes_all || call.in->edit_operation == NIDL_YFW_EDIT_REPLACE) {
    const cerrno result = add_deleted(call, GLOBAL_ADDRESSES);
    if (result != YMAP_OK || deletes_all) {
      return result;
    }
  }
  return write_global_address(call);
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv6_config_virtuallinklocal) {
  if (is_read(call.ctx)) {
    return ask_for(call, LINK_LOCAL "/ip-address");
  }
  return is_delete(*call.in)
             ? add_deleted(call, LINK_LOCAL)
             : add_all(
                   call, kNamespaceIpv4VrrpCfg,
                   {{.path = LINK_LOCAL "/ip-address", .value = call.in->value, .source = call.in},
                    {.path = LINK_LOCAL "/auto-configure", .value = "false", .source = call.in}});
}
