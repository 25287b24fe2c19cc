// Native IPv4 configuration, and the interface manager's, read back as OpenConfig.

#include <arpa/inet.h>

#include "mapping_test.h"
#include "read_back_platform.h"
#include "ymap_database.h"
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"

using namespace recording;

namespace {

constexpr const char* kIpv4IoCfg = "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg";
constexpr const char* kIfmgrCfg = "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg";
constexpr const char* kInterfaceName =
    "/interface-configurations/interface-configuration interface-name";

// Calls of the search and of the making of a subinterface, as written() shows them.
const std::string kSearchInterface = "search output /interfaces/interface name=\"Eth1\" if";
const std::string kSearchSubinterface =
    "search interface /subinterfaces/subinterface index=\"0\" (null)";
const std::string kNewInterface =
    "if /interfaces/interface create=1 flags=8 stored; "
    "if /interfaces/interface/name =\"Eth1\" create=1 flags=0";
const std::string kNewSubinterface =
    "trim /interfaces/interface; if SUB create=1 flags=32 stored base=interface; "
    "if SUB/index =\"0\" create=0 flags=32 base=interface; untrim";

class ReadBackTest : public MappingTest {
 protected:
  ReadBackTest() { begin(); }
  ~ReadBackTest() override { state.current_list_node = nullptr; }

  // Starts a case anew: a configuration read of Eth1, of which the output holds nothing.
  void begin() {
    next(YFW_MAP_REQUEST_READ_CONFIG);
    read_back = {};
    platform.base_names = {{&interface_, "interface"}, {&subinterface_, "subinterface"}};
    platform.created_nodes = {{"/interfaces/interface", &interface_},
                              {"/interfaces/interface/subinterfaces/subinterface", &subinterface_}};
    state.current_list_node = nullptr;
    state.request.request_source = state.request.filter_fields = 0;
    name_interface("Eth1");
  }

  void name_interface(const std::string& name) {
    state.current_ifname[name.copy(state.current_ifname, sizeof state.current_ifname - 1)] = '\0';
    read_back.leaves[kInterfaceName] = name;
  }
  void has_interface() { read_back.entries["/interfaces/interface Eth1"] = &interface_; }
  void has_subinterface() { read_back.entries["/subinterfaces/subinterface 0"] = &subinterface_; }

  // A read of configuration ("c"), of state, too ("cs"), or of state alone ("s").
  void want(const std::string& what) {
    state.request.request_op =
        what == "c" ? YFW_MAP_REQUEST_READ_CONFIG : YFW_MAP_REQUEST_READ_STATE;
    state.request.request_source = what == "s" ? 2 : 0;
    state.request.filter_fields = what == "s" ? 1 : 0;
  }

  // Searches and writes, with short names: "if", "ip" and "tunnel" are namespaces, "SUB" is the
  // path of a subinterface, "ADDRESS" that of its IPv4 address entry.
  static std::string written() {
    std::string text = platform.recorded(kWrites | kSearch);
    for (const auto& [from, to] : {
             std::pair{"add_path http://openconfig.net/yang/interfaces/ip ", "ip "},
             {"add_path http://openconfig.net/yang/interfaces/tunnel ", "tunnel "},
             {"add_path http://openconfig.net/yang/interfaces ", "if "},
             {" http://openconfig.net/yang/interfaces\n", " if\n"},
             {"/interfaces/interface/subinterfaces/subinterface", "SUB"},
             {"SUB/ipv4/addresses/address", "ADDRESS"},
             {"/interfaces/interface/tunnel/ipv4/addresses/address", "TUNNEL"},
             {" source=NONE", ""},
             {" create=0 flags=1\n", "\n"},
             {" flags=1\n", "\n"},
         }) {
      replace_all(text, from, to);
    }
    return text;
  }

  Node interface_{};
  Node subinterface_{};
};

// --- interface and subinterface ------------------------------------------------------------------

TEST_F(ReadBackTest, AddressesMakeTheSubinterfaceCurrent) {
  const std::string empty_trim = "; trim SUB; untrim";
  struct Case {
    const char* ifname;
    bool has_interface, has_subinterface;
    std::string expected;
  };
  for (const Case& each : {
           Case{"Eth1", false, false,
                kSearchInterface + "; " + kNewInterface + "; " + kNewSubinterface + empty_trim},
           Case{"Eth1", true, false,
                kSearchInterface + "; " + kSearchSubinterface + "; " + kNewSubinterface +
                    empty_trim},
           Case{"Eth1", true, true, kSearchInterface + "; " + kSearchSubinterface + empty_trim},
           Case{"Eth1.20", false, false, "trim SUB; untrim"},
       }) {
    begin();
    SCOPED_TRACE(each.expected);
    name_interface(each.ifname);
    if (each.has_interface) has_interface();
    if (each.has_subinterface) has_subinterface();
    EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses(
                  &ctx, plant(node("addresses")), 1, &out),
              0U);
    EXPECT_EQ(written(), calls(each.expected));
    const bool without_dot = std::string(each.ifname) == "Eth1";
    EXPECT_EQ(state.current_list_node, without_dot ? &subinterface_ : nullptr);
  }
}

// The arguments are looked at when the work is done.
TEST_F(ReadBackTest, AddressesCheckTheirArgumentsLate) {
  EXPECT_EQ(
      ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses(&ctx, nullptr, 0, &out),
      0xaaf2a000);
  EXPECT_EQ(written(), calls(kSearchInterface + "; " + kNewInterface + "; " + kNewSubinterface +
                             "; trim SUB; untrim"));
  const std::string name = "ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses ";
  EXPECT_EQ(platform.recorded(kLines | kRefusals),
            calls("trc " + name + "Start; trc " + name + "No subtrees; err " + name +
                  "Invalid arguments passed!; error_path"));
}

TEST_F(ReadBackTest, AFailedWriteEndsThePlacing) {
  for (const auto& [nth, expected] : std::vector<std::pair<int, std::string>>{
           {1, "if /interfaces/interface create=1 flags=8 stored result=0x58; trim SUB; untrim"},
           {3, kNewInterface +
                   "; trim /interfaces/interface; if SUB create=1 flags=32 stored base=interface "
                   "result=0x58; untrim; trim SUB; untrim"}}) {
    begin();
    platform.fail("add_path", nth, 88);
    EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses(
                  &ctx, plant(node("addresses")), 1, &out),
              88U);
    EXPECT_EQ(written(), calls(kSearchInterface + "; " + expected));
  }
}

TEST_F(ReadBackTest, TheSubinterfaceIndexNeverMakesAnInterface) {
  const auto& callback = ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index;
  EXPECT_EQ(callback(&ctx, plant(node("x")), &out), 2U);
  EXPECT_EQ(written(), calls(kSearchInterface));
  begin();
  has_interface();
  EXPECT_EQ(callback(&ctx, plant(node("x")), &out), 0U);
  has_subinterface();
  EXPECT_EQ(callback(&ctx, plant(node("x")), &out), 0U);
  EXPECT_EQ(written(),
            calls(kSearchInterface + "; " + kSearchSubinterface + "; " + kNewSubinterface + "; " +
                  kSearchInterface + "; " + kSearchSubinterface));
  EXPECT_EQ(state.current_list_node, &subinterface_);
}

TEST_F(ReadBackTest, NamesAreSplitAtTheirFirstDot) {
  for (const auto& [name, interface, index] : {std::tuple{"Eth1", "Eth1", "0"},
                                               {"Eth1.100", "Eth1", "100"},
                                               {"Eth1.2.3", "Eth1", "2.3"},
                                               {"Eth1.", "Eth1", "0"},
                                               {"Eth0/1/2.7", "Eth0/1/2", "7"}}) {
    begin();
    name_interface(name);
    read_back.entries[std::string("/interfaces/interface ") + interface] = &interface_;
    ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index(&ctx, plant(node("x")), &out);
    std::string expected = kSearchInterface + "; " + kSearchSubinterface + "; " + kNewSubinterface;
    replace_all(expected, "\"Eth1\"", std::string("\"") + interface + "\"");
    replace_all(expected, "\"0\"", std::string("\"") + index + "\"");
    EXPECT_EQ(written(), calls(expected));
  }
}

// --- leaves and entries --------------------------------------------------------------------------

TEST_F(ReadBackTest, NodesBecomeWhatTheRequestWants) {
  constexpr auto kEntry = [](yfw_map_ctx* c, const Node* in, Node* o) {
    return ymap_xo_ocifip_halvaneombrixipv4iocfg_list_lvla_ipv4network_secondaries_secondary(
        c, in, in->child_count, o);
  };
  constexpr auto kPrimary = [](yfw_map_ctx* c, const Node* in, Node* o) {
    return ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses_primary(
        c, in, in->child_count, o);
  };
  constexpr auto kSecondaries = [](yfw_map_ctx* c, const Node* in, Node* o) {
    return ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network_addresses_secondaries(
        c, in, in->child_count, o);
  };
  constexpr auto kNetwork = [](yfw_map_ctx* c, const Node* in, Node* o) {
    return ymap_xo_ocifip_halvaneombrixipv4iocfg_cont_lvla_ipv4network(c, in, in->child_count, o);
  };
#define LEAF(path) ymap_xo_ocifip_halvaneombrixipv4iocfg_leaf_lvla_ipv4network_##path
  const Tree address = leaf("address", "10.0.0.1");
  const Tree netmask = leaf("netmask", "255.255.255.0");
  const std::string made = kSearchInterface + "; " + kSearchSubinterface + "; trim SUB; ";
  struct Case {
    yfw_map_leaf_callback callback;
    Tree tree;
    const char* wanted;
    std::string expected;
    const char* ifname = "Eth1";
  };
  for (const Case& each : {
           Case{kNetwork, node("ipv4-network"), "cs", "ip SUB/ipv4"},
           Case{kNetwork, node("ipv4-network", {node("addresses")}), "cs", ""},
           Case{kSecondaries, node("secondaries", {node("secondary")}), "cs", ""},
           Case{kPrimary, node("primary"), "c", "ip ADDRESS create=1"},
           Case{kPrimary, node("primary").with(NIDL_YFW_EDIT_REPLACE), "c", "ip ADDRESS create=1"},
           Case{kPrimary, node("primary").with(NIDL_YFW_EDIT_DELETE), "c",
                "ip ADDRESS source=delete create=1"},
           Case{kEntry, node("secondary"), "c", "ip ADDRESS create=1"},
           Case{kEntry, node("secondary").with(NIDL_YFW_EDIT_REMOVE), "c",
                "ip ADDRESS source=remove create=1"},

           Case{LEAF(primary_address), address, "c",
                "ip ADDRESS/ip =\"10.0.0.1\"; ip ADDRESS/config/ip =\"10.0.0.1\""},
           Case{LEAF(primary_address), address, "cs",
                "ip ADDRESS/ip =\"10.0.0.1\"; ip ADDRESS/config/ip =\"10.0.0.1\""},
           Case{LEAF(primary_address), address, "s", "ip ADDRESS/ip =\"10.0.0.1\""},
           Case{LEAF(primary_address), address, "c",
                "ip ADDRESS/ip =\"10.0.0.1\"; tunnel TUNNEL/ip =\"10.0.0.1\"; "
                "ip ADDRESS/config/ip =\"10.0.0.1\"; tunnel TUNNEL/config/ip =\"10.0.0.1\"",
                "tunnel-ip5"},
           Case{LEAF(primary_address), address, "s",
                "ip ADDRESS/ip =\"10.0.0.1\"; tunnel TUNNEL/ip =\"10.0.0.1\"", "tunnel-ipx"},
           Case{LEAF(primary_address), address, "s", "ip ADDRESS/ip =\"10.0.0.1\"", "tunnel-i"},
           Case{LEAF(primary_netmask), netmask, "cs", "ip ADDRESS/config/prefix-length =\"24\""},
           Case{LEAF(primary_netmask), netmask, "c",
                "ip ADDRESS/config/prefix-length =\"24\"; "
                "tunnel TUNNEL/config/prefix-length =\"24\"",
                "tunnel-ip5"},
           Case{LEAF(primary_netmask), netmask, "s", "", "tunnel-ip5"},

           Case{LEAF(secondary_address), address, "cs",
                "ip ADDRESS/ip =\"10.0.0.1\"; ip ADDRESS/config/ip =\"10.0.0.1\"; "
                "ip ADDRESS/state/ip =\"10.0.0.1\"",
                "tunnel-ip5"},
           Case{LEAF(secondary_address), address, "s",
                "ip ADDRESS/ip =\"10.0.0.1\"; ip ADDRESS/state/ip =\"10.0.0.1\""},
           Case{LEAF(secondary_netmask), netmask, "cs",
                "ip ADDRESS/config/prefix-length =\"24\"; ip ADDRESS/state/prefix-length =\"24\"; "
                "ip ADDRESS/state/origin =\"STATIC\"",
                "tunnel-ip5"},
           Case{LEAF(secondary_netmask), netmask, "c", "ip ADDRESS/config/prefix-length =\"24\""},
           Case{LEAF(secondary_netmask), leaf("netmask", "0.0.0.0"), "c",
                "ip ADDRESS/config/prefix-length =\"0\""},
           Case{LEAF(secondary_netmask), leaf("netmask", "255.255.255.255"), "c",
                "ip ADDRESS/config/prefix-length =\"32\""},
           Case{LEAF(secondary_netmask), leaf("netmask", "/24"), "cs",
                "ip ADDRESS/state/origin =\"STATIC\""},
           Case{LEAF(primary_netmask), leaf("netmask"), "cs", ""},

           Case{LEAF(mtu), leaf("mtu", "1400"), "cs",
                made + "ip SUB/ipv4/config/mtu =\"1400\"; ip SUB/ipv4/state/mtu =\"1400\"; untrim"},
           Case{LEAF(mtu), leaf("mtu", "1400"), "s",
                made + "ip SUB/ipv4/state/mtu =\"1400\"; untrim"},
           Case{LEAF(mtu), leaf("mtu", "1400"), "c",
                "trim SUB; ip SUB/ipv4/config/mtu =\"1400\"; untrim", "Eth1.7"},
       }) {
    begin();
    SCOPED_TRACE(each.expected);
    has_interface();
    has_subinterface();
    want(each.wanted);
    name_interface(each.ifname);
    EXPECT_EQ(each.callback(&ctx, plant(each.tree), &out), 0U);
    EXPECT_EQ(written(), calls(each.expected));
  }
}

// Each write that fails is the last one, and its result the callback's.
TEST_F(ReadBackTest, AFailedWriteIsTheResult) {
  const Tree address = leaf("address", "10.0.0.1");
  struct Case {
    yfw_map_leaf_callback callback;
    Tree tree;
    int writes;
  };
  for (const auto& [callback, tree, writes] : {
           Case{LEAF(primary_address), address, 4},
           {LEAF(secondary_address), address, 3},
           {LEAF(secondary_netmask), leaf("netmask", "255.0.0.0"), 3},
           {LEAF(primary_netmask), leaf("netmask", "255.0.0.0"), 2},
           {LEAF(mtu), leaf("mtu", "1400"), 2},
       }) {
    for (int nth = 1; nth <= writes; ++nth) {
      begin();
      has_interface();
      has_subinterface();
      want("cs");
      read_back.leaves[kInterfaceName] = "tunnel-ip5";
      platform.fail("add_path", nth, 88);
      EXPECT_EQ(callback(&ctx, plant(tree), &out), 88U);
      EXPECT_EQ(platform.calls_of("add_path"), nth);
    }
  }
}

TEST_F(ReadBackTest, ConfigurationIsLeftOutOnlyOfAFilteredOperationalRead) {
  for (const auto& [source, filter, wanted] : {std::tuple{0U, 0U, true},
                                               {0U, 1U, true},
                                               {2U, 0U, true},
                                               {1U, 1U, true},
                                               {2U, 1U, false}}) {
    begin();
    state.request.request_source = source;
    state.request.filter_fields = filter;
    LEAF(primary_netmask)(&ctx, plant(leaf("netmask", "255.0.0.0")), &out);
    EXPECT_EQ(written(), wanted ? "ip ADDRESS/config/prefix-length =\"8\"\n" : "");
  }
}

// --- DHCP client ---------------------------------------------------------------------------------

class DhcpReadBack : public ReadBackTest {
 protected:
  static constexpr const char* kBind = "readable?; database /oper/ipv4-io/ 4";
  static constexpr const char* kItem = "item if/Eth0_1_2.7/0x60000001/1/ifdetail";
  static constexpr const char* kDecode = "decode_record ipv4_if_detail 1";
  static constexpr const char* kRelease = "free_record ipv4_if_detail; unbind";

  // Reads back within a process of its own, so that the client is looked for.
  std::string devices() {
    name_interface("Eth0/1/2.7");
    EXPECT_EQ(LEAF(addresses_dhcp)(&ctx, plant(leaf("dhcp", "")), &out), result);
    EXPECT_EQ(ymap::dhcp_database, nullptr);
    return platform.recorded(kDevice);
  }
  static std::string line(const std::string& text) {
    return "trc ymap_ombrix_2_oc_v4_dhcpclient " + text + "\n";
  }
  static void lease(std::uint32_t prefix_length) {
    read_back.detail.emplace();
    inet_pton(AF_INET, "10.9.8.7", &read_back.detail->PrimaryAddress);
    read_back.detail->PrefixLength = prefix_length;
  }

  cerrno result = 0;
};

TEST_F(DhcpReadBack, WritesTheLease) {
  IN_FRESH_PROCESS({
    lease(24);
    want("cs");
    EXPECT_EQ(devices(),
              calls(std::string(kBind) + "; " + kItem + "; " + kDecode + "; " + kRelease));
    EXPECT_EQ(written(),
              calls("ip SUB/ipv4/config/dhcp-client =\"true\"; "
                    "ip SUB/ipv4/state/dhcp-client =\"true\"; "
                    "ip ADDRESS/state/ip =\"10.9.8.7\"; ip ADDRESS/state/prefix-length =\"24\"; "
                    "ip ADDRESS/state/origin =\"DYNAMIC\""));
    // A configuration read holds no lease, a lease of length 0 is none, and a failed write ends it.
    platform.forget_calls();
    want("c");
    devices();
    EXPECT_EQ(written(), calls("ip SUB/ipv4/config/dhcp-client =\"true\""));
    platform.forget_calls();
    want("s");
    lease(0);
    devices();
    EXPECT_EQ(written(), calls("ip SUB/ipv4/state/dhcp-client =\"true\""));
    lease(8);
    result = 88;
    const int before = platform.calls_of("add_path");
    platform.fail("add_path", 3, 88);
    devices();
    EXPECT_EQ(platform.calls_of("add_path"), before + 3);
  });
}

TEST_F(DhcpReadBack, AMissingLeaseIsNoFailure) {
  IN_FRESH_PROCESS({
    struct Case {
      const char* service;
      cerrno failure;
      std::string devices;
      std::string line;
    };
    const std::string bound = std::string("database /oper/ipv4-io/ 4; ");
    for (const Case& each : {
             Case{"", 0, std::string(kBind) + "; " + kItem + "; unbind",
                  "No matching entries found"},
             Case{"database", 9, "database /oper/ipv4-io/ 4 result=0x9",
                  "Failed to bind to SysDB: =code 9"},
             Case{"item", 3, bound + kItem + " result=0x3; unbind", "No entries found"},
             Case{"decode_record", 7, bound + kItem + "; " + kDecode + " result=0x7; " + kRelease,
                  "Error retrieving client info: code 7"},
         }) {
      const bool looked_for = each.failure == 0;
      if (!looked_for) {
        begin();
        lease(24);
        platform.fail(each.service, 1, each.failure);
      }
      EXPECT_EQ(devices(), calls(each.devices));
      EXPECT_EQ(written(), "");
      EXPECT_NE(platform.recorded(kLines).find(line(each.line)), std::string::npos)
          << platform.recorded(kLines);
    }
  });
}

TEST_F(DhcpReadBack, WithoutAClientNothingIsBound) {
  IN_FRESH_PROCESS({
    platform.client_installed = false;
    EXPECT_EQ(devices(), "readable?\n");
    EXPECT_NE(platform.recorded(kLines).find(line("Failed to bind to SysDB: =code 2155987456")),
              std::string::npos)
        << platform.recorded(kLines);
  });
}

// --- entries and walkers -------------------------------------------------------------------------

TEST_F(ReadBackTest, TheEntryWalksItsOwnNodeAndPassesOverOthers) {
  const std::string name =
      "ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration";
  const Tree entry = node("interface-configuration",
                          {leaf("active", "act").in(kIfmgrCfg), node("ipv4-network").in(kIpv4IoCfg),
                           node("ipv4-network-forwarding").in(kIpv4IoCfg)})
                         .in(kIfmgrCfg);
  EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration(
                &ctx, plant(entry), &out),
            0U);
  EXPECT_EQ(written(), calls("ip SUB/ipv4"));
  EXPECT_EQ(lines_of(name),
            calls("trc Start; trc Processing tag 'active'; trc Processing tag 'ipv4-network'; "
                  "trc Processing tag 'ipv4-network-forwarding'; trc Unsupported tag. Ignoring.; "
                  "trc End"));
  EXPECT_EQ(lines_of("ymap_xo_ocifip_halvaneombrixipv4iocfg_lvla_interface_configuration_parse_"
                     "augments"),
            calls("trc Start; trc End"));
  // The second entry takes the other node of the model.
  begin();
  EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvlb_interface_configuration(
                &ctx, plant(entry), &out),
            0U);
  EXPECT_EQ(written(), "");
  EXPECT_EQ(lines_of("ymap_xo_ocifip_halvaneombrixipv4iocfg_lvla_ipv4networkforwarding"),
            calls("trc Start; trc End"));
}

TEST_F(ReadBackTest, ListsAreRecordedByTheirSchemaPath) {
  const auto entry = [](const char* list, const char* tag) {
    return node("ipv4-network",
                {node("helper-addresses", {node(list, {leaf("address", "1.2.3.4")})}),
                 node("addresses", {node("secondaries", {node(tag, {leaf("x")})})})});
  };
  const auto own = [](Tree tree, const auto& self) -> Tree {
    tree.module_namespace = kIpv4IoCfg;
    for (Tree& child : tree.children) child = self(child, self);
    return tree;
  };
  EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iocfg_lvla_ipv4network(
                &ctx, plant(own(entry("helper-address", "secondary"), own)), &out),
            0U);
  const std::string list =
      "current /a1:interface-configurations/a1:interface-configuration"
      "/ipv4-network/";
  const std::string hierarchy = platform.recorded(kHierarchy);
  for (const char* path :
       {"helper-addresses/helper-address\n", "addresses/secondaries/secondary\n"}) {
    EXPECT_NE(hierarchy.find(list + path), std::string::npos) << hierarchy;
  }
}

TEST_F(ReadBackTest, TheEntryReportsWhatCannotBeRead) {
  const auto& callback = ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration;
  Tree untagged = node("x");
  untagged.tag.reset();
  EXPECT_EQ(callback(&ctx, plant(broken("interface-configuration", 1)), &out), 0xaaf29e00);
  EXPECT_EQ(callback(&ctx, plant(node("interface-configuration", {untagged})), &out), 0xaaf29e00);
  platform.fail("add_path", 1, 88);
  EXPECT_EQ(callback(&ctx,
                     plant(node("interface-configuration",
                                {node("ipv4-network").in(kIpv4IoCfg), untagged})),
                     &out),
            88U);
}

TEST_F(ReadBackTest, TheInterfaceManagerMapsNothing) {
  const Tree entry =
      node("interface-configuration",
           {leaf("active", "act"), leaf("interface-name", "Eth1"), leaf("shutdown", ""),
            node("dampening", {leaf("args", "x")}),
            node("mtus", {node("mtu", {leaf("owner", "ether"), leaf("mtu", "9000")})}),
            node("ipv4-network").in(kIpv4IoCfg)});
  const auto everywhere = [](Tree tree, const auto& self) -> Tree {
    if (std::string(tree.module_namespace) != kIpv4IoCfg) tree.module_namespace = kIfmgrCfg;
    for (Tree& child : tree.children) child = self(child, self);
    return tree;
  };
  const Node* in = plant(everywhere(node("interface-configurations", {entry}), everywhere));
  EXPECT_EQ(ymap_xo_ocifip_halvaneombrixifmgrcfg_lvla_interfaceconfigurations(&ctx, in, &out), 0U);
  EXPECT_EQ(written(), "");
  EXPECT_EQ(platform.recorded(kHierarchy),
            calls("push 1 interface-configurations; push 2 interface-configuration; "
                  "current /interface-configurations/interface-configuration; "
                  "list interface-configuration; push 1 dampening; pop dampening; push 1 mtus; "
                  "push 2 mtu; current /interface-configurations/interface-configuration/mtus/mtu; "
                  "list mtu; pop mtu; unlist mtu; pop mtus; pop interface-configuration; "
                  "unlist interface-configuration; pop interface-configurations"));
  EXPECT_EQ(
      lines_of("ymap_xo_ocifip_halvaneombrixifmgrcfg_leaf_lvla_interfaceconfigurations_mtu_owner"),
      calls("trc Start; trc End"));
  EXPECT_EQ(in->children[0].children[0].key_mark, 1);
  EXPECT_EQ(in->children[0].children[2].key_mark, 0);
}

}  // namespace
