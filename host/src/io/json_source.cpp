#include "io/json_source.h"

#include <algorithm>

namespace ocifip {

int JsonSource::line() {
  if (text_.data() == nullptr) return 0;
  line_ += static_cast<int>(std::count(counted_, last_, '\n'));
  counted_ = last_;
  return line_;
}

// The parser says "[json.exception.KIND] parse error at line 1, column 9: syntax error while
// parsing object key - REASON", REASON being "invalid literal; last read: TEXT" or "unexpected '}';
// expected string literal", or "[json.exception.KIND] REASON".
std::string json_reason(std::string_view message) {
  const auto drop_through = [&message](std::string_view mark) {
    const auto at = message.find(mark);
    if (at != std::string_view::npos) message.remove_prefix(at + mark.size());
  };
  drop_through("] ");
  if (message.starts_with("parse error at ")) drop_through(": ");
  if (message.starts_with("syntax error ")) drop_through(" - ");
  return "not valid JSON: " + std::string(message.substr(0, message.find("; last read: ")));
}

}  // namespace ocifip
