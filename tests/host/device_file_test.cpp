// Device files: what they are read into, and how their faults are named.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cases.h"
#include "device/native_part.h"
#include "io/device_file.h"
#include "io/save_file.h"
#include "io_testing.h"
#include "result_codes.h"

namespace ocifip {
namespace {

// A device with some fields and nothing else, as one line for each part of it.
std::string device_of(const std::function<Device()>& read) {
  return result_of([&] {
    const auto device = read();
    std::string text = device.node.value_or("no node") + '\n';
    const auto show = [&text](const DeviceAddress& address) {
      text += ' ' + std::to_string(address.bytes[0]) + '-' + std::to_string(address.bytes[15]) +
              '/' + std::to_string(address.prefix_length);
    };
    for (const auto& interface : device.interfaces.all()) {
      text += interface.name + '@' + interface.node.value_or("-");
      for (const auto& addresses : {interface.ipv4, interface.ipv6}) {
        text += addresses ? " has" : " none";
        if (addresses && addresses->primary) show(*addresses->primary);
        if (addresses)
          std::for_each(addresses->secondaries.begin(), addresses->secondaries.end(), show);
      }
      text += '\n';
    }
    text += print(device.native.whole(), Format::kTree);
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
    const auto text = std::make_shared<const std::string>(each["given"]);
    EXPECT_EQ(device_of([&] { return read_device(models(), "dev.json", *text); }), each["expected"])
        << each.where;
    EXPECT_EQ(device_of([&] { return open_device(models(), "dev.json", text); }), each["expected"])
        << each.where;
  }
}

std::vector<std::string> texts_of(const std::vector<InterfaceEntry>& entries) {
  std::vector<std::string> texts;
  for (const InterfaceEntry& entry : entries) {
    texts.push_back(Models::tag(entry.list) + ' ' + std::string(entry.interface) +
                    (entry.is_active ? " active" : ""));
  }
  return texts;
}

// Whatever part of a native configuration is read, it has what the whole has of it.
TEST(Devices, AreOpenedInParts) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(OCIFIP_SCENARIOS)) {
    const std::string name = entry.path().filename();
    if (!name.starts_with("device") || !name.ends_with(".json")) continue;
    const auto text = std::make_shared<const std::string>(read_file(entry.path()));
    const Device read = read_device(models(), "dev.json", *text);
    const auto entries = read.native.entries();
    EXPECT_EQ(texts_of(open_device(models(), "dev.json", text).native.entries()),
              texts_of(entries));
    for (const InterfaceEntry& each : entries) {
      const InterfaceNames names = {std::string(each.interface)};
      const Device opened = open_device(models(), "dev.json", text);
      EXPECT_EQ(print(opened.native.part(names), Format::kTree),
                print(part_of(read.native.whole(), names), Format::kTree))
          << entry.path() << ' ' << each.interface;
      ++count;
    }
  }
  EXPECT_GT(count, 40U);
}

TEST(Devices, ExampleHasAddressesToTryMergingWith) {
  const auto device = example_device(models());
  EXPECT_EQ(device.node, "node0_1");
  const auto& last = device.interfaces.all().back();
  EXPECT_EQ(last.ipv4->primary->prefix_length, 24U);
  EXPECT_EQ(last.ipv4->secondaries.size(), 2U);
}

}  // namespace
}  // namespace ocifip
