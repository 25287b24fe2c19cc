// Registration records, the unload hooks, and what becomes of them without the database's client.

#include <cstdlib>
#include <cstring>

#include "mapping_test.h"
#include "read_back_platform.h"
#include "yfw_map_ifip_registration.h"
#include "ymap_database.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"

using namespace recording;

namespace {

using Registrations = MappingTest;

cerrno to_native(yfw_map_ctx*, const Node*, Node*) { return 1; }
cerrno to_openconfig(yfw_map_ctx*, const Node*, Node*) { return 2; }
void framework_function() {}

TEST_F(Registrations, FillTheRecordInOrder) {
  const ymap::Registration row = {
      "yfw_map_reg_sample", "SAMPLE tree", "urn:example:sample", "sample", to_native,
      to_openconfig};
  yfw_map_reg_record record;
  std::memset(&record, 'x', sizeof record);
  record.framework_slots[0] = record.framework_slots[1] = framework_function;
  ymap::fill_registration(row, &record);
  EXPECT_STREQ(record.tree_name, "SAMPLE tree");
  EXPECT_STREQ(record.native_namespace, "urn:example:sample");
  EXPECT_STREQ(record.openconfig_namespace, kInterfaces);
  EXPECT_STREQ(record.native_tag, "sample");
  EXPECT_STREQ(record.openconfig_tag, "interfaces");
  EXPECT_EQ(record.to_native, to_native);
  EXPECT_EQ(record.framework_slots[0], framework_function);
  EXPECT_EQ(record.framework_slots[1], framework_function);
  EXPECT_EQ(record.to_openconfig, to_openconfig);
  EXPECT_EQ(record.last, nullptr);
  const std::string copy = "copy yfw_map_reg_sample size=81 count=81 =";
  EXPECT_EQ(platform.recorded(kTexts),
            calls(copy + "\"urn:example:sample\"; " + copy + "\"" + kInterfaces + "\"; " + copy +
                  "\"SAMPLE tree\"; " + copy + "\"sample\"; " + copy + "\"interfaces\""));
}

TEST_F(Registrations, CutLongTexts) {
  const std::string text(100, 't');
  yfw_map_reg_record record{};
  ymap::fill_registration({"f", text.c_str(), text.c_str(), text.c_str(), nullptr, nullptr},
                          &record);
  for (const char* field : {record.tree_name, record.native_namespace, record.native_tag}) {
    EXPECT_EQ(field, text.substr(0, 80));
  }
  EXPECT_STREQ(record.openconfig_tag, "interfaces");
}

TEST_F(Registrations, TheUnloadHookReleasesTheBindingOnce) {
  IN_FRESH_PROCESS({
    yfw_map_oc_ipv6_sysdb_unbind();
    yfw_map_oc_dhcp_sysdb_unbind();
    EXPECT_EQ(platform.recorded(~0U), "");
    ymap::dhcp_database = kDatabase;
    yfw_map_oc_ipv6_sysdb_unbind();
    EXPECT_EQ(ymap::dhcp_database, kDatabase);
    yfw_map_oc_dhcp_sysdb_unbind();
    yfw_map_oc_dhcp_sysdb_unbind();
    EXPECT_EQ(ymap::dhcp_database, nullptr);
    EXPECT_EQ(platform.recorded(~0U), "readable?\nunbind\n");
    // That the client is there is remembered.
    ymap::dhcp_database = kDatabase;
    platform.client_installed = false;
    yfw_map_oc_dhcp_sysdb_unbind();
    EXPECT_EQ(platform.recorded(~0U), "readable?\nunbind\nunbind\n");
  });
}

TEST_F(Registrations, WithoutAClientTheBindingIsForgotten) {
  IN_FRESH_PROCESS({
    platform.client_installed = false;
    ymap::dhcp_database = kDatabase;
    yfw_map_oc_dhcp_sysdb_unbind();
    EXPECT_EQ(ymap::dhcp_database, nullptr);
    EXPECT_EQ(platform.recorded(~0U), "readable?\n");
    // That it is absent is not remembered.
    platform.client_installed = true;
    EXPECT_TRUE(ymap::database_available());
  });
}

TEST_F(Registrations, WithoutAClientNothingIsBound) {
  IN_FRESH_PROCESS({
    platform.client_installed = false;
    read_back.leaves["/interface-configurations/interface-configuration interface-name"] = "Eth1";
    EXPECT_EQ(ymap_ombrix_2_oc_v4_dhcpclient(&ctx, plant(leaf("dhcp", "")), &out), 0U);
    EXPECT_EQ(platform.recorded(kDevice), "readable?\n");
    EXPECT_EQ(lines_of("ymap_ombrix_2_oc_v4_dhcpclient"),
              calls("trc Start; trc Failed to bind to SysDB: =code 2155987456; "
                    "trc No mapping done for this node; trc End"));
  });
}

}  // namespace
