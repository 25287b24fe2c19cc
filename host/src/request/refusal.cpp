#include "ocifip/host.h"
#include "result_codes.h"

namespace ocifip {

std::string Refusal::text() const {
  std::string text = hexadecimal(code);
  text.append(" (").append(result_name(code)).append(")");
  if (!tag.empty()) {
    text.append(" tag \"").append(tag).append("\"");
  }
  return text.append(" at ").append(path).append(" : ").append(message);
}

}  // namespace ocifip
