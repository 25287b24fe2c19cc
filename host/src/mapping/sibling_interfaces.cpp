// The sibling plug-in's part, for yfw/interfaces_mapping.h: walks interfaces down to the IP of
// subinterfaces and of routed VLANs, and hands that to the plug-in. Nothing of the interface itself
// is mapped here.
#include <algorithm>
#include <string>
#include <string_view>

#include "guarded.h"
#include "mapping/extended_ipv6.h"
#include "mapping/walked.h"
#include "request/request.h"
#include "result_codes.h"
#include "tree/operations.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/mapping.h"
#include "yfw/stack.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfacesNamespace = "http://openconfig.net/yang/interfaces";
constexpr std::string_view kIpNamespace = "http://openconfig.net/yang/interfaces/ip";
constexpr std::string_view kVlanNamespace = "http://openconfig.net/yang/vlan";

constexpr WalkedList kInterfaceList = {"/oc-if:interfaces/oc-if:interface", "name"};
constexpr WalkedList kSubinterfaceList = {
    "/oc-if:interfaces/oc-if:interface/oc-if:subinterfaces/oc-if:subinterface", "index"};

constexpr const char* kOnlyIp = "only IP on subinterfaces is mapped";
constexpr const char* kNoWholeDelete =
    "an interface or its subinterfaces cannot be deleted as a whole; delete single subinterfaces, "
    "or IP below them";

bool is(const InputNode& node, std::string_view module_namespace, std::string_view tag) {
  return node.tag != nullptr && node.module_namespace != nullptr &&
         node.module_namespace == module_namespace && node.tag == tag;
}

bool is_deleted(const InputNode& node) { return yfw_map_is_request_delete(&node) != 0; }

bool is_container(const InputNode& node) { return node.kind == NIDL_YFW_KIND_CONTAINER; }

class InterfacesMapping {
 public:
  InterfacesMapping(Request& request, nidl_yfw_datatree* out) : request_(request), out_(out) {}

  cerrno map_interfaces(const InputNode& interfaces) {
    const Walked walked(request_, interfaces);
    if (is_deleted(interfaces)) {
      return refuse_whole_delete(interfaces);
    }
    request_.begin("mapping the request", children_of(interfaces));
    return for_each_child(interfaces, [&](const InputNode& child) {
      request_.advance();
      return is(child, kInterfacesNamespace, "interface") ? map_interface(child) : turn_down(child);
    });
  }

 private:
  // Stops at the first result that is not 0.
  template <class Map>
  cerrno for_each_child(const InputNode& node, const Map& map) {
    cerrno result = kOk;
    for (const InputNode& child : children_of(node)) {
      result = map(child);
      if (result != kOk) {
        break;
      }
    }
    return result;
  }

  cerrno map_interface(const InputNode& entry) {
    const Walked walked(request_, entry, kInterfaceList);
    if (is_deleted(entry)) {
      return refuse_whole_delete(entry);
    }
    if (const cerrno result = check_key(entry, kInterfaceList); result != kOk) {
      return result;
    }
    return for_each_child(entry, [&](const InputNode& child) {
      if (is(child, kInterfacesNamespace, "subinterfaces")) {
        return map_subinterfaces(child);
      }
      if (is(child, kVlanNamespace, "routed-vlan")) {
        return map_routed_vlan(child);
      }
      return map_setting(child, kInterfaceList.key);
    });
  }

  cerrno map_subinterfaces(const InputNode& container) {
    const Walked walked(request_, container);
    if (is_deleted(container)) {
      return refuse_whole_delete(container);
    }
    return for_each_child(container, [&](const InputNode& child) {
      return is(child, kInterfacesNamespace, "subinterface") ? map_subinterface(child)
                                                             : turn_down(child);
    });
  }

  cerrno map_subinterface(const InputNode& entry) {
    const Walked walked(request_, entry, kSubinterfaceList);
    if (is_deleted(entry) && children_of(entry).empty()) {
      return refuse_whole_delete(entry);
    }
    if (const cerrno result = check_key(entry, kSubinterfaceList); result != kOk) {
      return result;
    }
    if (is_deleted(entry)) {
      return delete_subinterface(entry);
    }
    return for_each_child(entry, [&](const InputNode& child) {
      if (is_own(child)) {
        return map_setting(child, kSubinterfaceList.key);
      }
      // What is neither family goes to the entry of IPv4, too.
      return is(child, kIpNamespace, "ipv6")
                 ? map_ipv6(request_, child, out_)
                 : request_.entries().subinterface_ipv4(request_.context(), &child, out_);
    });
  }

  // All of the subinterface goes, whatever the request says of its content. The plug-in is handed
  // the bare entry: nothing of it would be a family's, or more than what goes anyway.
  cerrno delete_subinterface(const InputNode& entry) {
    const InputNode& bare = request_.copy(entry, {});
    cerrno result = request_.entries().subinterface_ipv4(request_.context(), &bare, out_);
    if (result == kOk) {
      result = request_.entries().subinterface_ipv6(request_.context(), &bare, out_);
    }
    return result == kOk ? delete_ipv6_extension(request_, entry, out_) : result;
  }

  cerrno map_routed_vlan(const InputNode& container) {
    const Walked walked(request_, container);
    if (is_deleted(container) && children_of(container).empty()) {
      return turn_down(container);
    }
    return for_each_child(container, [&](const InputNode& child) {
      return hand_over(child, request_.entries().routed_vlan_ipv4,
                       request_.entries().routed_vlan_ipv6);
    });
  }

  // What is neither family goes to the first entry, for the plug-in to refuse or to pass over.
  cerrno hand_over(const InputNode& child, yfw_map_leaf_callback ipv4, yfw_map_leaf_callback ipv6) {
    return (is(child, kIpNamespace, "ipv6") ? ipv6 : ipv4)(request_.context(), &child, out_);
  }

  // Nodes of the interfaces model are this mapping's, also those that it does not know.
  static bool is_own(const InputNode& node) {
    return node.module_namespace != nullptr && node.module_namespace == kInterfacesNamespace;
  }

  // A leaf or container of the interface or subinterface itself: only what repeats its key passes.
  cerrno map_setting(const InputNode& node, std::string_view key) {
    if (is(node, kInterfacesNamespace, key)) {
      return kOk;
    }
    if (!request_.is_edit() || !is_own(node) || !is_container(node) ||
        (is_deleted(node) && children_of(node).empty())) {
      return turn_down(node);
    }
    const Walked walked(request_, node);
    return for_each_child(node, [&](const InputNode& child) {
      const bool repeats_key = is(node, kInterfacesNamespace, "config") && child.tag != nullptr &&
                               child.tag == key && is_deleted(child) == is_deleted(node);
      return repeats_key ? kOk : map_setting(child, {});
    });
  }

  // What is not mapped: an edit of it is refused, a read leaves it out.
  cerrno turn_down(const InputNode& node) {
    if (request_.is_edit()) {
      return request_.refuse(kUnsupported, node.tag == nullptr ? "" : node.tag, kOnlyIp);
    }
    request_.note(request_.path_of(node) + " is left out: " + kOnlyIp);
    return kOk;
  }

  cerrno refuse_whole_delete(const InputNode& node) {
    return request_.refuse(kUnsupported, node.tag, kNoWholeDelete);
  }

  // An edit names an entry by its key, once, and in agreement with its settings.
  cerrno check_key(const InputNode& entry, const WalkedList& list) {
    if (!request_.is_edit()) {
      return kOk;
    }
    const auto children = children_of(entry);
    const auto keys = std::count_if(children.begin(), children.end(), [&](const InputNode& child) {
      return is(child, kInterfacesNamespace, list.key);
    });
    if (keys != 1) {
      return request_.refuse(kListKey, list.key, "List key node error.");
    }
    const InputNode& key = *find_child(entry, list.key);
    if (key.value == nullptr || key.value[0] == '\0') {
      return request_.refuse(kListKey, list.key, "Empty list key specified.");
    }
    if (is_deleted(key) && !is_deleted(entry)) {
      return request_.refuse(kKeyDelete, list.key,
                             "The key node should not have delete operation.");
    }
    const cerrno result =
        yfw_map_check_oc_leafref(request_.context(), list.path, "config", key.value, &entry);
    return result == kOk ? kOk : request_.refuse(result, list.key, "leafref value check fail");
  }

  Request& request_;
  nidl_yfw_datatree* out_;
};

}  // namespace
}  // namespace ocifip

extern "C" cerrno ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx* ctx,
                                                                    const nidl_yfw_datatree* in,
                                                                    nidl_yfw_datatree* out) {
  if (in == nullptr || out == nullptr) {
    yfw_oc_error_path(ctx);
    return ocifip::kInvalidArguments;
  }
  return ocifip::guarded(
      [&] { return ocifip::InterfacesMapping(ocifip::Request::of(ctx), out).map_interfaces(*in); });
}
