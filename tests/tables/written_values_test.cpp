// The OpenConfig nodes and values that native data is read back as, held against the models.

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

// What is written though the models do not have it, and is meant to be.
const std::set<std::string> kDeviations = {
    // The list is "addresses/address".
    std::string(kSubinterface) + "/ipv4/address/state/ip",
    // The type has "DHCP".
    std::string(kSubinterface) + "/ipv4/addresses/address/state/origin = DYNAMIC",
};

// "" when the models have it.
std::string deviation(const Models& models, const WrittenNode& node) {
  const Place& place = *node.place;
  if (place.schema == nullptr) {
    return place.path;
  }
  if (!Models::is_leaf(place.schema)) {
    return node.value.empty() ? "" : place.path + " = " + node.value;
  }
  const LY_ERR result = lyd_value_validate(models.context(), place.schema, node.value.data(),
                                           node.value.size(), nullptr, nullptr, nullptr);
  // A reference is not followed.
  const bool is_valid = result == LY_SUCCESS || result == LY_EINCOMPLETE;
  return is_valid ? "" : place.path + " = " + node.value;
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
