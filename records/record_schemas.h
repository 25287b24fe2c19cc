// The schemas of the records, as texts in the codec's language. Those of the records whose fields
// are listed in records_*.h are made here, from the same rows as their structures; the others are
// the platform's, and come from the folder that the build names.
#ifndef RECORDS_RECORD_SCHEMAS_H_
#define RECORDS_RECORD_SCHEMAS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "native_records.h"

// Path of the file with the platform's schemas, written by the build.
#ifndef OCIFIP_PLATFORM_SCHEMAS
#error "OCIFIP_PLATFORM_SCHEMAS names the file with the platform's schemas"
#endif

namespace records {

// A record's schema with field names. A schema that is made here comes with the size of the
// structure that is made from the same rows.
struct NamedSchema {
  std::string_view record;
  std::string_view text;
  std::size_t structure_size;
};

// The layout column of native_records.def.
struct Layout {
  std::string_view record;
  std::uint64_t structures;
  std::uint64_t bytes;
};

#define RECORD(family, name, structures, bytes) Layout{#name, structures, bytes},
inline constexpr Layout kLayouts[] = {
#include "native_records.def"
};

#define RECORD_TEXT(kind, ...) RECORD_TEXT_##kind(__VA_ARGS__)
#define RECORD_TEXT_OF(name, code) "{" #name "}" code
#define RECORD_TEXT_IPV4(name) RECORD_TEXT_OF(name, "N")
#define RECORD_TEXT_U8(name) RECORD_TEXT_OF(name, "C")
#define RECORD_TEXT_U32(name) RECORD_TEXT_OF(name, "D")
#define RECORD_TEXT_U64(name) RECORD_TEXT_OF(name, "H")
#define RECORD_TEXT_I32(name) RECORD_TEXT_OF(name, "I")
#define RECORD_TEXT_HANDLE(name) RECORD_TEXT_OF(name, "D%h")
#define RECORD_TEXT_FILLED_HANDLE(name) RECORD_TEXT_OF(name, "PD%h")
#define RECORD_TEXT_BOOL(name) RECORD_TEXT_OF(name, "b")
#define RECORD_TEXT_ENUM(name, enumeration) RECORD_TEXT_OF(name, "[" #enumeration "]e")
#define RECORD_TEXT_TEXT(name) RECORD_TEXT_OF(name, "s")
#define RECORD_TEXT_BOUNDED_TEXT(name, bound) RECORD_TEXT_OF(name, #bound "s")
#define RECORD_TEXT_CHARS(name, size) RECORD_TEXT_OF(name, #size "x%S")
#define RECORD_TEXT_MAC(name) RECORD_TEXT_OF(name, "6x%m")
#define RECORD_TEXT_IPV6(name) RECORD_TEXT_OF(name, "16x%s")
#define RECORD_TEXT_STRUCT(name, type, number) RECORD_TEXT_OF(name, "$" #number)
#define RECORD_TEXT_OPTIONAL(name, type, number) RECORD_TEXT_OF(name, "p($" #number ")")
#define RECORD_TEXT_FIVE(name, type, number) RECORD_TEXT_OF(name, "5A($" #number ")")
#define RECORD_TEXT_ARRAY(name, type, number) RECORD_TEXT_OF(name, "a($" #number ")")
#define RECORD_TEXT_ARRAY_IPV4(name) RECORD_TEXT_OF(name, "a(N)")
#define RECORD_TEXT_ARRAY_I32(name) RECORD_TEXT_OF(name, "a(I)")

#define STRUCTURE(number, type, FIELDS) "$" #number "={" #type "}" FIELDS(RECORD_TEXT)
#define SCHEMA(number, type, FIELDS, before) \
  NamedSchema { #type, before STRUCTURE(number, type, FIELDS), sizeof(type) }

#define EVENT_HISTORY                                     \
  STRUCTURE(1, ipv4_ma_oc_event, IPV4_MA_OC_EVENT_FIELDS) \
  STRUCTURE(2, ipv4_ma_oc_event_history, IPV4_MA_OC_EVENT_HISTORY_FIELDS)

// clang-format off
inline constexpr NamedSchema kOwnSchemas[] = {
  SCHEMA(1, arp_gmp_config_entry, ARP_GMP_CONFIG_ENTRY_FIELDS, ""),
  SCHEMA(10, ipv4_if_detail, IPV4_IF_DETAIL_FIELDS,
         STRUCTURE(1, ipv4_group, IPV4_GROUP_FIELDS)
         STRUCTURE(2, ipv4_if_address, IPV4_IF_ADDRESS_FIELDS)
         STRUCTURE(3, ipv4_if_acl, IPV4_IF_ACL_FIELDS)
         STRUCTURE(4, ipv4_if_acl_name, IPV4_IF_ACL_NAME_FIELDS)
         STRUCTURE(5, ipv4_if_multi_acl, IPV4_IF_MULTI_ACL_FIELDS)
         STRUCTURE(6, ipv4_if_helpers, IPV4_IF_HELPERS_FIELDS)
         STRUCTURE(7, ipv4_if_rpf, IPV4_IF_RPF_FIELDS)
         STRUCTURE(8, ipv4_if_bgp_pa_direction, IPV4_IF_BGP_PA_DIRECTION_FIELDS)
         STRUCTURE(9, ipv4_if_bgp_pa, IPV4_IF_BGP_PA_FIELDS)),
  SCHEMA(5, ipv4_ma_oc_if_summary, IPV4_MA_OC_IF_SUMMARY_FIELDS,
         EVENT_HISTORY
         STRUCTURE(3, ipv4_if_address, IPV4_IF_ADDRESS_FIELDS)
         STRUCTURE(4, ipv4_ma_oc_reference, IPV4_MA_OC_REFERENCE_FIELDS)),
  SCHEMA(6, ipv4_ma_oc_client_summary, IPV4_MA_OC_CLIENT_SUMMARY_FIELDS, EVENT_HISTORY),
  SCHEMA(14, vrrp_vrouter_info, VRRP_VROUTER_INFO_FIELDS,
         STRUCTURE(3, vrrp_ipv6_address, VRRP_IPV6_ADDRESS_FIELDS)
         STRUCTURE(6, vrrp_bag_timestamp, VRRP_BAG_TIMESTAMP_FIELDS)
         STRUCTURE(8, vrrp_state_change_info_type, VRRP_STATE_CHANGE_INFO_TYPE_FIELDS)
         STRUCTURE(13, vrrp_trackitem_info, VRRP_TRACKITEM_INFO_FIELDS)),
  SCHEMA(13, vrrp_trackitem_info, VRRP_TRACKITEM_INFO_FIELDS, ""),
  SCHEMA(15, vrrp_interface_info, VRRP_INTERFACE_INFO_FIELDS, ""),
  SCHEMA(17, vrrp_mgo_info, VRRP_MGO_INFO_FIELDS,
         STRUCTURE(16, vrrp_slave_info_type, VRRP_SLAVE_INFO_TYPE_FIELDS)),
  SCHEMA(18, vrrp_summary_info, VRRP_SUMMARY_INFO_FIELDS, ""),
};
// clang-format on

#undef EVENT_HISTORY
#undef SCHEMA
#undef STRUCTURE

// The platform's schemas; the last row, without a name, is there when there are none.
#define PLATFORM_SCHEMA(name, text) NamedSchema{name, text, 0},
inline constexpr NamedSchema kPlatformSchemas[] = {
#include OCIFIP_PLATFORM_SCHEMAS
    NamedSchema{"", "", 0}};
#undef PLATFORM_SCHEMA

// The text of a record's schema in one of the tables, or "".
template <std::size_t kSize>
constexpr std::string_view find_schema(const NamedSchema (&schemas)[kSize],
                                       std::string_view record) {
  for (const NamedSchema& schema : schemas) {
    if (schema.record == record) return schema.text;
  }
  return "";
}

constexpr std::string_view named_schema(std::string_view record) {
  const std::string_view own = find_schema(kOwnSchemas, record);
  return own.empty() ? find_schema(kPlatformSchemas, record) : own;
}

// Whether the structures that are made here are those that the layouts are about: as large, and
// with as many others below them. Names hold no equals sign.
constexpr bool own_schemas_have_their_layouts() {
  return std::all_of(std::begin(kOwnSchemas), std::end(kOwnSchemas), [](const NamedSchema& own) {
    const auto structures =
        static_cast<std::uint64_t>(std::count(own.text.begin(), own.text.end(), '=') - 1);
    return std::any_of(std::begin(kLayouts), std::end(kLayouts), [&](const Layout& layout) {
      return layout.record == own.record && layout.structures == structures &&
             layout.bytes == own.structure_size;
    });
  });
}
static_assert(own_schemas_have_their_layouts());

// Whether every schema of the platform's is of a record that has none here.
constexpr bool platform_schemas_are_wanted() {
  return std::all_of(
      std::begin(kPlatformSchemas), std::end(kPlatformSchemas) - 1, [](const NamedSchema& schema) {
        return find_schema(kOwnSchemas, schema.record).empty() &&
               std::any_of(std::begin(kLayouts), std::end(kLayouts),
                           [&](const Layout& layout) { return layout.record == schema.record; });
      });
}
static_assert(platform_schemas_are_wanted(),
              "OCIFIP_RECORD_SCHEMAS has a schema of an unknown record, or of one described here");

constexpr bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Hands the characters of a schema without its names and blanks to a function. A reference to a
// structure is kept apart from a digit behind it by a blank.
template <typename Put>
constexpr void compact(std::string_view named, Put put) {
  bool in_name = false;
  bool in_reference = false;
  bool apart = false;
  for (const char c : named) {
    if (in_name || c == '{' || is_blank(c)) {
      in_name = in_name ? c != '}' : c == '{';
      apart = true;
      continue;
    }
    if (in_reference && apart && is_digit(c)) put(' ');
    in_reference = c == '$' || (in_reference && !apart && is_digit(c));
    apart = false;
    put(c);
  }
}

constexpr std::size_t compact_size(std::string_view named) {
  std::size_t size = 0;
  compact(named, [&size](char) { ++size; });
  return size;
}

// The schema without names, terminated.
template <std::size_t kSize>
constexpr std::array<char, kSize + 1> compact_schema(std::string_view named) {
  std::array<char, kSize + 1> text{};
  std::size_t size = 0;
  compact(named, [&](char c) { text[size++] = c; });
  return text;
}

}  // namespace records

#endif  // RECORDS_RECORD_SCHEMAS_H_
