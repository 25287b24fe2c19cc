#include "mapping/device_check.h"

#include <algorithm>
#include <utility>

#include "device/subinterface_name.h"
#include "io/check_data.h"
#include "io/device_file.h"
#include "io/document_nodes.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

// Whether a node stands for all interfaces: their container, with an operation or with nothing
// below it, or an entry that lacks its name.
bool is_of_all(const DocumentNode& node) {
  if (is_named(node, kInterfacesModule, "interface")) return key_value(node, "name") == nullptr;
  if (!is_named(node, kInterfacesModule, "interfaces")) return false;
  return node.operation || node.children.empty() ||
         std::any_of(node.children.begin(), node.children.end(), is_of_all);
}

// The interfaces and subinterfaces that a request may be about: those that it is of, and what the
// device knows of those that it names.
class ConcernedInterfaces {
 public:
  ConcernedInterfaces(const DeviceDirectory& device, const Document& request) : device_(device) {
    for (const DocumentNode& root : request.roots) add_named(root);
  }

  InterfaceNames names() { return std::move(names_); }

 private:
  void add_named(const DocumentNode& node) {
    if (is_named(node, kInterfacesModule, "interface")) {
      add_interface(node);
    } else if (node.value && device_.knows(*node.value)) {
      names_.add(*node.value);
    }
    for (const DocumentNode& child : node.children) add_named(child);
  }

  // Of its subinterfaces those that are named, and all when not all are that it may be about.
  void add_interface(const DocumentNode& interface) {
    const std::string* name = key_value(interface, "name");
    if (name == nullptr) return;
    bool is_about_all = interface.operation || has_only_keys(interface);
    for (const DocumentNode& child : interface.children) {
      if (!is_named(child, kInterfacesModule, "subinterfaces")) continue;
      is_about_all = is_about_all || child.operation || child.children.empty();
      for (const DocumentNode& subinterface : child.children) {
        const std::string* index = key_value(subinterface, "index");
        is_about_all = is_about_all || index == nullptr;
        if (index != nullptr) names_.add(native_name(*name, *index));
      }
    }
    names_.add(*name);
    if (is_about_all) names_.add_all_of(*name);
  }

  const DeviceDirectory& device_;
  InterfaceNames names_;
};

}  // namespace

void DeviceCheck::check(const Document& request) {
  if (accepted_.is_all) return;
  const NativeConfiguration& native = device_.device().native;
  if (std::any_of(request.roots.begin(), request.roots.end(), is_of_all) ||
      has_far_constraints(models_, native.part({}))) {
    check_configuration(models_, native);
    accepted_.is_all = true;
    return;
  }
  const InterfaceNames interfaces = ConcernedInterfaces(device_, request).names();
  if (accepted_.has_shared && accepted_.interfaces.contains(interfaces)) return;
  check_part(interfaces);
  accepted_.interfaces.add(interfaces);
  accepted_.has_shared = true;
}

// What the models accept needs no lines.
void DeviceCheck::check_part(const InterfaceNames& interfaces) const {
  const NativeConfiguration& native = device_.device().native;
  if (check_data(models_, part_of(native.part(interfaces), interfaces))) {
    check_native(models_, part_of(native.with_lines(), interfaces));
  }
}

}  // namespace ocifip
