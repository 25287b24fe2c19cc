// Native IPv6 state of addresses: what of it no scenario shows.

#include "mapping_test.h"
#include "read_back_platform.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_oper.h"

using namespace recording;

namespace {

#define CALLBACK(rest) ymap_xo_ocifip_halvaneombrixipv6maoper_##rest
constexpr auto kSelect = CALLBACK(list_lvla_ipv6network_detail_address);
constexpr auto kStatus = CALLBACK(leaf_lvld_ipv6network_address_addressstate);
const std::string kDetail = "/ipv6-network/nodes/node/interface-data/vrfs/vrf/details/detail";
const std::string kAddress =
    "/interfaces/interface/subinterfaces/subinterface/ipv6/addresses/address";

class Ipv6State : public MappingTest {
 protected:
  Ipv6State() { begin(); }
  ~Ipv6State() override { state.current_list_node = nullptr; }

  // Starts a case anew, in an address of Eth0/1.100 that the output has.
  void begin() {
    next(YFW_MAP_REQUEST_READ_CONFIG);
    read_back = {};
    read_back.leaves = {{kDetail + " interface-name", "Eth0/1.100"},
                        {kDetail + "/address address", "2001:db8::1"}};
    read_back.entries = {{"/interfaces/interface Eth0/1", &interface_},
                         {"/subinterfaces/subinterface 100", &subinterface_},
                         {"/ipv6/addresses/address 2001:db8::1", &address_}};
    platform.base_names = {{&interface_, "interface"}, {&subinterface_, "subinterface"}};
    state.current_list_node = nullptr;
  }

  Node interface_{};
  Node subinterface_{};
  Node address_{};
};

TEST_F(Ipv6State, AnAddressOfTheOutputIsFoundOrPassedOver) {
  const std::string search =
      "search output /interfaces/interface name=\"Eth0/1\" interfaces; "
      "search interface /subinterfaces/subinterface index=\"100\" (null)";
  const auto searched = [&](const std::string& address) {
    return search + "; search subinterface /ipv6/addresses/address ip=\"" + address + "\" ip";
  };
  struct Case {
    const char* name;
    std::function<void()> given;
    cerrno result;
    std::string calls;
  };
  for (const Case& each : {
           Case{"present", [] {}, 0, searched("2001:db8::1") + "; trim " + kAddress},
           Case{"absent", [] { read_back.leaves[kDetail + "/address address"] = "2001:db8::2"; },
                0xaaf2f600, searched("2001:db8::2")},
           Case{"without text", [] { read_back.leaves[kDetail + "/address address"] = ""; },
                0xaaf2f600, search},
           Case{"without address", [] { read_back.leaves.erase(kDetail + "/address address"); },
                0xaaf2f600, search},
           Case{"of no interface", [] { read_back.leaves.clear(); }, 0xaaf2f600, ""},
           Case{"name not found", [] { platform.fail("node_info", 1, 77); }, 77, ""},
       }) {
    begin();
    SCOPED_TRACE(each.name);
    each.given();
    EXPECT_EQ(kSelect(&ctx, plant(node("address")), 0, &out), each.result);
    EXPECT_EQ(platform.recorded(kWrites | kSearch), calls(each.calls));
    EXPECT_EQ(state.current_list_node, each.result == 0 ? &address_ : nullptr);
  }
}

TEST_F(Ipv6State, AStateIsTurnedIntoUpperCaseInPlace) {
  const std::string longest(127, 'x');
  const std::string shown(127, 'X');
  struct Case {
    std::optional<std::string> state;
    std::string status;
    std::optional<std::string> left;  // in the input tree
  };
  for (const Case& each : {
           Case{"act", "PREFERRED", "act"},
           Case{"tent", "UNKNOWN", "tent"},
           Case{std::nullopt, "PREFERRED", std::nullopt},
           Case{"Active-1", "ACTIVE-1", "ACTIVE-1"},
           Case{longest, shown, shown},
           Case{longest + "y", shown, shown + "Y"},
       }) {
    begin();
    SCOPED_TRACE(each.status);
    const Node* in = plant(leaf("address-state", each.state));
    EXPECT_EQ(kStatus(&ctx, in, &out), 0U);
    EXPECT_TRUE(platform.recorded(kWrites).find("/status =\"" + each.status + "\"\n") !=
                std::string::npos);
    EXPECT_EQ(in->value != nullptr ? std::optional<std::string>(in->value) : std::nullopt,
              each.left);
    EXPECT_EQ(lines_of("report_copy_failure").starts_with("err STRNCPY_S: Not enough space"),
              each.left && each.left->size() > longest.size());
  }
}

TEST_F(Ipv6State, ATranslationAssertsItsContext) {
  char text[ymap::kAddressStatusSize];
  EXPECT_DEATH(ymap_xo_ocifip_return_address_state(nullptr, plant(leaf("address-state")), text),
               "void ymap_xo_ocifip_return_address_state\\(yfw_map_ctx\\*, const "
               "nidl_yfw_datatree\\*, char\\*\\).*NULL != ctx");
}

}  // namespace
