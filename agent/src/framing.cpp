#include "framing.h"

#include <algorithm>
#include <utility>

#include "ocifip/messages.h"

namespace ocifip::agent {
namespace {

constexpr std::string_view kEndMark = "]]>]]>";
constexpr std::string_view kBlanks = " \t\r\n";

// RFC 6242, section 4.2.
constexpr std::uint64_t kLargestChunk = 4294967295;

[[noreturn]] void fail_at(char c, const char* expected) {
  throw FramingError(in_quotes(std::string_view(&c, 1)) + " in the head of a chunk, where " +
                     expected + " is expected");
}

}  // namespace

void FrameReader::fail_as_too_long() const {
  throw TooLong("a message of more than " + std::to_string(limit_) + " bytes");
}

std::optional<std::string> FrameReader::next() {
  return framing_ == Framing::kEndMark ? next_marked() : next_chunked();
}

bool FrameReader::is_within_message() const {
  return !message_.empty() || expected_ != Expected::kLineFeed ||
         arrived_.find_first_not_of(kBlanks) != std::string::npos;
}

// Forgets what was read; only what is left is moved, and not with each message.
void FrameReader::drop_read() {
  if (at_ == arrived_.size()) {
    arrived_.clear();
    at_ = 0;
  } else if (at_ > arrived_.size() / 2) {
    arrived_.erase(0, at_);
    at_ = 0;
  }
}

std::optional<std::string> FrameReader::next_marked() {
  arrived_.erase(0, at_);
  at_ = 0;
  const std::size_t mark = arrived_.find(kEndMark, searched_);
  const std::size_t size = std::min(mark, arrived_.size());
  if (size > limit_ + (mark == std::string::npos ? kEndMark.size() : 0)) fail_as_too_long();
  if (mark == std::string::npos) {
    searched_ = size - std::min(size, kEndMark.size() - 1);
    return std::nullopt;
  }
  searched_ = 0;
  std::string message = arrived_.substr(0, mark);
  arrived_.erase(0, mark + kEndMark.size());
  return message;
}

// Takes one character between the contents of chunks. Whether it ends the message.
bool FrameReader::read_header(char c) {
  const bool is_digit = c >= '0' && c <= '9';
  switch (expected_) {
    case Expected::kLineFeed:
      if (c != '\n') fail_at(c, "a line feed");
      expected_ = Expected::kHash;
      return false;
    case Expected::kHash:
      if (c != '#') fail_at(c, "\"#\"");
      expected_ = Expected::kSizeOrEnd;
      return false;
    case Expected::kSizeOrEnd:
      if (c == '#' && !message_.empty()) {
        expected_ = Expected::kLastLineFeed;
        return false;
      }
      if (!is_digit || c == '0') fail_at(c, "a size without leading zero");
      size_ = static_cast<std::uint64_t>(c - '0');
      expected_ = Expected::kSize;
      return false;
    case Expected::kSize:
      if (c == '\n') {
        expected_ = Expected::kContent;
        return false;
      }
      if (!is_digit) fail_at(c, "a digit or a line feed");
      size_ = size_ * 10 + static_cast<std::uint64_t>(c - '0');
      if (size_ > kLargestChunk) throw FramingError("a chunk of more than 4294967295 bytes");
      return false;
    case Expected::kLastLineFeed:
      if (c != '\n') fail_at(c, "a line feed");
      expected_ = Expected::kLineFeed;
      return true;
    case Expected::kContent:
      break;
  }
  return false;
}

void FrameReader::read_content() {
  if (size_ > limit_ - message_.size()) fail_as_too_long();
  const auto size = std::min<std::size_t>(size_, arrived_.size() - at_);
  message_.append(arrived_, at_, size);
  at_ += size;
  size_ -= size;
  if (size_ == 0) expected_ = Expected::kLineFeed;
}

std::optional<std::string> FrameReader::next_chunked() {
  while (at_ < arrived_.size()) {
    if (expected_ == Expected::kContent) {
      read_content();
    } else if (read_header(arrived_[at_++])) {
      drop_read();
      return std::exchange(message_, {});
    }
  }
  drop_read();
  return std::nullopt;
}

std::string framed(std::string message, Framing framing) {
  if (framing == Framing::kEndMark) return std::move(message.append(kEndMark));
  for (std::size_t at = 0; at < message.size();) {
    const auto size = std::min<std::uint64_t>(kLargestChunk, message.size() - at);
    const std::string head = "\n#" + std::to_string(size) + "\n";
    message.insert(at, head);
    at += head.size() + size;
  }
  return std::move(message.append("\n##\n"));
}

}  // namespace ocifip::agent
