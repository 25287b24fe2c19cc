#include "mapping/input_checks.h"

#include <string>
#include <string_view>

#include "device/subinterface_name.h"
#include "io/data_path.h"
#include "io/device_file.h"
#include "io/document_nodes.h"
#include "io/text.h"
#include "mapping/interface_nodes.h"
#include "yfw/context.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfaceManager = "Halvane-Ombrix-ifmgr-cfg";

// Most bytes of a text that the request state has room for, its terminator aside.
constexpr std::size_t kLongestName = sizeof(yfw_map_request_state::current_ifname) - 1;
constexpr std::size_t kLongestIndex = sizeof(yfw_map_request_state::current_subif_index) - 1;

// A key that the request state keeps, and how messages call it.
struct KeptKey {
  std::string_view tag;
  std::string_view what;
  std::size_t longest;
};

constexpr KeptKey kName = {"name", "interface name", kLongestName};
constexpr KeptKey kIndex = {"index", "subinterface index", kLongestIndex};
constexpr KeptKey kNativeName = {"interface-name", "interface name", kLongestName};

[[noreturn]] void fail(const Document& document, const DocumentNode& node,
                       const std::string& reason) {
  throw input_error(document.name, node.line, reason, {InputFault::Kind::kBadValue, node.tag});
}

[[noreturn]] void fail_at_top(const Document& document, const DocumentNode& root) {
  throw input_error(document.name, root.line,
                    "no mapping for " + in_quotes(qualified_name(root)) + " at the top",
                    {InputFault::Kind::kUnknownNode, root.tag, instance_path({&root})});
}

// Returns whether the entry has the key.
bool check_key(const Document& document, const DocumentNode& entry, const KeptKey& key) {
  bool has_key = false;
  for (const DocumentNode& leaf : entry.children) {
    if (!is_named(leaf, entry.module, key.tag) || !leaf.value) {
      continue;
    }
    has_key = has_key || !leaf.value->empty();
    if (leaf.value->size() > key.longest) {
      fail(document, leaf,
           std::string(key.what) + ' ' + in_quotes(*leaf.value) + " has " +
               std::to_string(leaf.value->size()) + " characters, the limit is " +
               std::to_string(key.longest));
    }
  }
  return has_key;
}

// The interfaces and subinterfaces of a model that arranges them as OpenConfig does.
void check_entries(const Document& document, const DocumentNode& node) {
  for (const DocumentNode& child : node.children) {
    if (child.module != node.module) {
      continue;
    }
    if (child.tag == "interface") {
      check_key(document, child, kName);
      check_entries(document, child);
    } else if (child.tag == "subinterface") {
      check_key(document, child, kIndex);
    } else if (child.tag == "interfaces" || child.tag == "subinterfaces") {
      check_entries(document, child);
    }
  }
}

void check_native_entries(const Document& document, const DocumentNode& node) {
  for (const DocumentNode& child : node.children) {
    if (is_named(child, kInterfaceManager, "interface-configuration") &&
        !check_key(document, child, kNativeName)) {
      throw input_error(document.name, child.line,
                        "an interface-configuration without its interface-name",
                        {InputFault::Kind::kMissingNode, std::string(kNativeName.tag)});
    }
    for (const DocumentNode& leaf : child.children) {
      if (is_named(leaf, kInterfaceManager, kNativeName.tag) && leaf.value->starts_with('.')) {
        fail(document, leaf, in_quotes(*leaf.value) + " names no interface before the dot");
      }
    }
  }
}

void check_no_operations(const Document& document, const std::vector<DocumentNode>& nodes) {
  for (const DocumentNode& node : nodes) {
    if (node.operation) {
      InputFault fault = {InputFault::Kind::kUnknownAttribute, "operation"};
      fault.element = node.tag;
      throw input_error(document.name, node.line,
                        "an operation in a query, on " + in_quotes(node.tag), std::move(fault));
    }
    check_no_operations(document, node.children);
  }
}

void check_top(const Document& document) {
  for (const DocumentNode& root : document.roots) {
    if (!is_named(root, kInterfacesModule, "interfaces")) {
      fail_at_top(document, root);
    }
    check_entries(document, root);
  }
}

// Why a name is none of an interface; empty when it is one.
std::string interface_name_fault(const std::string& name) {
  std::string fault = native_name_fault(name);
  if (!fault.empty()) return fault;
  const auto [interface, index] = subinterface_of(name);
  const bool is_number = index.find_first_not_of("0123456789") == std::string::npos;
  return is_number && name != interface ? in_quotes(name) + " is that of subinterface " + index +
                                              " of " + in_quotes(interface)
                                        : "";
}

// An interface whose native name would be read as another's.
void check_names(const Document& document) {
  for (const DocumentNode& root : document.roots) {
    for (const DocumentNode& interface : root.children) {
      const DocumentNode* name = find_key(interface, "name");
      const std::string fault = name == nullptr ? "" : interface_name_fault(*name->value);
      if (!fault.empty()) fail(document, *name, "interface name " + fault);
    }
  }
}

// "1 node is WHAT: PATH", or "3 nodes are WHAT; the first is PATH".
std::string count_note(std::size_t count, const std::string& what, const std::string& first) {
  return std::to_string(count) + (count == 1 ? " node is " : " nodes are ") + what +
         (count == 1 ? ": " : "; the first is ") + first;
}

}  // namespace

void InputChecks::check_edit(Document& document) {
  if (rules_.only_ip) {
    keep_only_ip(document, false, passed_over_);
  }
  if (!rules_.unchecked) {
    const StateNodes state = check_against_models(models_, document, InputUse::kEdit);
    if (state_.count == 0) {
      state_.first = state.first;
    }
    state_.count += state.count;
    check_names(document);
  }
  check_top(document);
}

void InputChecks::check_query(Document& document) {
  check_no_operations(document);
  if (rules_.only_ip) {
    keep_only_ip(document, true, passed_over_);
  }
  if (!rules_.unchecked) {
    check_against_models(models_, document, InputUse::kQuery);
    check_names(document);
  }
  check_top(document);
}

void check_no_operations(const Document& document) {
  check_no_operations(document, document.roots);
}

std::vector<std::string> InputChecks::notes() const {
  std::vector<std::string> notes;
  if (passed_over_.count > 0) {
    notes.push_back(
        count_note(passed_over_.count, "outside interface IP and left out", passed_over_.first));
  }
  if (state_.count > 0) {
    notes.push_back(count_note(state_.count, "state, which an edit does not change", state_.first));
  }
  return notes;
}

void check_native_data(const Models& models, Document& document, const ReadBackEntries& entries,
                       InputRules rules) {
  if (!rules.unchecked) {
    check_against_models(models, document, InputUse::kData);
  }
  for (const DocumentNode& root : document.roots) {
    if (!entries.take(root.module_namespace, root.tag)) {
      fail_at_top(document, root);
    }
    check_native_entries(document, root);
    check_entries(document, root);
  }
}

}  // namespace ocifip
