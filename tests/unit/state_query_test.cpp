// Reads of OpenConfig state: the native queries that answer them.

#include "mapping_test.h"
#include "models.h"

using namespace recording;

namespace {

#define LEAF(path) ymap_ox_ocifip_openconfigifip_leaf_##path

class StateQueries : public MappingTest {
 protected:
  // Writes with short names: namespaces without what all of them begin with, the tops of the
  // private summaries and of the IPv6 details in one word, and no source or flags, which never
  // vary.
  static std::string asked() {
    std::string text = platform.recorded(kWrites);
    for (
        const auto& [from, to] : {
            std::pair{"urn:halvane:yang:Halvane-Ombrix-", ""},
            {"PRIVATE-ocifip-v4ma-oper /ocifipv4ma/interfaces/interface/subinterfaces/subinterface",
             "V4"},
            {"PRIVATE-ocifip-v6ma-oper /ocifipv6ma/interfaces/interface/subinterfaces/subinterface",
             "V6"},
            {"/interface-data/vrfs/vrf/details/detail", "/DETAIL"},
            {" source=NONE create=0 flags=1", ""},
            {" source=NONE create=1 flags=1", " new"},
        }) {
      replace_all(text, from, to);
    }
    return text;
  }
};

const std::string kArp = "add_path ipv4-arp-oper /arp/nodes/node/entries/entry/";
const std::string kNeighbor =
    "add_path ipv6-nd-oper /ipv6-node-discovery/nodes/node/neighbor-interfaces/neighbor-interface/"
    "host-addresses/host-address/";
const std::string kRegular =
    "add_path ipv6-ma-cfg /interface-configurations/interface-configuration/ipv6-network/addresses/"
    "regular-addresses/regular-address/";
const std::string kMtu =
    "add_path ipv6-ma-cfg /interface-configurations/interface-configuration/ipv6-network/mtu";
const std::string kDadAttempts =
    "add_path ipv6-nd-cfg /interface-configurations/interface-configuration/ipv6-neighbor/"
    "dad-attempts";
const std::string kSecondary =
    "add_path ipv4-io-cfg /interface-configurations/interface-configuration/ipv4-network/addresses/"
    "secondaries/secondary/address";
const std::string kV4 = " top=/ocifipv4ma steps=";
const std::string kV6 = " top=/ocifipv6ma steps=";

TEST_F(StateQueries, EachLeafAsksForWhatHoldsItsValue) {
  struct Case {
    yfw_map_leaf_callback callback;
    Tree leaf;
    std::string asked;
  };
  for (const Case& each : {
           Case{LEAF(lvla_ipv4_state_ip), leaf("ip", "10.0.0.1"),
                "add_leaf V4/ipv4/addresses/address/state/ip" + kV4 + "10 in=ip; " + kSecondary +
                    " =\"10.0.0.1\""},
           Case{LEAF(lvla_ipv4_state_prefixlength), leaf("prefix-length"),
                "add_leaf V4/ipv4/addresses/address/state/prefix-length" + kV4 +
                    "10 in=prefix-length"},
           Case{LEAF(lvla_ipv4_state_origin), leaf("origin"), ""},
           Case{LEAF(lvla_ipv4_counters_inpkts), leaf("in-pkts"),
                "add_leaf V4/ipv4/ipv4-state/counters/in-pkts" + kV4 + "9 in=in-pkts"},
           Case{LEAF(lvla_ipv4_counters_inoctets), leaf("in-octets"),
                "add_leaf V4/ipv4/ipv4-state/counters/in-octets" + kV4 + "9 in=in-octets"},
           Case{LEAF(lvla_ipv4_counters_outpkts), leaf("out-pkts"),
                "add_leaf V4/ipv4/ipv4-state/counters/out-pkts" + kV4 + "9 in=out-pkts"},
           Case{LEAF(lvla_ipv4_counters_outoctets), leaf("out-octets"),
                "add_leaf V4/ipv4/ipv4-state/counters/out-octets" + kV4 + "9 in=out-octets"},
           Case{LEAF(lvla_ipv6_counters_inpkts), leaf("in-pkts"),
                "add_leaf V6/ipv6/ipv6-state/counters/in-pkts" + kV6 + "9 in=in-pkts"},
           Case{LEAF(lvla_ipv6_counters_inoctets), leaf("in-octets"),
                "add_leaf V6/ipv6/ipv6-state/counters/in-octets" + kV6 + "9 in=in-octets"},
           Case{LEAF(lvla_ipv6_counters_outpkts), leaf("out-pkts"),
                "add_leaf V6/ipv6/ipv6-state/counters/out-pkts" + kV6 + "9 in=out-pkts"},
           Case{LEAF(lvla_ipv6_counters_outoctets), leaf("out-octets"),
                "add_leaf V6/ipv6/ipv6-state/counters/out-octets" + kV6 + "9 in=out-octets"},
           Case{LEAF(lvlb_ipv4_state_ip), leaf("ip", "10.0.0.9"), kArp + "address =\"10.0.0.9\""},
           Case{LEAF(lvla_ipv4_state_linklayeraddress), leaf("x"), kArp + "hardware-address"},
           Case{LEAF(lvlb_ipv4_state_origin), leaf("x"), kArp + "state"},
           Case{LEAF(lvla_ipv6_state_ip), leaf("ip", "2001:db8::1"),
                kRegular + "address =\"2001:db8::1\""},
           Case{LEAF(lvla_ipv6_state_prefixlength), leaf("x"), kRegular + "prefix-length"},
           Case{LEAF(lvla_ipv6_state_origin), leaf("x"), ""},
           Case{LEAF(lvlb_ipv6_state_ip), leaf("x"), kNeighbor + "host-address"},
           Case{LEAF(lvla_ipv6_state_linklayeraddress), leaf("x"),
                kNeighbor + "link-layer-address"},
           Case{LEAF(lvlb_ipv6_state_origin), leaf("x"), kNeighbor + "origin-encapsulation"},
           Case{LEAF(lvla_ipv6_state_isrouter), leaf("x"), kNeighbor + "is-router"},
           Case{LEAF(lvla_ipv6_state_neighborstate), leaf("x"), kNeighbor + "reachability-state"},
           Case{LEAF(lvla_ipv6_state_mtu), leaf("x"), kMtu},
           Case{LEAF(lvla_ipv6_state_dupaddrdetecttransmits), leaf("x"), kDadAttempts},
       }) {
    SCOPED_TRACE(each.asked);
    for (const std::uint32_t read : {YFW_MAP_REQUEST_READ_CONFIG, YFW_MAP_REQUEST_READ_STATE}) {
      next(read);
      EXPECT_EQ(each.callback(&ctx, plant(each.leaf), &out), 0U);
      EXPECT_EQ(asked(), calls(each.asked));
    }
    for (const auto operation : {NIDL_YFW_EDIT_WRITE, NIDL_YFW_EDIT_DELETE}) {
      next(YFW_MAP_REQUEST_MERGE);
      EXPECT_EQ(each.callback(&ctx, plant(each.leaf.with(operation)), &out), 0U);
      EXPECT_EQ(asked(), "");
    }
  }
}

TEST_F(StateQueries, AFailureIsTheResult) {
  for (const auto& [service, calls_made] : {std::pair{"add_leaf", 0}, {"add_path", 1}}) {
    next(YFW_MAP_REQUEST_READ_STATE);
    platform.fail(service, 1, 88);
    EXPECT_EQ(LEAF(lvla_ipv4_state_ip)(&ctx, plant(leaf("ip")), &out), 88U);
    EXPECT_EQ(platform.calls_of("add_path"), calls_made);
  }
}

// An operational entry of an interface is named by the node that the interface is on, or by the
// local node.
TEST_F(StateQueries, AnAddressStatusNamesNodeAndInterface) {
  const std::string entry = "add_path ipv6-ma-oper /ipv6-network/nodes/node/DETAIL new";
  const auto named = [&entry](const std::string& node) {
    const std::string path = "; add_path ipv6-ma-oper /ipv6-network/nodes/node/";
    return entry + path + "node-name =\"" + node + "\"" + path +
           "DETAIL/interface-name =\"Eth1.20\"" + path + "DETAIL/address/address" + path +
           "DETAIL/address/prefix-length" + path + "DETAIL/address/address-state";
  };
  const auto status = [this](cerrno result) {
    std::string("20").copy(state.current_subif_index, 3);
    EXPECT_EQ(LEAF(lvla_ipv6_state_status)(&ctx, plant(leaf("status", "PREFERRED")), &out), result);
    return asked();
  };
  next(YFW_MAP_REQUEST_READ_STATE);
  platform.interfaces = {{"Eth1.20", {}}};
  EXPECT_EQ(status(0), calls(named("node-42")));
  next(YFW_MAP_REQUEST_READ_STATE);
  platform.interfaces.clear();
  EXPECT_EQ(status(0), calls(named("node-1")));
  next(YFW_MAP_REQUEST_READ_STATE);
  platform.fail("my_node", 1, 5);
  EXPECT_EQ(status(0), calls(named("")));
  next(YFW_MAP_REQUEST_READ_CONFIG);
  EXPECT_EQ(status(0), calls(entry));
  next(YFW_MAP_REQUEST_MERGE);
  EXPECT_EQ(status(0), "");
  for (int nth = 1; nth <= 6; ++nth) {
    next(YFW_MAP_REQUEST_READ_STATE);
    platform.fail("add_path", nth, 88);
    status(88);
    EXPECT_EQ(platform.calls_of("add_path"), nth);
  }
}

TEST_F(StateQueries, AnAddressStatusNamesTheLocalNodeWithoutInterfaceManager) {
  IN_FRESH_PROCESS({
    request(YFW_MAP_REQUEST_READ_STATE);
    platform.interfaces["Eth1"] = {};
    platform.fail("bind", 1, 44);
    EXPECT_EQ(LEAF(lvla_ipv6_state_status)(&ctx, plant(leaf("status")), &out), 0U);
    EXPECT_EQ(platform.calls_of("find"), 0);
    EXPECT_EQ(platform.calls_of("my_node"), 1);
  });
}

}  // namespace
