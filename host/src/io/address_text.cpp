#include "io/address_text.h"

#include <arpa/inet.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "io/text.h"

namespace ocifip {
namespace {

struct Family {
  int number;
  std::string_view name;
  std::uint32_t longest_prefix;
};

constexpr Family kIpv4{AF_INET, "IPv4", 32};
constexpr Family kIpv6{AF_INET6, "IPv6", 128};

bool read_number(std::string_view text, std::uint32_t& number) {
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool has_leading_zero = text.size() > 1 && text[0] == '0';
  return error == std::errc() && stop == end && !has_leading_zero;
}

}  // namespace

bool read_address(AddressFamily family, const std::string& text, DeviceAddress& address,
                  std::string& reason) {
  const auto& [number, name, longest_prefix] = family == AddressFamily::kIpv4 ? kIpv4 : kIpv6;
  const auto slash = text.find('/');
  if (slash == std::string::npos) {
    reason = in_quotes(text) + " has no prefix length";
    return false;
  }
  if (inet_pton(number, text.substr(0, slash).c_str(), address.bytes.data()) != 1) {
    reason = in_quotes(text) + " is not an " + std::string(name) + " address";
    return false;
  }
  if (!read_number(std::string_view(text).substr(slash + 1), address.prefix_length) ||
      address.prefix_length > longest_prefix) {
    reason = "the prefix length of " + in_quotes(text) + " is not a number from 0 to " +
             std::to_string(longest_prefix);
    return false;
  }
  return true;
}

std::string address_text(AddressFamily family, const DeviceAddress& address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  const int number = (family == AddressFamily::kIpv4 ? kIpv4 : kIpv6).number;
  inet_ntop(number, address.bytes.data(), text.data(), text.size());
  return text.data();
}

}  // namespace ocifip
