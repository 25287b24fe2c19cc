#include "parameters.h"

#include <algorithm>
#include <charconv>

#include "ocifip/messages.h"
#include "rpc_error.h"

namespace ocifip::agent {
namespace {

[[noreturn]] void fail(const char* tag, std::string_view element, const std::string& message) {
  throw OperationError(element_error(tag, element, message));
}

[[noreturn]] void fail_value(std::string_view name, const std::string& value,
                             const std::string& expected) {
  fail(tags::kInvalidValue, name,
       in_quotes(value) + " is no value of " + in_quotes(name) + ", which is " + expected);
}

// "a", "b" or "c"
std::string listed(std::initializer_list<std::string_view> words) {
  std::string text;
  std::size_t left = words.size();
  for (const std::string_view word : words) {
    text += in_quotes(word);
    --left;
    if (left > 0) text += left == 1 ? " or " : ", ";
  }
  return text;
}

}  // namespace

Parameters::Parameters(const xmlNode* of) : of_(of), left_(elements(of)) {}

const xmlNode* Parameters::find(std::string_view name) {
  const auto is_meant = [&](const xmlNode* element) {
    return is_named(element, namespace_of(of_), name);
  };
  const auto found = std::find_if(left_.begin(), left_.end(), is_meant);
  if (found == left_.end()) return nullptr;
  const xmlNode* element = *found;
  left_.erase(found);
  if (std::any_of(left_.begin(), left_.end(), is_meant)) {
    fail(tags::kBadElement, name, "a second " + in_quotes(name));
  }
  return element;
}

const xmlNode* Parameters::need(std::string_view name) {
  const xmlNode* found = find(name);
  if (found == nullptr) {
    fail(tags::kMissingElement, name, in_quotes(name_of(of_)) + " without its " + in_quotes(name));
  }
  return found;
}

std::optional<std::string> Parameters::text(std::string_view name) {
  const xmlNode* found = find(name);
  if (found == nullptr) return std::nullopt;
  if (!elements(found).empty()) fail(tags::kBadElement, name, in_quotes(name) + " is a text");
  return text_of(found);
}

std::string Parameters::needed_text(std::string_view name) {
  const auto value = text(name);
  if (!value) need(name);
  return *value;
}

std::optional<std::string> Parameters::choice(std::string_view name,
                                              std::initializer_list<std::string_view> words) {
  auto value = text(name);
  if (value && std::find(words.begin(), words.end(), *value) == words.end()) {
    fail_value(name, *value, listed(words));
  }
  return value;
}

std::optional<std::uint32_t> Parameters::number(std::string_view name) {
  const auto value = text(name);
  if (!value) return std::nullopt;
  std::uint32_t number = 0;
  const char* end = value->data() + value->size();
  const auto [last, error] = std::from_chars(value->data(), end, number);
  if (error != std::errc() || last != end || number == 0) {
    fail_value(name, *value, "a number from 1 to 4294967295");
  }
  return number;
}

bool Parameters::flag(std::string_view name) {
  const auto value = text(name);
  if (value && !value->empty()) fail_value(name, *value, "empty");
  return value.has_value();
}

void Parameters::finish() const {
  if (left_.empty()) return;
  const std::string_view name = name_of(left_.front());
  const std::string_view name_space = namespace_of(left_.front());
  const std::string reason = " is none of what " + in_quotes(name_of(of_)) + " has";
  if (name_space == namespace_of(of_)) fail(tags::kUnknownElement, name, in_quotes(name) + reason);
  throw OperationError(element_error(
      tags::kUnknownNamespace, name,
      in_quotes(name) + " of the namespace " + in_quotes(name_space) + reason, name_space));
}

}  // namespace ocifip::agent
