// The platform's services, the sibling interfaces mapping and the request cycles.
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cases.h"
#include "core_fixture.h"
#include "device/device_directory.h"
#include "im/address_manager.h"
#include "im/interface_manager.h"
#include "inet/inet.h"
#include "io/device_file.h"
#include "io/save_file.h"
#include "log/log.h"
#include "mapping/mapper.h"
#include "mapping/plugin.h"
#include "sysdb/sysdb.h"
#include "text/bounded_text.h"
#include "yfw/interfaces_mapping.h"

namespace ocifip {
namespace {

// --- text ----------------------------------------------------------------------------------------

TEST(Text, CopiesStayWithinTheirDestination) {
  std::array<char, 6> text{"?????"};
  const auto copy = [&](const char* source, std::size_t size, std::size_t count) {
    const cerrno result = yfw_strncpy_s("test", text.data(), size, source, count);
    return std::to_string(result) + " " + text.data();
  };
  EXPECT_EQ(copy("abc", 6, 6), "0 abc");
  EXPECT_EQ(copy("abcdef", 6, 3), "0 abc");
  EXPECT_EQ(copy("abcdef", 6, 6), "406 abcde");
  EXPECT_EQ(copy(nullptr, 6, 6), "400 ");
  EXPECT_EQ(copy("abc", 6, 0), "401 ");
  EXPECT_EQ(copy("abc", 65537, 3), "403 ");
  EXPECT_EQ(copy("ab", 6, 6), "0 ab");
  EXPECT_EQ(yfw_strncat_s("test", text.data(), 6, "cde", 3), kOk);
  EXPECT_STREQ(text.data(), "abcde");
  EXPECT_EQ(yfw_strncat_s("test", text.data(), 6, "f", 1), cerrno{YFW_TEXT_NO_SPACE});
  EXPECT_STREQ(text.data(), "abcde");
  EXPECT_EQ(strncpy_s(text.data(), 6, "xy", 2), 0);
  EXPECT_STREQ(text.data(), "xy");
  EXPECT_NE(strncpy_s(text.data(), 6, "abcdef", 6), 0);
  EXPECT_STREQ(text.data(), "");
}

TEST(Text, ComparisonsAndConversions) {
  int order = 7;
  EXPECT_EQ(strcmp_s("true", 10, "true", &order), 0);
  EXPECT_EQ(order, 0);
  EXPECT_EQ(yfw_safe_strcmp("REMOTE", 12, "REMOTE_ONLY", &order), kOk);
  EXPECT_LT(order, 0);
  EXPECT_NE(yfw_safe_strcmp(nullptr, 12, "x", &order), kOk);
  EXPECT_NE(strcmp_s("x", 0, "x", &order), 0);
  EXPECT_LT(order, 0);
  EXPECT_NE(yfw_map_do_these_match("a", "a"), 0);
  EXPECT_EQ(yfw_map_do_these_match(nullptr, nullptr), 0);
  char text[] = "ip\xe4-1z";
  EXPECT_STREQ(strupr(text), "IP\xe4-1Z");
  std::array<char, 40> number;
  EXPECT_STREQ(itoa(INT_MIN, number.data(), 10), "-2147483648");
  EXPECT_STREQ(itoa(255, number.data(), 16), "ff");
  EXPECT_STREQ(itoa(-1, number.data(), 2), "11111111111111111111111111111111");
  EXPECT_STREQ(itoa(0, number.data(), 36), "0");
}

// --- addresses -----------------------------------------------------------------------------------

TEST(Inet, DottedTextIsReadInItsTwoWays) {
  for (const auto& each : cases::read(OCIFIP_CASES "dotted-texts.txt")) {
    std::uint32_t address = 0;
    const bool read = ombrix_inet_aton(each["text"].c_str(), &address) != 0;
    EXPECT_EQ(read ? ombrix_inet_ntoa(address) : "", each["aton"]) << each.where;
    EXPECT_EQ(ombrix_inet_pton(OMBRIX_AF_INET, each["text"].c_str(), &address) == 1,
              each["pton"] == "yes")
        << each.where;
  }
}

TEST(Inet, PrefixesAndAddressesAreCompared) {
  const auto compare = [](const char* first, unsigned length, const char* second, unsigned other) {
    std::uint32_t addresses[2];
    ombrix_inet_aton(first, &addresses[0]);
    ombrix_inet_aton(second, &addresses[1]);
    return ipv4_compare_prefix(addresses[0], length, addresses[1], other);
  };
  EXPECT_EQ(compare("10.0.0.1", 24, "10.0.0.2", 24), 0);
  EXPECT_LT(compare("10.0.0.1", 32, "10.0.0.2", 32), 0);
  EXPECT_GT(compare("10.0.0.0", 25, "10.0.0.0", 24), 0);
  EXPECT_EQ(compare("1.0.0.0", 0, "2.0.0.0", 0), 0);
  std::uint32_t mask = 0;
  ombrix_inet_aton("255.255.240.0", &mask);
  EXPECT_EQ(ipv4_mask2prefixlen(mask), 20u);
  ip_addr first{};
  ip_addr second{};
  std::array<char, 46> text;
  EXPECT_EQ(hex_string2ip_addr("0a000001", &first), kOk);
  EXPECT_STREQ(ip_addr_string(&first, text.data(), text.size()), "10.0.0.1");
  EXPECT_EQ(ip_addr_string(&first, text.data(), 8), nullptr);
  EXPECT_EQ(hex_string2ip_addr("20010db8000000000000000000000001", &second), kOk);
  EXPECT_STREQ(ip_addr_string(&second, text.data(), text.size()), "2001:db8::1");
  EXPECT_LT(ip_addr_compare(&first, &second), 0);
  EXPECT_NE(hex_string2ip_addr("0a00000g", &first), kOk);
  EXPECT_NE(hex_string2ip_addr("0a0000", &first), kOk);
}

// --- the device ----------------------------------------------------------------------------------

Device device_of_file() {
  return read_device(models(), "device", read_file(OCIFIP_CASES "device.json"));
}

// An attribute of addresses, and the family that it is of.
struct AddressAttribute {
  std::uint32_t number;
  std::uint32_t length;
  int family;
  int other_family;
};

constexpr AddressAttribute kIpv4Addresses = {IMC_ATTR_IPV4_ADDRESS, IMC_ATTR_IPV4_ADDRESS_LENGTH,
                                             OMBRIX_AF_INET, OMBRIX_AF_INET6};
constexpr AddressAttribute kIpv6Addresses = {IMC_ATTR_IPV6_ADDRESS, IMC_ATTR_IPV6_ADDRESS_LENGTH,
                                             OMBRIX_AF_INET6, OMBRIX_AF_INET};

// The addresses of an interface, as a plug-in finds them: "10.0.0.1/24 10.0.1.1/24".
std::string addresses_of(const char* internal_name,
                         const AddressAttribute& attribute = kIpv4Addresses) {
  imc_conn_ctx* connection = nullptr;
  imc_handle handle = 0;
  if (imc_control_server_bind(&connection, IMC_BIND_MODE_CLIENT) != kOk) {
    return "no connection";
  }
  const imc_connid id = imc_conn_ctx_to_connid(connection);
  if (imc_s_interface_find(id, internal_name, &handle) != kOk) {
    return "unknown";
  }
  const imc_attr_request wanted{handle, attribute.number, attribute.length};
  imc_attr_response* response = nullptr;
  iparm_list* list = nullptr;
  EXPECT_EQ(imc_attr_query(id, 1, &wanted, 1, &response), kOk);
  EXPECT_LE(response->length, attribute.length);
  const auto decode = [&](std::uint32_t length, int family) {
    return iparm_al_c_tlv2addr(response->data, length, static_cast<std::uint32_t>(family), &list);
  };
  EXPECT_NE(decode(response->length, attribute.other_family), kOk);
  EXPECT_NE(decode(response->length - 1, attribute.family), kOk);
  EXPECT_EQ(decode(response->length, attribute.family), kOk);
  std::array<char, 46> text;
  const auto show = [&](const std::uint8_t* address, std::uint32_t length) {
    return ombrix_inet_ntop(attribute.family, address, text.data(), text.size()) +
           ("/" + std::to_string(length));
  };
  const iparm_record& record = list->records[0];
  std::string shown = show(record.primary, record.prefix_length);
  for (std::uint32_t i = 0; i < record.secondary_count; ++i) {
    shown += " " + show(record.secondaries[i].address, record.secondaries[i].prefix_length);
  }
  iparm_al_c_free(list);
  std::free(response);
  return shown;
}

TEST(DeviceServices, AddressesComeFromTheInterfaceOrFromTheNativeConfiguration) {
  const DeviceDirectory directory(device_of_file());
  EXPECT_EQ(addresses_of("Eth2"), "no connection");
  const ActiveDevice active(directory);
  EXPECT_EQ(addresses_of("Gi0_0_1"), "10.0.0.1/24");
  EXPECT_EQ(addresses_of("Eth1.20"), "10.20.0.1/16 10.21.0.1/24");
  EXPECT_EQ(addresses_of("Eth2"), "0.0.0.0/0");
  EXPECT_EQ(addresses_of("Gi0_0_1", kIpv6Addresses), "::/0");
  EXPECT_EQ(addresses_of("Eth1.20", kIpv6Addresses), "2001:db8::1/64 fd00::2/127 fd00::3/0");
  EXPECT_EQ(addresses_of("Eth2", kIpv6Addresses), "::/0 2001:db8::2/128");
  EXPECT_EQ(addresses_of("Eth1"), "unknown");
}

TEST(DeviceServices, TheAttributeHoldsAnyNumberOfSecondaries) {
  Device device;
  DeviceInterface interface { "Eth1", {}, DeviceAddresses(), DeviceAddresses() };
  std::string expected = "0.0.0.0/0";
  std::string expected_ipv6 = "::/0";
  for (std::uint8_t i = 1; i < 255; ++i) {
    DeviceAddress& address = interface.ipv4->secondaries.emplace_back();
    address.bytes = {10, 0, i, 1};
    address.prefix_length = 24;
    expected += " 10.0." + std::to_string(i) + ".1/24";
    interface.ipv6->secondaries.push_back(address);
    std::array<char, 20> text;
    std::snprintf(text.data(), text.size(), " a00:%x::/24", i * 256U + 1);
    expected_ipv6 += text.data();
  }
  device.interfaces.add(std::move(interface));
  const DeviceDirectory directory(std::move(device));
  const ActiveDevice active(directory);
  EXPECT_EQ(addresses_of("Eth1"), expected);
  EXPECT_EQ(addresses_of("Eth1", kIpv6Addresses), expected_ipv6);
}

TEST(DeviceServices, NodesAndNames) {
  const DeviceDirectory directory(device_of_file());
  const ActiveDevice active(directory);
  std::array<char, 32> text;
  nodeid_t node = 0;
  EXPECT_EQ(platform_get_my_nodeid(&node), kOk);
  EXPECT_EQ(nodeid_to_str_external(node, text.data(), text.size()), kOk);
  EXPECT_STREQ(text.data(), "node0_1");
  EXPECT_EQ(im_internal_namestring("Gi0/0/1", text.data(), text.size()), kOk);
  EXPECT_EQ(imc_ifname_to_location(yfw_ocifmgr_im_conn, text.data(), &node), kOk);
  EXPECT_EQ(nodeid_to_str_external(node, text.data(), text.size()), kOk);
  EXPECT_STREQ(text.data(), "node0_2");
  EXPECT_EQ(imc_ifname_to_location(yfw_ocifmgr_im_conn, "Eth9", &node), IMC_INTERFACE_UNKNOWN);
}

TEST(DeviceServices, TwoNamesMayBeOfOneInterface) {
  const DeviceDirectory directory(read_device(models(), "device", R"({
      "interfaces": [{"name": "Gi0/1"}, {"name": "Eth1"}, {"name": "Eth2"}],
      "native": {"Halvane-Ombrix-ifmgr-cfg:interface-configurations": {"interface-configuration": [
          {"active": "act", "interface-name": "Te9"}, {"active": "act", "interface-name": "Gi0_1"},
          {"active": "act", "interface-name": "Eth2"}]}}})"));
  std::string names;
  for (const std::string& name : directory.interface_names()) {
    names += name + '=' + std::to_string(directory.handle_of(internal_name(name))) + ' ';
    EXPECT_TRUE(directory.knows(name)) << name;
  }
  EXPECT_EQ(names, "Te9=4 Gi0_1=1 Eth2=3 Gi0/1=1 Eth1=2 ");
  EXPECT_FALSE(directory.knows("Te8"));
}

TEST(DeviceServices, AnInterfaceWithoutALocationIsOnTheLocalNodeOrOnNone) {
  const auto location = [](const std::string& local_node) {
    const DeviceDirectory directory(
        read_device(models(), "device",
                    R"({"node": )" + local_node + R"(, "interfaces": [{"name": "Eth1"}]})"));
    const ActiveDevice active(directory);
    std::array<char, 32> text{"untouched"};
    nodeid_t node = 99;
    EXPECT_EQ(imc_ifname_to_location(yfw_ocifmgr_im_conn, "Eth1", &node), kOk);
    EXPECT_EQ(nodeid_to_str_external(node, text.data(), text.size()) == kOk, node != NODEID_NONE);
    return std::string(text.data());
  };
  EXPECT_EQ(location(R"("node0_1")"), "node0_1");
  EXPECT_EQ(location("null"), "untouched");
}

TEST(DeviceServices, WhatIsAbsentSaysSo) {
  struct Row {
    std::string device;
    std::array<cerrno, 3> results;  // of the interface manager, the database and the node
  };
  const Row rows[] = {
      {R"({"node": "n"})", {0, 0, 0}},
      {R"({"node": null})", {0, 0, kNotFound}},
      {R"({"node": "n", "faults": {"interface-manager": "absent"}})", {kUnavailable, 0, 0}},
      {R"({"node": "n", "faults": {"sysdb": "absent"}})", {0, SYSDB_UNAVAILABLE, 0}},
      {R"({"node": "n", "faults": {"node": "absent"}})", {0, 0, kUnavailable}}};
  for (const Row& row : rows) {
    const DeviceDirectory directory(read_device(models(), "device", row.device));
    const ActiveDevice active(directory);
    imc_conn_ctx* connection = nullptr;
    sysdb_handle* handle = nullptr;
    nodeid_t node = 0;
    const std::array<cerrno, 3> results = {
        imc_control_server_bind(&connection, IMC_BIND_MODE_CLIENT),
        _sysdb_bind(&handle, "/", SYSDB_BIND_READ), platform_get_my_nodeid(&node)};
    EXPECT_EQ(results, row.results) << row.device;
    EXPECT_EQ(yfw_ocifmgr_im_conn != 0, row.results[0] == kOk) << row.device;
    _sysdb_unbind(handle);
  }
}

TEST(DeviceServices, TheDatabaseServesTheItemsOfTheDeviceFile) {
  const DeviceDirectory directory(device_of_file());
  const ActiveDevice active(directory);
  sysdb_handle* handle = nullptr;
  ASSERT_EQ(_sysdb_bind(&handle, "/cfg/if/", SYSDB_BIND_READ), kOk);
  void* item = nullptr;
  std::uint32_t length = 0;
  std::uint32_t type = 0;
  EXPECT_EQ(sysdb_item_get(handle, "act/ab", &item, &length, &type), kOk);
  EXPECT_EQ(std::string(static_cast<char*>(item), length) + std::to_string(type), "x1");
  std::free(item);
  EXPECT_EQ(sysdb_item_get(handle, "act", &item, &length, &type), SYSDB_ITEM_NOT_FOUND);
  std::string names;
  sysdb_list* list = nullptr;
  std::uint32_t count = 0;
  ASSERT_EQ(sysdb_datalist(handle, "act", nullptr, &list, &count), kOk);
  EXPECT_EQ(count, 2u);
  const char* name = nullptr;
  const void* bytes = nullptr;
  while (sysdb_datalist_next(list, &name, &bytes, &length, &type) == kOk) {
    names.append(name).append(" ");
  }
  EXPECT_EQ(names, "ab b/c ");
  sysdb_datalist_free(list);
  EXPECT_EQ(sysdb_datalist(handle, "act", "a", &list, &count), SYSDB_LIST_EMPTY);
  EXPECT_EQ(_sysdb_unbind(handle), kOk);
}

// --- the sibling mapping -------------------------------------------------------------------------

// Maps the content of the interface Eth1; what it came to, or the refusal.
class SiblingTest : public CoreTest {
 protected:
  std::string map(const std::string& content, RequestSettings settings = {}) {
    begin(
        R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "Eth1")" + content + "}]}}",
        settings);
    const cerrno result =
        ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(ctx, &input->roots()[0], out);
    EXPECT_TRUE(request->hierarchy().nodes().empty());
    EXPECT_EQ(yfw_map_util_itree_stack_size(request->state().visited_entries), 0u);
    return result == kOk ? entered : request->refusal(result).text();
  }
  std::string map_subinterface_20(const std::string& content, RequestSettings settings = {}) {
    return map(R"(, "subinterfaces": {"subinterface": [{"index": 20)" + content + "}]}", settings);
  }
};

TEST_F(SiblingTest, EachFamilyGoesToItsEntry) {
  EXPECT_EQ(map(R"(, "config": {"name": "Eth1"}, "subinterfaces": {"subinterface": [
      {"index": 0, "config": {"index": 0}, "openconfig-if-ip:ipv4": {"config": {"mtu": 1}}},
      {"index": 20, "openconfig-if-ip:ipv6": {}, "x:y": {}}]},
      "openconfig-vlan:routed-vlan": {"openconfig-if-ip:ipv4": {}, "openconfig-if-ip:ipv6": {}})"),
            "4:Eth1 op=0 ipv4 config mtu\n6:Eth1.20 op=0 ipv6\n4:Eth1.20 op=0 y\n"
            "a:Eth1 op=0 ipv4\nb:Eth1 op=0 ipv6\n");
}

TEST_F(SiblingTest, DeletesGoToTheFamilies) {
  const std::string deleted = R"(, "@": {"ietf-netconf:operation": "delete"})";
  EXPECT_EQ(map_subinterface_20(deleted + R"(, "config": {"index": 20}, "@index":
                                {"ietf-netconf:operation": "remove"})"),
            "4:Eth1.20 op=3 subinterface\n6:Eth1.20 op=3 subinterface\n");
  EXPECT_EQ(map_subinterface_20(deleted + R"(, "openconfig-if-ip:ipv6": {"x:y": 1})"),
            "4:Eth1.20 op=3 subinterface\n6:Eth1.20 op=3 subinterface\n");
  EXPECT_EQ(map_subinterface_20(R"(, "openconfig-if-ip:ipv4": {"addresses": {"address": [{"@":
                                {"ietf-netconf:operation": "remove"}}]}})"),
            "4:Eth1.20 op=0 ipv4 addresses! address!\n");
  EXPECT_EQ(request->state().list_wide, 0);
}

TEST_F(SiblingTest, WhatExtendsIpv6GoesToItsOwnEntry) {
  plugin_entries.subinterface_ipv6_extension = stand_in<'x'>;
  const std::string deleted = R"("@": {"ietf-netconf:operation": "delete"})";
  const std::string autoconf = R"("openconfig-if-ip-ext:autoconf": {"config": {}})";
  const auto ipv6 = [&](const std::string& content) {
    return map_subinterface_20(R"(, "openconfig-if-ip:ipv6": {)" + content + "}");
  };
  EXPECT_EQ(ipv6(R"("config": {"mtu": 1}, "state": {}, )" + autoconf),
            "6:Eth1.20 op=0 ipv6 config mtu state\nx:Eth1.20 op=0 autoconf config\n");
  EXPECT_EQ(ipv6(autoconf), "x:Eth1.20 op=0 autoconf config\n");
  EXPECT_EQ(ipv6(R"("config": {})"), "6:Eth1.20 op=0 ipv6 config\n");
  EXPECT_EQ(ipv6(deleted), "6:Eth1.20 op=3 ipv6\nx:Eth1.20 op=3 ipv6\n");
  EXPECT_EQ(ipv6(deleted + ", " + autoconf), "6:Eth1.20 op=3 ipv6 autoconf config\n");
  EXPECT_EQ(map_subinterface_20(", " + deleted),
            "4:Eth1.20 op=3 subinterface\n6:Eth1.20 op=3 subinterface\nx:Eth1.20 op=3 ipv6\n");
  const std::string refused = R"("openconfig-if-ip-ext:autoconf": {"x:enabled": true})";
  EXPECT_EQ(ipv6(refused + R"(, "x:enabled": true)"),
            "\"enabled\" at /interfaces/interface[name='Eth1']"
            "/subinterfaces/subinterface[index='20']/ipv6/enabled : no (0xaaf2ee00 unsupported)");
  EXPECT_EQ(ipv6(refused),
            "\"enabled\" at /interfaces/interface[name='Eth1']"
            "/subinterfaces/subinterface[index='20']/ipv6/autoconf/enabled : no (0xaaf2ee00 "
            "unsupported)");
}

// Neither an entry with keys in the same list, nor one without in a list below or beside it.
TEST_F(SiblingTest, OnlyTheListThatIsNamedWithoutKeysIsDeletedAsAWhole) {
  const std::string deleted = R"("@": {"ietf-netconf:operation": "delete"})";
  EXPECT_EQ(map_subinterface_20(R"(, "openconfig-if-ip:ipv4": {"addresses": {"address": [
                {"ip": "10.0.0.1", "vrrp": {"vrrp-group": [{)" +
                                deleted + R"(, "virtual-router-id": 1}]}}, {)" + deleted +
                                R"(}, {)" + deleted + R"(, "config": {}}]}, "neighbors":
                {"neighbor": [{)" +
                                deleted + R"(, "ip": "10.0.0.9"}]}})"),
            "4:Eth1.20 op=0 ipv4 addresses! address ip vrrp vrrp-group virtual-router-id address!"
            " address config neighbors neighbor ip\n");
}

TEST_F(SiblingTest, WhatIsNotMappedIsRefused) {
  for (const auto& each : cases::read(OCIFIP_CASES "refused-interfaces.txt")) {
    EXPECT_EQ(map(each["content"]), each["expected"]) << each.where;
  }
  EXPECT_EQ(map(R"(, "hold-time": {})", {.request_op = YFW_MAP_REQUEST_READ_STATE}), "");
  EXPECT_EQ(request->notes(),
            std::vector<std::string>{"/interfaces/interface[name='Eth1']/hold-time is left out"
                                     ": only IP on subinterfaces is mapped"});
}

TEST_F(SiblingTest, ARefusalQuotesTheMappingsLastErrorLine) {
  std::uint32_t site = 0xffffffff;
  _ombos_dt_log_filter_adv(ctx->error_channel, 0, 0, 0, 0, 0, &site, "ERR: YFW: ctx=%p,%s\n",
                           static_cast<void*>(ctx), "Missing key");
  EXPECT_EQ(request->refusal(kListKey).message, "Missing key");
  EXPECT_EQ(request->refuse(kListKey, "ip", "no ip"), kListKey);
  EXPECT_EQ(request->refusal(kListKey).message, "no ip");
}

// --- registrations -------------------------------------------------------------------------------

TEST(Registrations, RequestsEnterByTheRecordThatHasTheWalkerOfInterfaces) {
  const auto record = [](yfw_map_leaf_callback to_native) {
    RegistrationRecord registered{"", {}};
    registered.record.to_native = to_native;
    return registered;
  };
  const auto interfaces = record(ymap_ox_ocif_openconfiginterfaces_lvla_interfaces);
  EXPECT_EQ(openconfig_entry({record(stand_in<'o'>), interfaces}, "p.so"),
            interfaces.record.to_native);
  EXPECT_EQ(
      result_of([&] {
        openconfig_entry({record(stand_in<'o'>)}, "p.so");
        return "found";
      }),
      "cannot load the plug-in p.so: it registers no mapping that OpenConfig requests reach by "
      "ymap_ox_ocif_openconfiginterfaces_lvla_interfaces");
}

// --- cycles --------------------------------------------------------------------------------------

class MapperTest : public testing::Test {
 protected:
  // What the plug-in was asked for by a query.
  std::string query(std::vector<std::string> paths, Content content = Content::kConfig) {
    // The first query probes the leaves.
    outcome = mapper.query({{}, paths, content}, Format::kTree);
    entered.clear();
    outcome = mapper.query({{}, std::move(paths), content}, Format::kTree);
    return outcome.refusal ? outcome.refusal->text() : entered;
  }

  void edit(const std::optional<std::string>& json, std::vector<std::string> deletes,
            DefaultOperation operation, Format format) {
    EditRequest request{{}, std::move(deletes), operation};
    if (json) {
      request.document = Source{"in.json", *json, Encoding::kJson};
    }
    entered.clear();
    notes_reads = false;
    outcome = mapper.edit(request, format);
    notes_reads = true;
  }

  DeviceDirectory device{device_of_file()};
  PluginEntries plugin{ymap_ox_ocif_openconfiginterfaces_lvla_interfaces, kStandIn, {}};
  Mapper mapper{models(), device, plugin, HostOptions{.unchecked = true}};
  Outcome outcome;
};

constexpr const char* kSubinterface1 =
    "/interfaces/interface[name='Eth9']/subinterfaces/subinterface[index='1']";

// A request with some content for the IPv4 container of that subinterface.
std::string ipv4_request(const std::string& content) {
  return R"({"interfaces": {"interface": [{"name": "Eth9", "subinterfaces": {"subinterface":
      [{"index": 1, "openconfig-if-ip:ipv4": {)" +
         content + "}}]}}]}}";
}

TEST_F(MapperTest, EditsAreOfTheKindThatTheirOperationsMakeThem) {
  using enum DefaultOperation;
  const std::map<std::string, DefaultOperation> operations = {
      {"merge", kMerge}, {"create", kCreate}, {"replace", kReplace}, {"none", kNone}};
  for (const auto& each : cases::read(OCIFIP_CASES "kinds-of-edits.txt")) {
    const auto ipv4 = each.has("ipv4") ? std::optional(ipv4_request(each["ipv4"])) : std::nullopt;
    std::vector<std::string> deletes;
    if (each.has("delete")) deletes.push_back(kSubinterface1 + each["delete"]);
    edit(ipv4, deletes, operations.at(each["operation"]), Format::kJson);
    EXPECT_EQ(std::to_string(entered_kind) + "\n" + entered, each["entered"]) << each.where;
  }
}

TEST_F(MapperTest, ARefusedEditShowsNothingButItsCalls) {
  const std::string mtu = R"("config": {"mtu": 1400)";
  const std::string call =
      "add-path Halvane-Ombrix-ipv4-io-cfg /interface-configurations/interface-configuration"
      "/ipv4-network/mtu =\"1400\" source=write create=1 flags=1\n";
  const std::string native =
      "Halvane-Ombrix-ifmgr-cfg:interface-configurations\n"
      "  interface-configuration [active=\"act\"][interface-name=\"Eth9.1\"]\n"
      "    active = \"act\"\n    interface-name = \"Eth9.1\"\n"
      "    Halvane-Ombrix-ipv4-io-cfg:ipv4-network\n      mtu = \"1400\"\n";
  for (const bool refused : {false, true}) {
    for (const Format format : {Format::kCalls, Format::kTree}) {
      edit(ipv4_request(mtu + (refused ? R"(, "x:enabled": true})" : "}")), {},
           DefaultOperation::kMerge, format);
      EXPECT_EQ(outcome.refusal.has_value(), refused);
      EXPECT_EQ(outcome.text, format == Format::kCalls ? call : refused ? "" : native);
      EXPECT_EQ(outcome.notes, std::vector<std::string>());
    }
  }
  edit(R"({"interfaces": {"x:y": 1}})", {}, DefaultOperation::kMerge, Format::kJson);
  EXPECT_TRUE(outcome.refusal.has_value());
  edit(R"({"interfaces": {}})", {}, DefaultOperation::kMerge, Format::kJson);
  EXPECT_EQ(outcome.text, "{}\n");
  EXPECT_EQ(outcome.notes, std::vector<std::string>{"the request maps to nothing on the device"});
}

TEST_F(MapperTest, QueriesAreExpandedIntoTheLeavesThatAreRead) {
  const std::string ipv4 = std::string(kSubinterface1) + "/ipv4";
  EXPECT_EQ(query({ipv4 + "/config"}), "4:Eth9.1 op=0 ipv4 config mtu dhcp-client\n");
  EXPECT_EQ(query({ipv4 + "/proxy-arp", ipv4 + "/proxy-arp/state/mode"}),
            "4:Eth9.1 op=0 ipv4 proxy-arp config mode state mode\n");
  EXPECT_EQ(query({ipv4 + "/proxy-arp"}, Content::kAll),
            "4:Eth9.1 op=0 ipv4 proxy-arp config mode state mode\n");
  EXPECT_EQ(query({ipv4 + "/neighbors/neighbor"}),
            "4:Eth9.1 op=0 ipv4 neighbors neighbor ip config ip link-layer-address\n");
  EXPECT_EQ(query({ipv4 + "/unnumbered/config"}), "4:Eth9.1 op=0 ipv4 unnumbered config\n");
  EXPECT_EQ(outcome.notes[0], "the mapping reads nothing of " + ipv4 + "/unnumbered/config");
  EXPECT_EQ(query({ipv4 + "/config/enabled"}),
            "\"enabled\" at " + ipv4 + "/config/enabled : no (0xaaf2ee00 unsupported)");
  for (const auto& [content, kind] : {std::pair(Content::kConfig, YFW_MAP_REQUEST_READ_CONFIG),
                                      std::pair(Content::kAll, YFW_MAP_REQUEST_READ_STATE)}) {
    query({ipv4 + "/config/mtu"}, content);
    EXPECT_EQ(entered_kind, kind);
  }
}

TEST_F(MapperTest, AnEntryWithoutItsKeyStandsForThoseOfTheDevice) {
  for (const auto& [path, expected] :
       {std::pair{"/interfaces", "4:Eth1.20 6:Eth1.20 4:Gi0/0/1 6:Gi0/0/1 4:Eth2 6:Eth2 "},
        {"/interfaces/interface[name='Eth1']/subinterfaces", "4:Eth1.20 6:Eth1.20 "},
        {"/interfaces/interface[name='Eth9']/subinterfaces", "4:Eth9 6:Eth9 "}}) {
    std::istringstream lines(query({path}));
    std::string order;
    for (std::string line; std::getline(lines, line);) {
      order += line.substr(0, line.find(' ') + 1);
    }
    EXPECT_EQ(order, expected);
  }
}

TEST_F(MapperTest, InputThatCannotBeMappedIsNamed) {
  const auto reason = [&](const std::string& json, std::vector<std::string> deletes = {}) {
    return result_of([&] {
      edit(json, std::move(deletes), DefaultOperation::kMerge, Format::kJson);
      return "none";
    });
  };
  EXPECT_EQ(reason(R"({"x:y": {}})"), "in.json:1: no mapping for \"x:y\" at the top");
  EXPECT_EQ(reason(R"({"interfaces": {}})", {"/interface-configurations"}),
            "/interface-configurations: no mapping for "
            "\"Halvane-Ombrix-ifmgr-cfg:interface-configurations\" at the top");
  const auto named = [](std::size_t length) {
    return "{\"interfaces\":\n{\"interface\": [{\"name\": \"" + std::string(length, 'n') + "\"}]}}";
  };
  EXPECT_EQ(reason(named(200)), "none");
  EXPECT_EQ(reason(named(201)), "in.json:2: interface name \"" + std::string(200, 'n') +
                                    "\"... has 201 characters, the limit is 200");
  const auto indexed = [](std::size_t length) {
    return R"({"interfaces": {"interface": [{"name": "E", "subinterfaces": {"subinterface":
        [{"index": ")" +
           std::string(length, '1') + "\"}]}}]}}";
  };
  EXPECT_EQ(reason(indexed(63)), "none");
  EXPECT_EQ(reason(indexed(64)), "in.json:2: subinterface index \"" + std::string(64, '1') +
                                     "\" has 64 characters, the limit is 63");
}

}  // namespace
}  // namespace ocifip
