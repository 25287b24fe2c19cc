// What a mapping writes while it deletes: what is part of the deletion, what makes a successor, and
// how native entries get their keys.
#include "core_fixture.h"

namespace ocifip {
namespace {

constexpr const char* kModule = R"(module natives {
  yang-version 1.1; namespace "urn:natives"; prefix n;
  container arp { list vrf { key "name"; leaf name { type string; } container entries {
    list entry { key "address interface"; leaf address { type string; }
                 leaf interface { type string; }
                 leaf mac { type string; } leaf encapsulation { type string; } } } } }
  container routers { list interface { key "interface-name"; leaf interface-name { type string; }
    container ipv4 { list router { key "id"; leaf id { type string; } leaf priority { type string; }
      list track { key "interface-name"; leaf interface-name { type string; }
                   leaf enable { type empty; } } } } } }
})";

const Models& natives() {
  static const auto loaded = models_of("natives.yang", kModule);
  return *loaded;
}

const std::string kVrf = "/arp/vrf";
const std::string kEntry = kVrf + "/entries/entry";
const std::string kInterface = "/routers/interface";
const std::string kRouter = kInterface + "/ipv4/router";

class Deletes : public CoreTest {
 protected:
  Deletes() : CoreTest(natives()) { map_subinterface("Eth1", "5"); }

  struct NativeWrite {
    std::string path;
    const char* value = nullptr;
    const InputNode* source = nullptr;
    bool create = false;
  };

  nidl_yfw_datatree* write(const NativeWrite& write) {
    nidl_yfw_datatree* created = nullptr;
    EXPECT_EQ(yfw_map_datatree_add_path_flagged(ctx, out, write.path.c_str(), "urn:natives",
                                                write.value, write.source, &created,
                                                write.create ? 1 : 0, YFW_MAP_PATH_PLAIN),
              kOk);
    return created;
  }

  void enter(const InputNode& node) {
    yfw_map_add_to_node_hierarchy(ctx, &node, node.kind == NIDL_YFW_KIND_LIST ? 2 : 1);
  }
  void leave(const InputNode& node) { yfw_map_remove_from_node_hierarchy(ctx, &node); }

  // Writes a static entry as a neighbor's callbacks do, whether it is deleted or not.
  void map_neighbor(const InputNode& in) {
    enter(in);
    const InputNode* key = &in.children[0];
    write({.path = kEntry, .source = &in, .create = true});
    write({kEntry + "/address", key->value, key});
    write({kEntry + "/encapsulation", "arpa", key});
    write({kEntry + "/interface"});
    leave(in);
  }

  // Deletes what an address has of routers, as its callback does; the interface itself stays.
  void delete_routers(const InputNode& in) {
    enter(in);
    write({.path = kInterface, .source = &in, .create = true});
    write({.path = kInterface + "/ipv4", .source = &in});
    nidl_yfw_datatree* key = write({kInterface + "/interface-name", "Eth1.5"});
    key->edit_operation = NIDL_YFW_EDIT_NONE;
    key->flags |= NIDL_YFW_FLAG_OPERATION_OVERRIDE;
    write({.path = kRouter, .create = true});
    write({kRouter + "/id", "7"});
    leave(in);
  }

  static InputNode deleted(InputNode node) {
    node.edit_operation = NIDL_YFW_EDIT_DELETE;
    return node;
  }

  std::vector<InputNode> keys = {leaf_node("ip", "10.0.0.5")};
  InputNode neighbor = deleted(entry_node("neighbor", keys));
  InputNode container = deleted(leaf_node("vrrp", nullptr));
};

TEST_F(Deletes, WhatIsWrittenInsideTheDeletedInputNamesTheEntryAndMakesNoSuccessor) {
  // Twice, as when a node is walked a second time.
  map_neighbor(neighbor);
  map_neighbor(neighbor);
  const std::string entry = "/arp/vrf/entries/entry[address='10.0.0.5'][interface='Eth1.5']";
  EXPECT_EQ(output(), entry + " (3)\n");
  // A write from elsewhere is the successor's, which takes nothing from what was dropped.
  write({kEntry + "/mac", "00:00:00:00:00:01", &keys[0]});
  EXPECT_EQ(output(), entry + " (1)\n" + entry + "/mac = 00:00:00:00:00:01\n");
}

TEST_F(Deletes, OnlyTheDeletingNodesOwnOperationIsBelievedInside) {
  enter(neighbor);
  write({.path = kInterface, .source = &neighbor, .create = true});
  const InputNode leaf = deleted(keys[0]);
  write({.path = kInterface, .source = &leaf});
  write({kRouter + "/priority", "1"});
  EXPECT_EQ(output(), "/routers/interface[interface-name='Eth1.5'] (3)\n");
  // It is rewritten, as when another address is promoted.
  neighbor.edit_operation = NIDL_YFW_EDIT_WRITE;
  write({kRouter + "/id", "7", &neighbor});
  leave(neighbor);
  EXPECT_EQ(output(),
            "/routers/interface[interface-name='Eth1.5'] (1)\n"
            "/routers/interface[interface-name='Eth1.5']/ipv4/router[id='7']\n");
}

TEST_F(Deletes, AnEntryWhoseKeySaysNoneOnlyLeadsToWhatIsDeleted) {
  struct Row {
    std::vector<NativeWrite> written;  // elsewhere, after the deletion
    std::string expected;              // lines, "*" standing for the interface's entry
  };
  const std::string name = kInterface + "/interface-name";
  const InputNode again = container;
  const Row rows[] = {
      {{}, "* (5)\n*/ipv4 (3)\n"},
      {{{name, "Eth1.5"}}, "* (5)\n*/ipv4 (3)\n"},
      {{{kInterface}}, "*/ipv4 (3)\n"},
      {{{kInterface, nullptr, nullptr, true}, {name, "Eth1.5"}}, "*/ipv4 (3)\n"},
      {{{kRouter, nullptr, nullptr, true}, {kRouter + "/id", "8"}},
       "* (5)\n*/ipv4 (1)\n*/ipv4/router[id='8']\n"},
      // Another deletion is one, unless a key says otherwise again.
      {{{kInterface, nullptr, &again}}, "* (3)\n*/ipv4 (3)\n"},
      {{{kInterface, nullptr, &again, true}, {name, "Eth1.5"}}, "* (3)\n*/ipv4 (3)\n"}};
  for (const Row& row : rows) {
    begin("{}");
    map_subinterface("Eth1", "5");
    delete_routers(container);
    delete_routers(again);
    for (const NativeWrite& written : row.written) {
      write(written);
    }
    std::string expected = row.expected;
    for (std::size_t at = 0; (at = expected.find('*')) != std::string::npos;) {
      expected.replace(at, 1, "/routers/interface[interface-name='Eth1.5']");
    }
    EXPECT_EQ(output(), expected);
  }
}

TEST_F(Deletes, ASourceMaySayNoneOfAKeyAsWell) {
  InputNode none = keys[0];
  none.edit_operation = NIDL_YFW_EDIT_NONE;
  // What is said before the deletion is not about it.
  write({.path = kInterface, .source = &none});
  write({kInterface + "/interface-name", "Eth1.5", &none});
  write({.path = kInterface, .source = &container});
  write({kInterface + "/interface-name", "Eth1.5"});
  EXPECT_EQ(output(), "/routers/interface[interface-name='Eth1.5'] (3)\n");
  write({kInterface + "/interface-name", "Eth1.5", &none});
  EXPECT_EQ(output(), "/routers/interface[interface-name='Eth1.5'] (5)\n");
}

// --- keys of interfaces --------------------------------------------------------------------------

// In a short list and in a long one, which is searched in another way.
TEST_F(Deletes, AnEntryThatTakesItsInterfaceAtTheEndIsOneWithItsSuccessor) {
  const auto replace = [&](const char* address) {
    write({.path = kEntry, .source = &neighbor, .create = true});
    write({kEntry + "/address", address, &neighbor});
    write({.path = kEntry, .source = &keys[0], .create = true});
    write({kEntry + "/address", address, &keys[0]});
    write({kEntry + "/mac", "00:00:00:00:00:01", &keys[0]});
    write({kEntry + "/interface", "Eth1.5", &keys[0]});
  };
  const auto replaced = [](const std::string& address) {
    const std::string entry = kEntry + "[address='" + address + "'][interface='Eth1.5']";
    return entry + " (1)\n" + entry + "/mac = 00:00:00:00:00:01\n";
  };
  std::string expected;
  for (const char* address : {"10.0.0.1", "10.0.0.2", "10.0.0.3", "10.0.0.4", "10.0.0.5",
                              "10.0.0.6", "10.0.0.7", "10.0.0.8", "10.0.0.9", "10.0.0.10"}) {
    replace(address);
    expected += replaced(address);
    EXPECT_EQ(output(), expected);
  }
  replace("10.0.0.10");
  EXPECT_EQ(output(), expected);
}

TEST_F(Deletes, AnEntryIsOfTheSubinterfaceThatItWasMadeFor) {
  const auto add = [&](const char* address, const char* interface) {
    write({.path = kEntry, .create = true});
    write({kEntry + "/address", address});
    if (interface != nullptr) {
      write({kEntry + "/interface", interface});
    }
  };
  write({kVrf + "/name", "default"});
  add("10.0.0.1", nullptr);
  add("10.0.0.2", "Eth9");
  write({.path = kEntry, .create = true});
  // What leads through the list is about the interface being mapped.
  write({kRouter + "/priority", "1"});
  write({.path = kRouter + "/track", .create = true});
  map_subinterface("Eth2", "0");
  write({kRouter + "/priority", "2"});
  write({.path = kVrf, .create = true});
  add("10.0.0.1", nullptr);
  write({kVrf + "/name", "default"});
  map_subinterface("", "");
  add("10.0.0.3", nullptr);
  const std::string entry = "/arp/vrf[name='default']/entries/entry";
  const std::string router = "/routers/interface[interface-name='Eth1.5']/ipv4/router";
  EXPECT_EQ(output(), entry + "[address='10.0.0.1'][interface='Eth1.5']\n" + entry +
                          "[address='10.0.0.2'][interface='Eth9']\n" + entry +
                          "[interface='Eth1.5']\n" + entry +
                          "[address='10.0.0.1'][interface='Eth2']\n" + entry +
                          "[address='10.0.0.3']\n" + router + "/priority = 1\n" + router +
                          "/track\n/routers/interface[interface-name='Eth2']/ipv4/router/priority"
                          " = 2\n");
}

}  // namespace
}  // namespace ocifip
