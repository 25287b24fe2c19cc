// IPv4 addresses, MTU and DHCP client of a subinterface to the native IPv4 configuration.
//
// OpenConfig keeps a flat list of addresses with prefix lengths; the native model keeps one primary
// address and a list of secondaries with netmasks. The list entry decides, from the kind of the
// request and the addresses that the interface has, which native entry an OpenConfig entry is; its
// leaves follow. When the primary is deleted, the key leaf of the request's last entry promotes a
// secondary.

#include <array>
#include <cstdint>
#include <initializer_list>

#include "inet/inet.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_paths.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define ADDRESSES YMAP_IPV4_NETWORK "/addresses"

constexpr const char* kNetwork = YMAP_IPV4_NETWORK;
constexpr const char* kMtu = YMAP_IPV4_NETWORK "/mtu";
constexpr const char* kAddresses = ADDRESSES;
constexpr const char* kPrimary = ADDRESSES "/primary";
constexpr const char* kPrimaryAddress = ADDRESSES "/primary/address";
constexpr const char* kPrimaryNetmask = ADDRESSES "/primary/netmask";
constexpr const char* kSecondaries = ADDRESSES "/secondaries";
constexpr const char* kSecondary = ADDRESSES "/secondaries/secondary";
constexpr const char* kSecondaryAddress = ADDRESSES "/secondaries/secondary/address";
constexpr const char* kSecondaryNetmask = ADDRESSES "/secondaries/secondary/netmask";

cerrno add(const Call& call, const PathWrite& write) {
  return add_path(call, kNamespaceIpv4IoCfg, write);
}

cerrno add_deleted(const Call& call, const char* path) {
  return add(call, {.path = path, .source = call.in});
}

// Adds an address entry: the primary, or a new secondary.
cerrno add_entry(const Call& call, const char* path) {
  return add(call, {.path = path, .value = call.in->value, .source = call.in, .create = true});
}

// Adds paths in turn, until one fails.
cerrno add_all(const Call& call, std::initializer_list<PathWrite> writes) {
  return ymap::add_all(call, kNamespaceIpv4IoCfg, writes);
}

// A read asks for the primary's leaf and the secondaries' alike.
cerrno query_both(const Call& call, const char* primary, const char* secondary, const char* value) {
  return add_all(call, {{.path = primary, .value = value}, {.path = secondary, .value = value}});
}

// A container without children is written only when an edit deletes it.
cerrno add_childless_container(const Call& call, const char* path) {
  return is_edit(call.ctx) && is_delete(*call.in) ? add_deleted(call, path) : YMAP_OK;
}

// Whether the list that is being edited is deleted; an entry that carries a delete has said so.
bool deletes_list(const yfw_map_ctx* ctx) {
  return ctx->request_state != nullptr && is_delete_operation(ctx->request_state->list_edit_op);
}

// Reads children that a subtree mark promises: the mark without children is a fault.
bool read_promised_children(const Call& call, const Node& node, Children& children) {
  if (read_children(node, children) &&
      (children.count != 0 || !has_flag(node, NIDL_YFW_FLAG_HAS_SUBTREE))) {
    return true;
  }
  YMAP_ERROR(call, "Failed to get subtrees!");
  return false;
}

// Counts the entries of the request's address list.
cerrno count_addresses(const Call& call, AddressDb& db) {
  Children children;
  if (!read_promised_children(call, *call.in, children)) {
    return YMAP_ERR_NO_SUBTREE;
  }
  const Node* addresses = children.find("addresses");
  if (addresses == nullptr) {
    return YMAP_OK;
  }
  if (!read_promised_children(call, *addresses, children)) {
    return YMAP_ERR_NO_SUBTREE;
  }
  for (const Node& child : children) {
    db.address_count += yfw_map_do_these_match(child.tag, "address") != 0 ? 1 : 0;
  }
  return YMAP_OK;
}

}  // namespace

YMAP_CONTAINER(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4) {
  if (call.child_count == 0) {
    return add_childless_container(call, kNetwork);
  }
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  const cerrno result = add(call, {.path = kNetwork});
  // The entry of a list-wide delete makes a database of its own.
  if (result != YMAP_OK || is_list_wide(call.ctx)) {
    return result;
  }
  AddressDb* db = renew_address_db(call.ctx);
  return db != nullptr ? count_addresses(call, *db) : YMAP_ERR_NO_MEMORY;
}

YMAP_CONTAINER(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4_addresses) {
  return call.child_count != 0 ? add(call, {.path = kAddresses})
                               : add_childless_container(call, kAddresses);
}

// --- the address entry ---------------------------------------------------------------------------

namespace {

// The address of an entry, as its key gives it.
struct EntryAddress {
  std::uint32_t word = 0;
  bool valid = false;

  // A text that is no address equals none.
  [[nodiscard]] bool is_primary_of(yfw_map_ctx* ctx) const {
    return valid && is_primary(ctx, word, 32);
  }
};

cerrno read_entry_address(const Call& call, const Children& children, EntryAddress& address) {
  const Node* key = children.find("ip");
  if (key == nullptr) {
    YMAP_ERROR(call, "Missing key.Key is mandatory for edit-config request");
    return YMAP_ERR_LIST_KEY;
  }
  address.valid = key->value != nullptr && ombrix_inet_aton(key->value, &address.word) != 0;
  return YMAP_OK;
}

// The entry's config/prefix-length as text, or null.
const char* read_prefix_text(const Children& children) {
  const Node* config = children.find("config");
  if (config == nullptr) {
    return nullptr;
  }
  const Node* prefix_length = children_of(*config).find("prefix-length");
  return prefix_length != nullptr ? prefix_length->value : nullptr;
}

// Fills the database with the interface's addresses. An interface that the interface manager does
// not know has none.
void look_up_addresses(const Call& call, const NativeName& name) {
  AddressText address{};
  std::uint32_t prefix_length = 0;
  get_interface_address(call.ctx, name.data(), address, &prefix_length, OMBRIX_AF_INET);
}

// The database starts anew: it may still hold another subinterface's addresses.
cerrno delete_whole_list(const Call& call) {
  AddressDb* db = renew_address_db(call.ctx);
  if (db == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  db->replace_mode = 1;
  return add_all(call, {{.path = kPrimary, .value = call.in->value, .source = call.in},
                        {.path = kSecondaries, .source = call.in, .create = true}});
}

cerrno delete_entry(const Call& call, AddressDb& db, const NativeName& name) {
  yfw_map_request_state& state = *call.ctx->request_state;
  if (state.current_ifname[0] == '\0') {
    return YMAP_OK;
  }
  if (is_list_wide(call.ctx)) {
    return delete_whole_list(call);
  }
  state.list_edit_op = call.in->edit_operation;
  if (db.handled_count == 0) {
    if (db.replace_mode != 0) {
      db.first_is_primary = 1;
    } else {
      look_up_addresses(call, name);
    }
  }
  ++db.handled_count;
  const Children children = children_of(*call.in);
  EntryAddress address;
  if (const cerrno result = read_entry_address(call, children, address); result != YMAP_OK) {
    return result;
  }
  if (address.is_primary_of(call.ctx)) {
    // The primary is dealt with once all entries are known, by promotion.
    db.primary.deleted = 1;
    db.entry_is_primary = 1;
    return YMAP_OK;
  }
  if (address.valid) {
    set_delete_flag_for_ip_in_localdb(call.ctx, address.word, 32);
  }
  return add(call, {.path = kSecondary, .source = call.in, .create = true});
}

// The first entry of a replaced list is the primary, unless the list was deleted before.
cerrno add_first_of_replace(const Call& call, AddressDb& db) {
  db.first_is_primary = 1;
  db.handled_count = 1;
  return add_entry(call, deletes_list(call.ctx) ? kSecondary : kPrimary);
}

cerrno write_entry(const Call& call, AddressDb& db, const NativeName& name) {
  if (request_op(call.ctx) == YFW_MAP_REQUEST_REPLACE) {
    db.replace_mode = 1;
  }
  const Children children = children_of(*call.in);
  EntryAddress address;
  if (const cerrno result = read_entry_address(call, children, address); result != YMAP_OK) {
    return result;
  }
  db.prefix_text = read_prefix_text(children);
  if (db.handled_count == 0) {
    if (db.replace_mode != 0) {
      return add_first_of_replace(call, db);
    }
    look_up_addresses(call, name);
  }
  ++db.handled_count;
  // An interface without a primary gets a secondary, deliberately: only a replace elects a primary.
  if (db.primary.address == 0 || !address.is_primary_of(call.ctx)) {
    return add_entry(call, kSecondary);
  }
  db.matches_primary = 1;
  return add_entry(call, kPrimary);
}

}  // namespace

YMAP_LIST_ENTRY(ymap_ox_ocifip_openconfigifip_list_lvla_ipv4_addresses_address) {
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  NativeName name;
  if (const cerrno result = native_interface_name(call.ctx, call.name, name); result != YMAP_OK) {
    return result;
  }
  AddressDb* db = address_db(call.ctx);
  if (db == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  db->first_is_primary = 0;
  db->entry_is_primary = 0;
  db->matches_primary = 0;
  db->prefix_text = nullptr;
  const NewListEntries new_entries(call.ctx);
  return is_delete(*call.in) ? delete_entry(call, *db, name) : write_entry(call, *db, name);
}

// --- the entry's key -----------------------------------------------------------------------------

namespace {

cerrno write_first_of_replace(const Call& call, const AddressDb& db) {
  if (deletes_list(call.ctx)) {
    return add(call, {.path = kSecondaryAddress, .value = call.in->value, .source = call.in});
  }
  if (db.entry_is_primary != 0) {
    return YMAP_OK;
  }
  std::array<std::uint8_t, 4> address{};
  if (call.in->value == nullptr ||
      ombrix_inet_pton(OMBRIX_AF_INET, call.in->value, address.data()) != 1) {
    return refuse_value(call.ctx, "Ipv4 address is not in correct format");
  }
  return add(call, {.path = kPrimaryAddress, .value = call.in->value, .source = call.in});
}

cerrno write_secondary(const Call& call, const AddressDb& db) {
  AddressText netmask{};
  if (db.prefix_text != nullptr) {
    if (const cerrno result = netmask_of_text(db.prefix_text, netmask); result != YMAP_OK) {
      return result;
    }
  }
  const cerrno result =
      add(call, {.path = kSecondaryAddress, .value = call.in->value, .source = call.in});
  return result != YMAP_OK || db.prefix_text == nullptr
             ? result
             : add(call, {.path = kSecondaryNetmask, .value = netmask.data(), .source = call.in});
}

cerrno write_key(const Call& call, const AddressDb& db) {
  if (is_delete(*call.in) || is_list_wide(call.ctx)) {
    return YMAP_OK;
  }
  if (db.first_is_primary != 0) {
    return write_first_of_replace(call, db);
  }
  if (db.entry_is_primary != 0) {
    return YMAP_OK;
  }
  if (db.matches_primary != 0) {
    return add(call, {.path = kPrimaryAddress, .value = call.in->value, .source = call.in});
  }
  return write_secondary(call, db);
}

// Whether the request's last entry is done, and its entries deleted the primary.
bool primary_is_gone(const Call& call, const AddressDb& db) {
  return db.address_count == db.handled_count && deletes_list(call.ctx) && db.primary.deleted == 1;
}

cerrno delete_primary(const Call& call, const AddressDb& db) {
  const OperationOverride deleting(*call.in, NIDL_YFW_EDIT_DELETE);
  const AddressText old_primary = address_text(db.primary.address);
  return add_all(call, {{.path = kPrimary, .source = call.in},
                        {.path = kPrimaryAddress, .value = old_primary.data(), .source = call.in}});
}

// Takes a secondary out of the secondaries and makes it the primary, with its own netmask.
cerrno promote(const Call& call, const AddressEntry& chosen) {
  const AddressText address = address_text(chosen.address);
  AddressText netmask{};
  if (const cerrno result = netmask_of_length(chosen.prefix_length, netmask); result != YMAP_OK) {
    return result;
  }
  OperationOverride operation(*call.in, NIDL_YFW_EDIT_DELETE);
  const cerrno result =
      add_all(call, {{.path = kSecondary, .source = call.in, .create = true},
                     {.path = kSecondaryAddress, .value = address.data(), .source = call.in}});
  if (result != YMAP_OK) {
    return result;
  }
  operation.set(NIDL_YFW_EDIT_WRITE);
  return add_all(call, {{.path = kPrimary, .source = call.in},
                        {.path = kPrimaryAddress, .value = address.data(), .source = call.in},
                        {.path = kPrimaryNetmask, .value = netmask.data(), .source = call.in}});
}

// The last entry of the request may itself be written, as a secondary. Its netmask is still to come
// and must not reach the secondary that promotion took out, so it is named once more.
cerrno name_written_secondary(const Call& call, const AddressDb& db) {
  return db.prefix_text == nullptr || db.matches_primary != 0
             ? YMAP_OK
             : add(call, {.path = kSecondaryAddress, .value = call.in->value, .source = call.in});
}

cerrno replace_gone_primary(const Call& call, const AddressDb& db) {
  const NewListEntries new_entries(call.ctx);
  const std::uint32_t index = get_secondary_addr_index_to_promote(call.ctx);
  if (index == kNoSecondary) {
    return delete_primary(call, db);
  }
  const cerrno result = promote(call, db.secondaries[index]);
  return result == YMAP_OK ? name_written_secondary(call, db) : result;
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_address_ip) {
  if (is_read(call.ctx)) {
    return query_both(call, kPrimaryAddress, kSecondaryAddress, call.in->value);
  }
  const AddressDb* db = address_db(call.ctx);
  if (db == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  const cerrno result = write_key(call, *db);
  return result == YMAP_OK && primary_is_gone(call, *db) ? replace_gone_primary(call, *db) : result;
}

// --- the entry's configuration -------------------------------------------------------------------

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_ip) {
  if (is_read(call.ctx)) {
    return query_both(call, kPrimaryAddress, kSecondaryAddress, call.in->value);
  }
  const AddressDb* db = address_db(call.ctx);
  if (db == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  if (is_delete(*call.in)) {
    return is_list_wide(call.ctx) || db->entry_is_primary != 0
               ? YMAP_OK
               : add_deleted(call, kSecondaryAddress);
  }
  if (deletes_list(call.ctx)) {
    return YMAP_OK;
  }
  const bool primary =
      db->first_is_primary != 0 || db->entry_is_primary != 0 || db->matches_primary != 0;
  return add(call, {.path = primary ? kPrimaryAddress : kSecondaryAddress,
                    .value = call.in->value,
                    .source = call.in});
}

namespace {

cerrno delete_netmask(const Call& call, AddressDb& db) {
  if (is_list_wide(call.ctx)) {
    return YMAP_OK;
  }
  if (db.entry_is_primary != 0) {
    db.entry_is_primary = 0;  // the primary's netmask follows promotion
    return YMAP_OK;
  }
  return add_deleted(call, kSecondaryNetmask);
}

cerrno write_netmask(const Call& call, const AddressDb& db) {
  AddressText netmask{};
  if (const cerrno result = netmask_of_text(call.in->value, netmask); result != YMAP_OK) {
    return result;
  }
  bool primary = db.matches_primary != 0;
  bool silent = db.entry_is_primary != 0;
  if (db.first_is_primary != 0) {
    primary = !deletes_list(call.ctx);
    silent = silent && primary;
  }
  return silent ? YMAP_OK
                : add(call, {.path = primary ? kPrimaryNetmask : kSecondaryNetmask,
                             .value = netmask.data(),
                             .source = call.in});
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_prefixlength) {
  if (is_read(call.ctx)) {
    return query_both(call, kPrimaryNetmask, kSecondaryNetmask,
                      oc_plat_to_ombrix_inv_name_conv_prefixlength(call.ctx, *call.in));
  }
  AddressDb* db = address_db(call.ctx);
  if (db == nullptr) {
    return YMAP_ERR_NO_MEMORY;
  }
  return is_delete(*call.in) ? delete_netmask(call, *db) : write_netmask(call, *db);
}

// --- interface settings --------------------------------------------------------------------------

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_mtu) {
  const yfw_map_request_state* state = call.ctx->request_state;
  const bool no_interface = state == nullptr || state->current_ifname[0] == '\0';
  if (is_edit(call.ctx) && is_delete(*call.in) && no_interface) {
    return YMAP_OK;
  }
  const NewListEntries new_entries(call.ctx);
  return edit_leaf(call, kNamespaceIpv4IoCfg, kMtu);
}
