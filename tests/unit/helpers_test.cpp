// The helpers: interface names, netmasks, copy failures, an interface's addresses, and its node.

#include <arpa/inet.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "mapping_test.h"
#include "yfw_map_ifip_util.h"

using namespace recording;

namespace {

std::uint32_t word(const char* address) {
  std::uint32_t word = 0;
  inet_pton(AF_INET, address, &word);
  return word;
}

class Helpers : public MappingTest {
 protected:
  ymap::AddressDb& db() { return *ymap::address_db(&ctx); }
};

// --- texts ---------------------------------------------------------------------------------------

TEST_F(Helpers, CopyFailuresAreReportedByKind) {
  for (const auto& [error, message] : {
           std::pair{400U, ": src/dest is NULL at Line number: 17"},
           {401, ": slen/dmax is 0 at Line number: 17"},
           {403, " dmax exceeds permissible length at Line number: 17"},
           {406, ": Not enough space for src at Line number: 17"},
           {0, nullptr},
           {402, nullptr},
           {22, nullptr},
       }) {
    for (const std::string kind : {"STRNCPY_S", "STRNCAT_S"}) {
      SCOPED_TRACE(kind + " " + std::to_string(error));
      platform.forget_calls();
      ymap::report_copy_failure(&ctx, error, 17, kind.c_str());
      EXPECT_EQ(platform.recorded(kLines),
                message != nullptr ? "err report_copy_failure " + kind + message + "\n" : "");
    }
  }
}

TEST_F(Helpers, InternalNamesHaveNoSlashes) {
  char name[] = "/Gig0/1//3/";
  EXPECT_EQ(ymap::yfw_convert_ifname_to_internal_name(name), nullptr);
  EXPECT_STREQ(name, "_Gig0_1__3_");

  ymap::InternalName converted;
  converted.fill('/');
  ymap::convert_to_internal_ifname(&ctx, converted, ("a/b" + std::string(70, 'c')).c_str());
  EXPECT_EQ(std::string(converted.data()), "a_b" + std::string(61, 'c'));
  EXPECT_TRUE(platform.recorded(kTexts).starts_with(
      "copy convert_to_internal_ifname size=65 count=64 =\"a/b"));
  EXPECT_EQ(platform.recorded(kLines), "");

  converted = {'x', '/', 'y'};
  platform.fail("copy", 1, 400);
  ymap::convert_to_internal_ifname(&ctx, converted, "a/b");
  EXPECT_STREQ(converted.data(), "x/y");
  EXPECT_TRUE(lines_of("report_copy_failure")
                  .starts_with("err STRNCPY_S: src/dest is NULL at Line number: "));
}

TEST_F(Helpers, NetmasksOfReadsAreNotBounded) {
  using Case = std::pair<std::optional<std::string>, const char*>;
  for (const auto& [length, netmask] : {Case{"24", "255.255.255.0"},
                                        {"0", "0.0.0.0"},
                                        {"32", "255.255.255.255"},
                                        {"9", "255.128.0.0"},
                                        {"33", "128.0.0.0"},
                                        {"64", "255.255.255.255"},
                                        {"x", "0.0.0.0"},
                                        {std::nullopt, "(none)"}}) {
    const char* text = ymap::oc_plat_to_ombrix_inv_name_conv_prefixlength(
        &ctx, *plant(leaf("prefix-length", length)));
    EXPECT_STREQ(text != nullptr ? text : "(none)", netmask) << length.value_or("none");
  }
  // Only the value flag says that there is a value.
  Node* unflagged = plant(leaf("prefix-length", "24"));
  unflagged->flags = 0;
  EXPECT_EQ(ymap::oc_plat_to_ombrix_inv_name_conv_prefixlength(&ctx, *unflagged), nullptr);
}

// --- the address table ---------------------------------------------------------------------------

TEST_F(Helpers, TheTableHoldsWhatTheRecordDoes) {
  EXPECT_EQ(ymap::populate_local_db(&ctx, nullptr), 22U);
  std::vector<iparm_secondary> secondaries(300);
  for (std::size_t i = 0; i < secondaries.size(); ++i) {
    secondaries[i] = {{10, 1, static_cast<std::uint8_t>(i / 256), static_cast<std::uint8_t>(i)},
                      static_cast<std::uint32_t>(i % 33)};
  }
  const iparm_record record{{10, 0, 0, 1}, 24, 300, secondaries.data()};
  EXPECT_EQ(ymap::populate_local_db(&ctx, &record), 0U);
  EXPECT_EQ(db().primary.address, word("10.0.0.1"));
  EXPECT_EQ(db().primary.prefix_length, 24U);
  for (std::size_t i = 0; i < 255; ++i) {
    EXPECT_EQ(std::memcmp(&db().secondaries[i].address, secondaries[i].address, 4), 0) << i;
    EXPECT_EQ(db().secondaries[i].prefix_length, i % 33) << i;
    EXPECT_EQ(db().secondaries[i].deleted, 0U) << i;
  }
  EXPECT_EQ(db().address_count + db().handled_count + db().no_address, 0U);
}

TEST_F(Helpers, AddressesAreComparedWithoutTheirLengths) {
  db().primary = {word("10.0.0.1"), 24, 0};
  db().secondaries[0] = {word("10.0.1.1"), 24, 0};
  db().secondaries[1] = {word("10.0.1.2"), 24, 0};
  EXPECT_TRUE(ymap::is_primary(&ctx, word("10.0.0.1"), 8));
  EXPECT_FALSE(ymap::is_primary(&ctx, word("10.0.0.2"), 24));
  EXPECT_FALSE(ymap::is_primary(&ctx, word("10.0.1.1"), 24));
  ymap::set_delete_flag_for_ip_in_localdb(&ctx, word("10.0.1.2"), 8);
  ymap::set_delete_flag_for_ip_in_localdb(&ctx, word("10.0.1.3"), 24);
  EXPECT_EQ(db().secondaries[0].deleted, 0U);
  EXPECT_EQ(db().secondaries[1].deleted, 1U);
  EXPECT_EQ(db().primary.deleted, 0U);
}

TEST_F(Helpers, TheFirstLiveSecondaryIsPromoted) {
  struct Case {
    const char* name;
    std::vector<ymap::AddressEntry> secondaries;
    std::uint32_t index;
  };
  constexpr std::uint32_t kNone = 0xffffffff;
  const std::vector<ymap::AddressEntry> all_deleted(255, {1, 24, 1});
  std::vector<ymap::AddressEntry> last_lives = all_deleted;
  last_lives.back().deleted = 0;
  for (const Case& each : {
           Case{"empty", {}, kNone},
           Case{"first", {{1, 24, 0}, {2, 24, 0}}, 0},
           Case{"first is deleted", {{1, 24, 1}, {2, 24, 0}}, 1},
           Case{"gap", {{0, 24, 0}, {2, 24, 1}, {3, 24, 0}}, 2},
           Case{"only a mark of 1 deletes", {{1, 24, 2}}, 0},
           Case{"all deleted", all_deleted, kNone},
           Case{"last of 255", last_lives, 254},
           Case{"the scan ends at 48", {{48, 24, 0}, {2, 24, 0}}, kNone},
           Case{"before 48", {{1, 24, 0}, {48, 24, 0}}, 0},
       }) {
    SCOPED_TRACE(each.name);
    ymap::AddressDb& database = *ymap::renew_address_db(&ctx);
    std::copy(each.secondaries.begin(), each.secondaries.end(), database.secondaries.begin());
    EXPECT_EQ(ymap::get_secondary_addr_index_to_promote(&ctx), each.index);
  }
}

// --- addresses of an interface -------------------------------------------------------------------

class FirstLookup : public Helpers {
 protected:
  FirstLookup() {
    platform.interfaces["Eth0_1_2"] = {{"10.0.0.1", 24}, {{"10.0.1.1", 25}}};
    forget_outputs();
  }
  void forget_outputs() {
    address = {'o', 'l', 'd'};
    prefix_length = 99;
  }
  cerrno look_up(const char* name = "Eth0/1/2") {
    return ymap::get_interface_address(&ctx, name, address, &prefix_length, 2);
  }
  static std::string lines() { return lines_of("get_interface_address"); }

  ymap::AddressText address{};
  std::uint32_t prefix_length = 0;
};

// The connections have been made.
class Lookup : public FirstLookup {
 protected:
  Lookup() {
    look_up("Eth9");
    next(YFW_MAP_REQUEST_MERGE);
  }
};

TEST_F(Lookup, FillsTheTable) {
  EXPECT_EQ(look_up(), 0U);
  EXPECT_STREQ(address.data(), "10.0.0.1");
  EXPECT_EQ(prefix_length, 24U);
  EXPECT_EQ(db().primary.address, word("10.0.0.1"));
  EXPECT_EQ(db().primary.prefix_length, 24U);
  EXPECT_EQ(db().secondaries[0].address, word("10.0.1.1"));
  EXPECT_EQ(db().secondaries[0].prefix_length, 25U);
  EXPECT_EQ(db().no_address, 0U);
  EXPECT_EQ(platform.recorded(~0U),
            calls("copy get_interface_address size=65 count=64 =\"Eth0/1/2\"; "
                  "find 7 1 Eth0_1_2 0; query 7 1 1703948 75 1; decode 2; "
                  "trc get_interface_address IP-MAP: Source address for interface Eth0/1/2 is "
                  "10.0.0.1/24\\n"));
}

TEST_F(Lookup, FailsStepByStep) {
  struct Case {
    const char* name;
    const char* interface;
    const char* failing;  // service, or "" for none
    cerrno failure;
    cerrno status;  // of the attribute
    cerrno result;
    std::string line;
    std::uint32_t no_address;
  };
  const auto unknown = [](const std::string& code) {
    return "Interface name Eth1 not found,rc = code " + code + ", due to error code " + code +
           "\\n";
  };
  const std::string not_found = " for interface Eth1 (IP Address not found)";
  // clang-format off
  for (const Case& each : {
           Case{"unknown", "Eth8", "", 0, 0, 0x409a0600, unknown(std::to_string(0x409a0600)), 1},
           Case{"find", "Eth1", "find", 33, 0, 33, unknown("33"), 1},
           Case{"query", "Eth1", "query", 34, 0, 34, "imc_attr_query failed : code 34" + not_found, 0},
           Case{"status", "Eth1", "", 0, 35, 35, "imc_attr_query: status failed : code 35" + not_found, 1},
           Case{"decode", "Eth1", "decode", 36, 0, 70, "TLV2ADDR failed with error : code 36\\n", 0},
       }) {
    // clang-format on
    SCOPED_TRACE(each.name);
    platform.interfaces.clear();
    next(YFW_MAP_REQUEST_MERGE);
    platform.interfaces[each.interface] = {{"10.0.0.1", 24}, {}};
    platform.attribute_status = each.status;
    platform.fail(each.failing, 1, each.failure);
    EXPECT_EQ(look_up("Eth1"), each.result);
    EXPECT_EQ(platform.recorded(kLines), "trc get_interface_address IP-MAP: " + each.line + "\n");
    EXPECT_STREQ(address.data(), "old");
    EXPECT_EQ(prefix_length, 99U);
    EXPECT_EQ(db().no_address, each.no_address);
    EXPECT_EQ(db().primary.address, 0U);
  }
}

TEST_F(Lookup, ReportsAFailedCopy) {
  platform.fail("copy", 1, 401);
  EXPECT_EQ(look_up(), 401U);
  EXPECT_TRUE(lines_of("report_copy_failure")
                  .starts_with("err STRNCPY_S: slen/dmax is 0 at Line number: "));
  EXPECT_EQ(platform.recorded(kDevice), "");
}

TEST_F(Lookup, KnowsInterfacesWithoutAddresses) {
  struct Case {
    Prefix primary;
    const char* address;
    std::uint32_t prefix_length;
    std::uint32_t no_address;
  };
  for (const Case& each :
       {Case{{"0.0.0.0", 0}, "0.0.0.0", 0, 1}, Case{{"0.0.0.0", 8}, "0.0.0.0", 8, 0},
        Case{{"10.0.0.1", 0}, "10.0.0.1", 0, 0}, Case{{}, "old", 99, 0}}) {
    SCOPED_TRACE(each.primary.address + "/" + std::to_string(each.primary.length));
    next(YFW_MAP_REQUEST_MERGE);
    forget_outputs();
    platform.interfaces["Eth0_1_2"] = {each.primary, {}};
    EXPECT_EQ(look_up(), 0U);
    EXPECT_STREQ(address.data(), each.address);
    EXPECT_EQ(prefix_length, each.prefix_length);
    EXPECT_EQ(db().no_address, each.no_address);
  }
}

TEST_F(FirstLookup, Connects) {
  IN_FRESH_PROCESS({
    EXPECT_EQ(look_up(), 0U);
    EXPECT_EQ(look_up(), 0U);
    const std::string lookup = "find 7 1 Eth0_1_2 0; query 7 1 1703948 75 1; decode 2";
    EXPECT_EQ(platform.recorded(kDevice),
              calls("event_manager; codec; bind 2; " + lookup + "; " + lookup));
    const std::string source = "trc IP-MAP: Source address for interface Eth0/1/2 is 10.0.0.1/24";
    EXPECT_EQ(lines(),
              calls("trc IP-MAP: Success in binding.\\n; " + source + "\\n; " + source + "\\n"));
  });
}

TEST_F(FirstLookup, CarriesOnWithoutEventManagerOrCodec) {
  IN_FRESH_PROCESS({
    platform.fail("event_manager", 1, 5);
    platform.fail("codec", 1, 5);
    for (const char* line : {"trc IP-MAP : EVM fails.\n", "trc IP-MAP : TLV init failed.\n",
                             "trc IP-MAP: Source address"}) {
      platform.forget_calls();
      EXPECT_EQ(look_up(), 0U);
      EXPECT_TRUE(lines().starts_with(line)) << lines();
    }
    // The event manager is kept once it is made, the codec once it is ready.
    EXPECT_EQ(platform.calls_of("event_manager"), 2);
    EXPECT_EQ(platform.calls_of("codec"), 2);
  });
}

TEST_F(FirstLookup, FailsWithoutConnection) {
  IN_FRESH_PROCESS({
    platform.fail("bind", 1, 44);
    EXPECT_EQ(look_up(), 44U);
    EXPECT_EQ(lines(),
              calls("trc IP-MAP : Failed in binding.\\n; trc IP-MAP: Interface name Eth0/1/2 not "
                    "found,rc = code 44, due to error code 44\\n"));
    EXPECT_EQ(platform.calls_of("find"), 0);
    EXPECT_EQ(db().no_address, 1U);
    EXPECT_STREQ(address.data(), "old");
    // The next lookup binds.
    platform.forget_calls();
    EXPECT_EQ(look_up(), 0U);
    EXPECT_TRUE(platform.recorded(kDevice).starts_with(calls("bind 2; find 7 1 Eth0_1_2 0")));
  });
}

// --- nodes ---------------------------------------------------------------------------------------

class NodeNames : public Helpers {
 protected:
  NodeNames() { name = {'o', 'l', 'd'}; }
  ymap::NodeName name{};
};

TEST_F(NodeNames, ComeFromTheSiblingsConnection) {
  EXPECT_EQ(ymap::get_node_info(&ctx, name, "Eth0/1"), 0U);
  EXPECT_STREQ(name.data(), "node-42");
  EXPECT_EQ(platform.recorded(~0U),
            calls("copy get_node_info size=64 count=64 =\"Eth0/1\"; internal_name Eth0/1; "
                  "trc get_node_info IP-MAP: internal name of interface Eth0/1 is internal-Eth0/1; "
                  "location 9 internal-Eth0/1; "
                  "trc get_node_info IP-MAP: location of interface Eth0/1 : code 0; "
                  "node_name 42 32; copy get_node_info size=32 count=32 =\"node-42\""));
}

TEST_F(NodeNames, OfUnknownInterfacesAreTheLocalNodes) {
  EXPECT_EQ(ymap::get_node_info_for_invalid_interface(&ctx, name), 0U);
  EXPECT_STREQ(name.data(), "node-1");
  EXPECT_EQ(platform.recorded(~0U),
            calls("my_node; node_name 1 32; "
                  "copy get_node_info_for_invalid_interface size=32 count=32 =\"node-1\""));
}

TEST_F(NodeNames, FailStepByStep) {
  struct Case {
    decltype(&ymap::get_node_info) function;
    const char* failing;  // which is the last call
    cerrno result;
    const char* name;
  };
  const auto local = [](yfw_map_ctx* context, ymap::NodeName& text, const char*) {
    return ymap::get_node_info_for_invalid_interface(context, text);
  };
  for (const Case& each : {
           Case{ymap::get_node_info, "copy", 77, "old"},
           Case{ymap::get_node_info, "location", 77, "old"},
           // The result is the lookup's, whatever becomes of the name.
           Case{ymap::get_node_info, "node_name", 0, "old"},
           Case{local, "my_node", 0, ""},
           Case{local, "node_name", 77, ""},
       }) {
    SCOPED_TRACE(each.failing);
    next(YFW_MAP_REQUEST_MERGE);
    name = {'o', 'l', 'd'};
    platform.fail(each.failing, 1, 77);
    EXPECT_EQ(each.function(&ctx, name, "Eth0/1"), each.result);
    EXPECT_STREQ(name.data(), each.name);
    const std::string made = platform.recorded(kDevice | kTexts);
    EXPECT_EQ(made.find(each.failing), made.rfind('\n', made.size() - 2) + 1);
    EXPECT_EQ(lines_of("get_node_info_for_invalid_interface"),
              std::string(each.failing) == "my_node" ? "trc \\nNo Node id found.\n" : "");
  }
}

}  // namespace
