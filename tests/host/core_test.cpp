// What the framework makes of a mapping's calls: placement, operations, hierarchy, input, records.
#include <array>
#include <deque>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cases.h"
#include "core_fixture.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/stack.h"

namespace ocifip {
namespace {

const std::string kSecondary = kNetwork + "/addresses/secondaries/secondary";

// --- placement -----------------------------------------------------------------------------------

TEST_F(CoreTest, NativeWritesGoUnderTheSubinterfaceBeingMapped) {
  map_subinterface("Eth1", "0");
  add({kNetwork + "/mtu", "1400"});
  map_subinterface("Eth1", "007");
  add({kNetwork + "/mtu", "1300"});
  map_subinterface("Eth1", "none");
  add({kNetwork + "/addresses/dhcp", ""});
  EXPECT_EQ(path_of(add({.path = kNative, .create = true})),
            kNative + "[active='act'][interface-name='Eth1']");
  EXPECT_EQ(output(),
            "{Eth1}/ipv4-network/addresses/dhcp = \n"
            "{Eth1}/ipv4-network/mtu = 1400\n"
            "{Eth1.007}/ipv4-network/mtu = 1300\n");
}

TEST_F(CoreTest, AnEntryIsOneWithTheOlderOneThatHasItsKeys) {
  map_subinterface("Eth1", "0");
  nidl_yfw_datatree* older = add({.path = kSecondary, .create = true});
  add({kSecondary + "/address", "10.0.0.1"});
  nidl_yfw_datatree* newer = add({.path = kSecondary, .create = true});
  add({kSecondary + "/route-tag", "7"});
  add({kSecondary + "/address", "10.0.0.1"});
  add({kSecondary + "/netmask", "255.0.0.0"});
  EXPECT_EQ(OutputTree::node_of(newer), OutputTree::node_of(older));
  add({.path = "/route-tag", .value = "8", .base = newer});
  // Another value of the key means another entry, which becomes current.
  add({kSecondary + "/address", "10.0.0.2"});
  add({kSecondary + "/netmask", "255.255.0.0"});
  add({kSecondary + "/address", "10.0.0.1"});
  add({kSecondary + "/netmask", "255.255.255.0"});
  add({.path = kSecondary, .create = true});
  EXPECT_EQ(output(),
            "{Eth1}/ipv4-network/addresses/secondaries/secondary[address='10.0.0.1']/netmask"
            " = 255.255.255.0\n"
            "{Eth1}/ipv4-network/addresses/secondaries/secondary[address='10.0.0.1']/route-tag"
            " = 8\n"
            "{Eth1}/ipv4-network/addresses/secondaries/secondary[address='10.0.0.2']/netmask"
            " = 255.255.0.0\n"
            "{Eth1}/ipv4-network/addresses/secondaries/secondary\n");
}

TEST_F(CoreTest, OnlyWithTheRequestsPermissionAnEntryThatWaitsForItsKeysIsReused) {
  map_subinterface("Eth1", "0");
  nidl_yfw_datatree* waiting = add({.path = kSecondary, .create = true});
  EXPECT_NE(add({.path = kSecondary, .create = true}), waiting);
  waiting = add({.path = kSecondary});
  request->state().list_entry_reuse = 1;
  EXPECT_EQ(add({.path = kSecondary, .create = true}), waiting);
  add({kSecondary + "/address", "10.0.0.1"});
  EXPECT_NE(add({.path = kSecondary, .create = true}), waiting);
}

TEST_F(CoreTest, LongListsOfSeveralKeysHoldEachEntryOnce) {
  map_subinterface("Eth1", "0");
  const std::string helper = kNetwork + "/helper-addresses/helper-address";
  for (int i = 0; i < 1000; ++i) {
    add({.path = helper, .create = true});
    add({helper + "/address", std::to_string(i % 500 / 2).c_str()});
    add({helper + "/vrf-name", i % 2 == 0 ? "red" : "blue"});
  }
  // The current entry is 249 blue: its sibling that differs in the second key is there already.
  add({helper + "/vrf-name", "red"});
  const std::string text = output();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 500);
  // Another address leaves the name of the VRF to be written.
  EXPECT_TRUE(path_of(add({helper + "/address", "250"})).ends_with("[address='250']/address"));
  nidl_yfw_datatree* base = add({kNetwork});
  nidl_yfw_datatree* found = nullptr;
  const auto search = [&](const char* value, const char* key) {
    return yfw_map_search_list(ctx, base, &found, "/helper-addresses/helper-address", value, key,
                               nullptr);
  };
  EXPECT_EQ(search("123", "address"), kOk);
  EXPECT_EQ(add({.path = "/vrf-name", .base = found})->value, std::string("red"));
  EXPECT_EQ(search("blue", "vrf-name"), kOk);
  EXPECT_EQ(add({.path = "/address", .base = found})->value, std::string("0"));
  EXPECT_NE(search("251", "address"), kOk);
  EXPECT_NE(search("0", "metric"), kOk);
}

// In a short list and in a long one. The way in which an address was written first stays.
TEST_F(CoreTest, AnAddressNamesOneEntryHoweverItIsWritten) {
  const std::string neighbor = "/ipv6-neighbor/neighbors/neighbor";
  const auto write = [&](const std::string& path, const char* value, bool create = false) {
    add({path, value, -1, create, "urn:halvane:yang:Halvane-Ombrix-ipv6-nd-cfg",
         YFW_MAP_PATH_PLAIN});
  };
  const auto write_entry = [&](const std::string& address, const char* mac) {
    write(neighbor, nullptr, true);
    write(neighbor + "/interface-name", "Eth1");
    write(neighbor + "/neighbor-address", address.c_str());
    write(neighbor + "/mac-address", mac);
  };
  std::string expected;
  for (const std::string digit : {"A", "B", "C", "D", "E", "F", "1A", "1B", "1C", "1D"}) {
    write_entry("2001:DB8::" + digit, "00");
    std::string other = "2001:db8:0::" + digit;
    other.back() = static_cast<char>(other.back() - 'A' + 'a');
    write_entry(other, "01");
    expected += neighbor + "[neighbor-address='2001:DB8::" + digit +
                "'][interface-name='Eth1']/mac-address = 01\n";
    EXPECT_EQ(output(), expected);
  }
}

TEST_F(CoreTest, AWriteBeginsWhereThePrefixTheSlotAndTheBaseSay) {
  const auto interface = [&](const char* name) {
    return search_or_add(out, "/interfaces/interface", name, "name", nullptr);
  };
  const auto subinterface = [&](nidl_yfw_datatree* above, const char* index) {
    return search_or_add(above, "/subinterfaces/subinterface", index, "index", nullptr);
  };
  for (const auto& each : cases::read(OCIFIP_CASES "begun-writes.txt")) {
    begin("{}");
    std::map<std::string, nidl_yfw_datatree*> nodes = {{"", nullptr}, {"root", out}};
    interface("Eth2");
    nodes["Eth1"] = interface("Eth1");
    nodes["Eth1.3"] = subinterface(nodes["Eth1"], "3");
    subinterface(nodes["Eth1"], "4");
    nodes["Eth2.0"] = subinterface(interface("Eth2"), "0");
    request->state().current_list_node = nodes.at(each["slot"]);
    request->set_trim_prefix(each["prefix"]);
    EXPECT_EQ(path_of(add({.path = each["path"],
                           .module = kIfIp,
                           .flags = static_cast<unsigned>(std::stoul(each["flags"])),
                           .base = nodes.at(each["base"])})),
              each["written"])
        << each.where;
  }
}

TEST_F(CoreTest, AListIsPassedThroughTheEntryThatTheInputOrTheOutputNames) {
  for (const auto& each : cases::read(OCIFIP_CASES "passed-lists.txt")) {
    begin("{}");
    if (each.has("current")) {
      search_or_add(out, "/interfaces/interface", each["current"].c_str(), "name", kOcInterfaces);
    }
    std::deque<std::vector<std::string>> texts;
    std::deque<std::vector<InputNode>> leaves;
    std::deque<InputNode> entries;
    for (const std::string& line : cases::lines_of(each["walked"])) {
      auto& words = texts.emplace_back(cases::words_of(line));
      auto& below = leaves.emplace_back();
      for (std::size_t i = 1; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        const bool has_value = equals != std::string::npos;
        if (has_value) words[i][equals] = '\0';
        below.push_back(leaf_node(words[i].c_str(), has_value ? &words[i][equals + 1] : nullptr));
      }
      entries.push_back(entry_node(words[0].c_str(), below));
      yfw_map_add_to_node_hierarchy(ctx, &entries.back(), YFW_MAP_HIERARCHY_LIST_ENTRY);
    }
    EXPECT_EQ(path_of(add({.path = each["path"], .module = kIfIp})), each["written"]) << each.where;
  }
}

TEST_F(CoreTest, WhatWasWrittenBelowAnEntryFollowsItIntoTheOlderOne) {
  const char* list = "/interfaces/interface";
  const char* subinterfaces = "/subinterfaces/subinterface";
  const auto mtu = [&](nidl_yfw_datatree* subinterface, const char* value, int operation) {
    return add({"/ipv4/config/mtu", value, operation, false, kIfIp, 0, subinterface});
  };
  nidl_yfw_datatree* older = search_or_add(out, list, "Eth1", "name", kOcInterfaces);
  nidl_yfw_datatree* kept = mtu(search_or_add(older, subinterfaces, "3", "index", nullptr), "1", 0);
  nidl_yfw_datatree* newer =
      add({.path = list, .create = true, .module = kOcInterfaces, .flags = 0});
  nidl_yfw_datatree* moved =
      mtu(search_or_add(newer, subinterfaces, "3", "index", nullptr), "2", 1);
  mtu(search_or_add(newer, subinterfaces, "4", "index", nullptr), nullptr, 3);
  add({.path = subinterfaces, .create = true, .module = kOcInterfaces, .base = newer});
  add({.path = "/name", .value = "Eth1", .module = kOcInterfaces, .base = newer});
  EXPECT_EQ(OutputTree::node_of(moved), OutputTree::node_of(kept));
  const std::string entry = "/interfaces/interface[name='Eth1']/subinterfaces/subinterface";
  EXPECT_EQ(output(), entry + "[index='3']/ipv4/config/mtu = 2 (1)\n" + entry +
                          "[index='4']/ipv4/config/mtu (3)\n" + entry + "\n");
}

TEST_F(CoreTest, NodesOnTheWayAreOfTheirOwnModules) {
  constexpr const char* kExt = "http://openconfig.net/yang/interfaces/ip-ext";
  add({kSubinterface + "/ipv6/autoconf/state/valid-lifetime", "1", -1, false, kExt});
  EXPECT_EQ(add({.path = "/interfaces/other/x", .module = "urn:x"})->kind, NIDL_YFW_KIND_LEAF);
  nidl_yfw_datatree* below = add({"/interfaces/other/x/y", "3", -1, false, "urn:x"});
  EXPECT_EQ(OutputTree::node_of(below)->parent->place->kind, NodeKind::kContainer);
  EXPECT_EQ(print(to_document(request->output(), "test"), Format::kTree),
            "openconfig-interfaces:interfaces\n"
            "  interface [no keys]\n    subinterfaces\n      subinterface [no keys]\n"
            "        openconfig-if-ip:ipv6\n          openconfig-if-ip-ext:autoconf\n"
            "            state\n              valid-lifetime = \"1\"\n"
            "  urn:x:other\n    x\n      y = \"3\"\n");
}

TEST_F(CoreTest, PathsThatCannotBeWrittenCreateNothing) {
  for (const char* path : {"", "/", "interfaces", "/a//b", "/interfaces/interface/name/x"}) {
    EXPECT_NE(yfw_map_datatree_add_path_flagged(ctx, out, path, kOcInterfaces, "1", nullptr,
                                                nullptr, 0, 0),
              kOk)
        << path;
  }
  EXPECT_TRUE(request->output().is_empty());
}

// --- operations ----------------------------------------------------------------------------------

TEST_F(CoreTest, ANodeKeepsItsFirstEffectButIsNotDeletedOnceWritten) {
  struct Row {
    std::vector<int> written;  // operations of the sources in turn, -1 for no source
    std::string shown;
  };
  const Row rows[] = {{{-1}, ""},       {{0}, ""},        {{1}, " (1)"},    {{3}, " (3)"},
                      {{4}, " (4)"},    {{5}, " (5)"},    {{0, 3}, " (3)"}, {{3, 4}, " (3)"},
                      {{4, 3}, " (4)"}, {{3, 0}, " (1)"}, {{3, 1}, " (1)"}, {{4, -1}, " (1)"},
                      {{1, 3}, " (1)"}, {{5, 0}, ""},     {{0, 5}, " (5)"}, {{5, 3}, " (3)"},
                      {{1, 0}, " (1)"}};
  for (const Row& row : rows) {
    begin("{}");
    map_subinterface("Eth1", "0");
    for (const int operation : row.written) {
      add({.path = kNetwork + "/mtu", .operation = operation});
    }
    EXPECT_EQ(output(), "{Eth1}/ipv4-network/mtu" + row.shown + "\n")
        << testing::PrintToString(row.written);
  }
}

TEST_F(CoreTest, AWriteBelowADeletedNodeReplacesItButAKeyOnlyNamesADeletedEntry) {
  map_subinterface("Eth1", "0");
  add({.path = kSecondary, .operation = NIDL_YFW_EDIT_DELETE, .create = true});
  add({kSecondary + "/address", "10.0.0.1", NIDL_YFW_EDIT_WRITE});
  add({.path = kNetwork + "/addresses/primary", .operation = NIDL_YFW_EDIT_REMOVE});
  add({kNetwork + "/addresses/primary/address", "10.0.0.2", NIDL_YFW_EDIT_WRITE});
  EXPECT_EQ(output(),
            "{Eth1}/ipv4-network/addresses/secondaries/secondary[address='10.0.0.1'] (3)\n"
            "{Eth1}/ipv4-network/addresses/primary (1)\n"
            "{Eth1}/ipv4-network/addresses/primary/address = 10.0.0.2\n");
}

// --- calls ---------------------------------------------------------------------------------------

TEST_F(CoreTest, StitchedMirroredAndKeyedPathsLeadToTheirEntries) {
  for (const char* name : {"Gi0/0/1", "Gi]0/0"}) {
    search_or_add(search_or_add(out, "/interfaces/interface", name, "name", kOcInterfaces),
                  "/subinterfaces/subinterface", "0", "index", nullptr);
  }
  yfw_map_stitch_request stitch{};
  stitch.enabled = 1;
  stitch.base = out;
  stitch.operation = 2;
  std::strcpy(stitch.module_namespace, kOcInterfaces);
  std::strcpy(stitch.list_path, kSubinterface.c_str());
  std::strcpy(stitch.instance_path, "/interfaces/interface[name=Gi0/0/1]/subinterfaces/");
  std::strcat(stitch.instance_path, "subinterface[index=0]/");
  EXPECT_EQ(yfw_map_stitch_list_to_list(ctx, &stitch), kOk);
  EXPECT_EQ(path_of(request->state().current_list_node),
            "/interfaces/interface[name='Gi0/0/1']/subinterfaces/subinterface[index='0']");
  add({kSubinterface + "/ipv4/state/counters/in-pkts", "5\"\t\r\n\x01", -1, false, kIfIp});
  yfw_map_xpath_request xpath{};
  xpath.enabled = 1;
  xpath.base = out;
  xpath.operation = 3;
  std::strcpy(xpath.value, "6");
  std::strcpy(xpath.module_namespace, kIfIp);
  std::strcpy(xpath.xpath, "/interfaces/interface[name='Gi]0/0']/config/mtu");
  EXPECT_EQ(yfw_map_tree_xpath_operations(ctx, &xpath), kOk);
  std::strcpy(xpath.value, "another");
  for (const char* path : {"/interfaces/interface[mtu=Gi]/x", "/interfaces/interface[name=Gi9]/x",
                           "/interfaces/interface[name='Gi]0/0']/config/mtu"}) {
    std::strcpy(xpath.xpath, path);
    EXPECT_EQ(yfw_map_tree_xpath_operations(ctx, &xpath), YFW_MAP_XPATH_NOT_ADDED);
  }
  map_subinterface("Eth1", "4");
  const InputNode in{};
  const std::array steps = {"/sum", "/interface", "/subinterface", "/mtu"};
  EXPECT_EQ(yfw_map_add_leaf_from_xpath(ctx, &in, out, "/sum", "urn:sum", steps.data(), 4), kOk);
  EXPECT_EQ(output(),
            "/interfaces/interface[name='Gi0/0/1']/subinterfaces/subinterface[index='0']/ipv4/state"
            "/counters/in-pkts = 5\"\t\r\n\x01\n"
            "/interfaces/interface[name='Gi]0/0']/config/mtu = 6\n"
            "/interfaces/interface[name='Gi]0/0']/subinterfaces/subinterface[index='0']\n"
            "/sum/interface/name = Eth1\n"
            "/sum/interface/subinterface/index = 4\n"
            "/sum/interface/subinterface/mtu\n");
  EXPECT_EQ(request->recorder()->text(),
            "stitch openconfig-interfaces /interfaces/interface[name=Gi0/0/1]/subinterfaces"
            "/subinterface[index=0]/ /interfaces/interface/subinterfaces/subinterface operation=2\n"
            "add-path openconfig-if-ip /interfaces/interface/subinterfaces/subinterface/ipv4/state"
            "/counters/in-pkts =\"5\\\"\\t\\r\\n\\u0001\" source=NONE create=0 flags=1\n"
            "xpath openconfig-if-ip /interfaces/interface[name='Gi]0/0']/config/mtu =\"6\""
            " operation=3\n"
            "xpath openconfig-if-ip /interfaces/interface[mtu=Gi]/x =\"another\" operation=3"
            " result=0xaaf2fc00\n"
            "xpath openconfig-if-ip /interfaces/interface[name=Gi9]/x =\"another\" operation=3"
            " result=0xaaf2fc00\n"
            "xpath openconfig-if-ip /interfaces/interface[name='Gi]0/0']/config/mtu =\"another\""
            " operation=3 result=0xaaf2fc00\n"
            "add-leaf urn:sum /sum/interface/subinterface/mtu\n");
}

TEST_F(CoreTest, ARecordedCallSaysWhatItWasGiven) {
  map_subinterface("Eth1", "0");
  yfw_map_copy_trim_path_list_ctx(ctx, "/a");
  add({.path = "/b", .value = "", .operation = 4, .create = true, .module = "urn:x"});
  yfw_map_datatree_add_path_flagged(ctx, out, "bad", kIfIp, nullptr, nullptr, nullptr, 0, 32);
  EXPECT_EQ(request->recorder()->text(),
            "add-path urn:x /b =\"\" source=remove create=1 flags=1 trim=/a\n"
            "add-path openconfig-if-ip bad source=NONE create=0 flags=32 trim=/a"
            " result=0x40800600\n");
}

// --- input and hierarchy -------------------------------------------------------------------------

constexpr const char* kDeletedAddresses = R"({"openconfig-interfaces:interfaces": {"interface": [
  {"name": "Eth1", "subinterfaces": {"subinterface": [{"index": 5, "x:empty": null,
    "openconfig-if-ip:ipv4": {
    "addresses": {"@": {"ietf-netconf:operation": "delete"}, "address": [
      {"ip": "10.0.0.1", "config": {"ip": "10.0.0.2"}},
      {"@": {"ietf-netconf:operation": "replace"}, "config": {"prefix-length": 8}},
      {"ip": "10.0.0.3", "config": {"ip": null}}]}}}]}}]}})";

TEST_F(CoreTest, OperationsAreInheritedButAKeyIsNeverDeletedWithItsEntry) {
  begin(kDeletedAddresses, {.operation = Operation::kNone});
  const InputNode* node = &input->roots()[0];
  EXPECT_EQ(node->edit_operation, NIDL_YFW_EDIT_NONE);
  EXPECT_EQ(find_child(*find_child(*node, "interface"), "name")->edit_operation,
            NIDL_YFW_EDIT_NONE);
  for (const char* tag : {"interface", "subinterfaces", "subinterface", "ipv4", "addresses"}) {
    node = find_child(*node, tag);
  }
  const auto entries = children_of(*node);
  EXPECT_EQ(entries[0].edit_operation, NIDL_YFW_EDIT_DELETE);
  EXPECT_EQ(find_child(entries[0], "ip")->edit_operation, NIDL_YFW_EDIT_WRITE);
  EXPECT_EQ(find_child(entries[0], "config")->children[0].edit_operation, NIDL_YFW_EDIT_DELETE);
  EXPECT_EQ(find_child(entries[1], "config")->edit_operation, NIDL_YFW_EDIT_REPLACE);
  EXPECT_EQ(yfw_map_check_oc_leafref(ctx, "", "config", "10.0.0.1", &entries[0]), kListKey);
  EXPECT_EQ(yfw_map_check_oc_leafref(ctx, "", "config", "10.0.0.2", &entries[0]), kOk);
  EXPECT_EQ(yfw_map_check_oc_leafref(ctx, "", "state", "10.0.0.1", &entries[0]), kOk);
  EXPECT_EQ(yfw_map_check_oc_leafref(ctx, "", "config", "10.0.0.3", &entries[2]), kOk);
  EXPECT_NE(yfw_map_is_request_delete(&entries[0]), 0);
  EXPECT_EQ(yfw_map_is_request_add(ctx, &entries[0], out), 0);
  EXPECT_NE(yfw_map_is_request_add(ctx, &entries[1], out), 0);
  request->state().request.request_op = YFW_MAP_REQUEST_READ_STATE;
  EXPECT_EQ(yfw_map_is_request_add(ctx, &entries[1], out), 0);
}

TEST_F(CoreTest, TheStateFollowsTheNodesBeingWalked) {
  begin(kDeletedAddresses, {.operation = Operation::kReplace});
  yfw_map_request_state& state = request->state();
  std::vector<const InputNode*> nodes = {&input->roots()[0]};
  for (const char* tag : {"interface", "subinterfaces", "subinterface", "ipv4", "addresses"}) {
    nodes.push_back(find_child(*nodes.back(), tag));
  }
  const auto push = [&](const InputNode* node) {
    const bool entry = node->kind == NIDL_YFW_KIND_LIST;
    yfw_map_add_to_node_hierarchy(ctx, node, entry ? 2 : 1);
    EXPECT_EQ(yfw_map_update_current_list_node(
                  ctx, nodes[3] == node ? "/oc-if:interfaces/oc-if:interface/oc-if:subinterfaces"
                                          "/oc-if:subinterface"
                                        : "/oc-if:interfaces/oc-if:interface") == kOk,
              entry);
  };
  for (const InputNode* node : nodes) {
    push(node);
  }
  EXPECT_EQ(request->native_interface_name(), "Eth1.5");
  EXPECT_EQ(state.list_edit_op, NIDL_YFW_EDIT_DELETE);
  const char* value = "";
  EXPECT_EQ(yfw_map_get_node_info(ctx, "/interfaces/interface", "name", &value), kOk);
  EXPECT_STREQ(value, "Eth1");
  EXPECT_EQ(yfw_map_get_node_info(ctx, kSubinterface.c_str(), "ipv6", &value), kOk);
  EXPECT_EQ(value, nullptr);
  EXPECT_EQ(yfw_map_get_node_info(ctx, kSubinterface.c_str(), "empty", &value), kOk);
  EXPECT_STREQ(value, "");
  EXPECT_EQ(yfw_map_get_node_info(ctx, "/interfaces/interface/subinterfaces", "x", &value), kOk);
  EXPECT_NE(yfw_map_get_node_info(ctx, "/interface-configurations", "x", &value), kOk);
  // An entry is found when it is current, not when it is walked alone.
  nodes.push_back(&nodes.back()->children[0]);
  yfw_map_add_to_node_hierarchy(ctx, nodes.back(), YFW_MAP_HIERARCHY_LIST_ENTRY);
  EXPECT_NE(
      yfw_map_get_node_info(ctx, (kSubinterface + "/ipv4/addresses/address").c_str(), "ip", &value),
      kOk);
  EXPECT_NE(yfw_map_remove_from_node_hierarchy(ctx, nodes[0]), kOk);
  yfw_oc_error_path(ctx);
  for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
    EXPECT_EQ(yfw_map_remove_from_node_hierarchy(ctx, *node), kOk);
  }
  EXPECT_EQ(request->native_interface_name(), "");
  EXPECT_EQ(state.list_edit_op, NIDL_YFW_EDIT_REPLACE);
  state.unsupported_tag = yfw_strdup("address", "test");
  EXPECT_EQ(
      request->refusal(0xaaf2f400).text(),
      "\"address\" at /interfaces/interface[name='Eth1']"
      "/subinterfaces/subinterface[index='5']/ipv4/addresses/address[ip='10.0.0.1'] : the value"
      " is out of range (0xaaf2f400 value-range)");
}

TEST_F(CoreTest, StacksAndTheOutputListAreBalanced) {
  yfw_itree_stack* stack = request->state().visited_entries;
  const InputNode nodes[2] = {};
  const InputNode* top = nullptr;
  EXPECT_NE(yfw_map_util_itree_stack_pop(stack), kOk);
  EXPECT_EQ(yfw_map_util_itree_stack_push(stack, &nodes[0], nullptr, 0), kOk);
  EXPECT_EQ(yfw_map_util_itree_stack_push(stack, &nodes[1], nullptr, 0), kOk);
  EXPECT_EQ(yfw_map_util_itree_stack_peak(stack, &top), kOk);
  EXPECT_EQ(top, &nodes[1]);
  EXPECT_EQ(yfw_map_util_itree_stack_pop(stack), kOk);
  EXPECT_EQ(yfw_map_util_itree_stack_size(stack), 1u);
  EXPECT_EQ(yfw_add_to_output_list_ctx(ctx, &nodes[0], out), kOk);
  EXPECT_EQ(request->state().output_list_depth, 1);
  EXPECT_NE(yfw_remove_from_output_list_ctx(ctx, &nodes[1], out), kOk);
  EXPECT_EQ(yfw_remove_from_output_list_ctx(ctx, &nodes[0], out), kOk);
  EXPECT_EQ(request->state().output_list_depth, 0);
}

}  // namespace
}  // namespace ocifip
