// Addresses and bytes as the fields of records are written.
#ifndef OCIFIP_HOST_RECORDS_VALUE_TEXT_H_
#define OCIFIP_HOST_RECORDS_VALUE_TEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ocifip {

// The 4 or 16 bytes of an address of a family (OMBRIX_AF_INET, OMBRIX_AF_INET6).
std::optional<std::string> address_bytes(int family, const std::string& text);

// The bytes of a MAC address: "00:1a:2b:3c:4d:5e", with hyphens, or "001a.2b3c.4d5e".
std::optional<std::string> mac_bytes(std::string_view text);

// A number of bytes, two hexadecimal digits each.
std::optional<std::string> hexadecimal_bytes(std::string_view text, std::size_t count);

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_VALUE_TEXT_H_
