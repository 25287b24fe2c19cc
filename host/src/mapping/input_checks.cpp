#include "mapping/input_checks.h"

#include <string>
#include <string_view>

#include "io/text.h"
#include "ocifip/host.h"
#include "yfw/context.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfacesModule = "openconfig-interfaces";

// Most bytes of a text that the request state has room for, its terminator aside.
constexpr std::size_t kLongestName = sizeof(yfw_map_request_state::current_ifname) - 1;
constexpr std::size_t kLongestIndex = sizeof(yfw_map_request_state::current_subif_index) - 1;

[[noreturn]] void fail(const Document& document, const DocumentNode& node,
                       const std::string& reason) {
  throw input_error(document.name, node.line, reason);
}

bool is(const DocumentNode& node, std::string_view tag) {
  return node.module == kInterfacesModule && node.tag == tag;
}

void check_key(const Document& document, const DocumentNode& entry, std::string_view key,
               std::string_view what, std::size_t longest) {
  for (const DocumentNode& leaf : entry.children) {
    if (is(leaf, key) && leaf.value && leaf.value->size() > longest) {
      fail(document, leaf,
           std::string(what) + ' ' + in_quotes(*leaf.value) + " is longer than " +
               std::to_string(longest) + " characters");
    }
  }
}

void check_entries(const Document& document, const DocumentNode& node) {
  for (const DocumentNode& child : node.children) {
    if (is(child, "interface")) {
      check_key(document, child, "name", "interface name", kLongestName);
    } else if (is(child, "subinterface")) {
      check_key(document, child, "index", "subinterface index", kLongestIndex);
    }
    if (is(child, "interface") || is(child, "subinterfaces")) {
      check_entries(document, child);
    }
  }
}

}  // namespace

void check_input(const Document& document) {
  for (const DocumentNode& root : document.roots) {
    if (!is(root, "interfaces")) {
      const std::string& module = root.module.empty() ? root.module_namespace : root.module;
      fail(document, root, "no mapping for " + in_quotes(module + ":" + root.tag) + " at the top");
    }
    check_entries(document, root);
  }
}

}  // namespace ocifip
