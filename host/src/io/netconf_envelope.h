// The elements that NETCONF puts around data: requests, their parameters, and replies.
#ifndef OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_
#define OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_

#include <string_view>
#include <vector>

#include "io/document.h"

namespace ocifip {

// What an element is that may be part of an envelope.
struct EnvelopePart {
  std::string_view tag;
  std::string_view parent;  // element that it stands in; "" for none
  // A holder has data nodes in it, a parameter has text, and the others have parts.
  enum class Role { kEnvelope, kHolder, kParameter } role;
  Envelope envelope;             // that it makes of the document
  bool is_required = false;      // in the element that it stands in
  std::string_view holds_one{};  // what its parts are, when it has exactly one of them
};

// The part with a tag that stands in another, "" for none; null when there is none.
const EnvelopePart* find_part(std::string_view tag, std::string_view parent);

// The tag of the first part that an element needs and that is not among those that it has; "" when
// all are there.
std::string_view missing_part(const EnvelopePart& element,
                              const std::vector<const EnvelopePart*>& parts);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_
