// The database: explicit items, records among them, and what the device implies.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "device/device_directory.h"
#include "device/item_bytes.h"
#include "io/device_file.h"
#include "io/save_file.h"
#include "native_records.h"
#include "records/registry.h"
#include "records_testing.h"
#include "sysdb/sysdb.h"

namespace ocifip {
namespace {

class Database : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    for (auto* family : {bag_register_all_arp_gmp_edm_bags, bag_register_all_vrrp_bags,
                         bag_register_all_statsd_bags, bag_register_all_ipv6_nd_bags,
                         bag_register_all_ipv4_ma_oper_interface_bags}) {
      ASSERT_EQ(family(0, 0, 0, 0, 0, 0), kOk);
    }
  }
  static const Models& models() {
    static const Models loaded(OCIFIP_MODELS_DIR);
    return loaded;
  }

  // Type and bytes of an item, or the result of the read.
  static std::string item(const char* prefix, const char* path) {
    sysdb_handle* handle = nullptr;
    EXPECT_EQ(_sysdb_bind(&handle, prefix, SYSDB_BIND_READ), kOk);
    void* buffer = nullptr;
    std::uint32_t length = 0;
    std::uint32_t type = 0;
    const cerrno result = sysdb_item_get(handle, path, &buffer, &length, &type);
    EXPECT_EQ(_sysdb_unbind(handle), kOk);
    if (result != kOk) return hexadecimal(result);
    std::string text = std::to_string(type) + ' ' + std::string(static_cast<char*>(buffer), length);
    std::free(buffer);
    return text;
  }
  // The types, names and sizes of a list's items, or the result of the read.
  static std::string list(const char* prefix, const char* path, const char* filter = nullptr) {
    sysdb_handle* handle = nullptr;
    EXPECT_EQ(_sysdb_bind(&handle, prefix, SYSDB_BIND_READ), kOk);
    sysdb_list* items = nullptr;
    std::uint32_t count = 0;
    cerrno result = sysdb_datalist(handle, path, filter, &items, &count);
    EXPECT_EQ(_sysdb_unbind(handle), kOk);
    if (result != kOk) return hexadecimal(result);
    std::string text;
    for (std::uint32_t i = 0; i < count; ++i) {
      const char* name = nullptr;
      const void* buffer = nullptr;
      std::uint32_t length = 0;
      std::uint32_t type = 0;
      result = sysdb_datalist_next(items, &name, &buffer, &length, &type);
      const std::string shown = name == nullptr ? "(null)" : name;
      text += (result == kOk ? std::to_string(type) + ' ' + shown : hexadecimal(result)) + '\n';
    }
    sysdb_datalist_free(items);
    return text;
  }

  template <typename Structure>
  struct Decoded {
    explicit Decoded(const bag_descriptor& of, const std::string& item) : descriptor(of) {
      EXPECT_TRUE(item.starts_with("7 ")) << item;
      result = bag_decode(item.data() + 2, static_cast<std::uint32_t>(item.size() - 2), &structure,
                          &descriptor);
    }
    ~Decoded() { bag_free_indirections(&structure, &descriptor); }
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    const Structure* operator->() const { return &structure; }

    const bag_descriptor& descriptor;
    Structure structure{};
    std::uint32_t result;
  };

  DeviceDirectory directory{
      read_device(models(), "dev.json", read_file(OCIFIP_CASES "device.json"))};
  ActiveDevice active{directory};
};

TEST_F(Database, ServesRecordsOfTheDeviceFile) {
  const Decoded<ipv4_if_detail> detail(ipv4_if_detail_bag,
                                       item("/oper/ipv4-io/", "if/Eth2/0x60000000/1/ifdetail"));
  EXPECT_EQ(detail.result, kOk);
  EXPECT_EQ(detail->PrefixLength, 30u);
  const Decoded<vrrp_vrouter_info> router(vrrp_vrouter_info_bag,
                                          item("/oper/ip-vrrp/gl/", "ipv4/vrouter/Gi0/0/1,1"));
  EXPECT_EQ(router.result, kOk);
  EXPECT_EQ(router->Interface, directory.handle_of("Gi0_0_1"));
}

TEST_F(Database, SelectsAListsItemsByTheirKey) {
  EXPECT_EQ(list("/oper/ip-vrrp/gl/", "ipv4/vrouter/", "Gi0/0/1,1"), "7 Gi0/0/1,1\n");
  EXPECT_EQ(list("/oper/ip-vrrp/gl/", "ipv4/vrouter"), "7 Gi0/0/1,1\n3 Gi0/0/1,11\n");
  EXPECT_EQ(list("/oper/ip-vrrp/gl/", "ipv4/vrouter/", "Eth9,1"), hexadecimal(SYSDB_LIST_EMPTY));
}

// An item at the path of a list has no name there, and is no item of the list above.
TEST_F(Database, FailsAsTheDeviceFileSays) {
  EXPECT_EQ(list("/oper/", "mixed"), "1 (null)\n0x40814200\n2 b\n");
  EXPECT_EQ(list("/oper/", "mixed", "b"), "2 b\n");
  EXPECT_EQ(list("/oper/", "", "mixed"), "0x40814200\n2 mixed/b\n");
  EXPECT_EQ(item("/oper/", "mixed/a"), "0x40814200");
  EXPECT_EQ(list("/oper/", "broken"), "0x40814202");
  EXPECT_EQ(list("/oper/", "broken", "a"), "0x40814202");
  EXPECT_EQ(item("/oper/", "broken/a"), "3 ");
}

TEST_F(Database, KnowsWhatTheConfigurationImplies) {
  EXPECT_EQ(list("/cfg/if/act/", ""),
            "1 Eth2/ipv4/arp/local-proxy-arp\n1 Eth2/ipv4/arp/proxy-arp\n"
            "5 Gi0_0_1/ipv4/arp/proxy-arp\n");
  EXPECT_EQ(item("/cfg/if/act/", "Gi0_0_1/ipv4/arp/proxy-arp"), "5 mine");
  EXPECT_EQ(item("/cfg/if/act/", "Gi0_0_1/ipv4/arp/local-proxy-arp"),
            hexadecimal(SYSDB_ITEM_NOT_FOUND));
  EXPECT_EQ(list("/oper/ipv4-arp-gmp/gl/", "vrf/default/config/"),
            "7 10.0.0.8,Eth2\n7 10.0.0.9,Gi0_0_1\n");
  const Decoded<arp_gmp_config_entry> entry(
      arp_gmp_config_entry_bag,
      item("/oper/ipv4-arp-gmp/gl/", "vrf/default/config/10.0.0.9,Gi0_0_1"));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&entry->IPAddress), 4), bytes_of("0a000009"));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(entry->HardwareAddress), 6),
            bytes_of("001a2b3c4d5e"));
  EXPECT_STREQ(entry->InterfaceName, "Gi0_0_1");
}

TEST_F(Database, KnowsWhatTheRunningDeviceImplies) {
  EXPECT_EQ(list("/oper/ipv4-io/", "if/"),
            "7 Eth2/0x60000000/1/ifdetail\n7 Gi0_0_1/0x60000000/1/ifdetail\n");
  const Decoded<ipv4_if_detail> detail(ipv4_if_detail_bag,
                                       item("/oper/ipv4-io/", "if/Gi0_0_1/0x60000000/1/ifdetail"));
  EXPECT_EQ(detail->PrefixLength, 24u);
  EXPECT_EQ(detail->VRF_ID, 0x60000000u);
  ASSERT_EQ(detail->SecondaryAddress.count, 1u);
  EXPECT_EQ(detail->SecondaryAddress.items[0].PrefixLength, 25u);
  EXPECT_EQ(item("/oper/ipv4-io/", "if/Eth9/0x60000000/1/ifdetail"),
            hexadecimal(SYSDB_ITEM_NOT_FOUND));
  EXPECT_EQ(list("/ipc/gl/ipv6-nd/node/", "1/neighbour-entry/Gi0_0_1/"),
            "1 20010db8000000000000000000000009\n");
  EXPECT_EQ(item("/ipc/gl/",
                 "ipv6-nd/node/1/neighbour-entry/Gi0_0_1/"
                 "20010db8000000000000000000000009"),
            "1 ");
}

TEST_F(Database, CannotReadARecordWithoutASchema) {
  EXPECT_EQ(item("/", "bad"), hexadecimal(kRecordUnreadable));
  try {
    check_items(directory);
    ADD_FAILURE() << "no error";
  } catch (const InputError& error) {
    EXPECT_STREQ(error.what(),
                 "dev.json: sysdb[\"/bad\"].fields: the schema of the record \"ipv6_nd_addr\" is "
                 "empty: this build has none");
  }
}

TEST_F(Database, SharesBindingsOfOneSubtreeAndMode) {
  sysdb_handle* first = nullptr;
  sysdb_handle* second = nullptr;
  sysdb_handle* other = nullptr;
  ASSERT_EQ(_sysdb_bind(&first, "/cfg/", SYSDB_BIND_READ), kOk);
  ASSERT_EQ(_sysdb_bind(&second, "/cfg/", SYSDB_BIND_READ), kOk);
  ASSERT_EQ(_sysdb_bind(&other, "/cfg/", SYSDB_BIND_VRRP), kOk);
  EXPECT_EQ(first, second);
  EXPECT_NE(first, other);
  EXPECT_EQ(_sysdb_unbind(first), kOk);
  sysdb_list* items = nullptr;
  std::uint32_t count = 0;
  EXPECT_EQ(sysdb_datalist(second, "if/", nullptr, &items, &count), kOk);
  EXPECT_EQ(count, 3u);
  sysdb_datalist_free(items);
  EXPECT_EQ(_sysdb_unbind(second), kOk);
  EXPECT_EQ(_sysdb_unbind(second), kInvalidArgument);
  EXPECT_EQ(sysdb_datalist(second, "if/", nullptr, &items, &count), kInvalidArgument);
  EXPECT_EQ(_sysdb_unbind(other), kOk);
  EXPECT_EQ(_sysdb_bind(&first, "/cfg", SYSDB_BIND_READ), kInvalidArgument);
  EXPECT_EQ(_sysdb_bind(&first, "cfg/", SYSDB_BIND_READ), kInvalidArgument);
  EXPECT_EQ(_sysdb_bind(&first, "/cfg/", 3), kInvalidArgument);
}

// What check_items says of a device with one item.
std::string fault_of(const Models& models, const std::string& item) {
  const DeviceDirectory directory(
      read_device(models, "dev.json", R"({"sysdb": {"/a": )" + item + "}}"));
  try {
    check_items(directory);
    return "";
  } catch (const InputError& error) {
    return error.what();
  }
}

TEST_F(Database, NamesThePlaceOfAWrongField) {
  const auto detail = [](const std::string& fields) {
    return fault_of(models(), R"({"record": "ipv4_if_detail", "fields": {)" + fields + "}}");
  };
  const std::string place = "dev.json: sysdb[\"/a\"].";
  EXPECT_EQ(detail(R"("PrefixLength": 24)"), "");
  EXPECT_EQ(detail(R"("PrefixLenght": 24)"), place + "fields.PrefixLenght: unknown field");
  EXPECT_EQ(detail(R"("SecondaryAddress": [{}, {"Address": 1}])"),
            place + "fields.SecondaryAddress[1].Address: not a string");
  EXPECT_EQ(fault_of(models(), R"({"record": "ipv4_if", "fields": {}})"),
            place + "record: no record \"ipv4_if\"");
}

TEST(Databases, AreAbsentWhenTheDeviceSaysSo) {
  Device device;
  device.sysdb_absent = true;
  const DeviceDirectory directory(device);
  sysdb_handle* handle = nullptr;
  EXPECT_EQ(_sysdb_bind(&handle, "/cfg/", SYSDB_BIND_READ), SYSDB_UNAVAILABLE);
  const ActiveDevice active(directory);
  EXPECT_EQ(_sysdb_bind(&handle, "/cfg/", SYSDB_BIND_READ), SYSDB_UNAVAILABLE);
}

// The plug-in as it is shipped gives the codec its records.
TEST(Libraries, RegisterTheirRecords) {
  void* library = dlopen(OCIFIP_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  load_records(library, "plugin.so");
  const RegisteredRecord* record = RecordRegistry::instance().find("ipv6_nd_dbg_packet");
  ASSERT_NE(record, nullptr);
  EXPECT_FALSE(record->schema.has_value());
  dlclose(library);
  EXPECT_TRUE(RecordRegistry::instance().find("ipv4_if_detail")->schema->has_names());
  EXPECT_THROW(load_records(dlopen(nullptr, RTLD_NOW), "plugin.so"), LoadError);
}

}  // namespace
}  // namespace ocifip
