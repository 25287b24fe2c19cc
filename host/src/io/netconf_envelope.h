// The elements that NETCONF puts around data: requests, their parameters, and replies.
#ifndef OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_
#define OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_

#include <string_view>

#include "io/document.h"

namespace ocifip {

// What an element is that may be part of an envelope.
struct EnvelopePart {
  std::string_view tag;
  std::string_view parent;  // element that it stands in; "" for none
  enum class Role { kEnvelope, kHolder, kParameter } role;  // a holder has data nodes in it
  Envelope envelope;                                        // that it makes of the document
};

// The part with a tag that stands in another, "" for none; null when there is none.
const EnvelopePart* find_part(std::string_view tag, std::string_view parent);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_NETCONF_ENVELOPE_H_
