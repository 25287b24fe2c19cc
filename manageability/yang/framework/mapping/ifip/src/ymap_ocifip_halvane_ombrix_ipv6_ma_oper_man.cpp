// Native IPv6 state of an interface to OpenConfig: the origin and the status of its global
// addresses.

#include <array>
#include <cstring>

#include "yfw/mapping.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_oper.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define ADDRESS YMAP_ADDRESS("ipv6")

// What becomes of a new interface and a new subinterface is not looked at, by design: the result is
// the address's.
constexpr EntryList unchecked(EntryList list) {
  list.checked = false;
  return list;
}
constexpr EntryList kUncheckedInterfaces = unchecked(kInterfaces);
constexpr EntryList kUncheckedSubinterfaces = unchecked(kSubinterfacesWithNewKeys);

// Makes the native address being walked current in the subinterface that the cursor is at: a new
// entry, without a key by design, in one that has just been made, else the entry with the same
// address. Returns 0xaaf2f600 when there is none, or the framework's result of the write.
cerrno select_address(const Call& call, EntryCursor& cursor) {
  Node** const slot = current_slot(call);
  if (cursor.is_new()) {
    return cursor.find_or_add(kIpv6Addresses, nullptr, slot);
  }
  const char* address = entry_leaf(call, YMAP_IPV6_DETAIL "/address", "address");
  if (address == nullptr || address[0] == '\0' || cursor.find(kIpv6Addresses, address) != YMAP_OK) {
    return YMAP_ERR_NO_KEYS;
  }
  if (slot != nullptr) {
    *slot = cursor.node();
  }
  return YMAP_OK;
}

constexpr Word kStates[] = {{"active", "PREFERRED"}, {"tentative", "UNKNOWN"}};

const char* status_of(const Node* state) {
  const char* value = state != nullptr && state->value != nullptr ? state->value : "";
  for (const Word& word : kStates) {
    // What a word begins with is as good as the word, by design; so is the empty text.
    if (std::strncmp(value, word.from, std::strlen(value)) == 0) {
      return word.to;
    }
  }
  return upper_case_value(*state);
}

}  // namespace

YMAP_LIST_ENTRY(ymap_xo_ocifip_halvaneombrixipv6maoper_list_lvla_ipv6network_detail_address) {
  const EntryKey name = entry_key(call, YMAP_IPV6_DETAIL, "interface-name");
  const OpenConfigKeys keys = split_interface_name(name.value);
  if (!keys.name_an_interface()) {
    return name.result != YMAP_OK ? name.result : YMAP_ERR_NO_KEYS;
  }
  EntryCursor cursor(call);
  cursor.find_or_add(kUncheckedInterfaces, keys.interface.data());
  cursor.find_or_add(kUncheckedSubinterfaces, keys.index.data());
  const cerrno result = select_address(call, cursor);
  if (result == YMAP_OK) {
    // For the leaves of the entry; the walker clears it behind them.
    yfw_map_copy_trim_path_list_ctx(call.ctx, ADDRESS);
  }
  return result;
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv6maoper_leaf_lvld_ipv6network_address_addressstate) {
  // The result is the status's alone: that of the origin is ignored, by design.
  add_openconfig(call, ADDRESS "/state/origin", "STATIC");
  std::array<char, kAddressStatusSize> status{};
  ymap_xo_ocifip_return_address_state(call.ctx, call.in, status.data());
  return add_openconfig(call, ADDRESS "/state/status", status.data());
}

YMAP_EXPORT void ymap_xo_ocifip_return_address_state(yfw_map_ctx* ctx, const nidl_yfw_datatree* in,
                                                     char* text) {
  constexpr const char* kName = "ymap_xo_ocifip_return_address_state";
  if (ctx == nullptr) {
    fail_without_context(__FILE__, __LINE__, kName, "yfw_map_ctx*, const nidl_yfw_datatree*, char*",
                         "", "void");
  }
  const cerrno result =
      yfw_strncpy_s(kName, text, kAddressStatusSize, status_of(in), kAddressStatusSize);
  report_copy_failure(ctx, result, __LINE__, kCopy);
}
