#include "io/leaf_types.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "ocifip/messages.h"

namespace ocifip {
namespace {

constexpr std::size_t kMostNames = 8;  // in a message

// The type of a leaf's values: a reference has that of the leaf that it leads to.
const lysc_type* type_of(const lysc_node* leaf) {
  const auto* type = leaf->nodetype == LYS_LEAF
                         ? reinterpret_cast<const lysc_node_leaf*>(leaf)->type
                         : reinterpret_cast<const lysc_node_leaflist*>(leaf)->type;
  return type->basetype == LY_TYPE_LEAFREF
             ? reinterpret_cast<const lysc_type_leafref*>(type)->realtype
             : type;
}

// Bits of an integer type's values, and whether it has a sign; nothing for other types.
struct IntegerType {
  int bits;
  bool is_signed;
};

std::optional<IntegerType> integer_type(const lysc_type* type) {
  switch (type->basetype) {
    case LY_TYPE_UINT8:
      return IntegerType{8, false};
    case LY_TYPE_UINT16:
      return IntegerType{16, false};
    case LY_TYPE_UINT32:
      return IntegerType{32, false};
    case LY_TYPE_UINT64:
      return IntegerType{64, false};
    case LY_TYPE_INT8:
      return IntegerType{8, true};
    case LY_TYPE_INT16:
      return IntegerType{16, true};
    case LY_TYPE_INT32:
      return IntegerType{32, true};
    case LY_TYPE_INT64:
      return IntegerType{64, true};
    default:
      return std::nullopt;
  }
}

using RangePart = lysc_range::lysc_range_part;

bool contains(const RangePart& part, std::uint64_t number, bool is_signed) {
  if (!is_signed) return number >= part.min_u64 && number <= part.max_u64;
  const auto signed_number = static_cast<std::int64_t>(number);
  return signed_number >= part.min_64 && signed_number <= part.max_64;
}

// A range of numbers as texts say it.
struct Bounds {
  std::string least;
  std::string most;
};

Bounds bounds_of(const RangePart& part, bool is_signed) {
  return is_signed ? Bounds{std::to_string(part.min_64), std::to_string(part.max_64)}
                   : Bounds{std::to_string(part.min_u64), std::to_string(part.max_u64)};
}

Bounds bounds_of(IntegerType integer) {
  const int unused = 64 - integer.bits;
  if (!integer.is_signed) {
    return {"0", std::to_string(std::numeric_limits<std::uint64_t>::max() >> unused)};
  }
  const auto most = std::numeric_limits<std::int64_t>::max() >> unused;
  return {std::to_string(-most - 1), std::to_string(most)};
}

std::string in_words(const lysc_range* range, IntegerType integer) {
  std::string words;
  const auto add = [&words](const Bounds& bounds) {
    if (!words.empty()) words += " or ";
    words +=
        bounds.least == bounds.most ? bounds.least : "from " + bounds.least + " to " + bounds.most;
  };
  if (range == nullptr) {
    add(bounds_of(integer));
  } else {
    for (LY_ARRAY_COUNT_TYPE at = 0; at < LY_ARRAY_COUNT(range->parts); ++at) {
      add(bounds_of(range->parts[at], integer.is_signed));
    }
  }
  return "a number " + words;
}

std::string in_words(const lysc_type_enum* type) {
  const auto count = LY_ARRAY_COUNT(type->enums);
  std::string words = "one of ";
  for (LY_ARRAY_COUNT_TYPE at = 0; at < std::min<std::size_t>(count, kMostNames); ++at) {
    words.append(at == 0 ? "" : ", ").append(type->enums[at].name);
  }
  return count > kMostNames ? words + " and others" : words;
}

std::string in_words(const lysc_type_str* type) {
  std::string words = "a text";
  if (type->length != nullptr) {
    const auto* parts = type->length->parts;
    const auto most = parts[LY_ARRAY_COUNT(parts) - 1].max_u64;
    words += " of " + std::to_string(parts[0].min_u64);
    words += most == std::numeric_limits<std::uint64_t>::max()
                 ? " or more characters"
                 : " to " + std::to_string(most) + " characters";
  }
  for (LY_ARRAY_COUNT_TYPE at = 0; at < LY_ARRAY_COUNT(type->patterns); ++at) {
    words += type->patterns[at]->inverted != 0 ? " that does not match " : " that matches ";
    words += in_quotes(type->patterns[at]->expr);
  }
  return words;
}

// Whether an identity has a prefix that is the name of no module.
bool is_foreign_identity(const lysc_node* leaf, const lysc_type* type, std::string_view text) {
  const auto colon = text.find(':');
  if (type->basetype != LY_TYPE_IDENT || colon == std::string_view::npos || colon == 0)
    return false;
  const std::string prefix(text.substr(0, colon));
  return ly_ctx_get_module_implemented(leaf->module->ctx, prefix.c_str()) == nullptr;
}

}  // namespace

bool is_plain_number(const lysc_type* type, std::string_view text) {
  const auto integer = integer_type(type);
  if (!integer || text.empty() || (text.size() > 1 && text.front() == '0')) return false;
  std::uint64_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const auto most = std::numeric_limits<std::uint64_t>::max() >>
                    (64 - integer->bits + (integer->is_signed ? 1 : 0));
  if (error != std::errc() || stop != end || number > most) return false;
  const auto* range = reinterpret_cast<const lysc_type_num*>(type)->range;
  if (range == nullptr) return true;
  for (LY_ARRAY_COUNT_TYPE at = 0; at < LY_ARRAY_COUNT(range->parts); ++at) {
    if (contains(range->parts[at], number, integer->is_signed)) return true;
  }
  return false;
}

bool takes(const lysc_node* leaf, std::string_view text, std::string* canonical) {
  const char* kept = nullptr;
  const LY_ERR result = lyd_value_validate(nullptr, leaf, text.data(), text.size(), nullptr,
                                           nullptr, canonical == nullptr ? nullptr : &kept);
  if (kept != nullptr) {
    *canonical = kept;
    lydict_remove(leaf->module->ctx, kept);
  }
  return result == LY_SUCCESS || result == LY_EINCOMPLETE;
}

bool has_ipv4_values(const lysc_node* leaf) {
  return takes(leaf, "192.0.2.1") && takes(leaf, "255.255.255.255") &&
         !takes(leaf, "192.0.2.256") && !takes(leaf, "192.0.2") && !takes(leaf, "192.0.2.1.1");
}

bool has_ipv6_values(const lysc_node* leaf) {
  return takes(leaf, "2001:DB8::1") && takes(leaf, "::") && !takes(leaf, "2001:DB8::1::") &&
         !takes(leaf, "2001:DB8:");
}

bool has_hardware_address_values(const lysc_node* leaf) {
  return takes(leaf, "00:1a:2B:3c:4d:5e") && !takes(leaf, "00-1a-2b-3c-4d-5e") &&
         !takes(leaf, "00:1a:2b:3c:4d:5g");
}

std::string expected_value(const lysc_node* leaf) {
  const auto* type = type_of(leaf);
  if (const auto integer = integer_type(type)) {
    return in_words(reinterpret_cast<const lysc_type_num*>(type)->range, *integer);
  }
  if (type->basetype == LY_TYPE_ENUM)
    return in_words(reinterpret_cast<const lysc_type_enum*>(type));
  if (type->basetype == LY_TYPE_BOOL) return "true or false";
  if (type->basetype == LY_TYPE_EMPTY) return "empty";
  if (type->basetype == LY_TYPE_IDENT) return "an identity that fits here";
  const bool is_ipv4 = has_ipv4_values(leaf);
  const bool is_ipv6 = has_ipv6_values(leaf);
  if (is_ipv4 || is_ipv6) {
    return is_ipv4 && is_ipv6 ? "an IP address" : is_ipv4 ? "an IPv4 address" : "an IPv6 address";
  }
  if (has_hardware_address_values(leaf)) return "a hardware address, as 00:1a:2b:3c:4d:5e";
  if (type->basetype == LY_TYPE_STRING)
    return in_words(reinterpret_cast<const lysc_type_str*>(type));
  return "a value of its type";
}

bool ValueCheck::is_known(const lysc_type* type, const std::string& value) const {
  if (is_plain_number(type, value)) return true;
  const auto last = taken_.find(type);
  return last != taken_.end() && last->second == value;
}

bool ValueCheck::takes(const lysc_node* leaf, const std::string& value) {
  const auto* type = type_of(leaf);
  if (is_known(type, value)) return true;
  if (!ocifip::takes(leaf, value)) return false;
  taken_.insert_or_assign(type, value);
  return true;
}

bool ValueCheck::settle(const lysc_node* leaf, std::string& value) {
  const auto* type = type_of(leaf);
  if (is_known(type, value)) return true;
  std::string canonical;
  const bool is_number = integer_type(type).has_value();
  if (!ocifip::takes(leaf, value, is_number ? &canonical : nullptr)) {
    return is_foreign_identity(leaf, type, value);
  }
  if (is_number) {
    value = std::move(canonical);
  } else {
    taken_.insert_or_assign(type, value);
  }
  return true;
}

}  // namespace ocifip
