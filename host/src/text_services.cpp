// Text and memory services, for yfw/text.h and text/bounded_text.h. None depends on a locale.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "text/bounded_text.h"
#include "text_services.h"
#include "yfw/text.h"

namespace {

// Longest destination that the bounded services accept.
constexpr std::size_t kPermissibleSize = 65536;

thread_local std::size_t last_limit = 0;

// A text of which at most a number of characters are looked at.
std::string_view bounded(const char* text, std::size_t maximum) {
  return {text, strnlen(text, maximum)};
}

// Ends a destination that nothing could be written to, if it has any room.
cerrno fail(yfw_text_error error, char* destination, std::size_t size) {
  if (destination != nullptr && size != 0) {
    destination[0] = '\0';
  }
  return error;
}

// Copies what fits behind what the destination has already, and terminates it; source and
// destination may overlap.
cerrno copy_bounded(char* destination, std::size_t size, std::size_t used,
                    std::string_view source) {
  destination += used;
  const std::size_t room = size - used;
  const std::size_t length = std::min(source.size(), room - 1);
  std::memmove(destination, source.data(), length);
  destination[length] = '\0';
  if (length == source.size()) {
    return 0;
  }
  last_limit = used + room - 1;
  return YFW_TEXT_NO_SPACE;
}

// What is wrong with the arguments of a bounded copy, or 0.
cerrno check_arguments(const char* destination, std::size_t size, const char* source,
                       std::size_t count) {
  if (destination == nullptr || source == nullptr) {
    return YFW_TEXT_NULL;
  }
  if (size == 0 || count == 0) {
    return YFW_TEXT_ZERO;
  }
  return size > kPermissibleSize ? cerrno{YFW_TEXT_TOO_BIG} : cerrno{0};
}

char upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

}  // namespace

std::size_t ocifip::last_text_limit() { return last_limit; }

extern "C" {

char* yfw_strdup(const char* text, const char* /*allocation_name*/) {
  return text == nullptr ? nullptr : strdup(text);
}

void ombos_named_free(void* copy) { std::free(copy); }

cerrno yfw_strncpy_s(const char* /*caller*/, char* destination, size_t size, const char* source,
                     size_t count) {
  if (const cerrno error = check_arguments(destination, size, source, count)) {
    return fail(static_cast<yfw_text_error>(error), destination, size);
  }
  return copy_bounded(destination, size, 0, bounded(source, count));
}

cerrno yfw_strncat_s(const char* /*caller*/, char* destination, size_t size, const char* source,
                     size_t count) {
  if (const cerrno error = check_arguments(destination, size, source, count)) {
    return error;
  }
  const std::size_t used = std::min(strnlen(destination, size), size - 1);
  return copy_bounded(destination, size, used, bounded(source, count));
}

cerrno yfw_safe_strcmp(const char* first, size_t maximum, const char* second, int* comparison) {
  if (comparison == nullptr) {
    return YFW_TEXT_NULL;
  }
  if (const cerrno error = check_arguments(first, maximum, second, maximum)) {
    return error;
  }
  *comparison = bounded(first, maximum).compare(second);
  return 0;
}

int yfw_map_do_these_match(const char* first, const char* second) {
  return first != nullptr && second != nullptr && std::strcmp(first, second) == 0;
}

int strncpy_s(char* destination, size_t size, const char* source, size_t count) {
  if (destination == nullptr || source == nullptr) {
    return static_cast<int>(fail(YFW_TEXT_NULL, destination, size));
  }
  if (size == 0) {
    return YFW_TEXT_ZERO;
  }
  const std::string_view text = bounded(source, count);
  return static_cast<int>(text.size() < size ? copy_bounded(destination, size, 0, text)
                                             : fail(YFW_TEXT_NO_SPACE, destination, size));
}

int strcmp_s(const char* first, size_t maximum, const char* second, int* comparison) {
  if (first == nullptr || second == nullptr || comparison == nullptr) {
    return YFW_TEXT_NULL;
  }
  if (maximum == 0) {
    return YFW_TEXT_ZERO;
  }
  *comparison = bounded(first, maximum).compare(second);
  return 0;
}

char* strupr(char* text) {
  for (char* next = text; next != nullptr && *next != '\0'; ++next) {
    *next = upper(*next);
  }
  return text;
}

char* itoa(int value, char* buffer, int base) {
  constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";
  const bool negative = value < 0 && base == 10;
  auto rest = static_cast<std::uint32_t>(value);
  if (negative) {
    rest = 0 - rest;
  }
  std::array<char, 40> reversed;
  std::size_t length = 0;
  const bool known_base = base >= 2 && base <= 36;
  for (; known_base && (rest != 0 || length == 0); rest /= static_cast<std::uint32_t>(base)) {
    reversed[length++] = kDigits[rest % static_cast<std::uint32_t>(base)];
  }
  if (negative) {
    reversed[length++] = '-';
  }
  std::reverse_copy(reversed.begin(), reversed.begin() + length, buffer);
  buffer[length] = '\0';
  return buffer;
}

}  // extern "C"
