// Native ARP configuration to OpenConfig: static entries to neighbors, of every VRF alike, and the
// two switches of answers for others to one mode.

#include "ymap_neighbors.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_cfg.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

constexpr std::size_t kLongestSwitch = 10;

// A switch of the interface's; a set one is the empty text, one that is not there is null.
struct Switch {
  explicit Switch(const Call& call, const char* leaf) : key(entry_key(call, YMAP_IPV4_ARP, leaf)) {}

  [[nodiscard]] bool is_set() const { return is_same_word(key.value, "", kLongestSwitch); }

  EntryKey key;
};

// Local answers alone do not count, deliberately.
const char* mode_of(const Switch& proxy, const Switch& local_proxy) {
  if (!proxy.is_set()) {
    return "DISABLE";
  }
  return local_proxy.is_set() ? "ALL" : "REMOTE_ONLY";
}

}  // namespace

YMAP_LIST_ENTRY(ymap_xo_ocifip_halvaneombrixipv4arpcfg_list_lvla_arpgmp_entries_entry) {
  return place_ipv4_neighbor(call, YMAP_STATIC_ARP, "interface");
}

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixipv4arpcfg_man_leaf_lvla_proxy_arp_mode) {
  const Switch local_proxy(call, "local-proxy-arp");
  const Switch proxy(call, "proxy-arp");
  if (proxy.key.result == YMAP_OK) {
    // The result is the lookup's alone, by design.
    add_twins(call, YMAP_TWINS_AT(YMAP_SUBINTERFACE "/ipv4/proxy-arp", "mode"),
              mode_of(proxy, local_proxy));
  }
  return proxy.key.result;
}
