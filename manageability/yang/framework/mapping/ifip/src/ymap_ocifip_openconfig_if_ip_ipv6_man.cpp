// IPv6 addresses, enabling and router advertisement of a subinterface to the native IPv6
// configuration, as far as rows do not say it. The native model keeps addresses in one flat list,
// as OpenConfig does.

#include <array>
#include <cstdint>

#include "text/bounded_text.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_paths.h"
#include "ymap_request.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

namespace {

#define RA_INTERVAL YMAP_IPV6_NEIGHBOR "/ra-interval"

}  // namespace

// --- addresses -----------------------------------------------------------------------------------

YMAP_CONTAINER(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv6_addresses) {
  constexpr const char* kPath = YMAP_IPV6_NETWORK "/addresses/regular-addresses";
  if (is_read(call.ctx)) {
    return add_path(call, kNamespaceIpv6MaCfg, {.path = kPath, .value = call.in->value});
  }
  // A replace of the list is one of the native list, also by nothing; otherwise a write without
  // addresses says nothing.
  const bool says_nothing = call.child_count == 0 && !is_delete(*call.in) &&
                            call.in->edit_operation != NIDL_YFW_EDIT_REPLACE;
  return says_nothing ? YMAP_OK
                      : add_path(call, kNamespaceIpv6MaCfg, {.path = kPath, .source = call.in});
}

YMAP_LIST_ENTRY(ymap_ox_ocifip_openconfigifip_list_lvla_ipv6_addresses_address) {
  if (is_read(call.ctx)) {
    return YMAP_OK;
  }
  const NewListEntries new_entries(call.ctx);
  return add_path(call, kNamespaceIpv6MaCfg,
                  {.path = YMAP_IPV6_REGULAR_ADDRESS,
                   .source = is_delete(*call.in) ? call.in : nullptr,
                   .create = true});
}

YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv6_address_ip) {
  NativeName name;  // not used, but one that does not fit fails the request
  if (const cerrno result = native_interface_name(call.ctx, call.name, name); result != YMAP_OK) {
    return result;
  }
  // A delete names the address, too.
  return add_path(call, kNamespaceIpv6MaCfg,
                  {.path = YMAP_IPV6_REGULAR_ADDRESS "/address",
                   .value = call.in->value,
                   .source = is_read(call.ctx) ? nullptr : call.in});
}

// --- auto-configuration --------------------------------------------------------------------------

// IPv6 is enabled by stateless auto-configuration, and "false" does not switch that off,
// deliberately: a delete does.
YMAP_LEAF(ymap_ox_ocifip_openconfigifip_leaf_lvlb_ipv6_config_enabled) {
  constexpr const char* kPath = YMAP_IPV6_NETWORK "/addresses/auto-configuration/enable";
  if (is_read(call.ctx)) {
    return add_path(call, kNamespaceIpv6MaCfg, {.path = kPath});
  }
  return is_delete(*call.in) || yfw_map_do_these_match(call.in->value, "true") != 0
             ? add_path(call, kNamespaceIpv6MaCfg, {.path = kPath, .source = call.in})
             : YMAP_OK;
}

// --- router advertisement ------------------------------------------------------------------------

namespace {

// Seconds between two advertisements at most (RFC 4861 has the same limits for
// MaxRtrAdvInterval).
constexpr Bounds kInterval = {4, 1800, "interval is not in the supported range."};

// The native model has a minimum, too: a third of the maximum, or the maximum itself below nine
// seconds, deliberately.
constexpr std::uint32_t least_interval(std::uint32_t greatest) {
  return greatest >= 9 ? greatest / 3 : greatest;
}

using NumberText = std::array<char, 10>;

NumberText text_of(std::uint32_t number) {
  NumberText text{};
  itoa(static_cast<int>(number), text.data(), 10);
  return text;
}

}  // namespace

YMAP_LEAF(ymap_ox_ipv6_router_advertisement_interval) {
  if (is_read(call.ctx)) {
    return add_path(call, kNamespaceIpv6NdCfg,
                    {.path = RA_INTERVAL "/maximum", .value = call.in->value});
  }
  if (is_delete(*call.in)) {
    return add_path(call, kNamespaceIpv6NdCfg, {.path = RA_INTERVAL, .source = call.in});
  }
  const std::uint32_t interval = number_of(call.in->value);
  if (!kInterval.allow(interval)) {
    return refuse_value(call.ctx, kInterval.refusal);
  }
  const NumberText maximum = text_of(interval);
  const NumberText minimum = text_of(least_interval(interval));
  return add_all(call, kNamespaceIpv6NdCfg,
                 {{.path = RA_INTERVAL "/maximum", .value = maximum.data(), .source = call.in},
                  {.path = RA_INTERVAL "/minimum", .value = minimum.data(), .source = call.in}});
}
