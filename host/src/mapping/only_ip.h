// What a request has of interface IP.
#ifndef OCIFIP_HOST_MAPPING_ONLY_IP_H_
#define OCIFIP_HOST_MAPPING_ONLY_IP_H_

#include <cstddef>
#include <string>

#include "io/document.h"

namespace ocifip {

// Nodes that were passed over, each with all below it as one.
struct PassedOver {
  std::size_t count = 0;
  std::string first;  // its instance path
};

// Takes out of a request what is outside of interface IP: other nodes at the top, settings and
// state of interfaces and subinterfaces, and what other models add. Keys stay, and in an edit what
// repeats them; the IP of routed VLANs and tunnels stays, for the mapping to refuse. A node of
// which nothing is left goes, too: an entry of a list in a query alone, where it would ask for all
// of the entry.
void keep_only_ip(Document& document, bool is_query, PassedOver& passed_over);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_ONLY_IP_H_
