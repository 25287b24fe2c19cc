// Device files: what they are read into, and how their faults are named.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "io/device_file.h"
#include "io_testing.h"

namespace ocifip {
namespace {

// A device with some fields and nothing else, as one line for each part of it.
std::string device_of(const std::string& fields) {
  return result_of([&] {
    const auto device = read_device(models(), "dev.json", fields);
    std::string text = device.node.value_or("no node") + '\n';
    const auto show = [&text](const DeviceAddress& address) {
      text += ' ' + std::to_string(address.bytes[0]) + '-' + std::to_string(address.bytes[15]) +
              '/' + std::to_string(address.prefix_length);
    };
    for (const auto& interface : device.interfaces) {
      text += interface.name + '@' + interface.node.value_or("-");
      for (const auto& addresses : {interface.ipv4, interface.ipv6}) {
        text += addresses ? " has" : " none";
        if (addresses && addresses->primary) show(*addresses->primary);
        if (addresses)
          std::for_each(addresses->secondaries.begin(), addresses->secondaries.end(), show);
      }
      text += '\n';
    }
    text += print(device.native, Format::kTree);
    for (const auto& [path, item] : device.sysdb) {
      text += path + ' ' + std::to_string(item.type) + item.text + item.record + item.fields + '\n';
    }
    const auto flag = [](bool is_set) { return is_set ? '1' : '0'; };
    return text + flag(device.sysdb_absent) + flag(device.interface_manager_absent) +
           flag(device.node_absent);
  });
}

class Devices : public testing::TestWithParam<Case> {};
TEST_P(Devices, AreReadOrRefused) { EXPECT_EQ(device_of(GetParam().given), GetParam().expected); }

Case bad_interface(const std::string& fields, const std::string& reason) {
  return {R"({"interfaces":[{"name":"a"},{)" + fields + "}]}", "dev.json: interfaces[1]" + reason};
}
Case bad_item(const std::string& fields, const std::string& reason) {
  return {R"({"sysdb":{"/a":{)" + fields + "}}}", "dev.json: sysdb[\"/a\"]" + reason};
}

INSTANTIATE_TEST_SUITE_P(
    All, Devices,
    testing::Values(
        Case{R"({"node":"n","interfaces":[{"name":"E","node":"m","ipv4":{"primary":"10.0.0.1/0",
             "secondaries":["11.0.0.1/32"]},"ipv6":{"primary":"2001:db8::1/128"}},{"name":"F",
             "ipv4":{}}],"native":{"a:b":{"c":1,"c":2}},"sysdb":{"/a":{"type":1,"text":"t"},
             "/b":{"record":"r","fields":{"Z":1,"A":[2]}}},"faults":{"interface-manager":"absent"}})",
             "n\nE@m has 10-0/0 11-0/32 has 32-1/128\nF@- has none\na:b\n  c = \"1\"\n  c = \"2\"\n"
             "/a 1t\n/b 0r{\"Z\":1,\"A\":[2]}\n010"},
        Case{R"({"node":null,"faults":{"sysdb":"absent","node":"absent"}})", "no node\n101"},
        Case{"[]", "dev.json: not an object"},
        Case{"{\"node\":\n}",
             "dev.json:2: not valid JSON: unexpected '}'; expected '[', '{', or a literal"},
        Case{"{\"node\":\"a\",\n\"node\":\"b\"}", "dev.json:2: a second field \"node\""},
        Case{R"({"node":5})", "dev.json: node: not a string"},
        Case{R"({"nodes":"n"})", "dev.json: nodes: unknown field"},
        Case{R"({"native":[]})", "dev.json: native: not an object"},
        Case{"{\"native\":\n{\"a\":{\"@\":{\"ietf-netconf:operation\":\"x\"}}}}",
             "dev.json: native:2: unknown operation \"x\""},
        Case{R"({"faults":{"node":"gone"}})", "dev.json: faults.node: \"gone\" is not \"absent\""},
        bad_interface("", ": no \"name\""),
        bad_interface(R"("name":"a")", ".name: a second interface \"a\""),
        bad_interface("\"name\":\"" + repeat("x", 201) + '"', ".name: longer than 200 characters"),
        bad_interface(R"("name":"b","ipv4":{"primery":"10.0.0.1/24"})",
                      ".ipv4.primery: unknown field"),
        bad_interface(R"("name":"b","ipv4":{"primary":"10.0.0.1"})",
                      ".ipv4.primary: \"10.0.0.1\" has no prefix length"),
        bad_interface(R"("name":"b","ipv4":{"secondaries":["10.0.0.1/33"]})",
                      ".ipv4.secondaries[0]: the prefix length of \"10.0.0.1/33\" is not a number "
                      "from 0 to 32"),
        bad_interface(R"("name":"b","ipv6":{"primary":"fe80::1%e/64"})",
                      ".ipv6.primary: \"fe80::1%e/64\" is not an IPv6 address"),
        bad_item(R"("type":1)", ": no \"text\""), bad_item(R"("record":"r")", ": no \"fields\""),
        bad_item(R"("type":-1,"text":"")", ".type: not a number from 0 to 4294967295"),
        bad_item(R"("record":"r","fields":{},"text":"")", ".text: unknown field")));

TEST(Devices, ExampleHasAddressesToTryMergingWith) {
  const auto device = example_device();
  EXPECT_EQ(device.node, "node0_1");
  const auto& last = device.interfaces.back();
  EXPECT_EQ(last.ipv4->primary->prefix_length, 24U);
  EXPECT_EQ(last.ipv4->secondaries.size(), 2U);
}

}  // namespace
}  // namespace ocifip
