#include "yfw_map_ifip_util.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "inet/inet.h"
#include "yfw/text.h"
#include "ymap_request.h"

namespace ymap {

// The lines of this file come from helpers, which write under their own names.
#define UTIL_ERROR(ctx, text, ...) \
  YMAP_EMIT(ctx, __func__, YMAP_ERROR_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)

void report_copy_failure(yfw_map_ctx* ctx, cerrno error, int line, const char* kind) {
  switch (error) {
    case YFW_TEXT_NULL:
      UTIL_ERROR(ctx, "%s: src/dest is NULL at Line number: %d", kind, line);
      break;
    case YFW_TEXT_ZERO:
      UTIL_ERROR(ctx, "%s: slen/dmax is 0 at Line number: %d", kind, line);
      break;
    case YFW_TEXT_TOO_BIG:
      UTIL_ERROR(ctx, "%s dmax exceeds permissible length at Line number: %d", kind, line);
      break;
    case YFW_TEXT_NO_SPACE:
      UTIL_ERROR(ctx, "%s: Not enough space for src at Line number: %d", kind, line);
      break;
    default:
      break;
  }
}

cerrno append_reported(yfw_map_ctx* ctx, const char* caller, NativeName& name, const char* text,
                       int line) {
  const cerrno result = yfw_strncat_s(caller, name.data(), name.size(), text, name.size());
  report_copy_failure(ctx, result, line, kAppend);
  return result;
}

cerrno native_interface_name(yfw_map_ctx* ctx, const char* caller, NativeName& name) {
  name.fill('\0');
  const yfw_map_request_state* state = ctx->request_state;
  if (state == nullptr) {
    return YMAP_OK;
  }
  cerrno result = copy_reported(ctx, caller, name, state->current_ifname, name.size(), __LINE__);
  const char* index = state->current_subif_index;
  if (result != YMAP_OK || std::strtol(index, nullptr, 10) <= 0) {
    return result;
  }
  result = append_reported(ctx, caller, name, ".", __LINE__);
  return result != YMAP_OK ? result : append_reported(ctx, caller, name, index, __LINE__);
}

char* yfw_convert_ifname_to_internal_name(char* name) {
  for (char* at = name; at != nullptr && *at != '\0'; ++at) {
    if (*at == '/') {
      *at = '_';
    }
  }
  return nullptr;
}

cerrno convert_to_internal_ifname(yfw_map_ctx* ctx, InternalName& destination, const char* source,
                                  const char* caller) {
  const cerrno result =
      copy_reported(ctx, caller, destination, source, destination.size() - 1, __LINE__);
  if (result == YMAP_OK) {
    destination.back() = '\0';
    yfw_convert_ifname_to_internal_name(destination.data());
  }
  return result;
}

namespace {

// The netmask of a length in network order. A shift by 32 minus the length, taken modulo 32.
std::uint32_t netmask(std::uint32_t prefix_length) {
  if (prefix_length == 0) {
    return 0;
  }
  const std::uint32_t host_order = 0xffffffffu << ((32u - prefix_length) % 32u);
  const std::array<std::uint8_t, 4> bytes = {
      static_cast<std::uint8_t>(host_order >> 24), static_cast<std::uint8_t>(host_order >> 16),
      static_cast<std::uint8_t>(host_order >> 8), static_cast<std::uint8_t>(host_order)};
  std::uint32_t network_order = 0;
  std::memcpy(&network_order, bytes.data(), bytes.size());
  return network_order;
}

}  // namespace

const char* oc_plat_to_ombrix_inv_name_conv_prefixlength(yfw_map_ctx* /*ctx*/, const Node& leaf) {
  if (!has_flag(leaf, NIDL_YFW_FLAG_HAS_VALUE) || leaf.value == nullptr) {
    return nullptr;
  }
  return ombrix_inet_ntoa(
      netmask(static_cast<std::uint32_t>(std::strtol(leaf.value, nullptr, 10))));
}

AddressText address_text(std::uint32_t address) {
  AddressText text{};
  std::strncpy(text.data(), ombrix_inet_ntoa(address), text.size() - 1);
  return text;
}

cerrno netmask_of_length(std::uint32_t prefix_length, AddressText& text) {
  if (prefix_length > 32) {
    return YMAP_ERR_PREFIX_LENGTH;
  }
  text = address_text(netmask(prefix_length));
  return YMAP_OK;
}

cerrno netmask_of_text(const char* prefix_length, AddressText& text) {
  if (prefix_length == nullptr) {
    return YMAP_ERR_PREFIX_LENGTH;
  }
  return netmask_of_length(static_cast<std::uint32_t>(std::strtol(prefix_length, nullptr, 10)),
                           text);
}

// --- addresses of an interface -------------------------------------------------------------------

AddressDb* address_db(yfw_map_ctx* ctx) {
  if (ctx->request_state == nullptr) {
    return nullptr;
  }
  void*& slot = ctx->request_state->address_db;
  if (slot == nullptr) {
    slot = std::calloc(1, sizeof(AddressDb));
  }
  return static_cast<AddressDb*>(slot);
}

AddressDb* renew_address_db(yfw_map_ctx* ctx) {
  if (ctx->request_state != nullptr) {
    std::free(ctx->request_state->address_db);
    ctx->request_state->address_db = nullptr;
  }
  return address_db(ctx);
}

namespace {

bool same_address(std::uint32_t first, std::uint32_t second) {
  return ipv4_compare_prefix(first, 32, second, 32) == 0;
}

// The first secondary that a test accepts, within the scan's bounds, or null.
template <typename Test>
AddressEntry* find_secondary(AddressDb& db, Test accepts) {
  for (AddressEntry& entry : db.secondaries) {
    if (entry.address == kScanEnd) {
      break;
    }
    if (entry.address != 0 && accepts(entry)) {
      return &entry;
    }
  }
  return nullptr;
}

std::uint32_t address_word(const std::uint8_t (&bytes)[IPARM_ADDRESS_SIZE]) {
  std::uint32_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

}  // namespace

cerrno populate_local_db(yfw_map_ctx* ctx, const iparm_record* record) {
  if (record == nullptr) {
    return YMAP_ERR_NO_RECORD;
  }
  AddressDb* db = address_db(ctx);
  if (db == nullptr) {
    return YMAP_OK;
  }
  db->primary = {address_word(record->primary), record->prefix_length, 0};
  const std::size_t count = std::min<std::size_t>(record->secondary_count, kMaxSecondaries);
  for (std::size_t i = 0; i < count; ++i) {
    const iparm_secondary& secondary = record->secondaries[i];
    db->secondaries[i] = {address_word(secondary.address), secondary.prefix_length, 0};
  }
  return YMAP_OK;
}

void set_delete_flag_for_ip_in_localdb(yfw_map_ctx* ctx, std::uint32_t address,
                                       std::uint32_t /*prefix_length*/) {
  AddressDb* db = address_db(ctx);
  if (db == nullptr) {
    return;
  }
  AddressEntry* entry = find_secondary(
      *db, [address](const AddressEntry& each) { return same_address(each.address, address); });
  if (entry != nullptr) {
    entry->deleted = 1;
  }
}

bool is_primary(yfw_map_ctx* ctx, std::uint32_t address, std::uint32_t /*prefix_length*/) {
  const AddressDb* db = address_db(ctx);
  return db != nullptr && same_address(address, db->primary.address);
}

std::uint32_t get_secondary_addr_index_to_promote(yfw_map_ctx* ctx) {
  AddressDb* db = address_db(ctx);
  if (db == nullptr) {
    return kNoSecondary;
  }
  const AddressEntry* entry =
      find_secondary(*db, [](const AddressEntry& each) { return each.deleted != 1; });
  return entry == nullptr ? kNoSecondary
                          : static_cast<std::uint32_t>(entry - db->secondaries.data());
}

}  // namespace ymap
