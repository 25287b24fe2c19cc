// Native IPv4 state of interfaces, read back as OpenConfig.

#include "mapping_test.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_oper.h"

using namespace recording;
using ymap::Row;
using ymap::RowIndex;
using ymap::RowKind;

namespace {

#define CALLBACK(rest) ymap_xo_ocifip_halvaneombrixipv4iooper_##rest
constexpr const char* kCallbacks = "ymap_xo_ocifip_halvaneombrixipv4iooper_";
const ymap::Model& model = ymap::halvane_ombrix_ipv4_io_oper::kModel;

Tree own(const char* tag, std::vector<Tree> children = {}) {
  return node(tag, std::move(children)).in("urn:halvane:yang:Halvane-Ombrix-ipv4-io-oper");
}
Tree own(const char* tag, const char* value) {
  return leaf(tag, value).in("urn:halvane:yang:Halvane-Ombrix-ipv4-io-oper");
}

// The nodes that lead to those of an entry, from the top.
Tree in_node(const Tree& child) {
  return own("ipv4-network", {own("nodes", {own("node", {own("node-name", "0/0"), child})})});
}
Tree in_vrf(const Tree& child) {
  return in_node(
      own("interface-data", {own("vrfs", {own("vrf", {own("vrf-name", "default"), child})})}));
}
Tree detail(std::vector<Tree> children) {
  return in_vrf(own("details", {own("detail", std::move(children))}));
}

// The call that writes a path below a subinterface's IPv4; with a value, or without.
std::string add(const std::string& path, const std::string& value = "") {
  return std::string("add_path ") + kIfIp + " /interfaces/interface/subinterfaces/subinterface" +
         "/ipv4/" + path + (value.empty() ? "" : " =\"" + value + "\"") +
         " source=NONE create=0 flags=1";
}
const std::string kIp = add("address/state/ip", "10.0.0.1");
const std::string kLength = add("addresses/address/state/prefix-length", "24");
const std::string kOrigin = add("addresses/address/state/origin", "STATIC");
const std::string kMtu = add("state/mtu", "1500");
const std::string kFailed = " result=0x58";  // what 88 adds to the line of a call

const Tree kOwnIp = own("primary-address", "10.0.0.1");
const Tree kOwnLength = own("prefix-length", "24");
const Tree kOwnMtu = own("mtu", "1500");

class Ipv4State : public MappingTest {
 protected:
  // Starts a case anew; the nth write of the case fails, none at 0.
  void begin(int failing_write) {
    next(YFW_MAP_REQUEST_READ_STATE);
    platform.fail("add_path", failing_write, 88);
  }
  cerrno walk(const Tree& tree) { return CALLBACK(lvla_ipv4network)(&ctx, plant(tree), &out); }
};

// --- the callbacks by themselves -----------------------------------------------------------------

TEST_F(Ipv4State, CallbacksWriteAndReportTheirLastWrite) {
  constexpr auto kInterfaceData = [](yfw_map_ctx* c, const Node* in, Node* o) {
    return CALLBACK(cont_lvla_ipv4network_node_interfacedata)(c, in, in->child_count, o);
  };
  constexpr auto kPrimaryAddress = CALLBACK(leaf_lvla_ipv4network_detail_primaryaddress);
  constexpr auto kPrefixLength = CALLBACK(leaf_lvla_ipv4network_detail_prefixlength);
  constexpr auto kLargest = CALLBACK(leaf_lvla_ipv4network_detail_mtu);
  struct Case {
    yfw_map_leaf_callback callback;
    Tree tree;
    std::string expected;
    int failing_write = 0;
    cerrno result = 0;
  };
  for (const Case& each : {
           Case{kInterfaceData, own("interface-data"), add("address/state")},
           Case{kInterfaceData, own("interface-data"), add("address/state") + kFailed, 1, 88},
           Case{kInterfaceData, own("interface-data", {own("summary")}), ""},
           Case{kPrimaryAddress, kOwnIp, kIp},
           Case{kPrimaryAddress, own("primary-address", "any text"),
                add("address/state/ip", "any text")},
           Case{kPrimaryAddress, own("primary-address"), add("address/state/ip")},
           Case{kPrimaryAddress, kOwnIp, kIp + kFailed, 1, 88},
           Case{kPrefixLength, kOwnLength, kLength + "; " + kOrigin},
           Case{kPrefixLength, own("prefix-length", "/x"),
                add("addresses/address/state/prefix-length", "/x") + "; " + kOrigin},
           // A length that cannot be written is no failure.
           Case{kPrefixLength, kOwnLength, kLength + kFailed + "; " + kOrigin, 1},
           Case{kPrefixLength, kOwnLength, kLength + "; " + kOrigin + kFailed, 2, 88},
           Case{kLargest, kOwnMtu, kMtu},
           Case{kLargest, own("mtu", "09"), add("state/mtu", "09")},
           Case{kLargest, kOwnMtu, kMtu + kFailed, 1, 88},
       }) {
    SCOPED_TRACE(each.expected);
    begin(each.failing_write);
    EXPECT_EQ(each.callback(&ctx, plant(each.tree), &out), each.result);
    EXPECT_EQ(platform.recorded(kWrites), calls(each.expected));
  }
}

TEST_F(Ipv4State, InterfaceDataWithoutChildrenSaysSo) {
  EXPECT_EQ(walk(in_node(own("interface-data"))), 0U);
  EXPECT_EQ(lines_of(std::string(kCallbacks) + "cont_lvla_ipv4network_node_interfacedata"),
            calls("trc Start; trc No subtrees; trc Mapping done for this node; trc End"));
}

// --- entries through the walker ------------------------------------------------------------------

TEST_F(Ipv4State, DetailsAreWrittenInTheOrderOfTheInput) {
  const Tree name = own("interface-name", "Eth1");
  const Tree other = own("line-state", "up");
  const std::vector<Tree> all = {name, kOwnIp, other, kOwnLength, kOwnMtu};
  struct Case {
    std::vector<Tree> children;
    std::string expected;
    int failing_write = 0;
    cerrno result = 0;
  };
  for (const Case& each : {
           Case{all, kIp + "; " + kLength + "; " + kOrigin + "; " + kMtu},
           Case{{kOwnMtu, other, kOwnLength, kOwnIp, name},
                kMtu + "; " + kLength + "; " + kOrigin + "; " + kIp},
           Case{{name, kOwnLength}, kLength + "; " + kOrigin},
           Case{{name, other}, ""},
           Case{all, kIp + kFailed, 1, 88},
           Case{all, kIp + "; " + kLength + kFailed + "; " + kOrigin + "; " + kMtu, 2},
           Case{all, kIp + "; " + kLength + "; " + kOrigin + kFailed, 3, 88},
       }) {
    SCOPED_TRACE(each.expected);
    begin(each.failing_write);
    EXPECT_EQ(walk(detail(each.children)), each.result);
    EXPECT_EQ(platform.recorded(kWrites), calls(each.expected));
  }
}

TEST_F(Ipv4State, OtherLeavesAreReachedAndGiveNothing) {
  const auto stats = [](const char* container, const char* counter) {
    return in_node(own("statistics", {own("traffic", {own(container, {own(counter, "7")})})}));
  };
  struct Case {
    Tree tree;
    const char* callback;
  };
  for (const auto& [tree, callback] : {
           Case{in_vrf(own("briefs", {own("brief", {kOwnIp})})), "brief_primaryaddress"},
           Case{detail({own("secondary-address", {own("address", "10.0.0.2")})}),
                "secondaryaddress_address"},
           Case{detail({own("secondary-address", {kOwnLength})}), "secondaryaddress_prefixlength"},
           Case{stats("ipv4-stats", "input-packets"), "ipv4stats_inputpackets"},
           Case{stats("ipv4-stats", "encapsultion-failed"), "ipv4stats_encapsultionfailed"},
           Case{stats("icmp-stats", "reassebly-received"), "icmpstats_reasseblyreceived"},
       }) {
    SCOPED_TRACE(callback);
    begin(0);
    EXPECT_EQ(walk(tree), 0U);
    EXPECT_EQ(platform.recorded(kWrites), "");
    // The dispatch of a leaf writes a start and an end under its callback's name, too.
    EXPECT_EQ(lines_of(std::string(kCallbacks) + "leaf_lvla_ipv4network_" + callback),
              calls("trc Start; trc Start; trc End; trc End"));
  }
}

std::string marked_keys(const Node& node) {
  std::string keys = node.key_mark != 0 ? std::string(node.tag) + "\n" : "";
  for (std::uint32_t i = 0; i < node.child_count; ++i) {
    keys += marked_keys(node.children[i]);
  }
  return keys;
}

TEST_F(Ipv4State, EntriesAreNamedByPathAndKeys) {
  const Tree name = own("interface-name", "Eth1");
  const Tree lists =
      own("vrf", {own("vrf-name", "default"), own("briefs", {own("brief", {name})}),
                  own("details", {own("detail", {name, own("multicast-group", {own("x", "")}),
                                                 own("secondary-address", {kOwnLength})})})});
  const Node* in = plant(in_node(own("interface-data", {own("vrfs", {lists})})));
  EXPECT_EQ(CALLBACK(lvla_ipv4network)(&ctx, in, &out), 0U);
  EXPECT_EQ(marked_keys(*in), calls("node-name; vrf-name; interface-name; interface-name"));
  const std::string vrf = "current /ipv4-network/nodes/node/interface-data/vrfs/vrf";
  EXPECT_EQ(platform.recorded(kHierarchy),
            calls("push 1 ipv4-network; push 1 nodes; "
                  "push 2 node; current /ipv4-network/nodes/node; list node; "
                  "push 1 interface-data; push 1 vrfs; push 2 vrf; " +
                  vrf + "; list vrf; push 1 briefs; push 2 brief; " + vrf +
                  "/briefs/brief; list brief; pop brief; unlist brief; pop briefs; "
                  "push 1 details; push 2 detail; " +
                  vrf + "/details/detail; list detail; push 2 multicast-group; " + vrf +
                  "/details/detail/multicast-group; list multicast-group; "
                  "pop multicast-group; unlist multicast-group; push 2 secondary-address; " +
                  vrf +
                  "/details/detail/secondary-address; list secondary-address; "
                  "pop secondary-address; unlist secondary-address; pop detail; unlist detail; "
                  "pop details; pop vrf; unlist vrf; pop vrfs; pop interface-data; pop node; "
                  "unlist node; pop nodes; pop ipv4-network"));
}

TEST_F(Ipv4State, UnknownNodesArePassedOver) {
  const std::string walker = std::string(kCallbacks) + "lvla_ipv4network";
  EXPECT_EQ(walk(own("ipv4-network", {own("x"), node("nodes-of-others").in(kForeign)})), 0U);
  EXPECT_EQ(lines_of(walker), calls("trc Start; trc Unsupported tag. Ignoring.; trc End"));
  EXPECT_EQ(lines_of(walker + "_parse_augments"), calls("trc Start; trc End"));
}

// --- all nodes -----------------------------------------------------------------------------------

// A node for a row and for each row below it. Moves the index behind them.
Tree with_all_below(RowIndex& index) {
  const RowIndex parent = index;
  const Row& row = model.rows[index++];
  if (row.kind == RowKind::kLeaf) {
    return own(row.tag, "24");
  }
  std::vector<Tree> children;
  while (index < model.row_count && model.parents[index] == parent) {
    children.push_back(with_all_below(index));
  }
  return own(row.tag, children);
}

TEST_F(Ipv4State, OnlyThreeOfAllLeavesAreWritten) {
  RowIndex rows = 0;
  EXPECT_EQ(walk(with_all_below(rows)), 0U);
  EXPECT_EQ(platform.recorded(kWrites), calls(add("address/state/ip", "24") + "; " + kLength +
                                              "; " + kOrigin + "; " + add("state/mtu", "24")));
  for (RowIndex i = 0; i < rows; ++i) {
    const Row& row = model.rows[i];
    EXPECT_TRUE(row.kind == RowKind::kLeaf ? row.callback.leaf != nullptr
                                           : row.callback.hook != nullptr)
        << row.name << " has no callback of its own";
  }
}

}  // namespace
