#include "io/text.h"
#include "ocifip/host.h"
#include "result_codes.h"
#include "yfw/text.h"

namespace ocifip {
namespace {

// A copy of text that failed speaks of itself, and the hint of what was too long.
bool comes_behind_hint(cerrno code) { return code == YFW_TEXT_NO_SPACE; }

// A hint goes on with a sentence that has no end, and follows one that has.
std::string joined(const std::string& message, std::string hint) {
  if (hint.empty()) return message;
  if (message.empty()) return hint;
  if (!message.ends_with('.')) return message + "; " + hint;
  if ('a' <= hint[0] && hint[0] <= 'z') hint[0] = static_cast<char>(hint[0] - 'a' + 'A');
  return message + ' ' + hint + '.';
}

}  // namespace

std::string Refusal::text() const {
  std::string text;
  if (!tag.empty()) text = in_quotes(tag) + (path.empty() ? "" : " at ");
  text += path;
  if (!text.empty()) text += " : ";
  return text + sentence() + " (" + code_text() + ' ' + code_name() + ')';
}

std::string Refusal::sentence() const {
  return comes_behind_hint(code) && !hint.empty() ? hint + "; " + in_one_line(message)
                                                  : joined(in_one_line(message), hint);
}

std::string Refusal::code_text() const { return hexadecimal(code); }

std::string Refusal::code_name() const { return std::string(result_name(code)); }

}  // namespace ocifip
