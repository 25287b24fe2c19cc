// What an XPath expression can reach, as far as its beginning tells.
#include <algorithm>
#include <cctype>
#include <optional>

#include "selection.h"

namespace ocifip::agent {
namespace {

// No model is as deep.
constexpr std::size_t kMostSteps = 64;

// Of more places with nodes of one name everything is read.
constexpr std::size_t kMostPlaces = 64;

struct Step {
  std::string_view prefix;
  std::string_view name;
  std::vector<std::pair<std::string_view, std::string_view>> matches;  // leaves and their values
};

// Reads the beginning of a location path: names, and leaves that are compared with a text.
class PathReader {
 public:
  explicit PathReader(std::string_view text) : text_(text) {}

  // Takes a "//" at the beginning but for its last character. Whether there is one.
  bool take_anywhere();
  // The steps up to the first thing that is not read.
  std::vector<Step> steps();
  [[nodiscard]] std::string_view rest() const { return text_; }

 private:
  void skip_blanks();
  bool take(char c);
  std::optional<std::string_view> identifier();
  std::optional<std::pair<std::string_view, std::string_view>> qualified_name();
  std::optional<std::string_view> literal();
  bool read_match(Step& step);

  std::string_view text_;
};

bool is_name_character(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-' || c == '.';
}

void PathReader::skip_blanks() {
  text_.remove_prefix(std::min(text_.find_first_not_of(" \t\r\n"), text_.size()));
}

bool PathReader::take(char c) {
  skip_blanks();
  if (!text_.starts_with(c)) return false;
  text_.remove_prefix(1);
  return true;
}

bool PathReader::take_anywhere() {
  skip_blanks();
  return text_.starts_with("//") && take('/');
}

std::optional<std::string_view> PathReader::identifier() {
  skip_blanks();
  const auto end = std::find_if_not(text_.begin(), text_.end(), is_name_character);
  const auto size = static_cast<std::size_t>(end - text_.begin());
  if (size == 0 || text_.front() == '-' || text_.front() == '.') return std::nullopt;
  const std::string_view name = text_.substr(0, size);
  text_.remove_prefix(size);
  return name;
}

// With a prefix: without one a name has no namespace, and is none of data.
std::optional<std::pair<std::string_view, std::string_view>> PathReader::qualified_name() {
  const auto prefix = identifier();
  if (!prefix || !text_.starts_with(':') || text_.starts_with("::")) return std::nullopt;
  text_.remove_prefix(1);
  const auto name = identifier();
  if (!name) return std::nullopt;
  return std::pair(*prefix, *name);
}

std::optional<std::string_view> PathReader::literal() {
  skip_blanks();
  if (text_.empty() || (text_.front() != '\'' && text_.front() != '"')) return std::nullopt;
  const auto end = text_.find(text_.front(), 1);
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view value = text_.substr(1, end - 1);
  text_.remove_prefix(end + 1);
  return value;
}

// [PREFIX:NAME = "TEXT"]
bool PathReader::read_match(Step& step) {
  const std::string_view begin = text_;
  if (take('[')) {
    const auto name = qualified_name();
    const auto value = name && name->first == step.prefix && take('=') ? literal() : std::nullopt;
    if (value && !value->empty() && take(']')) {
      step.matches.emplace_back(name->second, *value);
      return true;
    }
  }
  text_ = begin;
  return false;
}

std::vector<Step> PathReader::steps() {
  std::vector<Step> read;
  while (read.size() < kMostSteps) {
    const std::string_view begin = text_;
    const auto name = take('/') ? qualified_name() : std::nullopt;
    skip_blanks();
    if (!name || text_.starts_with('(')) {
      text_ = begin;
      return read;
    }
    read.push_back({name->first, name->second, {}});
    while (read_match(read.back())) {
    }
    skip_blanks();
    if (text_.starts_with('[')) return read;
  }
  return read;
}

// Whether a word is surely a step. That of an operator may be a name as well; a number or a minus,
// of which words consist, too, is none.
bool is_step(std::string_view word) {
  if (word == ".") return true;
  if (word.empty() || word == "or" || word == "and" || word == "div" || word == "mod") return false;
  return std::isalpha(static_cast<unsigned char>(word.front())) != 0 || word.front() == '_';
}

// Whether what follows the steps may look at data that is not below them.
bool looks_elsewhere(std::string_view rest) {
  if (rest.find("..") != std::string_view::npos || rest.find("::") != std::string_view::npos) {
    return true;
  }
  // A "/" that no step stands before begins at the top. Functions have it behind a bracket or
  // comma; those without arguments look at what is there.
  std::string_view word;  // that ends before the character
  char before = ']';
  for (std::size_t at = 0; at < rest.size(); ++at) {
    const char c = rest[at];
    if (c == '$') return true;
    // Elsewhere a "*" may multiply.
    const bool is_any = before == '*' && at >= 2 && (rest[at - 2] == '/' || rest[at - 2] == ':');
    if (c == '/' && !is_step(word) && !is_any && before != ']' && before != '/') return true;
    word = is_name_character(c) ? rest.substr(at - word.size(), word.size() + 1) : "";
    before = c;  // a blank, too: "and /a" begins at the top
  }
  return false;
}

std::optional<std::string> meaning_of(const XPath& xpath, std::string_view prefix) {
  for (const auto& [known, meaning] : xpath.namespaces) {
    if (known == prefix) return meaning;
  }
  return std::nullopt;
}

// An element of a filter, with what is in it.
Elements asking(std::string_view name_space, std::string_view name, const Elements& content) {
  const std::string tag(name);
  return "<" + tag + " xmlns=\"" + escaped(name_space) + "\">" + content + "</" + tag + ">";
}

// An element that asks for what a step does.
std::optional<Elements> asking(const XPath& xpath, const Step& step, const Elements& content) {
  const auto meaning = meaning_of(xpath, step.prefix);
  if (!meaning) return std::nullopt;
  Elements matches;
  for (const auto& [leaf, value] : step.matches) matches += element(leaf, value);
  return asking(*meaning, step.name, matches + content);
}

// The filter of a step that begins anywhere; nothing when that is nearly everywhere. It does not
// name what is below: somewhere that may be a leaf that is not read.
std::optional<Elements> anywhere(const XPath& xpath, const Step& step,
                                 const NodePlaces& places_of) {
  const auto meaning = meaning_of(xpath, step.prefix);
  if (!meaning) return std::nullopt;
  const auto places = places_of(*meaning, std::string(step.name));
  if (places.empty() || places.size() > kMostPlaces) return std::nullopt;
  Elements all;
  for (const Path& place : places) {
    Elements filter;
    for (auto node = place.rbegin(); node != place.rend(); ++node) {
      const bool is_it = filter.empty() && *node == std::pair(*meaning, std::string(step.name));
      filter = is_it ? *asking(xpath, step, "") : asking(node->first, node->second, filter);
    }
    all += filter;
  }
  return all;
}

// The filter of one path; nothing when it may be anything.
std::optional<Elements> filter_of(const XPath& xpath, std::string_view path,
                                  const NodePlaces& places_of) {
  PathReader reader(path);
  const bool is_anywhere = reader.take_anywhere();
  const std::vector<Step> steps = reader.steps();
  if (steps.empty() || looks_elsewhere(reader.rest())) return std::nullopt;
  if (is_anywhere) return anywhere(xpath, steps.front(), places_of);
  std::optional<Elements> filter = "";
  for (auto step = steps.rbegin(); filter && step != steps.rend(); ++step) {
    filter = asking(xpath, *step, *filter);
  }
  return filter;
}

// The paths of a union.
std::vector<std::string_view> parts(std::string_view text) {
  std::vector<std::string_view> found;
  std::size_t begin = 0;
  char quote = 0;
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '[' || c == '(') {
      ++depth;
    } else if (c == ']' || c == ')') {
      --depth;
    } else if (c == '|' && depth == 0) {
      found.push_back(text.substr(begin, i - begin));
      begin = i + 1;
    }
  }
  found.push_back(text.substr(begin));
  return found;
}

}  // namespace

Elements reach_of(const XPath& xpath, const NodePlaces& places_of) {
  Elements reach;
  for (const std::string_view path : parts(xpath.text)) {
    const auto filter = filter_of(xpath, path, places_of);
    if (!filter) return {};
    reach += *filter;
  }
  return reach;
}

}  // namespace ocifip::agent
