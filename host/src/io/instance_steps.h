// Paths with keys, as mappings write them: "/interfaces/interface[name=Eth1]/subinterfaces".
#ifndef OCIFIP_HOST_IO_INSTANCE_STEPS_H_
#define OCIFIP_HOST_IO_INSTANCE_STEPS_H_

#include <optional>
#include <string_view>
#include <vector>

namespace ocifip {

struct KeyPredicate {
  std::string_view key;
  std::string_view value;
};

struct InstanceStep {
  std::string_view tag;
  std::vector<KeyPredicate> keys;
};

// Splits a path. Values stand with or without quotes and may hold "/"; a "/" may end the path.
// Nothing when the path is malformed.
std::optional<std::vector<InstanceStep>> split_instance_path(std::string_view path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_INSTANCE_STEPS_H_
