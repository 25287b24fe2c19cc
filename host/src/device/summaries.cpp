#include "device/summaries.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "device/subinterface_name.h"
#include "io/address_text.h"
#include "io/document_nodes.h"
#include "io/tree_builder.h"

namespace ocifip {
namespace {

constexpr std::string_view kModule = "Halvane-Ombrix-PRIVATE-ocifip-v4ma-oper";
constexpr std::string_view kTop = "ocifipv4ma";

// Completes a summary with addresses.
class SummaryBuilder {
 public:
  SummaryBuilder(const Models& models, DocumentNode top) : models_(models), top_(std::move(top)) {
    for (const DocumentNode& entry : child(top_, "interfaces").children) {
      interfaces_.emplace(key(entry, "name"), interfaces_.size());
    }
    subinterfaces_.resize(interfaces_.size());
  }

  void add(const SubinterfaceName& name, const DeviceAddresses& addresses) {
    DocumentNode& ipv4 = child(subinterface(name), "ipv4");
    if (has_child(ipv4, "addresses")) {
      return;
    }
    DocumentNode& list = child(ipv4, "addresses");
    if (addresses.primary) {
      add_address(list, *addresses.primary);
    }
    for (const DeviceAddress& secondary : addresses.secondaries) {
      add_address(list, secondary);
    }
  }

  DocumentNode finish() { return std::move(top_); }

 private:
  using Positions = std::unordered_map<std::string, std::size_t>;  // of entries, by their key

  static std::string key(const DocumentNode& entry, std::string_view tag) {
    const std::string* value = key_value(entry, tag);
    return value == nullptr ? "" : *value;
  }
  static bool has_child(const DocumentNode& parent, std::string_view tag) {
    return std::any_of(parent.children.begin(), parent.children.end(),
                       [&](const DocumentNode& node) { return node.tag == tag; });
  }

  [[nodiscard]] DocumentNode node(const DocumentNode& parent, std::string_view tag) const {
    return node_of(models_.child(parent.schema, tag, {}));
  }

  // A container, found or made.
  DocumentNode& child(DocumentNode& parent, std::string_view tag) const {
    const auto find = [&] {
      return std::find_if(parent.children.begin(), parent.children.end(),
                          [&](const DocumentNode& child) { return child.tag == tag; });
    };
    if (find() == parent.children.end()) {
      parent.children.push_back(node(parent, tag));
      arrange(parent.children);
    }
    return *find();
  }

  void add_leaf(DocumentNode& parent, std::string_view tag, std::string value) const {
    DocumentNode leaf = node(parent, tag);
    leaf.value = std::move(value);
    parent.children.push_back(std::move(leaf));
  }

  // An entry of a list that has a container of its own, found or made.
  DocumentNode& entry(DocumentNode& container, Positions& positions, std::string_view tag,
                      std::string_view key, const std::string& value) const {
    const auto [known, is_new] = positions.try_emplace(value, container.children.size());
    if (is_new) {
      add_leaf(container.children.emplace_back(node(container, tag)), key, value);
    }
    return container.children[known->second];
  }

  DocumentNode& subinterface(const SubinterfaceName& name) {
    DocumentNode& interfaces = child(top_, "interfaces");
    DocumentNode& interface = entry(interfaces, interfaces_, "interface", "name", name.interface);
    subinterfaces_.resize(interfaces_.size());
    Positions& positions = subinterfaces_[interfaces_.at(name.interface)];
    DocumentNode& subinterfaces = child(interface, "subinterfaces");
    if (positions.empty()) {
      for (const DocumentNode& entry : subinterfaces.children) {
        positions.emplace(key(entry, "index"), positions.size());
      }
    }
    return entry(subinterfaces, positions, "subinterface", "index", name.index);
  }

  void add_address(DocumentNode& list, const DeviceAddress& address) const {
    const std::string text = address_text(AddressFamily::kIpv4, address);
    DocumentNode entry = node(list, "address");
    add_leaf(entry, "ip", text);
    DocumentNode& state = child(entry, "state");
    add_leaf(state, "ip", text);
    add_leaf(state, "prefix-length", std::to_string(address.prefix_length));
    list.children.push_back(std::move(entry));
  }

  const Models& models_;
  DocumentNode top_;
  Positions interfaces_;
  std::vector<Positions> subinterfaces_;  // by the position of their interface
};

}  // namespace

bool is_ipv4_summary(const DocumentNode& root) {
  return root.module == kModule && root.tag == kTop;
}

namespace {

const DocumentNode* given_summary(const DeviceDirectory& device) {
  const Document& native = device.device().native.part({});
  const auto& roots = native.roots;
  const auto given = std::find_if(roots.begin(), roots.end(), is_ipv4_summary);
  return given == roots.end() ? nullptr : &*given;
}

DocumentNode new_summary(const Models& models) {
  return node_of(models.child(nullptr, kTop, models.namespace_of(kModule)));
}

void add_addresses(SummaryBuilder& summary, const InterfaceRecord& interface) {
  if (interface.ipv4.primary || !interface.ipv4.secondaries.empty()) {
    summary.add(subinterface_of(interface.name), interface.ipv4);
  }
}

// What a summary has of some interfaces.
DocumentNode part_of(const DocumentNode& summary, const std::unordered_set<std::string>& names) {
  DocumentNode part = bare(summary);
  for (const DocumentNode& interfaces : summary.children) {
    DocumentNode& list = part.children.emplace_back(bare(interfaces));
    std::copy_if(interfaces.children.begin(), interfaces.children.end(),
                 std::back_inserter(list.children), [&](const DocumentNode& interface) {
                   const std::string* name = key_value(interface, "name");
                   return name != nullptr && names.contains(*name);
                 });
  }
  return part;
}

}  // namespace

DocumentNode ipv4_summary(const Models& models, const DeviceDirectory& device) {
  const DocumentNode* given = given_summary(device);
  SummaryBuilder summary(models, given == nullptr ? new_summary(models) : *given);
  for (const InterfaceRecord& interface : device.interfaces()) {
    add_addresses(summary, interface);
  }
  return summary.finish();
}

DocumentNode ipv4_summary(const Models& models, const DeviceDirectory& device,
                          const std::vector<std::string>& native_names) {
  std::unordered_set<std::string> interfaces;
  std::vector<std::uint32_t> handles;
  for (const std::string& name : native_names) {
    interfaces.insert(subinterface_of(name).interface);
    handles.push_back(device.handle_of(internal_name(name)));
  }
  std::sort(handles.begin(), handles.end());
  handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
  const DocumentNode* given = given_summary(device);
  SummaryBuilder summary(models,
                         given == nullptr ? new_summary(models) : part_of(*given, interfaces));
  for (const std::uint32_t handle : handles) {
    const InterfaceRecord* interface = device.interface(handle);
    if (interface != nullptr) {
      add_addresses(summary, *interface);
    }
  }
  return summary.finish();
}

}  // namespace ocifip
