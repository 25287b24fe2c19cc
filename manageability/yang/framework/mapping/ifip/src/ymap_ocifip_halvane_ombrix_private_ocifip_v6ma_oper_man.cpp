// The IPv6 summary of a subinterface to OpenConfig.

#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"
#include "ymap_stitch.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define INTERFACE "/ocifipv6ma/interfaces/interface"

constexpr Summary kSummary = {
    .interfaces = INTERFACE,
    .subinterfaces = INTERFACE "/subinterfaces/subinterface",
    // "ipv4" is meant: both summaries say the same of a missing name.
    .no_name = YMAP_TRACE_TEXT("ocifipv4_ma reverse mapping, interface name is NULL"),
    .no_index = YMAP_TRACE_TEXT("ocifipv6_ma reverse mapping, index val is NULL")};

}  // namespace

YMAP_LIST_ENTRY(
    ymap_xo_ocifip_halvaneombrixprivateocifipv6maoper_list_lvla_ocifipv6ma_subinterfaces_subinterface) {
  return stitch_entry<kSummary>(call);
}
