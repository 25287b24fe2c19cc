// Native IPv6 state of addresses that the output has already, and the status of an address. What
// becomes of others, scenarios show.

#include "mapping_test.h"
#include "read_back_platform.h"
#include "ymap_ocifip_halvane_ombrix_ipv6_ma_oper.h"

using namespace recording;

namespace {

#define CALLBACK(rest) ymap_xo_ocifip_halvaneombrixipv6maoper_##rest
constexpr auto kSelect = CALLBACK(list_lvla_ipv6network_detail_address);
constexpr auto kStatus = CALLBACK(leaf_lvld_ipv6network_address_addressstate);
constexpr const char* kAddress =
    "/interfaces/interface/subinterfaces/subinterface/ipv6/addresses/address";
const std::string kDetail = "/ipv6-network/nodes/node/interface-data/vrfs/vrf/details/detail";

Tree own(const char* tag, std::vector<Tree> children) {
  return node(tag, std::move(children)).in("urn:halvane:yang:Halvane-Ombrix-ipv6-ma-oper");
}
Tree state_of(std::optional<std::string> value) {
  return leaf("address-state", std::move(value)).in("urn:halvane:yang:Halvane-Ombrix-ipv6-ma-oper");
}

std::string added(const std::string& leaf, const std::string& value) {
  return std::string("add_path ") + kIfIp + " " + kAddress + "/state/" + leaf + " =\"" + value +
         "\" source=NONE create=0 flags=1";
}
const std::string kOrigin = added("origin", "STATIC");
const std::string kTrim = std::string("trim ") + kAddress;
const std::string kFailed = " result=0x58";  // what 88 adds to the line of a call

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
  const std::string search = std::string("search output /interfaces/interface name=\"Eth0/1\" ") +
                             kInterfaces +
                             "; search interface /subinterfaces/subinterface index=\"100\" (null)";
  const auto searched = [&](const std::string& address) {
    return search + "; search subinterface /ipv6/addresses/address ip=\"" + address + "\" " + kIfIp;
  };
  struct Case {
    const char* name;
    std::function<void()> given;
    cerrno result;
    std::string calls;
  };
  for (const Case& each : {
           Case{"present", [] {}, 0, searched("2001:db8::1") + "; " + kTrim},
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
    EXPECT_EQ(kSelect(&ctx, plant(own("address", {})), 0, &out), each.result);
    EXPECT_EQ(platform.recorded(kWrites | kSearch), calls(each.calls));
    EXPECT_EQ(state.current_list_node, each.result == 0 ? &address_ : nullptr);
  }
}

// The trim prefix and the current entry end with the address.
TEST_F(Ipv6State, AnAddressIsWrittenInItsPlace) {
  Node* current = nullptr;
  platform.on_write = [&] { current = state.current_list_node; };
  const Tree detail = own("detail", {own("address", {state_of("active")})});
  EXPECT_EQ(CALLBACK(lvla_ipv6network_details_detail)(&ctx, plant(detail), &out), 0U);
  EXPECT_EQ(platform.recorded(kWrites),
            calls(kTrim + "; " + kOrigin + "; " + added("status", "PREFERRED") + "; untrim"));
  EXPECT_EQ(current, &address_);
  EXPECT_EQ(state.current_list_node, nullptr);
}

TEST_F(Ipv6State, AStatusIsThatOfTheWordThatTheStateBegins) {
  struct Case {
    std::optional<std::string> state;
    std::string status;
    std::optional<std::string> left = state;  // in the input tree
  };
  const std::string longest(127, 'x');
  for (const Case& each : {
           Case{"active", "PREFERRED"},
           Case{"a", "PREFERRED"},
           Case{"", "PREFERRED"},
           Case{std::nullopt, "PREFERRED"},
           Case{"tentative", "UNKNOWN"},
           Case{"tent", "UNKNOWN"},
           Case{"Active", "ACTIVE", "ACTIVE"},
           Case{"active ", "ACTIVE ", "ACTIVE "},
           Case{"dup-1", "DUP-1", "DUP-1"},
           Case{longest, std::string(127, 'X'), std::string(127, 'X')},
           Case{longest + "y", std::string(127, 'X'), std::string(127, 'X') + "Y"},
       }) {
    begin();
    SCOPED_TRACE(each.status);
    const Node* in = plant(state_of(each.state));
    EXPECT_EQ(kStatus(&ctx, in, &out), 0U);
    EXPECT_EQ(platform.recorded(kWrites), calls(kOrigin + "; " + added("status", each.status)));
    EXPECT_EQ(in->value != nullptr ? std::optional<std::string>(in->value) : std::nullopt,
              each.left);
    EXPECT_EQ(lines_of("report_copy_failure").starts_with("err STRNCPY_S: Not enough space"),
              each.left && each.left->size() > longest.size());
  }
}

TEST_F(Ipv6State, TheResultIsTheStatussAlone) {
  const std::string status = added("status", "PREFERRED");
  platform.fail("add_path", 1, 88);
  EXPECT_EQ(kStatus(&ctx, plant(state_of("active")), &out), 0U);
  EXPECT_EQ(platform.recorded(kWrites), calls(kOrigin + kFailed + "; " + status));
  begin();
  platform.fail("add_path", 2, 88);
  EXPECT_EQ(kStatus(&ctx, plant(state_of("active")), &out), 88U);
  EXPECT_EQ(platform.recorded(kWrites), calls(kOrigin + "; " + status + kFailed));
}

TEST_F(Ipv6State, ATranslationAssertsItsContext) {
  char text[ymap::kAddressStatusSize];
  EXPECT_DEATH(ymap_xo_ocifip_return_address_state(nullptr, plant(state_of("active")), text),
               "void ymap_xo_ocifip_return_address_state\\(yfw_map_ctx\\*, const "
               "nidl_yfw_datatree\\*, char\\*\\).*NULL != ctx");
}

}  // namespace
