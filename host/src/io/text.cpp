#include "io/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace ocifip {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kCut = "...";
constexpr std::size_t kMostCharacters = 200;  // of input that is repeated

// Lead bytes of UTF-8, with how many bytes follow and the range of the first of these, which keeps
// out overlong forms, surrogates and what is above U+10FFFF.
struct Lead {
  std::uint8_t first;
  std::uint8_t last;
  std::uint8_t following;
  std::uint8_t low;
  std::uint8_t high;
};

constexpr Lead kLeads[] = {
    {0x00, 0x7F, 0, 0x00, 0x00}, {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

bool is_within(char byte, std::uint8_t low, std::uint8_t high) {
  const auto value = static_cast<std::uint8_t>(byte);
  return low <= value && value <= high;
}

// Size of the character that a text begins with; 0 when it begins with none.
std::size_t character_size(std::string_view text) {
  for (const auto& lead : kLeads) {
    if (!is_within(text[0], lead.first, lead.last)) continue;
    const std::size_t size = std::size_t{1} + lead.following;
    if (size == 1) return 1;
    if (text.size() < size || !is_within(text[1], lead.low, lead.high)) return 0;
    const auto continues = [](char byte) { return is_within(byte, 0x80, 0xBF); };
    return std::all_of(text.begin() + 2, text.begin() + static_cast<std::ptrdiff_t>(size),
                       continues)
               ? size
               : 0;
  }
  return 0;
}

bool is_ascii(char byte) { return static_cast<std::uint8_t>(byte) < 0x80; }

// Size of the ASCII that a text begins with, in steps of eight bytes.
std::size_t ascii_size(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t at = 0;
  for (std::uint64_t bytes = 0; at + sizeof bytes <= text.size(); at += sizeof bytes) {
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    if ((bytes & kHighBits) != 0) break;
  }
  return at;
}

void append_escape(std::string& out, char c) {
  constexpr std::string_view kEscaped = "\"\\\b\f\n\r\t";
  constexpr std::string_view kLetters = "\"\\bfnrt";
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto escape = kEscaped.find(c);
  if (escape != std::string_view::npos) {
    out += '\\';
    out += kLetters[escape];
  } else {
    const auto code = static_cast<std::uint8_t>(c);
    out += "\\u00";
    out += kDigits[code >> 4U];
    out += kDigits[code & 0xFU];
  }
}

// Bytes that are escaped in quotes.
constexpr bool is_special(std::uint8_t byte) {
  return byte < 0x20 || byte == '"' || byte == '\\' || byte == 0x7F;
}

// Bytes that stand for themselves in quotes, whatever is around them. A table is asked for each one
// in a fifth of the time that comparisons take.
constexpr std::array<bool, 256> kPlain = [] {
  std::array<bool, 256> plain{};
  for (std::uint8_t byte = 0; byte < 0x80; ++byte) plain[byte] = !is_special(byte);
  return plain;
}();

// The first characters of a UTF-8 text: as many as messages repeat.
std::string_view beginning(std::string_view text) {
  std::size_t size = 0;
  for (std::size_t count = 0; count < kMostCharacters && size < text.size(); ++count) {
    size += character_size(text.substr(size));
  }
  return text.substr(0, size);
}

// Appends a text with its control characters escaped.
void append_escaped(std::string& out, std::string_view text) {
  for (const char c : text) {
    if (is_within(c, 0x00, 0x1F) || c == '\x7F') {
      append_escape(out, c);
    } else {
      out += c;
    }
  }
}

// Appends a UTF-8 text as messages repeat it.
void append_short(std::string& out, std::string_view text) {
  const auto start = beginning(text);
  append_escaped(out, start);
  if (start.size() < text.size()) out += kCut;
}

// Size of what a sentence begins with: a word, all that it quotes with its quotes, or a separator.
std::size_t piece_size(std::string_view sentence) {
  const auto end = sentence.find_first_of(" \"");
  if (end != 0) return std::min(end, sentence.size());
  const auto closing = sentence[0] == '"' ? sentence.find('"', 1) : std::string_view::npos;
  return closing == std::string_view::npos ? 1 : closing + 1;
}

// Whether a text begins as UTF-16 does: with its byte order mark, or a character of ASCII.
bool begins_as_utf16(std::string_view text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
         (text.size() > 1 && (text[0] == '\0') != (text[1] == '\0'));
}

constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

InputError input_error(const std::string& name, int line, const std::string& reason,
                       InputFault fault) {
  std::string message;
  append_escaped(message, valid_utf8(name));
  if (line > 0) message.append(":").append(std::to_string(line));
  fault.reason = reason;
  return {message.append(": ").append(reason), std::move(fault)};
}

LoadError load_error(const std::string& kind, const std::string& name, const std::string& reason) {
  return LoadError("cannot load the " + kind + ' ' + in_short(name) + ": " + reason);
}

int line_at(std::string_view text, std::size_t at) {
  const auto before = text.substr(0, at);
  return 1 + static_cast<int>(std::count(before.begin(), before.end(), '\n'));
}

void check_text(const std::string& name, std::string_view text) {
  const auto fail = [&](std::size_t at, const std::string& reason) {
    throw input_error(name, line_at(text, at), reason, {InputFault::Kind::kMalformed});
  };
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) fail(0, "the text is empty");
  if (begins_as_utf16(text)) fail(0, "UTF-16 text, only UTF-8 is read");
  if (const auto at = text.find('\0'); at != std::string_view::npos) fail(at, "a NUL byte");
  if (const auto at = utf8_length(text); at < text.size()) fail(at, "not UTF-8 text");
}

std::size_t utf8_length(std::string_view text) {
  // Nearly all texts are ASCII, of which a table of lead bytes would be asked for each byte.
  std::size_t at = ascii_size(text);
  while (at < text.size()) {
    const auto size = is_ascii(text[at]) ? std::size_t{1} : character_size(text.substr(at));
    if (size == 0) break;
    at += size;
  }
  return at;
}

std::string valid_utf8(std::string_view text) {
  std::string out;
  while (true) {
    const auto valid = utf8_length(text);
    out += text.substr(0, valid);
    if (valid == text.size()) return out;
    out += kReplacement;
    text.remove_prefix(valid + 1);
  }
}

bool is_plain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return kPlain[static_cast<std::uint8_t>(c)]; });
}

void append_quoted(std::string& out, std::string_view text) {
  out += '"';
  while (!text.empty()) {
    const auto special = std::find_if(
        text.begin(), text.end(), [](char c) { return is_special(static_cast<std::uint8_t>(c)); });
    const auto plain = static_cast<std::size_t>(special - text.begin());
    out += text.substr(0, plain);
    if (special == text.end()) break;
    append_escape(out, *special);
    text.remove_prefix(plain + 1);
  }
  out += '"';
}

std::string in_quotes(std::string_view text) {
  const auto valid = valid_utf8(text);
  const auto start = beginning(valid);
  std::string out;
  append_quoted(out, start);
  return start.size() == valid.size() ? out : out.append(kCut);
}

std::string in_short(std::string_view text) {
  const auto valid = valid_utf8(text);
  std::string out;
  append_short(out, valid);
  return out;
}

std::string in_one_line(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(" \n") + 1);
  const auto valid = valid_utf8(text);
  std::string out;
  for (std::string_view left = valid; !left.empty();) {
    const auto piece = left.substr(0, piece_size(left));
    left.remove_prefix(piece.size());
    if (piece.size() > 1 && piece[0] == '"') {
      out += '"';
      append_short(out, piece.substr(1, piece.size() - 2));
      out += '"';
    } else {
      append_short(out, piece);
    }
  }
  return out;
}

bool is_identifier(std::string_view text) {
  const auto begins = [](char c) { return is_letter(c) || c == '_'; };
  const auto continues = [&](char c) {
    return begins(c) || is_within(c, '0', '9') || c == '-' || c == '.';
  };
  return !text.empty() && begins(text[0]) && std::all_of(text.begin(), text.end(), continues);
}

}  // namespace ocifip
