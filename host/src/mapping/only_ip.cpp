#include "mapping/only_ip.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "io/data_path.h"
#include "io/document_nodes.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

constexpr std::string_view kVlanModule = "openconfig-vlan";
constexpr std::string_view kTunnelModule = "openconfig-if-tunnel";

bool is_ip_module(std::string_view module) {
  return module == kIpModule || module == "openconfig-if-ip-ext";
}

bool is_own(const DocumentNode& node, std::string_view tag) {
  return is_named(node, kInterfacesModule, tag);
}

class Filter {
 public:
  Filter(bool is_query, PassedOver& passed_over) : is_query_(is_query), passed_over_(passed_over) {}

  void filter(std::vector<DocumentNode>& nodes) {
    std::erase_if(nodes, [this](DocumentNode& node) { return !stays(node); });
  }

 private:
  // Whether a node below those of path_ is of interface IP, or leads to what is.
  [[nodiscard]] bool belongs(const DocumentNode& node) const {
    if (path_.empty()) return is_own(node, "interfaces");
    const DocumentNode& parent = *path_.back();
    if (is_own(parent, "interfaces")) return is_own(node, "interface");
    if (is_own(parent, "interface")) return belongs_to_interface(node);
    if (is_own(parent, "subinterfaces")) return is_own(node, "subinterface");
    if (is_own(parent, "subinterface")) {
      return is_own(node, "index") || repeats_key(node) || is_ip_module(node.module);
    }
    if (is_own(parent, "config")) return is_own(node, key_of(*path_[path_.size() - 2]));
    if (is_named(parent, kTunnelModule, "tunnel")) return node.tag == "ipv4" || node.tag == "ipv6";
    return is_ip_module(node.module) || (is_in_tunnel() && node.module == kTunnelModule);
  }

  // The settings of an entry, which an edit may give. A query of them asks for the entry itself,
  // and a deletion is one of more than the key.
  [[nodiscard]] bool repeats_key(const DocumentNode& node) const {
    return is_own(node, "config") && !is_query_ && !is_deleted(node);
  }

  [[nodiscard]] bool belongs_to_interface(const DocumentNode& node) const {
    return is_own(node, "name") || repeats_key(node) || is_own(node, "subinterfaces") ||
           is_named(node, kVlanModule, "routed-vlan") || is_named(node, kTunnelModule, "tunnel");
  }

  static std::string_view key_of(const DocumentNode& entry) {
    return is_own(entry, "interface") ? "name" : "index";
  }

  [[nodiscard]] bool is_in_tunnel() const {
    return std::any_of(path_.begin(), path_.end(), [](const DocumentNode* node) {
      return is_named(*node, kTunnelModule, "tunnel");
    });
  }

  // A family that no model knows is misspelt, and the check against the models says so.
  static bool is_misspelt(const DocumentNode& node) {
    return node.schema == nullptr && (node.tag == "ipv4" || node.tag == "ipv6");
  }

  bool stays(DocumentNode& node) {
    if (is_misspelt(node)) return true;
    const bool belongs_here = belongs(node);
    path_.push_back(&node);
    if (!belongs_here) {
      if (passed_over_.count == 0) passed_over_.first = instance_path(path_);
      passed_over_.count += 1;
    }
    const bool result = belongs_here && (node.children.empty() || !is_emptied(node));
    path_.pop_back();
    return result;
  }

  // Filters what is below a node, and returns whether that leaves the node without meaning.
  bool is_emptied(DocumentNode& node) {
    const auto count = node.children.size();
    filter(node.children);
    if (node.children.size() == count) return false;
    const bool is_bare = std::all_of(node.children.begin(), node.children.end(),
                                     [](const DocumentNode& child) { return is_key(child); });
    return is_bare && (is_query_ || (node.kind != NodeKind::kList && !node.operation));
  }

  bool is_query_;
  PassedOver& passed_over_;
  std::vector<const DocumentNode*> path_;
};

}  // namespace

void keep_only_ip(Document& document, bool is_query, PassedOver& passed_over) {
  Filter(is_query, passed_over).filter(document.roots);
}

}  // namespace ocifip
