#include "io/yang_text.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ocifip {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kEndsOfWords = " \t\r\n;{}";

// A part of the text.
struct Token {
  std::size_t first = 0;  // for a quoted string, without the quotes
  std::size_t size = 0;   // 0 at the end of the text, or for an empty string
  char quote = '\0';      // of a quoted string
};

class Tokens {
 public:
  explicit Tokens(std::string_view text) : text_(text) {}

  // The next token: a quoted string, ";", "{", "}" or a word.
  Token next() {
    skip_blanks();
    if (at_ == text_.size()) return {at_};
    const auto first = at_;
    const char c = text_[first];
    if (c == '"' || c == '\'') return quoted(c);
    const auto end = text_.find_first_of(kEndsOfWords, first);
    at_ = end == first ? first + 1 : std::min(end, text_.size());
    return {first, at_ - first};
  }

  [[nodiscard]] std::string_view text(const Token& token) const {
    return token.quote == '\0' ? text_.substr(token.first, token.size) : std::string_view();
  }

 private:
  Token quoted(char quote) {
    const auto first = at_ + 1;
    auto end = first;
    while (end < text_.size() && text_[end] != quote) {
      end += quote == '"' && text_[end] == '\\' ? 2 : 1;
    }
    end = std::min(end, text_.size());
    at_ = std::min(end + 1, text_.size());
    return {first, end - first, quote};
  }

  // Passes over comments as well.
  void skip_blanks() {
    while (true) {
      at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
      const auto two = text_.substr(at_, 2);
      if (two == "//") {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else if (two == "/*") {
        const auto end = text_.find("*/", at_ + 2);
        at_ = end == std::string_view::npos ? text_.size() : end + 2;
      } else {
        return;
      }
    }
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

bool is_escaped(std::string_view text, std::size_t at) {
  std::size_t backslashes = 0;
  while (backslashes < at && text[at - backslashes - 1] == '\\') ++backslashes;
  return backslashes % 2 == 1;
}

// Adds the places of a pattern's anchors when it has both. Its argument is quoted strings that are
// joined by "+".
void add_anchors(std::string_view text, Tokens& tokens, std::vector<std::size_t>& places) {
  Token first;
  Token last;
  auto token = tokens.next();
  for (; token.quote != '\0' || tokens.text(token) == "+"; token = tokens.next()) {
    if (token.size == 0 || token.quote == '\0') continue;
    if (first.size == 0) first = token;
    last = token;
  }
  if (first.size == 0 || text[first.first] != '^') return;
  const auto end = last.first + last.size - 1;
  if (text[end] != '$' || end == first.first || is_escaped(text, end)) return;
  places.push_back(first.first);
  places.push_back(end);
}

}  // namespace

bool is_submodule(std::string_view text) {
  Tokens tokens(text);
  return tokens.text(tokens.next()) == "submodule";
}

std::string without_anchors(std::string text) {
  std::vector<std::size_t> places;
  Tokens tokens(text);
  bool begins_statement = true;
  for (auto token = tokens.next(); token.size > 0 || token.quote != '\0'; token = tokens.next()) {
    const auto word = tokens.text(token);
    if (begins_statement && word == "pattern") {
      add_anchors(text, tokens, places);
      continue;
    }
    begins_statement = word == ";" || word == "{" || word == "}";
  }
  for (auto place = places.rbegin(); place != places.rend(); ++place) text.erase(*place, 1);
  return text;
}

}  // namespace ocifip
