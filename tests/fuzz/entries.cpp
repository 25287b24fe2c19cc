// The plug-in's entry callbacks, entered with trees of known and unknown nodes, sound and broken,
// in every kind of request, on a platform of which one call may fail.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <optional>
#include <span>

#include "choices.h"
#include "footing.h"
#include "io/print_document.h"
#include "mapping/walked.h"
#include "result_codes.h"
#include "target.h"
#include "tree/output_document.h"

namespace ocifip::fuzz {
namespace {

#define SUBINTERFACE "/interfaces/interface/subinterfaces/subinterface"
#define ROUTED_VLAN "/interfaces/interface/routed-vlan"
#define NATIVE_INTERFACE "/interface-configurations/interface-configuration"

// What the callbacks are made for, by a part of their names: nodes to enter them with, and what the
// framework is in when it does. Those of whole trees need no row.
enum class Within { kNothing, kSubinterface, kNativeInterface };
struct MadeFor {
  std::string_view name;
  Within within;
  std::array<const char*, 2> tops;
};
constexpr MadeFor kMadeFor[] = {
    {"ocif_openconfiginterfaces_lvla_interfaces", Within::kNothing, {"/interfaces", "/interfaces"}},
    {"augment_lvla_subinterface", Within::kSubinterface, {SUBINTERFACE, SUBINTERFACE "/ipv4"}},
    {"augment_lvlb_subinterface", Within::kSubinterface, {SUBINTERFACE, SUBINTERFACE "/ipv6"}},
    {"augment_lvla_routed_vlan", Within::kSubinterface, {ROUTED_VLAN, ROUTED_VLAN "/ipv4"}},
    {"augment_lvlb_routed_vlan", Within::kSubinterface, {ROUTED_VLAN, ROUTED_VLAN "/ipv6"}},
    // This one makes itself current.
    {"lvla_interfaceconfigurations_interfaceconfiguration",
     Within::kNothing,
     {NATIVE_INTERFACE, NATIVE_INTERFACE}},
    {"openconfigifipext_augment_lvla_ipv6",
     Within::kSubinterface,
     {SUBINTERFACE "/ipv6", SUBINTERFACE "/ipv6/autoconf"}},
    {"ipv6macfg_augment",
     Within::kNativeInterface,
     {NATIVE_INTERFACE, NATIVE_INTERFACE "/ipv6-network"}},
    {"ipv4arpcfg_augment",
     Within::kNativeInterface,
     {NATIVE_INTERFACE, NATIVE_INTERFACE "/ipv4arp"}},
    {"ipv6ndcfg_augment",
     Within::kNativeInterface,
     {NATIVE_INTERFACE, NATIVE_INTERFACE "/ipv6-neighbor"}},
    {"ipv4iocfg_augment",
     Within::kNativeInterface,
     {NATIVE_INTERFACE, NATIVE_INTERFACE "/ipv4-network"}},
};

constexpr std::array<std::uint32_t, 6> kRequests = {
    YFW_MAP_REQUEST_MERGE,   YFW_MAP_REQUEST_READ_CONFIG, YFW_MAP_REQUEST_READ_STATE,
    YFW_MAP_REQUEST_REPLACE, YFW_MAP_REQUEST_CREATE,      7};

constexpr std::array<std::uint8_t, 7> kOperations = {NIDL_YFW_EDIT_WRITE,
                                                     NIDL_YFW_EDIT_DELETE,
                                                     NIDL_YFW_EDIT_REPLACE,
                                                     NIDL_YFW_EDIT_REMOVE,
                                                     NIDL_YFW_EDIT_NONE,
                                                     2,
                                                     255};

constexpr std::array kNames = {"Eth1",  "Eth1.20",    "Eth3",         "Eth5",
                               "Eth99", "tunnel-ip5", "tunnel-ip5.7", "Eth9/0/1.2.3"};
constexpr std::array kIndices = {"0", "20", "3", "4294967296"};
constexpr std::array kAddresses = {"10.0.0.1",  "10.0.1.1",  "192.0.2.9",   "192.0.2.1",
                                   "10.0.20.1", "10.0.20.2", "2001:db8::1", "10.0.0.256"};
constexpr std::array kLengths = {"24", "32", "29", "0", "33"};
constexpr std::array kMasks = {"255.255.255.0", "255.255.255.252", "0.0.0.0", "255.0.255.0"};
constexpr std::array kVirtualAddresses = {"10.0.0.253", "10.0.0.254", "10.0.0.9",
                                          "10.0.0.10",  "0.0.0.0",    "fe80::7"};
constexpr std::array kRouters = {"7", "8", "0", "255"};
constexpr std::array kPreemptions = {"true", "false", "30", "0"};
constexpr std::array kStates = {"active", "tentative", "duplicate"};
constexpr std::array kOddValues = {
    "1400",       "true",
    "false",      "TRUE",
    "act",        "dynamic",
    "-1",         "fe80::",
    "",           ".",
    "/",          "%s%n",
    "[name='x']", "99999999999999999999",
    "Eth1",       "10.0.0.1",
    "0",          "a-name-that-is-longer-than-the-sixty-three-characters-that-there-is-room-for",
};

// What leaves that the device's data depends on usually have.
struct UsualValues {
  std::string_view tag;
  std::span<const char* const> values;
};
constexpr auto kUsual = std::to_array<UsualValues>({{"ip", kAddresses},
                                                    {"address", kAddresses},
                                                    {"host-address", kAddresses},
                                                    {"neighbor-address", kAddresses},
                                                    {"name", kNames},
                                                    {"interface-name", kNames},
                                                    {"interface", kNames},
                                                    {"index", kIndices},
                                                    {"prefix-length", kLengths},
                                                    {"netmask", kMasks},
                                                    {"virtual-address", kVirtualAddresses},
                                                    {"primary-ipv4-address", kVirtualAddresses},
                                                    {"ip-address", kVirtualAddresses},
                                                    {"virtual-router-id", kRouters},
                                                    {"vr-id", kRouters},
                                                    {"track-interface", kNames},
                                                    {"preempt", kPreemptions},
                                                    {"accept-mode", kPreemptions},
                                                    {"address-state", kStates}});

constexpr std::array kOutsideTags = {"frobnicate", "ipv4", "address", "ip", "config", "interface"};
constexpr std::array kNamespaces = {"urn:example:foreign", "http://openconfig.net/yang/interfaces",
                                    "http://openconfig.net/yang/interfaces/ip",
                                    "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg"};

constexpr int kDeepest = 16;
constexpr std::size_t kMostNodes = 400;
constexpr std::size_t kMostCalls = 400;

const lysc_node* schema_at(std::string_view path) {
  const lysc_node* node = nullptr;
  while (!path.empty()) {
    path.remove_prefix(1);
    const std::string_view tag = path.substr(0, path.find('/'));
    const auto children = faults::models().children(node);
    const auto child = std::find_if(children.begin(), children.end(), [&](const lysc_node* each) {
      return Models::tag(each) == tag;
    });
    node = child == children.end() ? nullptr : *child;
    path.remove_prefix(tag.size());
  }
  return node;
}

// A callback, and what it is made for.
struct Entry {
  yfw_map_leaf_callback call;
  Within within;
  std::array<const lysc_node*, 2> tops;
};

std::array<const lysc_node*, 2> tops_of_tree(yfw_map_leaf_callback call) {
  const ReadBackEntries& entries = session().entries.read_back;
  for (const auto* trees : {&entries.trees, &entries.summaries}) {
    for (const NativeTree& tree : *trees) {
      if (tree.enter == call) {
        const lysc_node* top = faults::models().child(nullptr, tree.tag, tree.module_namespace);
        return {top, top};
      }
    }
  }
  return {};
}

Entry entry_of(const faults::EntryCallback& named) {
  for (const MadeFor& made : kMadeFor) {
    if (named.symbol.find(made.name) != std::string::npos) {
      return {*named.callback, made.within, {schema_at(made.tops[0]), schema_at(made.tops[1])}};
    }
  }
  const Entry entry{*named.callback, Within::kNothing, tops_of_tree(*named.callback)};
  if (entry.tops[0] == nullptr) {
    std::fprintf(stderr, "nothing is said of what %s is made for\n", named.symbol.c_str());
    std::abort();
  }
  return entry;
}

const std::vector<Entry>& all_entries() {
  static const std::vector<Entry> entries = [] {
    std::vector<Entry> found;
    for (const faults::EntryCallback& named : faults::callbacks_of(session().entries)) {
      found.push_back(entry_of(named));
    }
    return found;
  }();
  return entries;
}

// A node that an entry is made for, or any other now and then.
const lysc_node* top_for(const Entry& entry, Choices& choices) {
  return choices.among(choices.one_in(16) ? choices.among(all_entries()).tops : entry.tops);
}

class TreeMaker {
 public:
  explicit TreeMaker(Choices& choices) : choices_(choices) {}

  // A tree below a node of a model, or of none; it lives as long as the maker.
  InputNode& make(const lysc_node* schema) {
    roots_.emplace_back();
    fill(roots_.back(), schema, choices_.one_in(2) ? choices_.among(kOperations) : kOperations[0],
         0);
    return roots_.back();
  }

  // Whether there may be entries of lists that do not look like entries.
  [[nodiscard]] bool has_wrong_kinds() const { return has_wrong_kinds_; }

 private:
  void fill(InputNode& node, const lysc_node* schema, std::uint8_t operation, int depth) {
    ++count_;
    node.tag = schema == nullptr ? choices_.among(kOutsideTags) : keep(Models::tag(schema));
    node.module_namespace =
        schema == nullptr ? choices_.among(kNamespaces) : keep(Models::module_namespace(schema));
    node.kind =
        static_cast<std::uint8_t>(schema == nullptr ? NodeKind::kContainer : Models::kind(schema));
    node.edit_operation = choices_.one_in(16) ? choices_.among(kOperations) : operation;
    if (node.kind >= NIDL_YFW_KIND_LEAF && !choices_.one_in(32)) {
      node.value = keep(value_of(node.tag));
      node.flags |= NIDL_YFW_FLAG_HAS_VALUE;
    }
    if (node.kind < NIDL_YFW_KIND_LEAF && depth < kDeepest) {
      add_children(node, schema, depth);
    }
    damage(node);
  }

  const char* value_of(std::string_view tag) {
    const auto usual = std::find_if(kUsual.begin(), kUsual.end(),
                                    [&](const UsualValues& each) { return each.tag == tag; });
    return usual == kUsual.end() || choices_.one_in(16) ? choices_.among(kOddValues)
                                                        : choices_.among(usual->values);
  }

  void add_children(InputNode& node, const lysc_node* schema, int depth) {
    const auto known =
        schema == nullptr ? std::vector<const lysc_node*>() : faults::models().children(schema);
    std::vector<const lysc_node*> wanted;
    for (const lysc_node* child : known) {
      if (Models::is_key(child) && !choices_.one_in(32)) {
        wanted.push_back(child);
      }
    }
    while (!choices_.at_end() && count_ + wanted.size() < kMostNodes && choices_.below(4) != 0) {
      const bool is_outside = known.empty() || choices_.one_in(64);
      wanted.push_back(is_outside ? nullptr : choices_.among(known));
    }
    if (wanted.empty()) {
      return;
    }
    auto& children = arrays_.emplace_back(wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      fill(children[i], wanted[i], node.edit_operation, depth + 1);
    }
    node.children = children.data();
    node.child_count = static_cast<std::uint32_t>(children.size());
    node.flags |= NIDL_YFW_FLAG_HAS_SUBTREE;
  }

  void damage(InputNode& node) {
    switch (choices_.below(64)) {
      case 31:
        node.tag = nullptr;
        break;
      case 30:
        node.module_namespace = choices_.among(kNamespaces);
        break;
      case 29:
        node.module_namespace = nullptr;
        break;
      case 28:
        node.kind = static_cast<std::uint8_t>(choices_.below(7));
        has_wrong_kinds_ = true;
        break;
      case 27:
        node.children = nullptr;
        break;
      case 26:
        node.flags ^= static_cast<std::uint8_t>(1U << choices_.below(8));
        node.children = node.child_count == 0 ? nullptr : node.children;
        break;
      case 25:
        node.flags |= NIDL_YFW_FLAG_XPATH_ERROR;
        node.kind = NIDL_YFW_KIND_XPATH_ERROR;
        has_wrong_kinds_ = true;
        break;
      case 24:
        node.value = keep(choices_.among(kOddValues));
        break;
      default:
        break;
    }
  }

  const char* keep(std::string_view text) { return texts_.emplace_back(text).c_str(); }

  Choices& choices_;
  std::deque<InputNode> roots_;
  std::deque<std::vector<InputNode>> arrays_;
  std::deque<std::string> texts_;
  std::size_t count_ = 0;
  bool has_wrong_kinds_ = false;
};

void set_request(yfw_map_request_state& state, const Entry& entry, Choices& choices) {
  state.request.request_source = choices.one_in(4) ? YFW_MAP_SOURCE_OPERATIONAL : 0U;
  state.request.filter_fields = choices.one_in(4) ? 1 : 0;
  state.list_entry_reuse = choices.one_in(2) ? 1 : 0;
  // The walker of interfaces finds out by itself.
  const bool finds_out = entry.call == session().entries.openconfig;
  state.list_wide = !finds_out && choices.one_in(8) ? 1 : 0;
}

// The entries that the host is in when it enters a callback.
class Surroundings {
 public:
  Surroundings(Request& request, const char* name, const char* index)
      : keys_{leaf("name", name), leaf("index", index)},
        entries_{entry("interface", keys_[0]), entry("subinterface", keys_[1])} {
    walked_[0].emplace(request, entries_[0], kInterfaces);
    walked_[1].emplace(request, entries_[1], kSubinterfaces);
  }
  // Native data has one entry around it, that of its interface.
  Surroundings(Request& request, const InputNode& native_entry) {
    walked_[0].emplace(request, native_entry, kNativeInterfaces);
  }
  ~Surroundings() { walked_[1].reset(); }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

 private:
  static constexpr WalkedList kInterfaces = {"/interfaces/interface", "name"};
  static constexpr WalkedList kSubinterfaces = {"/interfaces/interface/subinterfaces/subinterface",
                                                "index"};
  static constexpr WalkedList kNativeInterfaces = {
      "/interface-configurations/interface-configuration", "interface-name"};

  static InputNode leaf(const char* tag, const char* value) {
    InputNode node{};
    node.tag = tag;
    node.value = value;
    node.kind = NIDL_YFW_KIND_LEAF;
    node.module_namespace = kNamespaces[1];
    return node;
  }
  static InputNode entry(const char* tag, InputNode& key) {
    InputNode node = leaf(tag, nullptr);
    node.kind = NIDL_YFW_KIND_LIST;
    node.children = &key;
    node.child_count = 1;
    node.flags = NIDL_YFW_FLAG_HAS_SUBTREE;
    return node;
  }

  std::array<InputNode, 2> keys_{};
  std::array<InputNode, 2> entries_{};
  std::array<std::optional<Walked>, 2> walked_;
};

void excuse(std::string& facts, std::string_view expected) {
  const std::size_t at = facts.find(expected);
  facts.erase(std::min(at, facts.size()), expected.size());
}

void run(Choices& choices) {
  faults::Session& host = session();
  const ActiveDevice active(host.directory());
  PathCache paths(faults::models());
  const InputTree no_input({}, Operation::kWrite);
  const bool is_stateless = choices.one_in(8);
  const RequestSettings settings{
      .request_op = choices.among(kRequests), .is_query = choices.one_in(2), .record_calls = true};
  Request request({faults::models(), paths, host.entries.augments}, no_input, settings);
  const Entry& entry = choices.among(all_entries());
  set_request(request.state(), entry, choices);
  const std::size_t failing = choices.one_in(2) ? choices.below(kMostCalls) + 1 : 0;
  TreeMaker maker(choices);
  const InputNode& top = maker.make(top_for(entry, choices));
  std::optional<Surroundings> surroundings;
  if (entry.within == Within::kSubinterface) {
    surroundings.emplace(request, choices.among(kNames), choices.among(kIndices));
  } else if (entry.within == Within::kNativeInterface) {
    surroundings.emplace(request, top);
  }
  if (is_stateless) {
    request.context()->request_state = nullptr;
  }

  std::size_t calls = 0;
  host.layer.fails = [&](const faults::ServiceCall&) { return ++calls == failing; };
  const faults::Footing footing(request, top);
  const cerrno result = entry.call(request.context(), &top, request.out());
  host.layer.fails = nullptr;
  // A list that the framework has not been told of, or does not know for one, has no edit operation
  // of its own. Whether an entry is in the output list is told by the request's state.
  const bool is_untold = failing != 0 || maker.has_wrong_kinds();
  std::string disturbed = footing.disturbed();
  excuse(disturbed, is_untold ? " list-operation" : "");
  excuse(disturbed, is_stateless ? " output-list output-list-depth" : "");
  if (!disturbed.empty()) {
    std::fprintf(stderr, "left behind:%s\n", disturbed.c_str());
    std::abort();
  }
  if (result != kOk) {
    (void)request.refusal(result).text();
  }
  std::vector<std::string> notes;
  print_document(to_document(request.output(), "output"), Format::kXml, notes);
}

}  // namespace
}  // namespace ocifip::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ocifip::fuzz::Choices choices(data, size);
  ocifip::fuzz::run(choices);
  return 0;
}
