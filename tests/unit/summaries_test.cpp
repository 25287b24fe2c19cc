// The private address summaries, read back as OpenConfig, and their registrations.

#include <cstring>

#include "mapping_test.h"
#include "read_back_platform.h"
#include "yfw/interfaces_mapping.h"
#include "yfw_map_ifip_registration.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"

using namespace recording;

namespace {

#define V4(rest) ymap_xo_ocifip_halvaneombrixprivateocifipv4maoper_##rest
#define V6(rest) ymap_xo_ocifip_halvaneombrixprivateocifipv6maoper_##rest
#define TEXT_OF(name) #name
#define TEXT(name) TEXT_OF(name)

constexpr const char* kV4Module = "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v4ma-oper";
constexpr const char* kV6Module = "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v6ma-oper";
constexpr const char* kSubinterface = "/interfaces/interface/subinterfaces/subinterface";
const std::string kAddressState = "/ipv4/addresses/address/state/";

// What differs between the summaries.
struct Summary {
  const char* family;
  const char* top;
  const char* module_namespace;
  yfw_map_leaf_callback walk;
  yfw_map_container_callback stitch;
  std::string stitch_name;
  std::string no_index;  // said of a missing index
};
const Summary kV4Summary = {
    "ipv4",
    "ocifipv4ma",
    kV4Module,
    V4(lvla_ocifipv4ma),
    V4(list_lvla_ocifipv4ma_subinterfaces_subinterface),
    TEXT(V4(list_lvla_ocifipv4ma_subinterfaces_subinterface)),
    "ocifipv4_ma reverse mapping, index val is NULL",
};
const Summary kV6Summary = {
    "ipv6",
    "ocifipv6ma",
    kV6Module,
    V6(lvla_ocifipv6ma),
    V6(list_lvla_ocifipv6ma_subinterfaces_subinterface),
    TEXT(V6(list_lvla_ocifipv6ma_subinterfaces_subinterface)),
    "ocifipv6_ma reverse mapping, index val is NULL",
};

std::string searched_interface(const std::string& name) {
  return "search output /interfaces/interface name=\"" + name + "\" " + kInterfaces;
}
std::string searched_subinterface(const std::string& index) {
  return "search interface /subinterfaces/subinterface index=\"" + index + "\" (null)";
}
std::string stitched(const std::string& name, const std::string& index) {
  return std::string("stitch enabled=1 ") + kInterfaces +
         " output operation=2 /interfaces/interface[name=" + name +
         "]/subinterfaces/subinterface[index=" + index + "]/ " + kSubinterface;
}
// The leaf below the subinterface.
std::string added(const std::string& leaf, const std::string& value) {
  return std::string("add_path ") + kIfIp + " " + kSubinterface + leaf + " =\"" + value +
         "\" source=NONE create=0 flags=1";
}
std::string tunnel_path(const std::string& ifname, const std::string& leaf) {
  return "/interfaces/interface[name=" + ifname + "]/tunnel/ipv4/addresses/address/state/" + leaf;
}
std::string mirrored(const std::string& path, const std::string& value) {
  return "xpath enabled=1 http://openconfig.net/yang/interfaces/tunnel output operation=3 =\"" +
         value + "\" " + path;
}

class Summaries : public MappingTest {
 protected:
  Summaries() { begin("Eth1", "7"); }

  // Starts a case anew, in the entries of an interface and a subinterface that the output holds.
  void begin(const std::string& name, const std::string& index) {
    next(YFW_MAP_REQUEST_READ_STATE);
    read_back = {};
    for (const Summary& summary : {kV4Summary, kV6Summary}) {
      const std::string list = std::string("/") + summary.top + "/interfaces/interface";
      read_back.leaves[list + " name"] = name;
      read_back.leaves[list + "/subinterfaces/subinterface index"] = index;
    }
    read_back.entries = {{"/interfaces/interface " + name, &interface_},
                         {"/subinterfaces/subinterface " + index, &subinterface_}};
    platform.base_names = {{&interface_, "interface"}, {&subinterface_, "subinterface"}};
  }

  static void lose(std::map<std::string, std::string>& leaves, const std::string& leaf) {
    std::erase_if(leaves, [&](const auto& each) { return each.first.ends_with(leaf); });
  }
  static void lose_entry(const std::string& list) {
    std::erase_if(read_back.entries,
                  [&](const auto& each) { return each.first.starts_with(list + " "); });
  }

  Node interface_{};
  Node subinterface_{};
};

// --- stitching -----------------------------------------------------------------------------------

TEST_F(Summaries, AnEntryGoesToTheSubinterfaceOfTheOutput) {
  const std::string no_name = "ocifipv4_ma reverse mapping, interface name is NULL";
  const std::string interface = searched_interface("Eth0/1");
  const std::string both = interface + "; " + searched_subinterface("007");
  const std::string mapped = "Mapping done for this node";
  const std::string not_mapped = "No mapping done for this node";
  struct Case {
    const char* name;
    std::function<void()> given;
    cerrno result;
    std::string calls;
    std::vector<std::string> lines;
  };
  for (const Summary& summary : {kV4Summary, kV6Summary}) {
    for (const Case& each : {
             Case{"both", [] {}, 0, both + "; " + stitched("Eth0/1", "007"), {mapped}},
             {"no name", [] { lose(read_back.leaves, "name"); }, 0, "", {no_name, not_mapped}},
             {"name not found",
              [] { platform.fail("node_info", 1, 77); },
              77,
              "",
              {no_name, not_mapped}},
             {"no index",
              [] { lose(read_back.leaves, "index"); },
              0,
              "",
              {summary.no_index, not_mapped}},
             {"index not found",
              [] { platform.fail("node_info", 2, 78); },
              78,
              "",
              {summary.no_index, not_mapped}},
             {"no interface",
              [] { lose_entry("/interfaces/interface"); },
              0xaaf2f600,
              interface,
              {not_mapped}},
             {"no subinterface",
              [] { lose_entry("/subinterfaces/subinterface"); },
              0xaaf2f600,
              both,
              {not_mapped}},
             {"stitch fails",
              [] { platform.fail("stitch", 1, 0x79); },
              0x79,
              both + "; " + stitched("Eth0/1", "007") + " result=0x79",
              {not_mapped}},
         }) {
      begin("Eth0/1", "007");
      SCOPED_TRACE(std::string(summary.family) + " " + each.name);
      each.given();
      EXPECT_EQ(summary.stitch(&ctx, plant(node("subinterface")), 0, &out), each.result);
      EXPECT_EQ(platform.recorded(kWrites | kSearch), calls(each.calls));
      std::string lines = "trc Start\n";
      for (const std::string& line : each.lines) lines += "trc " + line + "\n";
      EXPECT_EQ(lines_of(summary.stitch_name), lines + "trc End\n");
    }
  }
}

// Each line has a word of its own: the logging service tells the lines apart by it.
TEST_F(Summaries, LinesDoNotShareTheirWords) {
  platform.logs_traces = true;
  std::map<std::uint32_t*, std::string> lines;
  for (const char* lost : {"name", "index"}) {
    for (const Summary& summary : {kV4Summary, kV6Summary}) {
      begin("Eth1", "7");
      platform.logs_traces = true;
      lose(read_back.leaves, lost);
      EXPECT_EQ(summary.stitch(&ctx, plant(node("subinterface")), 0, &out), 0U);
      for (const LogLine& line : platform.log) {
        const auto [known, is_new] = lines.emplace(line.word, line.format);
        EXPECT_TRUE(is_new || known->second == line.format) << line.format;
      }
    }
  }
  // Of each summary: start, end, nothing mapped, no name, no index.
  EXPECT_EQ(lines.size(), 10U);
}

// --- address state -------------------------------------------------------------------------------

constexpr yfw_map_leaf_callback kIp = V4(leaf_lvla_ocifipv4ma_state_ip);
constexpr yfw_map_leaf_callback kLength = V4(leaf_lvla_ocifipv4ma_state_prefixlength);

TEST_F(Summaries, AddressStateIsCopiedAndATunnelsIsMirrored) {
  struct Failure {
    const char* service;
    int nth;
    cerrno result;
  };
  using Failures = std::vector<Failure>;
  struct Case {
    yfw_map_leaf_callback callback;
    const char* value;
    std::string ifname;
    std::string calls;
    Failures failures = {};
    cerrno result = 0;
    std::string lines = "trc Mapping done for this node\n";
  };
  const std::string ip = added(kAddressState + "ip", "10.0.0.1");
  const std::string length = added(kAddressState + "prefix-length", "24");
  const std::string origin = added(kAddressState + "origin", "STATIC");
  const std::string tunnel_ip = mirrored(tunnel_path("tunnel-ip5", "ip"), "10.0.0.1");
  const std::string tunnel_length = mirrored(tunnel_path("tunnel-ip5", "prefix-length"), "24");
  const std::string long_name = "tunnel-ip" + std::string(1100, '1');
  const std::string cut_path = tunnel_path(long_name, "ip").substr(0, 1000);
  const std::string failed = " result=0x58";
  const std::string unresolved = " result=0xaaf2fc00";
  const Failures unresolved_path = {{"xpath", 1, 0xaaf2fc00}};
  const Failures failed_mirror = {{"xpath", 1, 0x58}};
  const Failures failed_add = {{"add_path", 1, 0x58}};
  const Failures failed_origin = {{"add_path", 2, 0x58}};
  const std::string exists = "trc Node exits\ntrc Mapping done for this node\n";
  // clang-format off
  for (const Case& each : {
      Case{kIp, "10.0.0.1", "Eth1", ip},
      {kLength, "24", "Eth1", length + "; " + origin},
      // Nothing is validated.
      {kIp, "no address", "Eth1", added(kAddressState + "ip", "no address")},
      {kLength, "99", "Eth1", added(kAddressState + "prefix-length", "99") + "; " + origin},
      // A tunnel is told by what its name begins with.
      {kIp, "10.0.0.1", "tunnel-ip5", ip + "; " + tunnel_ip},
      {kLength, "24", "tunnel-ip5", length + "; " + origin + "; " + tunnel_length},
      {kIp, "10.0.0.1", "tunnel-ip", ip + "; " + mirrored(tunnel_path("tunnel-ip", "ip"), "10.0.0.1")},
      {kIp, "10.0.0.1", "my-tunnel-ip5", ip},
      {kLength, "24", "my-tunnel-ip5", length + "; " + origin},
      {kIp, "10.0.0.1", "tunnel-i", ip},
      {kIp, "10.0.0.1", "Tunnel-ip5", ip},
      {kIp, "10.0.0.1", "tunnel-ip5", ip, {{"node_info", 1, 77}}},
      // What a mirror ends with is the result, but for a path that does not resolve.
      {kIp, "10.0.0.1", "tunnel-ip5", ip + "; " + tunnel_ip + unresolved, unresolved_path, 0, exists},
      {kLength, "24", "tunnel-ip5", length + "; " + origin + "; " + tunnel_length + unresolved,
       unresolved_path, 0, exists},
      {kIp, "10.0.0.1", "tunnel-ip5", ip + "; " + tunnel_ip + failed, failed_mirror, 0x58},
      {kLength, "24", "tunnel-ip5", length + "; " + origin + "; " + tunnel_length + failed,
       failed_mirror, 0x58},
      // A failed write stops nothing; the last call's result counts.
      {kIp, "10.0.0.1", "Eth1", ip + failed, failed_add, 0x58, "trc No mapping done for this node\n"},
      {kIp, "10.0.0.1", "tunnel-ip5", ip + failed + "; " + tunnel_ip, failed_add},
      {kLength, "24", "Eth1", length + failed + "; " + origin, failed_add},
      {kLength, "24", "Eth1", length + "; " + origin + failed, failed_origin, 0x58},
      {kLength, "24", "tunnel-ip5", length + "; " + origin + failed + "; " + tunnel_length,
       failed_origin},
      // A name that the request has no room for is cut.
      {kIp, "10.0.0.1", long_name, ip + "; " + mirrored(cut_path, "10.0.0.1")},
  }) {
    // clang-format on
    begin(each.ifname, "0");
    SCOPED_TRACE(each.calls);
    for (const Failure& failure : each.failures) {
      platform.fail(failure.service, failure.nth, failure.result);
    }
    EXPECT_EQ(each.callback(&ctx, plant(leaf("x", each.value)), &out), each.result);
    EXPECT_EQ(platform.recorded(kWrites | kSearch), calls(each.calls));
    const std::string name = each.callback == kIp
                                 ? TEXT(V4(leaf_lvla_ocifipv4ma_state_ip))
                                 : TEXT(V4(leaf_lvla_ocifipv4ma_state_prefixlength));
    EXPECT_EQ(lines_of(name), "trc Start\n" + each.lines + "trc End\n");
  }
}

// A value that the request has no room for is cut; none at all is an empty one.
TEST_F(Summaries, AMirrorHoldsTheValuesFirst300Characters) {
  const std::string value(400, '1');
  for (const auto& [tree, shown, expected] :
       {std::tuple{leaf("ip", value), " =\"" + value + "\"", value.substr(0, 300)},
        {leaf("ip"), std::string(), std::string()}}) {
    begin("tunnel-ip5", "0");
    EXPECT_EQ(kIp(&ctx, plant(tree), &out), 0U);
    EXPECT_EQ(platform.recorded(kWrites),
              std::string("add_path ") + kIfIp + " " + kSubinterface + kAddressState + "ip" +
                  shown + " source=NONE create=0 flags=1\n" +
                  mirrored(tunnel_path("tunnel-ip5", "ip"), expected) + "\n");
  }
}

// --- whole trees ---------------------------------------------------------------------------------

Tree everywhere_in(const char* module_namespace, Tree tree) {
  tree.module_namespace = module_namespace;
  for (Tree& child : tree.children) child = everywhere_in(module_namespace, child);
  return tree;
}

// A summary with one interface; its subinterface of each index holds the children.
Tree summary_of(const Summary& summary, const std::vector<const char*>& indexes,
                const std::vector<Tree>& children) {
  std::vector<Tree> entries;
  for (const char* index : indexes) {
    entries.push_back(node("subinterface", {leaf("index", index), node(summary.family, children)}));
  }
  return everywhere_in(
      summary.module_namespace,
      node(summary.top,
           {node("interfaces",
                 {node("interface", {leaf("name", "Eth1"), node("subinterfaces", entries)})})}));
}

Tree counters(const Summary& summary) {
  const std::string state = std::string(summary.family) + "-state";
  return node(
      state.c_str(),
      {node("counters", {leaf("in-pkts", "18446744073709551615"), leaf("in-octets", "4294967296"),
                         leaf("out-pkts", "0"), leaf("out-octets", "007")})});
}

std::string added_counters(const Summary& summary) {
  const std::string path = std::string("/") + summary.family + "/state/counters/";
  return added(path + "in-pkts", "18446744073709551615") + "; " +
         added(path + "in-octets", "4294967296") + "; " + added(path + "out-pkts", "0") + "; " +
         added(path + "out-octets", "007");
}

TEST_F(Summaries, CountersAreCopiedAsTheyAre) {
  for (const Summary& summary : {kV4Summary, kV6Summary}) {
    begin("Eth1", "7");
    // The subinterface of the first entry is not in the output: its entry alone is passed over.
    platform.fail("search", 2, 2);
    const Tree tree = summary_of(summary, {"6", "7"}, {counters(summary)});
    EXPECT_EQ(summary.walk(&ctx, plant(tree), &out), 0U);
    const std::string searched = searched_interface("Eth1") + "; " + searched_subinterface("7");
    EXPECT_EQ(platform.recorded(kWrites | kSearch),
              calls(searched + " result=0x2; " + searched + "; " + stitched("Eth1", "7") + "; " +
                    added_counters(summary)));
    // No node of the schema goes to the model's fallbacks.
    EXPECT_EQ(platform.recorded(kLines).find("duck_map"), std::string::npos);
    const std::string list = std::string("/") + summary.top + "/interfaces/interface";
    const std::string family = summary.family;
    EXPECT_EQ(
        platform.recorded(kHierarchy),
        calls("push 1 " + std::string(summary.top) + "; push 1 interfaces; push 2 interface; " +
              "current " + list + "; list interface; push 1 subinterfaces; " +
              "push 2 subinterface; current " + list + "/subinterfaces/subinterface; " +
              "pop subinterface; push 2 subinterface; current " + list +
              "/subinterfaces/subinterface; list subinterface; push 1 " + family + "; push 1 " +
              family + "-state; push 1 counters; pop counters; pop " + family + "-state; pop " +
              family + "; pop subinterface; unlist subinterface; " +
              "pop subinterfaces; pop interface; unlist interface; pop interfaces; pop " +
              summary.top));
  }
}

TEST_F(Summaries, AFailedCounterEndsTheWalk) {
  for (const Summary& summary : {kV4Summary, kV6Summary}) {
    for (int nth = 1; nth <= 4; ++nth) {
      begin("Eth1", "7");
      platform.fail("add_path", nth, 88);
      const Tree tree = summary_of(summary, {"7", "7"}, {counters(summary)});
      EXPECT_EQ(summary.walk(&ctx, plant(tree), &out), 88U);
      EXPECT_EQ(platform.calls_of("add_path"), nth);
    }
  }
}

TEST_F(Summaries, AnAddressReachesOpenConfigThroughItsState) {
  const Tree entry =
      node("address", {leaf("ip", "10.0.0.9"),
                       node("state", {leaf("ip", "10.0.0.1"), leaf("prefix-length", "24")})});
  const Tree tree = summary_of(kV4Summary, {"7"}, {node("addresses", {entry})});
  const Node* in = plant(tree);
  EXPECT_EQ(kV4Summary.walk(&ctx, in, &out), 0U);
  EXPECT_EQ(platform.recorded(kWrites),
            calls(stitched("Eth1", "7") + "; " + added(kAddressState + "ip", "10.0.0.1") + "; " +
                  added(kAddressState + "prefix-length", "24") + "; " +
                  added(kAddressState + "origin", "STATIC")));
  EXPECT_EQ(platform.recorded(kLines).find("duck_map"), std::string::npos);
  EXPECT_NE(platform.recorded(kHierarchy)
                .find("current /ocifipv4ma/interfaces/interface/subinterfaces/subinterface/ipv4/"
                      "addresses/address\n"),
            std::string::npos);
  // The first child of each list's entry is its key.
  const Node& interface = in->children[0].children[0];
  const Node& subinterface = interface.children[1].children[0];
  const Node& address = subinterface.children[1].children[0].children[0];
  for (const Node* list : {&interface, &subinterface, &address}) {
    EXPECT_EQ(list->children[0].key_mark, 1) << list->tag;
  }
}

TEST_F(Summaries, TheFallbacksDoNothing) {
  const Node* in = plant(node("x"));
  EXPECT_EQ(V4(duck_map_container)(&ctx, in, 0, &out), 0U);
  EXPECT_EQ(V4(duck_map_list)(&ctx, in, &out), 0U);
  EXPECT_EQ(V4(duck_map_leaf)(&ctx, in, &out), 0U);
  EXPECT_EQ(V6(duck_map_container)(&ctx, in, 0, &out), 0U);
  EXPECT_EQ(V6(duck_map_list)(&ctx, in, &out), 0U);
  EXPECT_EQ(V6(duck_map_leaf)(&ctx, in, &out), 0U);
  std::string lines;
  for (const char* model : {TEXT(V4()), TEXT(V6())}) {
    for (const char* hook : {"duck_map_container ", "duck_map_list ", "duck_map_leaf "}) {
      lines += std::string("trc ") + model + hook + "Start\ntrc " + model + hook + "End\n";
    }
  }
  EXPECT_EQ(platform.recorded(~0U), lines);
}

// --- registrations -------------------------------------------------------------------------------

// A record, a field a line.
std::string shown(const yfw_map_reg_record& record) {
  const std::map<yfw_map_leaf_callback, std::string> callbacks = {
      {ymap_ox_ocif_openconfiginterfaces_lvla_interfaces, "sibling's interfaces"},
      {V4(lvla_ocifipv4ma), "ocifipv4ma"},
      {V6(lvla_ocifipv6ma), "ocifipv6ma"},
  };
  const auto name_of = [&](yfw_map_leaf_callback callback) {
    const auto found = callbacks.find(callback);
    return found != callbacks.end() ? found->second : "another";
  };
  std::string text;
  for (const char* field : {record.native_namespace, record.openconfig_namespace, record.tree_name,
                            record.native_tag, record.openconfig_tag}) {
    text += std::string(field) + "\n";
  }
  text += name_of(record.to_native) + "\n" + name_of(record.to_openconfig) + "\n";
  return text + (record.last == nullptr ? "null" : "not null");
}

void framework_function() {}

TEST_F(Summaries, RegistrationsPairTheSummariesWithTheInterfaces) {
  struct Case {
    const char* name;
    void (*function)(yfw_map_reg_record*);
    const char* module_namespace;
    const char* tree_name;
    const char* tag;
  };
  for (const Case& each : {Case{"yfw_map_reg_ocifip_v4ma_oper", yfw_map_reg_ocifip_v4ma_oper,
                                kV4Module, "OC IFIP V4MA OPER", "ocifipv4ma"},
                           {"yfw_map_reg_ocifip_v6ma_oper", yfw_map_reg_ocifip_v6ma_oper, kV6Module,
                            "OC IFIP V6MA OPER", "ocifipv6ma"}}) {
    begin("Eth1", "7");
    yfw_map_reg_record record;
    std::memset(&record, 'x', sizeof record);
    record.framework_slots[0] = record.framework_slots[1] = framework_function;
    each.function(&record);
    const std::vector<const char*> texts = {each.module_namespace, kInterfaces, each.tree_name,
                                            each.tag, "interfaces"};
    std::string fields;
    std::string copies;
    for (const char* text : texts) {
      fields += std::string(text) + "\n";
      copies += std::string("copy ") + each.name + " size=81 count=81 =\"" + text + "\"\n";
    }
    EXPECT_EQ(shown(record), fields + "sibling's interfaces\n" + each.tag + "\nnull");
    EXPECT_EQ(platform.recorded(~0U), copies);
    for (const auto slot : record.framework_slots) EXPECT_EQ(slot, framework_function);
  }
}

}  // namespace
