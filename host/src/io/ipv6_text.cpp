#include "io/ipv6_text.h"

#include <arpa/inet.h>

#include <array>
#include <functional>

namespace ocifip {
namespace {

using Bytes = std::array<char, 16>;

// False for a text that is no address.
bool read_bytes(std::string_view text, Bytes& bytes) {
  std::array<char, INET6_ADDRSTRLEN> terminated{};
  return text.size() < terminated.size() && text.copy(terminated.data(), text.size()) != 0 &&
         inet_pton(AF_INET6, terminated.data(), bytes.data()) == 1;
}

}  // namespace

bool is_same_ipv6(std::string_view left, std::string_view right) {
  Bytes one;
  Bytes other;
  return left == right || (read_bytes(left, one) && read_bytes(right, other) && one == other);
}

std::size_t hash_ipv6(std::string_view text) {
  Bytes bytes;
  const bool is_address = read_bytes(text, bytes);
  return std::hash<std::string_view>()(is_address ? std::string_view(bytes.data(), bytes.size())
                                                  : text);
}

}  // namespace ocifip
