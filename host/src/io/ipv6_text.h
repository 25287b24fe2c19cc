// IPv6 addresses in data, of which each may be written in several ways.
#ifndef OCIFIP_HOST_IO_IPV6_TEXT_H_
#define OCIFIP_HOST_IO_IPV6_TEXT_H_

#include <cstddef>
#include <string_view>

namespace ocifip {

// Whether two texts are the same address: "2001:DB8::1" is "2001:db8:0::1". Texts that are no
// addresses, or have a zone, are compared as they are.
bool is_same_ipv6(std::string_view left, std::string_view right);

// A hash that texts of the same address share.
std::size_t hash_ipv6(std::string_view text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_IPV6_TEXT_H_
