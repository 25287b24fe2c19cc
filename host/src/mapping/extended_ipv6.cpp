#include "mapping/extended_ipv6.h"

#include <string_view>
#include <vector>

#include "mapping/walked.h"
#include "result_codes.h"
#include "yfw/mapping.h"

namespace ocifip {
namespace {

constexpr const char* kIpNamespace = "http://openconfig.net/yang/interfaces/ip";
constexpr std::string_view kExtensionNamespace = "http://openconfig.net/yang/interfaces/ip-ext";

bool is_extension(const InputNode& node) {
  return node.module_namespace != nullptr && node.module_namespace == kExtensionNamespace;
}

// Enters the extension's entry, below the "ipv6" container, with a node that is not itself being
// walked: one below it, or its copy.
cerrno enter_extension(Request& request, const InputNode& ipv6, const InputNode& node,
                       nidl_yfw_datatree* out) {
  const Walked walked(request, ipv6);
  return request.entries().subinterface_ipv6_extension(request.context(), &node, out);
}

cerrno map_own_nodes(Request& request, const InputNode& ipv6, nidl_yfw_datatree* out) {
  const auto children = children_of(ipv6);
  std::vector<const InputNode*> own;
  for (const InputNode& child : children) {
    if (!is_extension(child)) own.push_back(&child);
  }
  if (own.empty() && !children.empty()) {
    return kOk;
  }
  const InputNode& handed_over = own.size() == children.size() ? ipv6 : request.copy(ipv6, own);
  return request.entries().subinterface_ipv6(request.context(), &handed_over, out);
}

}  // namespace

cerrno map_ipv6(Request& request, const InputNode& ipv6, nidl_yfw_datatree* out) {
  const bool deleted = yfw_map_is_request_delete(&ipv6) != 0;
  const auto children = children_of(ipv6);
  if (request.entries().subinterface_ipv6_extension == nullptr || (deleted && !children.empty())) {
    return request.entries().subinterface_ipv6(request.context(), &ipv6, out);
  }
  cerrno result = map_own_nodes(request, ipv6, out);
  if (result == kOk && deleted) {
    result = enter_extension(request, ipv6, request.copy(ipv6, {}), out);
  }
  for (const InputNode& child : children) {
    if (result == kOk && is_extension(child)) {
      result = enter_extension(request, ipv6, child, out);
    }
  }
  return result;
}

cerrno delete_ipv6_extension(Request& request, const InputNode& subinterface,
                             nidl_yfw_datatree* out) {
  if (request.entries().subinterface_ipv6_extension == nullptr) {
    return kOk;
  }
  InputNode& ipv6 = request.copy(subinterface, {});
  ipv6.tag = "ipv6";
  ipv6.module_namespace = kIpNamespace;
  ipv6.kind = NIDL_YFW_KIND_CONTAINER;
  return enter_extension(request, ipv6, request.copy(ipv6, {}), out);
}

}  // namespace ocifip
