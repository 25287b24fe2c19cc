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
};

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
