#include "mapping/subinterfaces.h"

#include <string_view>

namespace ocifip {
namespace {

constexpr std::string_view kNamespace = "http://openconfig.net/yang/interfaces";
constexpr std::string_view kInterfaces = "/interfaces/interface";
constexpr std::string_view kSubinterfaces = "/subinterfaces/subinterface";

// The entry that a path below a node ends at, with its key.
OutputNode* enter(Request& request, OutputNode* parent, std::string_view path,
                  std::string_view key) {
  const Steps steps = request.paths().resolve(parent->place, path, kNamespace);
  for (const Place* container : steps.first(steps.size() - 1)) {
    parent = request.output().child(parent, container);
  }
  OutputNode* entry = request.output().entry(parent, steps.back(), {&key, 1});
  OutputTree::show(entry);
  return entry;
}

}  // namespace

void enter_subinterfaces(Request& request, const std::vector<SubinterfaceName>& names) {
  for (const auto& [interface, index] : names) {
    OutputNode* entry = enter(request, request.output().root(), kInterfaces, interface);
    enter(request, entry, kSubinterfaces, index);
  }
}

}  // namespace ocifip
