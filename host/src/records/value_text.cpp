#include "records/value_text.h"

#include "inet/inet.h"

namespace ocifip {
namespace {

constexpr std::size_t kMacSize = 6;

int digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// A text without the separators that stand between groups of characters, if they stand there.
std::optional<std::string> without_separators(std::string_view text, char separator,
                                              std::size_t group) {
  std::string joined;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool is_between = at % (group + 1) == group;
    if (is_between != (text[at] == separator)) return std::nullopt;
    if (!is_between) joined += text[at];
  }
  return joined;
}

}  // namespace

std::optional<std::string> address_bytes(int family, const std::string& text) {
  std::string bytes(family == OMBRIX_AF_INET ? 4 : 16, '\0');
  if (ombrix_inet_pton(family, text.c_str(), bytes.data()) != 1) return std::nullopt;
  return bytes;
}

std::optional<std::string> mac_bytes(std::string_view text) {
  struct Form {
    char separator;
    std::size_t group;
  };
  for (const Form& form : {Form{':', 2}, Form{'-', 2}, Form{'.', 4}}) {
    const auto digits = without_separators(text, form.separator, form.group);
    if (digits) return hexadecimal_bytes(*digits, kMacSize);
  }
  return std::nullopt;
}

std::optional<std::string> hexadecimal_bytes(std::string_view text, std::size_t count) {
  if (text.size() != 2 * count) return std::nullopt;
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); at += 2) {
    const int high = digit_value(text[at]);
    const int low = digit_value(text[at + 1]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high << 4 | low);
  }
  return bytes;
}

}  // namespace ocifip
