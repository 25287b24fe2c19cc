#include "mapping/joined_text.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "io/print_document.h"

namespace ocifip {
namespace {

// The numbers of lines around the entries of a list in a container: in JSON of the document, the
// container and the array; in XML of the container's element; in a tree the container's line.
struct Around {
  std::size_t before;
  std::size_t behind;
};

Around around(Format format) {
  switch (format) {
    case Format::kJson:
      return {3, 3};
    case Format::kXml:
      return {1, 1};
    default:
      return {1, 0};
  }
}

std::size_t length_of_first_lines(std::string_view text, std::size_t lines) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < lines; ++i) length = text.find('\n', length) + 1;
  return length;
}

std::size_t length_without_last_lines(std::string_view text, std::size_t lines) {
  std::size_t length = text.size();
  for (std::size_t i = 0; i < lines; ++i) length = text.rfind('\n', length - 2) + 1;
  return length;
}

}  // namespace

void JoinedText::add(const Document& part, std::vector<std::string>& notes) {
  if (part.roots.empty()) return;
  const std::string text = print_document(part, format_, notes);
  const auto [before, behind] = around(format_);
  const std::size_t begin = text_.empty() ? 0 : length_of_first_lines(text, before);
  const std::size_t end = length_without_last_lines(text, behind);
  if (format_ == Format::kJson && !text_.empty()) {
    text_.back() = ',';
    text_ += '\n';
  }
  text_.append(text, begin, end - begin);
  end_.assign(text, end);
}

std::string JoinedText::finish() {
  if (text_.empty()) {
    std::vector<std::string> unmentioned;
    return print_document({}, format_, unmentioned);
  }
  text_ += end_;
  return std::move(text_);
}

}  // namespace ocifip
