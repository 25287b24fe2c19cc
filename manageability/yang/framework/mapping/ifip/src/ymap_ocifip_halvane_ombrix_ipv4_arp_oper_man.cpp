// The ARP tables of the device's nodes to OpenConfig, as far as a copy of the value is not enough.
// Of an entry that several nodes have there is one neighbor.

#include <array>

#include "yfw_map_ifip_util.h"
#include "ymap_neighbors.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_oper.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

// Room for the state of an entry.
using StateText = std::array<char, 50>;

constexpr Word kOriginWords[] = {{"state-static", "STATIC"}, {"state-dynamic", "DYNAMIC"}};
constexpr Words kOrigins = {kOriginWords, StateText().size()};

}  // namespace

YMAP_LIST_ENTRY(ymap_xo_ocifip_halvaneombrixipv4arpoper_list_lvla_arp_entries_entry) {
  return place_ipv4_neighbor(call, YMAP_ARP_ENTRY, "interface-name");
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4arpoper_man_leaf_lvla_arp_entry_state) {
  StateText state{};
  const cerrno result =
      copy_reported(call.ctx, call.name, state, call.in->value, state.size(), __LINE__);
  if (result != YMAP_OK || state[0] == '\0') {
    return result;
  }
  const char* origin = translate(kOrigins, state.data());
  return add_openconfig(call, YMAP_NEIGHBOR("ipv4") "/state/origin",
                        origin == nullptr ? "OTHER" : origin);
}
