// Native IPv4 state of an interface to OpenConfig, as far as a copy of the value is not enough.
//
// The state of the primary address is split on purpose: its prefix length and origin are under
// "addresses", the address itself and the state of an interface without data under "address".

#include "ymap_ocifip_halvane_ombrix_ipv4_io_oper.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4iooper_leaf_lvla_ipv4network_detail_prefixlength) {
  // The result is the origin's alone: that of the prefix length is ignored, by design.
  add_openconfig(call, YMAP_SUBINTERFACE "/ipv4/addresses/address/state/prefix-length",
                 call.in->value);
  return add_openconfig(call, YMAP_SUBINTERFACE "/ipv4/addresses/address/state/origin", "STATIC");
}
