#include "mapping/configuration_changes.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "device/subinterface_name.h"
#include "io/data_path.h"
#include "io/difference.h"
#include "io/document_nodes.h"
#include "io/native_configuration.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;

// Subinterfaces that are read together.
constexpr std::size_t kMostAtOnce = 200;

const Nodes kNothing;

// The nodes of a difference, given its first state.
class ChangeList {
 public:
  explicit ChangeList(std::vector<ChangedNode>& changes) : changes_(changes) {}

  void add(const Nodes& difference, const Nodes& before) {
    const Siblings former(before);
    for (const DocumentNode& node : difference) {
      if (is_key(node)) continue;
      path_.push_back(&node);
      add_node(node, former.find(node));
      path_.pop_back();
    }
  }

 private:
  void add_node(const DocumentNode& node, const DocumentNode* former) {
    using Kind = ChangedNode::Kind;
    if (is_deleted(node)) {
      add(Kind::kDeleted);
    } else if (!is_inner(node)) {
      add(former == nullptr ? Kind::kCreated : Kind::kChanged);
    } else if (former != nullptr || is_plain_container(node)) {
      add(node.children, former == nullptr ? kNothing : former->children);
    } else {
      add(Kind::kCreated);
    }
  }

  void add(ChangedNode::Kind kind) { changes_.push_back({kind, data_path(path_)}); }

  std::vector<ChangedNode>& changes_;
  std::vector<const DocumentNode*> path_;
};

// The native names of the interfaces whose entries are among nodes or below them, each once.
class EntryNames {
 public:
  void add(const Nodes& nodes) {
    for (const DocumentNode& node : nodes) {
      const std::string* key = interface_key(node.schema);
      const std::string* name = key == nullptr ? nullptr : key_value(node, *key);
      if (name != nullptr && known_.insert(*name).second) names_.push_back(*name);
      add(node.children);
    }
  }

  [[nodiscard]] const std::vector<std::string>& names() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> known_;
};

// The interfaces that a device has, by the names of OpenConfig.
std::unordered_set<std::string> interfaces_of(const DeviceView& view) {
  std::unordered_set<std::string> interfaces;
  for (const std::string& name : view.device.interface_names()) {
    interfaces.insert(subinterface_of(name).interface);
  }
  return interfaces;
}

// What OpenConfig shows of the configuration of subinterfaces.
class ShownConfiguration {
 public:
  ShownConfiguration(const Models& models, DeviceView& view)
      : models_(models), view_(view), interfaces_(interfaces_of(view)) {}

  Document read(const std::vector<SubinterfaceName>& names) {
    Document shown = view_.mapper.configuration_of(names);
    add_interfaces(names, shown);
    return shown;
  }

 private:
  // An interface is there, also when none of these subinterfaces is.
  void add_interfaces(const std::vector<SubinterfaceName>& names, Document& shown) const {
    const lysc_node* schema =
        models_.child(nullptr, "interfaces", models_.namespace_of(kInterfacesModule));
    if (shown.roots.empty()) shown.roots.push_back(node_of(schema));
    auto& entries = shown.roots.front().children;
    std::unordered_set<std::string> known;
    for (const DocumentNode& entry : entries) {
      if (const std::string* name = key_value(entry, "name")) known.insert(*name);
    }
    const lysc_node* list = models_.child(schema, "interface", {});
    for (const SubinterfaceName& each : names) {
      if (!interfaces_.contains(each.interface) || !known.insert(each.interface).second) continue;
      DocumentNode& entry = entries.emplace_back(node_of(list));
      entry.children.push_back(node_of(models_.child(list, "name", {})));
      entry.children.back().value = each.interface;
    }
  }

  const Models& models_;
  DeviceView& view_;
  std::unordered_set<std::string> interfaces_;
};

}  // namespace

std::vector<ChangedNode> find_changes(const Models& models, DeviceView& before, DeviceView& after) {
  std::vector<ChangedNode> changes;
  const Document& former = before.device.device().native.whole();
  const Document native = difference(former, after.device.device().native.whole());
  ChangeList list(changes);
  list.add(native.roots, former.roots);

  EntryNames concerned;
  concerned.add(native.roots);
  ShownConfiguration shown_before(models, before);
  ShownConfiguration shown_after(models, after);
  std::vector<SubinterfaceName> names;
  const auto add_shown = [&] {
    const Document old = shown_before.read(names);
    list.add(difference(old, shown_after.read(names)).roots, old.roots);
    names.clear();
  };
  for (const std::string& name : concerned.names()) {
    SubinterfaceName subinterface = subinterface_of(name);
    // OpenConfig has no other indexes.
    if (subinterface.index.find_first_not_of("0123456789") != std::string::npos) continue;
    names.push_back(std::move(subinterface));
    if (names.size() == kMostAtOnce) add_shown();
  }
  if (!names.empty()) add_shown();
  return changes;
}

}  // namespace ocifip
