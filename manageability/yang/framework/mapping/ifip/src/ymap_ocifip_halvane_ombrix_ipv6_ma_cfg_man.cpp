// The native IPv6 configuration of an interface to OpenConfig: addresses with prefix lengths, and
// stateless auto-configuration. Unlike IPv4 addresses, all have state, and all are copied to the
// tunnel's tree.

#include "yfw/mapping.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_cfg.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define ADDRESS YMAP_ADDRESS("ipv6")
#define TUNNEL_ADDRESS YMAP_TUNNEL "/ipv6/addresses/address"

// The node that an OpenConfig entry takes a delete from, or null.
const Node* delete_source(const Call& call) { return is_delete(*call.in) ? call.in : nullptr; }

// Finds or makes the address entry of the native one, and makes it current.
cerrno select_address(const Call& call, const char* ifname) {
  const OpenConfigKeys keys = split_interface_name(ifname);
  const char* address = entry_leaf(call, YMAP_IPV6_REGULAR_ADDRESS, "address");
  EntryCursor cursor(call);
  cerrno result = cursor.find_or_add(kInterfaces, keys.interface.data());
  if (result == YMAP_OK) {
    result = cursor.find_or_add(kSubinterfaces, keys.index.data());
  }
  return result != YMAP_OK
             ? result
             : cursor.find_or_add(kIpv6Addresses, address, current_slot(call), delete_source(call));
}

// A leaf of an address being written, with the copies that a tunnel has in its own tree. The trim
// prefix of the copies stays, once it is set, until the leaf is done.
class AddressLeaf {
 public:
  explicit AddressLeaf(const Call& call) : call_(call), is_tunnel_(is_tunnel(call)) {}
  ~AddressLeaf() {
    if (is_trimmed_) {
      yfw_map_free_trim_path_list_ctx(call_.ctx);
    }
  }
  AddressLeaf(const AddressLeaf&) = delete;
  AddressLeaf& operator=(const AddressLeaf&) = delete;

  enum class Trim { kKept, kSet };

  // Writes the value to a path and, of a tunnel, to its copy, for which the trim prefix is set anew
  // or left as it is.
  cerrno add(const char* path, const char* tunnel_path, Trim trim) {
    const char* value = call_.in->value;
    const cerrno result = add_openconfig(call_, path, value);
    if (result != YMAP_OK || !is_tunnel_) {
      return result;
    }
    if (trim == Trim::kSet) {
      yfw_map_free_trim_path_list_ctx(call_.ctx);
      yfw_map_copy_trim_path_list_ctx(call_.ctx, kInterface);
      is_trimmed_ = true;
    }
    return add_path(call_, kNamespaceTunnel, {.path = tunnel_path, .value = value});
  }

 private:
  const Call& call_;
  bool is_tunnel_;
  bool is_trimmed_ = false;
};

// Makes the interface of a state read current: found or made by its name, which stands before the
// first dot of the native one.
cerrno select_interface(const Call& call) {
  const char* ifname = entry_leaf(call, kNativeInterface, "interface-name");
  if (ifname == nullptr) {
    return YMAP_OK;
  }
  const OpenConfigKeys keys = split_interface_name(ifname);
  Node* without_state = nullptr;
  Node** slot = current_slot(call);
  const cerrno result =
      yfw_map_search_or_add_list(call.ctx, call.out, slot != nullptr ? slot : &without_state,
                                 kInterface, keys.interface.data(), "name", kNamespaceInterfaces);
  if (result != YMAP_OK) {
    YMAP_ERROR(call, "Failed to add interface list rc:%s", cerr_strerror(result));
  }
  return result;
}

}  // namespace

// --- addresses -----------------------------------------------------------------------------------

YMAP_QUIET_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixipv6macfg_list_lvla_ipv6network_regularaddresses_regularaddress) {
  const char* ifname = current_interface_name(call.ctx);
  // The framework has made the subinterface of a name with a dot current.
  return !has_dot(ifname)
             ? select_address(call, ifname)
             : add_path(call, kNamespaceIfIp,
                        {.path = ADDRESS, .source = delete_source(call), .create = true});
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv6macfg_leaf_lvla_ipv6network_regularaddress_address) {
  if (wants_state(call.ctx)) {
    if (const cerrno result = select_interface(call); result != YMAP_OK) {
      return result;
    }
  }
  AddressLeaf leaf(call);
  cerrno result = leaf.add(ADDRESS "/ip", TUNNEL_ADDRESS "/ip", AddressLeaf::Trim::kSet);
  if (result == YMAP_OK && wants_config(call.ctx)) {
    result = leaf.add(ADDRESS "/config/ip", TUNNEL_ADDRESS "/config/ip", AddressLeaf::Trim::kKept);
  }
  if (result == YMAP_OK && wants_state(call.ctx)) {
    result = leaf.add(ADDRESS "/state/ip", TUNNEL_ADDRESS "/state/ip", AddressLeaf::Trim::kSet);
  }
  return result;
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv6macfg_leaf_lvla_ipv6network_regularaddress_prefixlength) {
  AddressLeaf leaf(call);
  cerrno result = YMAP_OK;
  if (wants_config(call.ctx)) {
    result = leaf.add(ADDRESS "/config/prefix-length", TUNNEL_ADDRESS "/config/prefix-length",
                      AddressLeaf::Trim::kSet);
  }
  if (result == YMAP_OK && wants_state(call.ctx)) {
    result = leaf.add(ADDRESS "/state/prefix-length", TUNNEL_ADDRESS "/state/prefix-length",
                      AddressLeaf::Trim::kSet);
  }
  return result;
}

// --- stateless auto-configuration ----------------------------------------------------------------

namespace {

constexpr const char* kOn = "TRUE";  // in upper case, unlike other Booleans, as it always has been

cerrno add_autoconf(const Call& call) {
  cerrno result = YMAP_OK;
  if (wants_config(call.ctx)) {
    result = add_openconfig(call, YMAP_SUBINTERFACE "/ipv6", nullptr);
    if (result == YMAP_OK) {
      result = add_path(call, kNamespaceIfIpExt,
                        {.path = YMAP_SUBINTERFACE "/ipv6/autoconf/config/create-global-addresses",
                         .value = kOn});
    }
  }
  return result != YMAP_OK || !wants_state(call.ctx)
             ? result
             : add_path(call, kNamespaceIfIpExt,
                        {.path = YMAP_SUBINTERFACE "/ipv6/autoconf/state/create-global-addresses",
                         .value = kOn});
}

bool has_interface(const Call& call) {
  const OpenConfigKeys keys = split_interface_name(current_interface_name(call.ctx));
  return EntryCursor(call).find(kInterfaces, keys.interface.data()) == YMAP_OK;
}

}  // namespace

YMAP_LEAF(ymap_ombrix_2_oc_v6_auto_conf) {
  InternalName name{};
  convert_to_internal_ifname(call.ctx, name, entry_leaf(call, kNativeInterface, "interface-name"));
  const cerrno selected =
      ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index(call.ctx, call.in, call.out);
  if (selected != YMAP_OK && !has_interface(call)) {
    // Nothing else of the interface has been read back: no failure of the whole read.
    YMAP_TRACE(call, "IP-MAP: no interface %s to write autoconf to", name.data());
    return YMAP_OK;
  }
  return selected != YMAP_OK ? selected : add_autoconf(call);
}
