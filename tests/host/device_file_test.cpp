// Device files: what they are read into, and how their faults are named.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "cases.h"
#include "io/device_file.h"
#include "io_testing.h"
#include "result_codes.h"

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
      text += path + ' ' + (item.error == 0 ? std::to_string(item.type) : hexadecimal(item.error)) +
              item.text + item.record + item.fields + '\n';
    }
    const auto flag = [](bool is_set) { return is_set ? '1' : '0'; };
    return text + flag(device.sysdb_absent) + flag(device.interface_manager_absent) +
           flag(device.node_absent);
  });
}

TEST(Devices, AreReadOrRefused) {
  for (const auto& each : cases::read(OCIFIP_CASES "device-files.txt")) {
    EXPECT_EQ(device_of(each["given"]), each["expected"]) << each.where;
  }
}

TEST(Devices, ExampleHasAddressesToTryMergingWith) {
  const auto device = example_device(models());
  EXPECT_EQ(device.node, "node0_1");
  const auto& last = device.interfaces.back();
  EXPECT_EQ(last.ipv4->primary->prefix_length, 24U);
  EXPECT_EQ(last.ipv4->secondaries.size(), 2U);
}

}  // namespace
}  // namespace ocifip
