// The IPv6 of a subinterface, which two entries of the plug-in map: that of IPv6 itself, and that
// of the model openconfig-if-ip-ext, which extends its container.
#ifndef OCIFIP_HOST_MAPPING_EXTENDED_IPV6_H_
#define OCIFIP_HOST_MAPPING_EXTENDED_IPV6_H_

#include "request/request.h"

namespace ocifip {

// Hands the "ipv6" container of the subinterface being walked to the entry of IPv6 without the
// extension's nodes, and these, each by itself and below "ipv6", to the extension's. Without other
// nodes the first is not entered: an empty container would mean something else. One that is deleted
// goes to both as it is, but to the first alone if it has content, which is the plug-in's to
// refuse. So does all there is when the plug-in has no entry for the extension. Returns the first
// result that is not 0.
cerrno map_ipv6(Request& request, const InputNode& ipv6, nidl_yfw_datatree* out);

// Tells the extension's entry, if there is one, that the subinterface being walked is deleted with
// all below it: that is a deleted "ipv6" container for it.
cerrno delete_ipv6_extension(Request& request, const InputNode& subinterface,
                             nidl_yfw_datatree* out);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_EXTENDED_IPV6_H_
