// Address text and arithmetic, for inet/inet.h.
#include "inet/inet.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "result_codes.h"

static_assert(OMBRIX_AF_INET == AF_INET);
static_assert(OMBRIX_AF_INET6 == AF_INET6);

namespace {

constexpr std::size_t kIpv4Size = 4;
constexpr std::size_t kIpv6Size = 16;

// Takes a number in C notation (decimal, 0 octal, 0x hexadecimal) from the front of a text.
std::optional<std::uint32_t> take_number(std::string_view& text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    base = 16;
    text.remove_prefix(2);
  } else if (text.starts_with('0')) {
    base = 8;
  }
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc()) {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

// One to four numbers: each but the last is a byte, the last fills what is left. Blanks may follow.
std::optional<std::uint32_t> parse_dotted(std::string_view text) {
  std::uint32_t address = 0;
  for (int bits = 32; bits > 0; bits -= 8) {
    const auto number = take_number(text);
    if (!number) {
      return std::nullopt;
    }
    if (bits > 8 && text.starts_with('.')) {
      if (*number > 0xff) {
        return std::nullopt;
      }
      text.remove_prefix(1);
      address |= *number << (bits - 8);
      continue;
    }
    const bool at_end = text.find_first_not_of(" \t\n\v\f\r") == 0;
    const bool fits = *number <= std::numeric_limits<std::uint32_t>::max() >> (32 - bits);
    return at_end || !fits ? std::nullopt : std::optional(address | *number);
  }
  return std::nullopt;
}

std::uint32_t network_order(std::uint32_t word) { return htonl(word); }
std::uint32_t host_order(std::uint32_t word) { return ntohl(word); }

int compare(std::uint32_t first, std::uint32_t second) {
  return static_cast<int>(first > second) - static_cast<int>(first < second);
}

// The bits of an address, in host order, that its prefix covers.
std::uint32_t masked(std::uint32_t address, std::uint32_t length) {
  const std::uint32_t ones = std::numeric_limits<std::uint32_t>::max();
  return length == 0 ? 0 : host_order(address) & ones << (32 - std::min(length, 32u));
}

// Writes the dotted text of an IPv4 address; null when it does not fit. Edits write many netmasks,
// and the C library's way, by printf, takes ten times as long.
const char* write_dotted(const std::uint8_t* bytes, char* text, std::size_t size) {
  constexpr std::size_t kMostDigits = 3;
  std::array<char, (kMostDigits + 1) * kIpv4Size> dotted;
  char* end = dotted.data();
  for (std::size_t i = 0; i < kIpv4Size; ++i) {
    end = std::to_chars(end, end + kMostDigits, bytes[i]).ptr;
    *end++ = i + 1 < kIpv4Size ? '.' : '\0';
  }
  const auto length = static_cast<std::size_t>(end - dotted.data());
  if (length > size) {
    return nullptr;
  }
  std::memcpy(text, dotted.data(), length);
  return text;
}

}  // namespace

extern "C" {

int ombrix_inet_aton(const char* text, uint32_t* address) {
  const auto parsed = text == nullptr ? std::nullopt : parse_dotted(text);
  if (!parsed || address == nullptr) {
    return 0;
  }
  *address = network_order(*parsed);
  return 1;
}

const char* ombrix_inet_ntoa(uint32_t address) {
  thread_local std::array<char, OMBRIX_INET_TEXT_SIZE> text;
  return inet_ntoa_r(address, text.data(), text.size());
}

int ombrix_inet_pton(int family, const char* text, void* address) {
  return text != nullptr && address != nullptr && inet_pton(family, text, address) == 1;
}

const char* ombrix_inet_ntop(int family, const void* address, char* text, size_t size) {
  if (address == nullptr || text == nullptr) {
    return nullptr;
  }
  return family == OMBRIX_AF_INET
             ? write_dotted(static_cast<const std::uint8_t*>(address), text, size)
             : inet_ntop(family, address, text, static_cast<socklen_t>(size));
}

char* inet_ntoa_r(uint32_t address, char* text, size_t size) {
  return ombrix_inet_ntop(OMBRIX_AF_INET, &address, text, size) == nullptr ? nullptr : text;
}

uint32_t ipv4_mask2prefixlen(uint32_t mask) {
  return static_cast<uint32_t>(std::countl_one(host_order(mask)));
}

int ipv4_compare_prefix(uint32_t first, uint32_t first_length, uint32_t second,
                        uint32_t second_length) {
  const int addresses = compare(masked(first, first_length), masked(second, second_length));
  return addresses != 0 ? addresses : compare(first_length, second_length);
}

const char* ip_addr_string(const ip_addr* address, char* text, size_t size) {
  if (address == nullptr) {
    return nullptr;
  }
  return ombrix_inet_ntop(static_cast<int>(address->family), address->bytes, text, size);
}

int ip_addr_compare(const ip_addr* first, const ip_addr* second) {
  if (first == nullptr || second == nullptr) {
    return static_cast<int>(first != nullptr) - static_cast<int>(second != nullptr);
  }
  const int families = compare(first->family, second->family);
  const std::size_t size = first->family == OMBRIX_AF_INET ? kIpv4Size : kIpv6Size;
  return families != 0 ? families : std::memcmp(first->bytes, second->bytes, size);
}

cerrno hex_string2ip_addr(const char* digits, ip_addr* address) {
  if (digits == nullptr || address == nullptr) {
    return ocifip::kInvalidArgument;
  }
  const std::string_view text = digits;
  if (text.size() != 2 * kIpv4Size && text.size() != 2 * kIpv6Size) {
    return ocifip::kInvalidArgument;
  }
  ip_addr parsed{};
  parsed.family = text.size() == 2 * kIpv4Size ? OMBRIX_AF_INET : OMBRIX_AF_INET6;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const char* end = text.data() + i + 2;
    const auto [stop, error] = std::from_chars(text.data() + i, end, parsed.bytes[i / 2], 16);
    if (error != std::errc() || stop != end) {
      return ocifip::kInvalidArgument;
    }
  }
  *address = parsed;
  return ocifip::kOk;
}

}  // extern "C"
