#include "mapping/coverage.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "device/device_directory.h"
#include "io/device_file.h"
#include "mapping/leaf_probe.h"
#include "mapping/read_back_probe.h"
#include "tree/path_cache.h"
#include "tree/place_paths.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfacesNamespace = "http://openconfig.net/yang/interfaces";

using Nodes = std::vector<const lysc_node*>;

// Calls a function with the path of every leaf at and below the end of a path.
template <class Function>
void for_each_leaf(const Models& models, Nodes& path, const Function& function) {
  if (Models::is_leaf(path.back())) {
    function(SchemaPath(path));
    return;
  }
  for (const lysc_node* child : models.children(path.back())) {
    path.push_back(child);
    for_each_leaf(models, path, function);
    path.pop_back();
  }
}

// The interface without addresses but a leased one, with the probe's as its primary ones, and with
// those beside other primary ones.
std::vector<DeviceDirectory> probe_devices(const Models& models) {
  const std::string name(kProbeInterface);
  const std::string ipv4 = '"' + std::string(kProbeIpv4) + "/24\"";
  const std::string ipv6 = '"' + std::string(kProbeIpv6) + "/64\"";
  const std::string rests[] = {
      // of the device, behind the interface's name
      R"(}],"sysdb":{"/oper/ipv4-io/if/)" + name +
          R"(/0x60000000/1/ifdetail":{"record":"ipv4_if_detail",)" +
          R"("fields":{"PrimaryAddress":"203.0.113.1","PrefixLength":24}}})",
      R"(,"ipv4":{"primary":)" + ipv4 + R"(,"secondaries":["198.51.100.1/24"]},)" +
          R"("ipv6":{"primary":)" + ipv6 + "}}]",
      R"(,"ipv4":{"primary":"198.51.100.1/24","secondaries":[)" + ipv4 +
          R"(]},"ipv6":{"primary":"2001:db8:1::1/64","secondaries":[)" + ipv6 + "]}}]",
  };
  std::vector<DeviceDirectory> devices;
  for (const std::string& rest : rests) {
    devices.emplace_back(read_device(
        models, "probe", R"({"node":"node0_1","interfaces":[{"name":")" + name + '"' + rest + "}"));
  }
  return devices;
}

class CoverageSearch {
 public:
  CoverageSearch(const Models& models, const PluginEntries& plugin, const WriteObserver& written)
      : models_(models),
        plugin_(plugin),
        written_(written),
        paths_(models),
        framework_{models, paths_, plugin.augments},
        probes_(models) {}

  Coverage run() {
    find_leaves();
    for (const DeviceDirectory& device : probe_devices(models_)) {
      const ActiveDevice active(device);
      for (Leaf& leaf : leaves_) {
        leaf.probe.run();
      }
      probe_read_back();
    }
    Coverage coverage;
    for (const Leaf& leaf : leaves_) {
      coverage.leaves.push_back(coverage_of(leaf));
    }
    return coverage;
  }

 private:
  struct Leaf {
    const Place* place;
    LeafProbe probe;
    std::set<const Place*> native;  // that it is read back from
  };

  const Place* place_of(SchemaPath path) {
    const Place* place = paths_.root();
    for (const lysc_node* step : path) {
      place = paths_.child(place, Models::tag(step), Models::module_namespace(step));
    }
    return place;
  }

  // The leaves of whatever other models add to a subinterface.
  void find_leaves() {
    Nodes path;
    for (const char* tag : {"interfaces", "interface", "subinterfaces", "subinterface"}) {
      path.push_back(
          models_.child(path.empty() ? nullptr : path.back(), tag, kInterfacesNamespace));
      if (path.back() == nullptr) {
        return;
      }
    }
    for (const lysc_node* child : models_.children(path.back())) {
      if (Models::module_namespace(child) != kInterfacesNamespace) {
        path.push_back(child);
        for_each_leaf(models_, path, [&](SchemaPath leaf) {
          indexes_.emplace(leaf.back(), leaves_.size());
          leaves_.push_back({place_of(leaf),
                             LeafProbe(framework_, plugin_.openconfig, probes_, leaf, written_),
                             {}});
        });
        path.pop_back();
      }
    }
  }

  void probe_read_back() {
    const ReadBackProbe probe(framework_, plugin_.read_back, probes_);
    for (const lysc_node* root : models_.children(nullptr)) {
      if (!plugin_.read_back.take(Models::module_namespace(root), Models::tag(root))) {
        continue;
      }
      Nodes path = {root};
      for_each_leaf(models_, path, [&](SchemaPath native) {
        for (const WrittenNode& node : probe.written_from(native)) {
          if (written_) {
            written_(node);
          }
          if (const auto index = indexes_.find(node.place->schema); index != indexes_.end()) {
            leaves_[index->second].native.insert(place_of(native));
          }
        }
      });
    }
  }

  static LeafCoverage coverage_of(const Leaf& leaf) {
    LeafCoverage coverage;
    coverage.path = qualified_path(leaf.place);
    coverage.edit = leaf.probe.edit().use();
    coverage.read = leaf.probe.read().use();
    if (LeafUse use = leaf.probe.read_config().use(); use != coverage.read) {
      coverage.read_config = std::move(use);
    }
    if (!leaf.native.empty()) {
      coverage.read_back = {LeafUse::Result::kMapped, qualified_paths(leaf.native), {}};
    }
    return coverage;
  }

  const Models& models_;
  const PluginEntries& plugin_;
  const WriteObserver& written_;
  PathCache paths_;
  Framework framework_;
  Probes probes_;
  std::vector<Leaf> leaves_;                         // in schema order
  std::map<const lysc_node*, std::size_t> indexes_;  // among them
};

}  // namespace

Coverage find_coverage(const Models& models, const PluginEntries& plugin,
                       const WriteObserver& written) {
  return CoverageSearch(models, plugin, written).run();
}

}  // namespace ocifip
