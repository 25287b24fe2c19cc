// IPv4 of a subinterface to the native IPv4 configuration, through the family's walker.

#include <tuple>

#include "mapping_test.h"
#include "models.h"
#include "yfw_map_ifip_util.h"

using namespace recording;

namespace {

constexpr auto kWrite = NIDL_YFW_EDIT_WRITE;
constexpr auto kReplace = NIDL_YFW_EDIT_REPLACE;
constexpr auto kDelete = NIDL_YFW_EDIT_DELETE;
constexpr auto kRemove = NIDL_YFW_EDIT_REMOVE;
constexpr auto kNone = NIDL_YFW_EDIT_NONE;

constexpr auto list_entry = ymap_ox_ocifip_openconfigifip_list_lvla_ipv4_addresses_address;
constexpr auto key_leaf = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_address_ip;
constexpr auto config_ip = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_ip;
constexpr auto config_length = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_prefixlength;
constexpr auto config_mtu = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_mtu;
constexpr auto state_mtu = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_state_mtu;
constexpr auto config_dhcp = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_dhcpclient;
constexpr auto state_dhcp = ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_state_dhcpclient;

Tree ipv4(std::vector<Tree> addresses) {
  return node("ipv4", {node("addresses", std::move(addresses)).with(kNone)}).with(kNone);
}
// An address as a client gives it; without a prefix length, by its key alone.
Tree address(const char* ip, const char* prefix_length = nullptr) {
  if (prefix_length == nullptr) {
    return node("address", {leaf("ip", ip)});
  }
  return node("address", {leaf("ip", ip),
                          node("config", {leaf("ip", ip), leaf("prefix-length", prefix_length)})});
}
// A deleted address; its key does not carry the delete.
Tree gone(const Tree& entry, nidl_yfw_edit_oper operation = kDelete) {
  Tree tree = entry.with_all(operation);
  tree.children[0].operation = kWrite;
  return tree;
}

const Addresses kUnaddressed{{"0.0.0.0", 0}, {}};
const Addresses kLonely{{"10.0.0.1", 24}, {}};
const Addresses kThree{{"10.0.0.1", 24}, {{"10.0.1.1", 25}, {"10.0.2.1", 16}}};

struct Case {
  const char* name;
  std::uint32_t request_op;
  Tree tree;
  Addresses device;  // of Eth1
  std::string writes;
  cerrno result = 0;
  bool list_wide = false;
  nidl_yfw_edit_oper list_edit_op = kWrite;

  friend std::ostream& operator<<(std::ostream& stream, const Case& each) {
    return stream << each.name;
  }
};

#define OPENING "ipv4-network NONE; addresses NONE"

// clang-format off
const std::vector<Case> kCases = {
    {"ReplaceOfTwo", 8,
     ipv4({address("10.0.0.1", "24").with_all(kReplace), address("10.0.1.1", "24").with_all(kReplace)}), kThree,
     OPENING "; primary replace new; primary/address=10.0.0.1 replace; "
     "primary/address=10.0.0.1 replace; primary/netmask=255.255.255.0 replace; "
     "secondary replace new; secondary/address=10.0.1.1 replace; secondary/netmask=255.255.255.0 replace; "
     "secondary/address=10.0.1.1 replace; secondary/netmask=255.255.255.0 replace"},
    {"EntryWithAValue", 8, ipv4({{.tag = "address", .value = "v", .children = {leaf("ip", "10.0.0.1")}}}), kThree,
     OPENING "; primary=v write new; primary/address=10.0.0.1 write"},
    {"ReplaceThatMovesThePrimary", 8, ipv4({address("10.0.9.1"), address("10.0.0.1")}), kThree,
     OPENING "; primary write new; primary/address=10.0.9.1 write; secondary write new; secondary/address=10.0.0.1 write"},
    {"ReplaceInADeletedList", 8, ipv4({address("10.0.0.1", "24")}), kThree,
     OPENING "; secondary write new; secondary/address=10.0.0.1 write; secondary/netmask=255.255.255.0 write",
     0, false, kDelete},
    {"ReplaceWithInvalidAddress", 8, ipv4({address("10.0.0.256", "24")}), kThree,
     OPENING "; primary write new", 0xaaf2f400},
    {"ReplaceWithInvalidPrefixLength", 8, ipv4({address("10.0.0.1", "33")}), kThree,
     OPENING "; primary write new; primary/address=10.0.0.1 write; primary/address=10.0.0.1 write", 16},
    {"MergeOntoNone", 1, ipv4({address("10.0.0.1", "24")}), kUnaddressed,
     OPENING "; secondary write new; secondary/address=10.0.0.1 write; secondary/netmask=255.255.255.0 write; "
     "secondary/address=10.0.0.1 write; secondary/netmask=255.255.255.0 write"},
    {"MergeOfTheZeroAddressOntoNone", 1, ipv4({address("0.0.0.0")}), kUnaddressed,
     OPENING "; secondary write new; secondary/address=0.0.0.0 write"},
    {"MergeOntoThePrimary", 1, ipv4({address("10.0.0.1", "16")}), kThree,
     OPENING "; primary write new; primary/address=10.0.0.1 write; "
     "primary/address=10.0.0.1 write; primary/netmask=255.255.0.0 write"},
    {"CreateOfTwo", 15, ipv4({address("10.0.0.1"), address("10.0.9.1")}), kThree,
     OPENING "; primary write new; primary/address=10.0.0.1 write; secondary write new; secondary/address=10.0.9.1 write"},
    {"MergeOfAnInvalidAddress", 1, ipv4({address("ten")}), kLonely,
     OPENING "; secondary write new; secondary/address=ten write"},
    {"MergeWithInvalidPrefixLength", 1, ipv4({address("10.0.9.1", "33")}), kThree,
     OPENING "; secondary write new", 16},
    {"DeleteOfThePrimary", 1, ipv4({gone(address("10.0.0.1", "24"))}), kThree,
     OPENING "; secondary delete! new; secondary/address=10.0.1.1 delete!; "
     "primary write!; primary/address=10.0.1.1 write!; primary/netmask=255.255.255.128 write!"},
    {"RemoveOfThePrimaryWithItsKey", 1, ipv4({address("10.0.0.1").with_all(kRemove)}), kThree,
     OPENING "; secondary delete! new; secondary/address=10.0.1.1 delete!; "
     "primary write!; primary/address=10.0.1.1 write!; primary/netmask=255.255.255.128 write!"},
    {"DeleteOfTheOnlyAddress", 1, ipv4({gone(address("10.0.0.1", "24"))}), kLonely,
     OPENING "; primary delete!; primary/address=10.0.0.1 delete!"},
    {"DeleteOfASecondary", 1, ipv4({gone(address("10.0.1.1", "25"))}), kThree,
     OPENING "; secondary delete new; secondary/address=10.0.1.1 write; "
     "secondary/address delete; secondary/netmask delete"},
    {"DeleteOfAnInvalidAddress", 1, ipv4({gone(address("ten"))}), kUnaddressed,
     OPENING "; secondary delete new; secondary/address=ten write"},
    {"RemoveOfASecondaryWithItsKey", 1, ipv4({address("10.0.1.1").with_all(kRemove)}), kThree,
     OPENING "; secondary remove new"},
    {"DeleteOfThePrimaryAndTheFirstSecondary", 1,
     ipv4({gone(address("10.0.0.1")), gone(address("10.0.1.1"))}), kThree,
     OPENING "; secondary delete new; secondary/address=10.0.1.1 write; "
     "secondary delete! new; secondary/address=10.0.2.1 delete!; "
     "primary write!; primary/address=10.0.2.1 write!; primary/netmask=255.255.0.0 write!"},
    {"DeleteOfAll", 1,
     ipv4({gone(address("10.0.2.1")), gone(address("10.0.0.1")), gone(address("10.0.1.1"))}), kThree,
     OPENING "; secondary delete new; secondary/address=10.0.2.1 write; "
     "secondary delete new; secondary/address=10.0.1.1 write; primary delete!; primary/address=10.0.0.1 delete!"},
    {"MergeBeforeTheDeleteOfThePrimary", 1,
     ipv4({address("10.0.9.1", "24"), gone(address("10.0.0.1"))}), kLonely,
     OPENING "; secondary write new; secondary/address=10.0.9.1 write; secondary/netmask=255.255.255.0 write; "
     "secondary/address=10.0.9.1 write; secondary/netmask=255.255.255.0 write; "
     "primary delete!; primary/address=10.0.0.1 delete!"},
    {"MergeOfThePrimaryBeforeTheDeleteOfASecondary", 1,
     ipv4({address("10.0.0.1", "24"), gone(address("10.0.1.1"))}), kThree,
     OPENING "; primary write new; primary/address=10.0.0.1 write; "
     "primary/address=10.0.0.1 write; primary/netmask=255.255.255.0 write; "
     "secondary delete new; secondary/address=10.0.1.1 write"},
    {"DeleteOfThePrimaryBeforeAMerge", 1, ipv4({gone(address("10.0.0.1")), address("10.0.9.1")}), kLonely,
     OPENING "; secondary write new; secondary/address=10.0.9.1 write; "
     "primary delete!; primary/address=10.0.0.1 delete!"},
    // The netmask that follows is the written entry's: it is named once more.
    {"PromotionAtAMerge", 1, ipv4({gone(address("10.0.0.1")), address("10.0.9.1", "24")}), kThree,
     OPENING "; secondary write new; secondary/address=10.0.9.1 write; secondary/netmask=255.255.255.0 write; "
     "secondary delete! new; secondary/address=10.0.1.1 delete!; "
     "primary write!; primary/address=10.0.1.1 write!; primary/netmask=255.255.255.128 write!; "
     "secondary/address=10.0.9.1 write!; secondary/netmask=255.255.255.0 write"},
    {"PromotionOfABrokenSecondary", 1, ipv4({gone(address("10.0.0.1"))}),
     {{"10.0.0.1", 24}, {{"10.0.1.1", 33}}}, OPENING, 16},
    {"DeleteOfTheList", 1, ipv4({leaf("address", "v").with(kDelete)}), kThree,
     OPENING "; primary=v delete; addresses/secondaries delete new", 0, true},
    {"DeleteOfTheListBeforeAnAddress", 1,
     ipv4({node("address").with(kDelete), address("10.0.9.1", "24")}), kThree,
     OPENING "; primary delete; addresses/secondaries delete new; "
     "primary write new; primary/address=10.0.9.1 write; primary/netmask=255.255.255.0 write", 0, true},
    {"ReadOfAnAddress", 0, ipv4({address("10.0.0.1", "24")}), kThree,
     "addresses NONE; primary/address=10.0.0.1 NONE; secondary/address=10.0.0.1 NONE; "
     "primary/address=10.0.0.1 NONE; secondary/address=10.0.0.1 NONE; "
     "primary/netmask=255.255.255.0 NONE; secondary/netmask=255.255.255.0 NONE"},
    {"ReadOfAllAddresses", 10,
     ipv4({node("address", {leaf("ip"), node("config", {leaf("ip"), leaf("prefix-length")})})}), kThree,
     "addresses NONE; primary/address NONE; secondary/address NONE; primary/address NONE; secondary/address NONE; "
     "primary/netmask NONE; secondary/netmask NONE"},
    {"DeleteOfTheContainer", 1, node("ipv4").with(kDelete), kThree, "ipv4-network delete"},
    {"EmptyContainer", 1, node("ipv4"), kThree, ""},
    {"ReadOfTheContainer", 0, node("ipv4").with(kDelete), kThree, ""},
    {"RemoveOfTheAddresses", 1, node("ipv4", {node("addresses").with(kRemove)}), kThree,
     "ipv4-network NONE; addresses remove"},
    {"ReadOfTheAddressesContainer", 0, node("ipv4", {node("addresses").with(kDelete)}), kThree, ""},
    {"EmptyAddresses", 1, node("ipv4", {node("addresses")}), kThree, "ipv4-network NONE"},
    {"AddressesWithoutTheirChildren", 1, node("ipv4", {broken("addresses", 0)}), kThree,
     "ipv4-network NONE", 0xaaf29e00},
};
// clang-format on

class Ipv4 : public MappingTest {
 protected:
  Ipv4() { platform.interfaces["Eth1"] = kThree; }
  cerrno walk(const Tree& tree) {
    return ymap_ox_ocifip_openconfigifip_lvla_ipv4(&ctx, plant(tree), &out);
  }
  ymap::AddressDb& db() { return *ymap::address_db(&ctx); }
};

class Ipv4Request : public Ipv4, public testing::WithParamInterface<Case> {
 protected:
  Ipv4Request() { platform.interfaces["Eth1"] = GetParam().device; }
  cerrno run() {
    state.list_wide = GetParam().list_wide ? 1 : 0;
    state.list_edit_op = static_cast<std::uint8_t>(GetParam().list_edit_op);
    return walk(GetParam().tree);
  }
};

TEST_P(Ipv4Request, IsWritten) {
  next(GetParam().request_op);
  EXPECT_EQ(run(), GetParam().result);
  EXPECT_EQ(ipv4_writes(), calls(GetParam().writes));
  EXPECT_EQ(error_message(),
            GetParam().result == 0xaaf2f400 ? "Ipv4 address is not in correct format" : "-");
}

// Each write failing in turn ends the request with its result.
TEST_P(Ipv4Request, EndsWithTheResultOfAFailedWrite) {
  const std::string all = calls(GetParam().writes);
  int nth = 0;
  for (std::size_t end = all.find('\n'); end != std::string::npos; end = all.find('\n', end + 1)) {
    SCOPED_TRACE(++nth);
    next(GetParam().request_op);
    platform.fail("add_path", nth, 88);
    EXPECT_EQ(run(), 88U);
    EXPECT_EQ(ipv4_writes(), all.substr(0, end) + " result=0x58\n");
  }
}

INSTANTIATE_TEST_SUITE_P(Requests, Ipv4Request, testing::ValuesIn(kCases),
                         [](const auto& instance) { return instance.param.name; });

// --- leaves --------------------------------------------------------------------------------------

TEST_F(Ipv4, MapsALeafByTheKindOfTheRequest) {
  struct Leaf {
    const char* name;
    yfw_map_leaf_callback callback;
    std::uint32_t request_op;
    Tree tree;
    const char* write;
    cerrno result = 0;
  };
  const auto length = [](const char* text) { return leaf("prefix-length", text); };
  const Tree on = leaf("dhcp-client", "true");
  const Tree off = leaf("dhcp-client", "false");
  // clang-format off
  for (const Leaf& each : {
           Leaf{"mtu", config_mtu, 1, leaf("mtu", "01400"), "ipv4-network/mtu=01400 write"},
           Leaf{"mtu replace", config_mtu, 8, leaf("mtu", "9").with(kReplace), "ipv4-network/mtu=9 replace"},
           Leaf{"mtu read", config_mtu, 0, leaf("mtu"), "ipv4-network/mtu NONE"},
           Leaf{"mtu read with a value", config_mtu, 10, leaf("mtu", "9"), "ipv4-network/mtu=9 NONE"},
           Leaf{"mtu delete", config_mtu, 1, leaf("mtu", "9").with(kDelete), "ipv4-network/mtu delete"},
           Leaf{"state mtu read", state_mtu, 10, leaf("mtu"), "ipv4-network/mtu NONE"},
           Leaf{"state mtu edit", state_mtu, 1, leaf("mtu", "9"), ""},
           Leaf{"state mtu delete", state_mtu, 1, leaf("mtu", "9").with(kDelete), ""},
           Leaf{"dhcp on", config_dhcp, 1, on, "addresses/dhcp= write"},
           Leaf{"dhcp off", config_dhcp, 1, off, ""},
           Leaf{"dhcp nearly on", config_dhcp, 1, leaf("dhcp-client", "true1"), ""},
           Leaf{"dhcp without value", config_dhcp, 1, leaf("dhcp-client"), ""},
           Leaf{"dhcp delete", config_dhcp, 1, off.with(kRemove), "addresses/dhcp remove"},
           Leaf{"dhcp read", config_dhcp, 0, off, "addresses/dhcp=false NONE"},
           Leaf{"state dhcp read", state_dhcp, 10, leaf("dhcp-client"), "addresses/dhcp NONE"},
           Leaf{"state dhcp edit", state_dhcp, 1, on, ""},
           Leaf{"state dhcp delete", state_dhcp, 1, on.with(kDelete), ""},
           Leaf{"length 0", config_length, 1, length("0"), "secondary/netmask=0.0.0.0 write"},
           Leaf{"length 1", config_length, 1, length("1"), "secondary/netmask=128.0.0.0 write"},
           Leaf{"length 32", config_length, 1, length("32"), "secondary/netmask=255.255.255.255 write"},
           Leaf{"length 33", config_length, 1, length("33"), "", 16},
           Leaf{"negative length", config_length, 1, length("-1"), "", 16},
           Leaf{"no length", config_length, 1, leaf("prefix-length"), "", 16},
           Leaf{"length that is no number", config_length, 1, length("abc"), "secondary/netmask=0.0.0.0 write"},
           Leaf{"read of length 33", config_length, 0, length("33"),
                "primary/netmask=128.0.0.0 NONE; secondary/netmask=128.0.0.0 NONE"},
       }) {
    // clang-format on
    SCOPED_TRACE(each.name);
    next(each.request_op);
    EXPECT_EQ(each.callback(&ctx, plant(each.tree), &out), each.result);
    EXPECT_EQ(ipv4_writes(), calls(each.write));
  }
}

TEST_F(Ipv4, ComparesADhcpValueWithinBounds) {
  config_dhcp(&ctx, plant(leaf("dhcp-client", "true")), &out);
  EXPECT_EQ(platform.recorded(kTexts), calls("compare maximum=10 =\"true\" =\"true\""));
}

// What an entry's leaves write, by what its list entry has found out.
TEST_F(Ipv4, LeavesFollowTheirEntry) {
  struct Row {
    std::string flags;  // "first", "entry" and "matches" name those that are set, "wide" the list's
    nidl_yfw_edit_oper list_edit_op;
    nidl_yfw_edit_oper operation;  // of the leaves
    const char* key;
    const char* ip;
    const char* length;
  };
  constexpr const char* kKey =
      "secondary/address=10.0.0.1 write; secondary/netmask=255.0.0.0 write";
  constexpr const char* kPrimaryIp = "primary/address=10.0.0.1 write";
  constexpr const char* kSecondaryIp = "secondary/address=10.0.0.1 write";
  constexpr const char* kPrimaryMask = "primary/netmask=255.255.255.0 write";
  constexpr const char* kSecondaryMask = "secondary/netmask=255.255.255.0 write";
  constexpr const char* kGoneIp = "secondary/address delete";
  constexpr const char* kGoneMask = "secondary/netmask delete";
  for (const auto& [flags, list_edit_op, operation, key, ip, length] : {
           Row{"", kWrite, kWrite, kKey, kSecondaryIp, kSecondaryMask},
           Row{"", kDelete, kWrite, kKey, "", kSecondaryMask},
           Row{"", kWrite, kDelete, "", kGoneIp, kGoneMask},
           Row{"first", kWrite, kWrite, kPrimaryIp, kPrimaryIp, kPrimaryMask},
           Row{"first", kDelete, kWrite, kSecondaryIp, "", kSecondaryMask},
           Row{"first", kRemove, kWrite, kSecondaryIp, "", kSecondaryMask},
           Row{"first", kWrite, kDelete, "", kGoneIp, kGoneMask},
           Row{"entry", kWrite, kWrite, "", kPrimaryIp, ""},
           Row{"entry", kDelete, kWrite, "", "", ""},
           Row{"entry", kDelete, kDelete, "", "", ""},
           Row{"first entry", kWrite, kWrite, "", kPrimaryIp, ""},
           Row{"first entry", kDelete, kWrite, kSecondaryIp, "", kSecondaryMask},
           Row{"matches", kWrite, kWrite, kPrimaryIp, kPrimaryIp, kPrimaryMask},
           Row{"matches", kRemove, kWrite, kPrimaryIp, "", kPrimaryMask},
           Row{"matches", kWrite, kDelete, "", kGoneIp, kGoneMask},
           Row{"wide", kWrite, kWrite, "", kSecondaryIp, kSecondaryMask},
           Row{"wide", kWrite, kDelete, "", "", ""},
       }) {
    SCOPED_TRACE(flags + " " + std::to_string(list_edit_op) + " " + std::to_string(operation));
    const auto has = [&flag_names = flags](const char* name) -> std::uint32_t {
      return flag_names.find(name) != std::string::npos ? 1 : 0;
    };
    for (const auto& [callback, tree, writes] :
         {std::tuple{key_leaf, leaf("ip", "10.0.0.1"), key},
          {config_ip, leaf("ip", "10.0.0.1"), ip},
          {config_length, leaf("prefix-length", "24"), length}}) {
      next(YFW_MAP_REQUEST_MERGE);
      db().first_is_primary = has("first");
      db().entry_is_primary = has("entry");
      db().matches_primary = has("matches");
      db().prefix_text = "8";
      state.list_wide = static_cast<std::uint8_t>(has("wide"));
      state.list_edit_op = static_cast<std::uint8_t>(list_edit_op);
      EXPECT_EQ(callback(&ctx, plant(tree.with(operation)), &out), 0U);
      EXPECT_EQ(ipv4_writes(), calls(writes));
      // The primary's netmask follows promotion.
      EXPECT_EQ(db().entry_is_primary,
                callback == config_length && operation == kDelete ? 0 : has("entry"));
    }
  }
}

TEST_F(Ipv4, LeavesWithoutADatabaseAnswerAsForNoAddresses) {
  EXPECT_EQ(key_leaf(&ctx, plant(leaf("ip", "10.0.0.1")), &out), 0U);
  EXPECT_EQ(ipv4_writes(), calls("secondary/address=10.0.0.1 write"));
}

TEST_F(Ipv4, DeletesNothingWithoutAnInterface) {
  state.current_ifname[0] = '\0';
  EXPECT_EQ(config_mtu(&ctx, plant(leaf("mtu").with(kDelete)), &out), 0U);
  EXPECT_EQ(list_entry(&ctx, plant(gone(address("10.0.1.1"))), 1, &out), 0U);
  state.list_wide = 1;
  EXPECT_EQ(list_entry(&ctx, plant(node("address").with(kDelete)), 0, &out), 0U);
  EXPECT_EQ(ipv4_writes(), "");
  EXPECT_EQ(config_mtu(&ctx, plant(leaf("mtu", "9")), &out), 0U);
  EXPECT_EQ(ipv4_writes(), calls("ipv4-network/mtu=9 write"));
}

// --- containers and entries on their own ---------------------------------------------------------

TEST_F(Ipv4, AnEntryNeedsItsKey) {
  const Tree keyless = node("address", {node("config", {leaf("prefix-length", "24")})});
  for (const Tree& entry : {keyless, keyless.with(kDelete)}) {
    platform.forget_calls();
    EXPECT_EQ(list_entry(&ctx, plant(entry), 1, &out), 0xaaf2f000);
    EXPECT_EQ(ipv4_writes(), "");
    EXPECT_EQ(lines_of("ymap_ox_ocifip_openconfigifip_list_lvla_ipv4_addresses_address"),
              calls("trc Start; err Missing key.Key is mandatory for edit-config request; "
                    "trc No mapping done for this node; trc End"));
  }
}

TEST_F(Ipv4, TheContainerMustShowItsChildren) {
  for (const std::uint32_t claimed : {0U, 2U}) {
    platform.forget_calls();
    EXPECT_EQ(
        ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4(&ctx, plant(broken("ipv4", claimed)), 1, &out),
        0xaaf29e00);
    EXPECT_EQ(lines_of("ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4"),
              calls("trc Start; err Failed to get subtrees!; trc Mapping done for this node; "
                    "trc End"));
  }
}

TEST_F(Ipv4, TheContainerBeginsADatabaseAndCountsTheAddresses) {
  for (const bool list_wide : {false, true}) {
    next(YFW_MAP_REQUEST_MERGE);
    state.list_wide = list_wide ? 1 : 0;
    db().handled_count = 7;
    Node* tree =
        plant(ipv4({address("10.0.8.1"), leaf("visitor").in(kForeign), address("10.0.9.1")}));
    EXPECT_EQ(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4(&ctx, tree, 1, &out), 0U);
    EXPECT_EQ(db().handled_count, list_wide ? 7U : 0U);
    EXPECT_EQ(db().address_count, list_wide ? 0U : 2U);
  }
}

// A replaced list that is deleted first: its deleted entry is the first of the replace.
TEST_F(Ipv4, ADeletedEntryOfAReplacedListIsNotThePrimary) {
  db().replace_mode = 1;
  EXPECT_EQ(ymap_ox_ocifip_openconfigifip_lvla_ipv4_addresses_address(
                &ctx, plant(gone(address("10.0.0.1", "24"))), &out),
            0U);
  EXPECT_EQ(ipv4_writes(), calls("secondary delete new; secondary/address=10.0.0.1 write; "
                                 "secondary/address delete; secondary/netmask delete"));
  EXPECT_EQ(platform.recorded(kDevice), "");
}

TEST_F(Ipv4, NothingIsPromotedInAListThatIsNotDeleted) {
  for (const auto operation : {kWrite, kReplace, kDelete}) {
    next(YFW_MAP_REQUEST_MERGE);
    db().primary = {1, 24, 1};
    state.list_edit_op = static_cast<std::uint8_t>(operation);
    EXPECT_EQ(key_leaf(&ctx, plant(leaf("ip", "10.0.0.1").with(kDelete)), &out), 0U);
    EXPECT_EQ(ipv4_writes().empty(), operation != kDelete);
  }
}

TEST_F(Ipv4, APromotionGivesTheKeyItsOperationBack) {
  for (const Addresses& device : {kThree, kLonely}) {
    platform.interfaces["Eth1"] = device;
    for (const auto operation : {kWrite, kDelete}) {
      Tree entry = gone(address("10.0.0.1"));
      entry.children[0].operation = operation;
      Node* tree = plant(ipv4({entry}));
      EXPECT_EQ(ymap_ox_ocifip_openconfigifip_lvla_ipv4(&ctx, tree, &out), 0U);
      const Node& key = tree->children[0].children[0].children[0];
      EXPECT_EQ(key.edit_operation, operation);
      EXPECT_NE(key.flags & NIDL_YFW_FLAG_OPERATION_OVERRIDE, 0);
    }
  }
}

// The framework must not reuse a list's current entry while an entry, the MTU or a promotion is
// written.
TEST_F(Ipv4, AddsEntriesOfItsOwn) {
  std::string reuse;
  platform.on_write = [&] { reuse += state.list_entry_reuse != 0 ? "y" : "n"; };
  walk(node("ipv4", {node("addresses", {address("10.0.9.1", "24")}),
                     node("config", {leaf("mtu", "1400")})}));
  // The two containers, the entry, four leaves, the MTU.
  EXPECT_EQ(reuse, "yynyyyyn");
  reuse.clear();
  walk(ipv4({gone(address("10.0.1.1")), gone(address("10.0.0.1"))}));
  // The two containers, the secondary and its key, the promotion.
  EXPECT_EQ(reuse, "yynynnnnn");
}

// --- the interface -------------------------------------------------------------------------------

TEST_F(Ipv4, TheSubinterfaceIsLookedUpOnce) {
  const std::string caller = "ymap_ox_ocifip_openconfigifip_list_lvla_ipv4_addresses_address";
  for (const auto& [index, native] : {std::pair{"0", "Eth1"},
                                      {"", "Eth1"},
                                      {"3", "Eth1.3"},
                                      {"007", "Eth1.007"},
                                      {"abc", "Eth1"},
                                      {"-3", "Eth1"},
                                      {"0x3", "Eth1"},
                                      {"5x", "Eth1.5x"}}) {
    SCOPED_TRACE(index);
    platform.interfaces[native] = kThree;
    next(YFW_MAP_REQUEST_MERGE);
    std::snprintf(state.current_subif_index, sizeof state.current_subif_index, "%s", index);
    EXPECT_EQ(walk(ipv4({address("10.0.8.1"), gone(address("10.0.9.1"))})), 0U);
    std::string naming = "copy " + caller + " size=64 count=64 =\"Eth1\"";
    if (std::string(native) != "Eth1") {
      naming += "; append " + caller + " size=64 count=64 =\".\"; append " + caller +
                " size=64 count=64 =\"" + index + "\"";
    }
    EXPECT_EQ(platform.recorded(kTexts),
              calls(naming + "; copy get_interface_address size=65 count=64 =\"" + native + "\"; " +
                    naming));
    EXPECT_TRUE(platform.recorded(kDevice).ends_with(
        calls(std::string("find 7 1 ") + native + " 0; query 7 1 1703948 75 1; decode 2")));
    EXPECT_EQ(platform.calls_of("find"), 1);
  }
}

TEST_F(Ipv4, LooksNothingUpForAReplaceOrARead) {
  for (const std::uint32_t request_op : {0U, 8U, 10U}) {
    next(request_op);
    EXPECT_EQ(walk(ipv4({address("10.0.8.1"), address("10.0.9.1")})), 0U);
    EXPECT_EQ(platform.recorded(kDevice), "");
  }
}

TEST_F(Ipv4, AnUnknownInterfaceHasNoAddresses) {
  platform.interfaces.clear();
  EXPECT_EQ(walk(ipv4({address("10.0.0.1")})), 0U);
  EXPECT_EQ(ipv4_writes(), calls(OPENING "; secondary write new; "
                                         "secondary/address=10.0.0.1 write"));
}

TEST_F(Ipv4, TwoSubinterfacesDoNotMix) {
  platform.interfaces["Eth1.3"] = {{"10.3.0.1", 24}, {{"10.3.1.1", 24}}};
  platform.interfaces["Eth1.4"] = {{"10.4.0.1", 24}, {}};
  for (const char* index : {"3", "4"}) {
    platform.forget_calls();
    state.list_edit_op = kWrite;  // each list has its own
    std::snprintf(state.current_subif_index, sizeof state.current_subif_index, "%s", index);
    EXPECT_EQ(walk(ipv4({gone(address(index[0] == '3' ? "10.3.0.1" : "10.4.0.1"))})), 0U);
  }
  // The second has no secondary of its own to promote.
  EXPECT_EQ(ipv4_writes(), calls(OPENING "; primary delete!; primary/address=10.4.0.1 delete!"));
  // Nor does a list that is deleted as a whole.
  platform.forget_calls();
  state.list_edit_op = kWrite;
  state.list_wide = 1;
  EXPECT_EQ(walk(ipv4({node("address").with(kDelete), address("10.4.9.1")})), 0U);
  EXPECT_EQ(ipv4_writes(), calls(OPENING "; primary delete; addresses/secondaries delete new; "
                                         "primary write new"));
}

TEST_F(Ipv4, NamesThatDoNotFitAreReported) {
  struct Name {
    std::size_t length;
    const char* index;
    const char* message;  // "" when it fits
  };
  for (const auto& [length, index, message] :
       {Name{63, "0", ""}, Name{61, "3", ""},
        Name{62, "3", "err STRNCAT_S: Not enough space for src at Line number: "},
        Name{63, "3", "err STRNCAT_S: Not enough space for src at Line number: "},
        Name{64, "0", "err STRNCPY_S: Not enough space for src at Line number: "}}) {
    SCOPED_TRACE(length);
    next(YFW_MAP_REQUEST_MERGE);
    std::snprintf(state.current_ifname, sizeof state.current_ifname, "%s",
                  std::string(length, 'e').c_str());
    std::snprintf(state.current_subif_index, sizeof state.current_subif_index, "%s", index);
    const bool fits = message[0] == '\0';
    EXPECT_EQ(walk(ipv4({address("10.0.0.1")})), fits ? 0U : 406U);
    const std::string written = lines_of("report_copy_failure");
    EXPECT_TRUE(fits ? written.empty() : written.starts_with(message)) << written;
    EXPECT_EQ(platform.calls_of("find"), fits ? 1 : 0);
  }
}

}  // namespace
