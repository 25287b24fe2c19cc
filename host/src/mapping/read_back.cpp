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

bool has_tree(const std::vector<NativeTree>& trees, std::string_view module_namespace,
              std::string_view tag) {
  return std::any_of(trees.begin(), trees.end(), [&](const NativeTree& tree) {
    return tree.module_namespace == module_namespace && tree.tag == tag;
  });
}

// Hands top-level nodes to what takes them, until one fails.
class ReadBack {
 public:
  ReadBack(Request& request, const ReadBackEntries& entries)
      : request_(request), entries_(entries) {}

  cerrno run() {
    map_trees(entries_.summaries);
    each_root(kInterfaceManager, kInterfaceConfigurations,
              [&](const InputNode& root) { return map_interfaces(request_, entries_, root); });
    map_trees(entries_.trees);
    return result_;
  }

 private:
  template <class Map>
  void each_root(std::string_view module_namespace, std::string_view tag, const Map& map) {
    for (const InputNode& root : request_.input().roots()) {
      if (result_ == kOk && root.module_namespace == module_namespace && root.tag == tag) {
        result_ = map(root);
      }
    }
  }

  void map_trees(const std::vector<NativeTree>& trees) {
    for (const NativeTree& tree : trees) {
      each_root(tree.module_namespace, tree.tag, [&](const InputNode& root) {
        request_.forget_current_entries();
        return tree.enter(request_.context(), &root, request_.out());
      });
    }
  }

  Request& request_;
  const ReadBackEntries& entries_;
  cerrno result_ = kOk;
};

}  // namespace

bool ReadBackEntries::take(std::string_view module_namespace, std::string_view tag) const {
  return (module_namespace == kInterfaceManager && tag == kInterfaceConfigurations) ||
         has_tree(summaries, module_namespace, tag) || has_tree(trees, module_namespace, tag);
}

cerrno read_back(Request& request, const ReadBackEntries& entries) {
  return ReadBack(request, entries).run();
}

}  // namespace ocifip
