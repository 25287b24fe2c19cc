#include "io/instance_steps.h"

namespace ocifip {
namespace {

// Where the bracket closes that ends a value: behind its quotes, or else the first one that a step,
// a key or nothing follows.
std::size_t closing_bracket(std::string_view text) {
  const std::size_t value = text.find('=') + 1;
  const bool is_quoted =
      value > 0 && value < text.size() && (text[value] == '\'' || text[value] == '"');
  const std::size_t quote = is_quoted ? text.find(text[value], value + 1) : std::string_view::npos;
  if (quote != std::string_view::npos && text.substr(quote + 1).starts_with(']')) return quote + 1;
  std::size_t end = text.find(']');
  while (end != std::string_view::npos && end + 1 < text.size() && text[end + 1] != '/' &&
         text[end + 1] != '[') {
    end = text.find(']', end + 1);
  }
  return end;
}

std::string_view without_quotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && value.front() == value.back() &&
                      (value.front() == '\'' || value.front() == '"');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

// Takes "[key=value]" from the front of a path.
std::optional<KeyPredicate> take_key(std::string_view& path) {
  const std::size_t end = closing_bracket(path);
  const std::size_t equals = path.find('=');
  if (end == std::string_view::npos || equals >= end) {
    return std::nullopt;
  }
  const KeyPredicate key{path.substr(1, equals - 1),
                         without_quotes(path.substr(equals + 1, end - equals - 1))};
  path.remove_prefix(end + 1);
  return key;
}

// Takes "/tag[key=value]..." from the front of a path.
std::optional<InstanceStep> take_step(std::string_view& path) {
  if (path.front() != '/') {
    return std::nullopt;
  }
  path.remove_prefix(1);
  InstanceStep step{path.substr(0, path.find_first_of("/[")), {}};
  path.remove_prefix(step.tag.size());
  while (!path.empty() && path.front() == '[') {
    const auto key = take_key(path);
    if (!key) {
      return std::nullopt;
    }
    step.keys.push_back(*key);
  }
  return step.tag.empty() ? std::nullopt : std::optional(step);
}

}  // namespace

std::optional<std::vector<InstanceStep>> split_instance_path(std::string_view path) {
  std::vector<InstanceStep> steps;
  while (!path.empty() && (path != "/" || steps.empty())) {
    auto step = take_step(path);
    if (!step) {
      return std::nullopt;
    }
    steps.push_back(*std::move(step));
  }
  return steps.empty() ? std::nullopt : std::optional(steps);
}

}  // namespace ocifip
