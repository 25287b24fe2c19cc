#include "mapping/read_back.h"

#include <algorithm>

#include "mapping/walked.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceManager = "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg";
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
  request.begin("mapping native data", children_of(container));
  cerrno result = kOk;
  for (const InputNode& child : children_of(container)) {
    if (result == kOk && has_tag(child, kInterfaceConfiguration)) {
      result = map_interface(request, entries, child);
      request.advance();
    }
  }
  return result;
}

}  // namespace

bool ReadBackEntries::take(std::string_view module_namespace, std::string_view tag) const {
  const bool is_interface_table =
      module_namespace == kInterfaceManager && tag == kInterfaceConfigurations;
  return is_interface_table || std::any_of(trees.begin(), trees.end(), [&](const NativeTree& tree) {
           return tree.module_namespace == module_namespace && tree.tag == tag;
         });
}

cerrno read_back(Request& request, const ReadBackEntries& entries) {
  cerrno result = kOk;
  const auto each_root = [&](std::string_view module_namespace, std::string_view tag,
                             const auto& map) {
    for (const InputNode& root : request.input().roots()) {
      if (result == kOk && root.module_namespace == module_namespace && root.tag == tag) {
        result = map(root);
      }
    }
  };
  each_root(kInterfaceManager, kInterfaceConfigurations,
            [&](const InputNode& root) { return map_interfaces(request, entries, root); });
  for (const NativeTree& tree : entries.trees) {
    each_root(tree.module_namespace, tree.tag, [&](const InputNode& root) {
      request.forget_current_entries();
      return tree.enter(request.context(), &root, request.out());
    });
  }
  return result;
}

}  // namespace ocifip
