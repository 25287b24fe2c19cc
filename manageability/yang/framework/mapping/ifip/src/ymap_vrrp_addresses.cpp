// The virtual addresses of an IPv4 group: a flat list in OpenConfig, a primary address and
// secondary ones in the native model. Which is the primary depends on what the router has already.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "im/interface_manager.h"
#include "native_records.h"
#include "sysdb/sysdb.h"
#include "ymap_database.h"
#include "ymap_namespaces.h"
#include "ymap_request.h"
#include "ymap_vrrp.h"

namespace ymap {

VipDb* vip_db(const yfw_map_ctx* ctx) {
  return ctx->request_state != nullptr ? static_cast<VipDb*>(ctx->request_state->vrrp_vip_db)
                                       : nullptr;
}

void free_vip_db(yfw_map_ctx* ctx) {
  if (ctx->request_state != nullptr) {
    std::free(ctx->request_state->vrrp_vip_db);
    ctx->request_state->vrrp_vip_db = nullptr;
  }
}

VipDb* renew_vip_db(yfw_map_ctx* ctx) {
  free_vip_db(ctx);
  if (ctx->request_state == nullptr) {
    return nullptr;
  }
  auto* db = static_cast<VipDb*>(std::calloc(1, sizeof(VipDb)));
  if (db != nullptr) {
    db->no_primary = 1;
  }
  ctx->request_state->vrrp_vip_db = db;
  return db;
}

int ipv4_addr_compare(const char* first, const char* second) {
  constexpr int kOctets = 4;
  for (int i = 0; i < kOctets; ++i) {
    char* first_end = nullptr;
    char* second_end = nullptr;
    const unsigned long left = std::strtoul(first, &first_end, 10);
    const unsigned long right = std::strtoul(second, &second_end, 10);
    if (left != right) {
      return left < right ? -1 : 1;
    }
    first = *first_end == '.' ? first_end + 1 : first_end;
    second = *second_end == '.' ? second_end + 1 : second_end;
  }
  return 0;
}

namespace {

bool is_same_address(const AddressText& first, const AddressText& second) {
  return std::strncmp(first.data(), second.data(), first.size()) == 0;
}

cerrno refuse_count(const Call& call) {
  yfw_oc_error_path(call.ctx);
  return refuse_value(call.ctx, "A VRRP group has at most 255 virtual addresses.");
}

// --- what the router has -------------------------------------------------------------------------

// Bound on first use, kept for the life of the process and shared by its requests.
sysdb_handle* vrrp_database = nullptr;

// Adds addresses of a record, without the primary one, to the current secondaries.
cerrno add_secondaries(const Call& call, VipDb& db, std::span<const std::uint32_t> addresses,
                       std::uint32_t primary) {
  for (const std::uint32_t address : addresses) {
    if (address == primary) {
      continue;
    }
    if (db.secondary_count == db.secondary_vips.size()) {
      return refuse_count(call);
    }
    db.secondary_vips[db.secondary_count++] = address_text(address);
  }
  return YMAP_OK;
}

cerrno take_router(const Call& call, VipDb& db, const vrrp_vrouter_info& router) {
  const std::uint32_t primary = router.PrimaryVirtualIP;
  if (primary != 0) {
    db.primary_vip = address_text(primary);
    db.no_primary = std::strcmp(db.primary_vip.data(), "0.0.0.0") == 0 ? 1 : 0;
  }
  const auto& down = router.IPv4ConfiguredDownAddressList;
  const auto& operational = router.OperationalAddressList;
  const std::uint32_t count =
      std::min<std::uint32_t>(router.OperationalAddressCount, operational.count);
  const cerrno result = add_secondaries(call, db, {down.items, down.count}, primary);
  return result != YMAP_OK ? result
                           : add_secondaries(call, db, {operational.items, count}, primary);
}

cerrno vrrp_get_ipv4_addr_list(const Call& call, VipDb& db, const char* ifname,
                               std::uint32_t router_id) {
  db.no_primary = 1;
  imc_handle interface = 0;
  if (const cerrno result = interface_handle(call.ctx, call.name, ifname, interface);
      result != YMAP_OK) {
    return result == IMC_INTERFACE_UNKNOWN ? YMAP_OK : result;
  }
  InternalName name{};
  if (const cerrno result = convert_to_internal_ifname(call.ctx, name, ifname, call.name);
      result != YMAP_OK) {
    return result;
  }
  std::array<char, 128> key;
  std::snprintf(key.data(), key.size(), "%s,%u", name.data(), router_id);
  DatabaseList list;
  if (const cerrno result = list.open(vrrp_database, "ipv4/vrouter/", key.data());
      result != YMAP_OK) {
    return result;
  }
  if (list.count() == 0) {
    YMAP_TRACE(call, "No data found for vrid %u in sysdb.\n", router_id);
    return YMAP_OK;
  }
  ListedItem item{};
  if (const cerrno result = list.next(item); result != YMAP_OK) {
    return result;
  }
  if (item.type != SYSDB_TYPE_RECORD) {
    return SYSDB_ITEM_NOT_FOUND;
  }
  DecodedRecord<vrrp_vrouter_info> router(vrrp_vrouter_info_bag);
  if (const cerrno result = router.decode(item.bytes, item.length); result != YMAP_OK) {
    return result;
  }
  return router->Interface == interface && router->VirtualRouterID == router_id
             ? take_router(call, db, *router)
             : YMAP_OK;
}

}  // namespace

cerrno vrrp_get_info_from_sysdb(const Call& call, VipDb& db, const char* ifname,
                                std::uint32_t router_id) {
  if (vrrp_database == nullptr) {
    const cerrno result = bind_database(vrrp_database, "/oper/ip-vrrp/gl/", SYSDB_BIND_VRRP);
    if (result != YMAP_OK) {
      vrrp_database = nullptr;
      return bind_failed(call, ifname, result);
    }
  }
  return vrrp_get_ipv4_addr_list(call, db, ifname, router_id);
}

// --- what the request names ----------------------------------------------------------------------

cerrno prepare_ip_list_to_process(const Call& call, VipDb& db) {
  const bool deletes = is_delete(*call.in);
  AddressText address{};
  std::strncpy(address.data(), call.in->value, address.size() - 1);
  if (deletes && is_same_address(address, db.primary_vip)) {
    db.primary_deleted = 1;
  } else {
    const auto count = static_cast<std::size_t>(db.request_count);
    if (count == db.request_vips.size()) {
      return refuse_count(call);
    }
    db.request_vips[count] = {deletes ? 1U : 0U, address};
    ++db.request_count;
  }
  ++db.processed_count;
  return YMAP_OK;
}

// --- the split -----------------------------------------------------------------------------------

namespace {

// Addresses in an order of their own.
struct AddressArray {
  std::array<const char*, kMaxVirtualAddresses> items;
  std::size_t count = 0;

  void append(const char* address) { items[count++] = address; }
  [[nodiscard]] const char** begin() { return items.data(); }
  [[nodiscard]] const char** end() { return items.data() + count; }
  [[nodiscard]] const char* const* begin() const { return items.data(); }
  [[nodiscard]] const char* const* end() const { return items.data() + count; }
  [[nodiscard]] bool has(const char* address) const {
    return std::any_of(begin(), end(),
                       [&](const char* each) { return std::strcmp(each, address) == 0; });
  }
  void sort() {
    std::sort(begin(), end(), [](const char* first, const char* second) {
      return ipv4_addr_compare(first, second) < 0;
    });
  }
};

// Writes or deletes the primary address.
cerrno add_primary(const Call& call, const char* address, nidl_yfw_edit_oper operation) {
  const OperationOverride overridden(*call.in, operation);
  return add_path(call, kNamespaceIpv4VrrpCfg,
                  {.path = kPrimaryVip, .value = address, .source = call.in});
}

// Writes or deletes secondary addresses, an entry each.
cerrno add_delete_sec_ip_list(const Call& call, std::span<const char* const> addresses,
                              nidl_yfw_edit_oper operation) {
  const OperationOverride overridden(*call.in, operation);
  const NewListEntries new_entries(call.ctx);
  for (const char* address : addresses) {
    const cerrno result =
        add_all(call, kNamespaceIpv4VrrpCfg,
                {{.path = kSecondaryVip, .source = call.in, .create = true},
                 {.path = kSecondaryVipAddress, .value = address, .source = call.in}});
    if (result != YMAP_OK) {
      return result;
    }
  }
  return YMAP_OK;
}

cerrno add_delete_sec_ip_list(const Call& call, const AddressArray& addresses,
                              nidl_yfw_edit_oper operation) {
  return add_delete_sec_ip_list(call, {addresses.begin(), addresses.count}, operation);
}

// The lowest address becomes the primary, the others secondaries.
cerrno sort_and_select_vips(const Call& call, AddressArray& addresses) {
  addresses.sort();
  const cerrno result = add_primary(call, addresses.items[0], NIDL_YFW_EDIT_WRITE);
  return result != YMAP_OK
             ? result
             : add_delete_sec_ip_list(call, {addresses.begin() + 1, addresses.count - 1},
                                      NIDL_YFW_EDIT_WRITE);
}

// The request's addresses, in its order.
struct RequestedAddresses {
  AddressArray added;
  AddressArray removed;

  explicit RequestedAddresses(const VipDb& db, const char* primary) {
    const auto count = static_cast<std::size_t>(db.request_count);
    for (const RequestedAddress& each : std::span(db.request_vips).first(count)) {
      if (each.deleted != 0) {
        removed.append(each.address.data());
      } else if (primary == nullptr || std::strcmp(each.address.data(), primary) != 0) {
        added.append(each.address.data());
      }
    }
  }
};

cerrno elect_primary(const Call& call, RequestedAddresses& requested) {
  const cerrno result =
      requested.added.count == 0 ? YMAP_OK : sort_and_select_vips(call, requested.added);
  return result != YMAP_OK ? result
                           : add_delete_sec_ip_list(call, requested.removed, NIDL_YFW_EDIT_DELETE);
}

// The lowest secondary becomes the primary, also when the request deletes it, and addresses that
// the request adds are not written, both by design.
cerrno promote_secondary(const Call& call, const VipDb& db) {
  AddressArray secondaries;
  for (const AddressText& each : std::span(db.secondary_vips).first(db.secondary_count)) {
    secondaries.append(each.data());
  }
  secondaries.sort();
  const cerrno result =
      add_delete_sec_ip_list(call, {secondaries.begin(), 1}, NIDL_YFW_EDIT_DELETE);
  return result != YMAP_OK ? result : add_primary(call, secondaries.items[0], NIDL_YFW_EDIT_WRITE);
}

// The router loses its primary. Other addresses that the request deletes are not written, by
// design: without a secondary there are none.
cerrno replace_primary(const Call& call, const VipDb& db, RequestedAddresses& requested) {
  if (db.secondary_count > 0) {
    return promote_secondary(call, db);
  }
  if (requested.added.count == 0) {
    return add_primary(call, db.primary_vip.data(), NIDL_YFW_EDIT_DELETE);
  }
  AddressArray kept;
  for (const char* address : requested.added) {
    if (!requested.removed.has(address)) {
      kept.append(address);
    }
  }
  return kept.count == 1 ? add_primary(call, kept.items[0], NIDL_YFW_EDIT_WRITE)
                         : sort_and_select_vips(call, requested.added);
}

cerrno keep_primary(const Call& call, const RequestedAddresses& requested) {
  const cerrno result = add_delete_sec_ip_list(call, requested.added, NIDL_YFW_EDIT_WRITE);
  return result != YMAP_OK ? result
                           : add_delete_sec_ip_list(call, requested.removed, NIDL_YFW_EDIT_DELETE);
}

}  // namespace

cerrno process_ip_list_based_on_vip_status(const Call& call, const VipDb& db) {
  const bool replaces = call.in->edit_operation == NIDL_YFW_EDIT_REPLACE;
  if (replaces && db.secondary_count > 0) {
    const cerrno result =
        add_path(call, kNamespaceIpv4VrrpCfg, {.path = kSecondaryVips, .source = call.in});
    if (result != YMAP_OK) {
      return result;
    }
  }
  const bool has_primary = !replaces && db.no_primary == 0;
  RequestedAddresses requested(db, has_primary ? db.primary_vip.data() : nullptr);
  if (!has_primary) {
    return elect_primary(call, requested);
  }
  return db.primary_deleted != 0 ? replace_primary(call, db, requested)
                                 : keep_primary(call, requested);
}

}  // namespace ymap
