// The proxy-ARP mode of a subinterface to the two switches of the native model.

#include <array>
#include <cstdio>

#include "sysdb/sysdb.h"
#include "yfw_map_ifip_util.h"
#include "ymap_database.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_paths.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define CONFIGURED "/cfg/if/act/"

// A switch of the native model, and its item in the database below the interface's name.
struct Switch {
  const char* path;
  const char* item_format;
};
constexpr Switch kProxyArp = {YMAP_IPV4_ARP "/proxy-arp", "%s/ipv4/arp/proxy-arp"};
constexpr Switch kLocalProxyArp = {YMAP_IPV4_ARP "/local-proxy-arp", "%s/ipv4/arp/local-proxy-arp"};

constexpr std::size_t kLongestMode = 12;

cerrno add_switch(const Call& call, const Switch& native, const char* value, const Node* source) {
  return add_path(
      call, kNamespaceIpv4ArpCfg,
      {.path = native.path, .value = value, .source = source, .flags = YFW_MAP_PATH_PLAIN});
}

// Any other mode, "DISABLE" among them, writes nothing, deliberately: a delete disables.
cerrno write_mode(const Call& call) {
  const bool is_all = is_same_word(call.in->value, "ALL", kLongestMode);
  if (!is_all && !is_same_word(call.in->value, "REMOTE_ONLY", kLongestMode)) {
    return YMAP_OK;
  }
  const cerrno result = add_switch(call, kProxyArp, "", call.in);
  return result != YMAP_OK || !is_all ? result : add_switch(call, kLocalProxyArp, "", call.in);
}

// Deletes a switch that is configured. A failed read of the database is told, and no failure.
cerrno delete_configured(const Call& call, sysdb_handle* database, const DatabaseName& ifname,
                         const Switch& native) {
  std::array<char, 256> path;
  std::snprintf(path.data(), path.size(), native.item_format, ifname.text());
  DatabaseItem item;
  const cerrno found = item.read(database, path.data());
  if (found == YMAP_OK) {
    return add_switch(call, native, nullptr, call.in);
  }
  if (found != SYSDB_ITEM_NOT_FOUND) {
    YMAP_ERROR(call, "Unable to find items in Sysdb: path:%s, error:0x%x", CONFIGURED, found);
  }
  return YMAP_OK;
}

// Deletes what is configured of the interface itself, whatever the index of the subinterface,
// deliberately; the delete is written to the subinterface's own entry.
cerrno delete_mode(const Call& call) {
  const yfw_map_request_state* state = call.ctx->request_state;
  const char* interface = state != nullptr ? state->current_ifname : "";
  sysdb_handle* database = nullptr;
  const BoundDatabase bound(database, CONFIGURED, SYSDB_BIND_READ);
  if (bound.result() != YMAP_OK) {
    return bind_failed(call, interface, bound.result());
  }
  const DatabaseName ifname(interface);
  const cerrno result = delete_configured(call, database, ifname, kProxyArp);
  return result != YMAP_OK ? result : delete_configured(call, database, ifname, kLocalProxyArp);
}

}  // namespace

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_man_leaf_lvla_ipv4_arp_proxy_arp) {
  if (is_edit(call.ctx)) {
    return is_delete(*call.in) ? delete_mode(call) : write_mode(call);
  }
  const cerrno result = add_switch(call, kProxyArp, call.in->value, nullptr);
  return result != YMAP_OK ? result : add_switch(call, kLocalProxyArp, call.in->value, nullptr);
}
