#include "device/subinterface_name.h"

#include <cstdlib>

#include "io/document_nodes.h"

namespace ocifip {
namespace {

void collect(const std::vector<DocumentNode>& nodes, const std::string* interface,
             std::vector<SubinterfaceName>& names) {
  for (const DocumentNode& node : nodes) {
    if (node.tag == "interface") {
      collect(node.children, key_value(node, "name"), names);
    } else if (node.tag == "interfaces" || node.tag == "subinterfaces") {
      collect(node.children, interface, names);
    } else if (node.tag == "subinterface" && interface != nullptr) {
      const std::string* index = key_value(node, "index");
      if (index != nullptr) {
        names.push_back({*interface, *index});
      }
    }
  }
}

}  // namespace

std::string native_name(std::string_view interface, std::string_view index) {
  std::string name(interface);
  if (!name.empty() && std::strtol(std::string(index).c_str(), nullptr, 10) > 0) {
    name.append(".").append(index);
  }
  return name;
}

SubinterfaceName subinterface_of(std::string_view native_name) {
  const std::size_t dot = native_name.find('.');
  const bool has_index = dot != std::string_view::npos;
  return {std::string(native_name.substr(0, dot)),
          has_index ? std::string(native_name.substr(dot + 1)) : "0"};
}

std::vector<SubinterfaceName> subinterfaces_in(const std::vector<DocumentNode>& trees) {
  std::vector<SubinterfaceName> names;
  for (const DocumentNode& tree : trees) {
    // OpenConfig's own tree has no top above "interfaces".
    collect(tree.children, nullptr, names);
  }
  return names;
}

}  // namespace ocifip
