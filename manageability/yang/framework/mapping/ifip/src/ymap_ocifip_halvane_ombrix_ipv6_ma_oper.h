// The callbacks of Halvane-Ombrix-ipv6-ma-oper in the direction from the native models to
// OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_OPER_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_OPER_H_

#include <cstddef>

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_oper.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

namespace ymap {

// Room for an address's status.
inline constexpr std::size_t kAddressStatusSize = 128;

}  // namespace ymap

// The OpenConfig status of an address. What a native state that has none turns into is the state
// itself in upper case; the input tree's value is then in upper case, too, by design.
//
//   in    the native address-state; a missing one, or one without a value, counts as the empty text
//   text  a buffer of ymap::kAddressStatusSize characters for the status; a longer one is cut
YMAP_EXPORT void ymap_xo_ocifip_return_address_state(yfw_map_ctx* ctx, const nidl_yfw_datatree* in,
                                                     char* text);

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IPV6_MA_OPER_H_
