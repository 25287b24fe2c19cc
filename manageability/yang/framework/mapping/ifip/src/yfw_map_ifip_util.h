// Helpers that the mapping callbacks share: interface names, netmasks, an interface's configured
// IPv4 addresses, and the node that an interface is on. None is a callback; those that take the
// context write to its log.
#ifndef YFW_MAP_IFIP_UTIL_H_
#define YFW_MAP_IFIP_UTIL_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "im/address_manager.h"
#include "im/interface_manager.h"
#include "yfw/context.h"
#include "yfw/text.h"
#include "ymap_frame.h"

namespace ymap {

// --- texts ---------------------------------------------------------------------------------------

// The kind of a bounded copy, in its failure's line.
inline constexpr const char* kCopy = "STRNCPY_S";
inline constexpr const char* kAppend = "STRNCAT_S";

// Reports a failed bounded copy as an error line; codes other than enum yfw_text_error are ignored.
//
//   error  result of yfw_strncpy_s or yfw_strncat_s
//   line   source line of the call
//   kind   kCopy or kAppend
void report_copy_failure(yfw_map_ctx* ctx, cerrno error, int line, const char* kind);

// Copies a text into a buffer. Returns the copy's result, after reporting a failure with the line.
template <std::size_t kSize>
cerrno copy_reported(yfw_map_ctx* ctx, const char* caller, std::array<char, kSize>& destination,
                     const char* source, std::size_t count, int line) {
  const cerrno result = yfw_strncpy_s(caller, destination.data(), kSize, source, count);
  report_copy_failure(ctx, result, line, kCopy);
  return result;
}

// --- interface names -----------------------------------------------------------------------------

// A native interface name: at most 63 characters and the terminator.
using NativeName = std::array<char, 64>;

// A name in the databases' internal form: at most 64 characters and the terminator.
using InternalName = std::array<char, 65>;

// Builds the native name of the subinterface being mapped: the interface's name and, for an index
// above 0, "." and the index as it arrived. Index 0, none, or one that is no number is the
// interface itself.
//
//   caller  name of the calling callback, for the framework's diagnostics
//   name    zeroed and written
//
// Returns 0, or the failed copy's code, reported, when the name does not fit.
cerrno native_interface_name(yfw_map_ctx* ctx, const char* caller, NativeName& name);

// Appends to a native name. Returns the append's result, after reporting a failure with the line.
cerrno append_reported(yfw_map_ctx* ctx, const char* caller, NativeName& name, const char* text,
                       int line);

// Replaces every "/" by "_" in place. Returns null always: callers use the text.
char* yfw_convert_ifname_to_internal_name(char* name);

// Copies at most 64 characters of a name and converts them to the internal form. A failed copy is
// reported, and leaves in the destination what the copy left.
//
//   caller  name of the function that asks, for the framework's diagnostics
//
// Returns the copy's result.
cerrno convert_to_internal_ifname(yfw_map_ctx* ctx, InternalName& destination, const char* source,
                                  const char* caller = "convert_to_internal_ifname");

// --- netmasks ------------------------------------------------------------------------------------

// Room for the text of an IPv4 address, and of an address of either family.
using AddressText = std::array<char, 16>;
using IpAddressText = std::array<char, 46>;

// The netmask of an OpenConfig prefix-length leaf as dotted text, or null when the leaf carries no
// value. Lengths outside 0 to 32 are not rejected, by design: the shift is taken modulo 32. The
// text is the platform's and lasts until its next use of ombrix_inet_ntoa.
const char* oc_plat_to_ombrix_inv_name_conv_prefixlength(yfw_map_ctx* ctx, const Node& leaf);

// The netmask of a prefix length in bits as dotted text.
//
// Returns 0, or YMAP_ERR_PREFIX_LENGTH with the text untouched when the length is 33 or more.
cerrno netmask_of_length(std::uint32_t prefix_length, AddressText& text);

// The same for the decimal text of a length; a text that is no number counts as 0, a missing one as
// too long.
cerrno netmask_of_text(const char* prefix_length, AddressText& text);

// The dotted text of an address in network order.
AddressText address_text(std::uint32_t address);

// --- addresses of an interface -------------------------------------------------------------------

inline constexpr std::size_t kMaxSecondaries = 255;

// An address word at which a scan of the secondaries stops, deliberately kept although nothing here
// writes it.
inline constexpr std::uint32_t kScanEnd = 48;

inline constexpr std::uint32_t kNoSecondary = 0xffffffff;

struct AddressEntry {
  std::uint32_t address;        // network order, as the interface manager gives it
  std::uint32_t prefix_length;  // bits
  std::uint32_t deleted;        // 1 when the request deletes the address
};

// The request's knowledge of the interface's IPv4 addresses, and where the address list stands. It
// lives in the request state's slot, allocated with calloc.
struct AddressDb {
  AddressEntry primary;
  std::array<AddressEntry, kMaxSecondaries> secondaries;  // in the interface manager's order
  std::uint32_t address_count;     // "address" children of the request's "addresses" container
  std::uint32_t handled_count;     // address entries handled so far
  const char* prefix_text;         // the current entry's config/prefix-length, or null
  std::uint32_t first_is_primary;  // the current entry is the first of a replace: the new primary
  std::uint32_t
      entry_is_primary;           // the current entry deletes the primary: its leaves write nothing
  std::uint32_t matches_primary;  // the current entry's address is the primary's
  std::uint32_t replace_mode;     // the request replaces the address list
  std::uint32_t no_address;       // the interface is unknown, or has no address
};

// The request's address database; made when it is missing, so that a callback called out of order
// finds an interface without addresses. Null without a request state or memory.
AddressDb* address_db(yfw_map_ctx* ctx);

// Frees the request's address database and makes a zeroed one. Null as above.
AddressDb* renew_address_db(yfw_map_ctx* ctx);

// Looks up an interface's configured IPv4 addresses and fills the request's address database.
//
//   ifname         native name
//   address        where to write the primary address as text
//   prefix_length  where to store its length in bits
//   family         OMBRIX_AF_INET, which the address list is decoded as
//
// Returns 0, the interface manager's result, or YMAP_ERR_ADDRESS_LIST when the address list cannot
// be decoded. The outputs are untouched on failure.
cerrno get_interface_address(yfw_map_ctx* ctx, const char* ifname, AddressText& address,
                             std::uint32_t* prefix_length, std::uint32_t family);

// Looks up an interface's own address of a family, over a connection of the lookup's own.
//
//   ifname         native name
//   address        where to write the address as text
//   prefix_length  where to store its length in bits
//   family         OMBRIX_AF_INET or OMBRIX_AF_INET6
//
// Returns 0, YMAP_ERR_NO_RECORD when the interface has no address of the family, or a failure as
// above, of the platform's event manager, or of its address codec. The outputs are untouched then.
cerrno get_interface_addr_info(yfw_map_ctx* ctx, const char* ifname, IpAddressText& address,
                               std::uint32_t* prefix_length, std::uint32_t family);

// Fills the address database from a record. Returns 0, or YMAP_ERR_NO_RECORD when the record is
// null.
cerrno populate_local_db(yfw_map_ctx* ctx, const iparm_record* record);

// Marks the secondary that equals an address as deleted; the prefix length is not compared.
void set_delete_flag_for_ip_in_localdb(yfw_map_ctx* ctx, std::uint32_t address,
                                       std::uint32_t prefix_length);

// Whether an address is the interface's primary; the prefix length is not compared.
bool is_primary(yfw_map_ctx* ctx, std::uint32_t address, std::uint32_t prefix_length);

// Index of the first secondary that is an address and not deleted, or kNoSecondary.
std::uint32_t get_secondary_addr_index_to_promote(yfw_map_ctx* ctx);

// Whether the interface manager knows an interface, by its native name. That it does not is traced
// under the caller's name.
bool interface_exists(yfw_map_ctx* ctx, const char* caller, const char* ifname);

// Looks an interface up by its native name and stores its handle. Returns 0, IMC_INTERFACE_UNKNOWN
// or another failure of the interface manager, or that of a name which is too long.
cerrno interface_handle(yfw_map_ctx* ctx, const char* caller, const char* ifname,
                        imc_handle& handle);

// --- nodes ---------------------------------------------------------------------------------------

// A node's name as operators see it.
using NodeName = std::array<char, 32>;

// The name of the node that an interface is on. Returns the interface manager's result.
cerrno get_node_info(yfw_map_ctx* ctx, NodeName& node, const char* ifname);

// The local node's name, for an interface that does not exist. Returns 0 with an empty name when
// the local node is unknown.
cerrno get_node_info_for_invalid_interface(yfw_map_ctx* ctx, NodeName& node);

}  // namespace ymap

#endif  // YFW_MAP_IFIP_UTIL_H_
