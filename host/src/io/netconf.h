// How NETCONF names operations and itself.
#ifndef OCIFIP_HOST_IO_NETCONF_H_
#define OCIFIP_HOST_IO_NETCONF_H_

#include <string_view>

namespace ocifip {

constexpr std::string_view kNetconfNamespace = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr std::string_view kOperationAnnotation = "ietf-netconf:operation";  // in JSON

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_NETCONF_H_
