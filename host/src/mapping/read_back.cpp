#include "mapping/read_back.h"

#include <string_view>

#include "mapping/walked.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceConfigurations = "interface-configurations";
constexpr std::string_view kInterfaceConfiguration = "interface-configuration";

constexpr WalkedList kInterfaceList = {"/interface-configurations/interface-configuration",
                                       "interface-name"};

bool has_tag(const InputNode& node, std::string_view tag) {
  return node.tag != nullptr && node.tag == tag;
}

// Each entry is mapped on its own: what an earlier one made current is not this one's.
cerrno map_interface(Request& request, const ReadBackEntries& entries, const InputNode& entry) {
  request.forget_current_entries();
  cerrno result = kOk;
  for (std::size_t i = 0; i < entries.interface_configuration.size() && result == kOk; ++i) {
    const auto map = [&] {
      return entries.interface_configuration[i](request.context(), &entry, request.out());
    };
    if (i == 0) {
      // The list's own walker makes the entry current by itself.
      result = map();
    } else {
      const Walked walked(request, entry, kInterfaceList);
      result = map();
    }
  }
  return result;
}

cerrno map_interfaces(Request& request, const ReadBackEntries& entries,
                      const InputNode& container) {
  const Walked walked(request, container);
  cerrno result = kOk;
  for (const InputNode& child : children_of(container)) {
    if (result == kOk && has_tag(child, kInterfaceConfiguration)) {
      result = map_interface(request, entries, child);
    }
  }
  return result;
}

}  // namespace

cerrno read_back(Request& request, const ReadBackEntries& entries) {
  cerrno result = kOk;
  for (const InputNode& root : request.input().roots()) {
    if (result != kOk) {
      break;
    }
    result = has_tag(root, kInterfaceConfigurations)
                 ? map_interfaces(request, entries, root)
                 : entries.global_interface_configuration(request.context(), &root, request.out());
  }
  return result;
}

}  // namespace ocifip
