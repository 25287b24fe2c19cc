// The nodes and values that the plug-in writes and asks for, in both directions, held against the
// models: a path that no model has would be written, and nobody would notice.

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <set>
#include <string>
#include <string_view>

#include "io/libyang_log.h"
#include "mapping/coverage.h"
#include "mapping/plugin.h"

namespace ocifip {
namespace {

constexpr std::string_view kSubinterface = "/interfaces/interface/subinterfaces/subinterface";

#define IPV6_ROUTER "/vrrp/interfaces/interface/ipv6/version3/virtual-routers/virtual-router"

// Where any word comes through, and what stands for those that the type does not have.
const std::set<std::string> kAsTheyCome = {
    std::string(kSubinterface) + "/index",
    std::string(kSubinterface) + "/ipv6/addresses/address/state/status",
    IPV6_ROUTER "/global-ipv6-addresses/global-ipv6-address/ip-address",
    IPV6_ROUTER "/link-local-ipv6-address/ip-address"};
constexpr const char* kAnyWord = "(any word)";

// What is written though the models do not have it, and is meant to be.
const std::set<std::string> kDeviations = {
    // The list is "addresses/address".
    std::string(kSubinterface) + "/ipv4/address/state/ip",
    // The type has "DHCP".
    std::string(kSubinterface) + "/ipv4/addresses/address/state/origin = DYNAMIC",
    // A Boolean has no upper case.
    std::string(kSubinterface) + "/ipv6/autoconf/config/create-global-addresses = TRUE",
    std::string(kSubinterface) + "/ipv6/autoconf/state/create-global-addresses = TRUE",
    std::string(kSubinterface) + "/ipv6/neighbors/neighbor/state/is-router = TRUE",
    std::string(kSubinterface) + "/ipv6/neighbors/neighbor/state/is-router = FALSE",
    // Native states that the mapping does not translate.
    std::string(kSubinterface) + "/ipv6/addresses/address/state/status = " + kAnyWord,
    // What follows the first dot of a native name, whatever it is.
    std::string(kSubinterface) + "/index = " + kAnyWord,
    // The model has one type for addresses of both families, and the mapping does not look at them.
    std::string(IPV6_ROUTER "/global-ipv6-addresses/global-ipv6-address/ip-address = ") + kAnyWord,
    std::string(IPV6_ROUTER "/link-local-ipv6-address/ip-address = ") + kAnyWord,
};

bool is_openconfig(const Place& place) { return place.module.starts_with("openconfig-"); }

// "" when the models have it.
std::string deviation(const Models& models, const WrittenNode& node) {
  const Place& place = *node.place;
  if (place.schema == nullptr) {
    return place.path;
  }
  if (!Models::is_leaf(place.schema)) {
    return node.value.empty() ? "" : place.path + " = " + node.value;
  }
  if (!is_openconfig(place) && node.value.empty()) {
    return "";  // a query, or a deletion
  }
  const LY_ERR result = lyd_value_validate(models.context(), place.schema, node.value.data(),
                                           node.value.size(), nullptr, nullptr, nullptr);
  // A reference is not followed.
  const bool is_valid = result == LY_SUCCESS || result == LY_EINCOMPLETE;
  const std::string value = kAsTheyCome.contains(place.path) ? kAnyWord : node.value;
  return is_valid ? "" : place.path + " = " + value;
}

TEST(Written, IsWhatTheModelsHave) {
  const Models models(OCIFIP_MODELS_DIR);
  const QuietLog quiet;
  const Plugin plugin(OCIFIP_PLUGIN);
  std::set<std::string> deviations;
  find_coverage(models, plugin.entries(),
                [&](const WrittenNode& node) { deviations.insert(deviation(models, node)); });
  deviations.erase("");
  EXPECT_EQ(deviations, kDeviations);
}

}  // namespace
}  // namespace ocifip
