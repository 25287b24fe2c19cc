#include "mapping/device_check.h"

#include <algorithm>

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

}  // namespace

void DeviceCheck::check(const Document& request) {
  if (is_all_accepted_) return;
  const Document& native = device_.device().native;
  if (std::any_of(request.roots.begin(), request.roots.end(), is_of_all) ||
      has_far_constraints(models_, native)) {
    check_native(models_, native);
    is_all_accepted_ = true;
    return;
  }
  InterfaceNames concerned;
  add_mentioned(request.roots, concerned);
  std::erase_if(concerned, [this](const std::string& name) { return accepted_.contains(name); });
  if (concerned.empty() && !accepted_.empty()) return;
  check_native(models_, part_of(native, concerned));
  accepted_.merge(concerned);
}

}  // namespace ocifip
