#include "ocifip/host.h"
#include "result_codes.h"

namespace ocifip {

std::string Refusal::text() const {
  std::string text = hexadecimal(code);
  text.append(" (").append(result_name(code)).append(")");
  if (!tag.empty()) {
    text.append(" tag \"").append(tag).append("\"");
  }
  if (!path.empty()) {
    text.append(" at ").append(path);
  }
  return text.append(" : ").append(message);
}

}  // namespace ocifip
