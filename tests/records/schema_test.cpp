// Schemas: the layout that they give a structure, and what is wrong with malformed ones.
#include "records/schema.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>

#include "cases.h"
#include "native_records.h"
#include "records/decoder.h"
#include "records/record_error.h"

namespace ocifip {
namespace {

// The offsets of a record's fields, its size and its alignment; or why the schema cannot be read.
std::string layout_of(const std::string& text) {
  try {
    const Schema schema(text);
    std::ostringstream line;
    for (const SchemaField& field : schema.record().fields) {
      line << field.name << field.offset << ' ';
    }
    line << '/' << schema.record().extent.size << ' ' << schema.record().extent.alignment;
    return line.str();
  } catch (const RecordError& error) {
    EXPECT_EQ(error.code(), kRecordSchemaMalformed);
    const std::string prefix = "the schema is malformed at character ";
    const std::string reason = error.what();
    EXPECT_TRUE(reason.starts_with(prefix)) << reason;
    return reason.substr(prefix.size());
  }
}

TEST(Schemas, AreLaidOutOrTurnedDown) {
  for (const auto& each : cases::read(OCIFIP_CASES "schemas.txt")) {
    EXPECT_EQ(layout_of(each["schema"]), each["layout"]) << each.where;
  }
  EXPECT_EQ(layout_of("$1=" + std::string(65534, 'D')), "1: the text is too long");
}

// The structures that the plug-in reads are those that the codec writes.
#define OFFSET(kind, ...) OFFSET_OF(__VA_ARGS__, )
#define OFFSET_OF(name, ...) line << #name << offsetof(Structure, name) << ' ';
#define EXPECT_LAYOUT(type, FIELDS)                                     \
  {                                                                     \
    using Structure = type;                                             \
    std::ostringstream line;                                            \
    FIELDS(OFFSET) line << '/' << sizeof(type) << ' ' << alignof(type); \
    EXPECT_EQ(layout_of(type##_bag.named_schema), line.str());          \
  }

TEST(Structures, LieAsTheSchemasSay){
    EXPECT_LAYOUT(arp_gmp_config_entry, ARP_GMP_CONFIG_ENTRY_FIELDS)
        EXPECT_LAYOUT(ipv4_if_detail, IPV4_IF_DETAIL_FIELDS)
            EXPECT_LAYOUT(ipv4_ma_oc_if_summary, IPV4_MA_OC_IF_SUMMARY_FIELDS)
                EXPECT_LAYOUT(ipv4_ma_oc_client_summary, IPV4_MA_OC_CLIENT_SUMMARY_FIELDS)
                    EXPECT_LAYOUT(vrrp_vrouter_info, VRRP_VROUTER_INFO_FIELDS)
                        EXPECT_LAYOUT(vrrp_trackitem_info, VRRP_TRACKITEM_INFO_FIELDS)
                            EXPECT_LAYOUT(vrrp_interface_info, VRRP_INTERFACE_INFO_FIELDS)
                                EXPECT_LAYOUT(vrrp_mgo_info, VRRP_MGO_INFO_FIELDS)
                                    EXPECT_LAYOUT(vrrp_summary_info, VRRP_SUMMARY_INFO_FIELDS)}

// The two schemas of a descriptor describe one structure.
TEST(Structures, AreTheSameWithoutNames) {
  const auto without_names = [](const std::string& layout) {
    std::string offsets;
    std::istringstream words(layout);
    for (std::string word; words >> word;) {
      const auto end = word.find_last_not_of("0123456789");
      offsets += word.starts_with('/') ? word : word.substr(end + 1);
      offsets += ' ';
    }
    return offsets;
  };
#define RECORD(family, name, structures, bytes)                             \
  if (*name##_bag.named_schema != '\0') {                                   \
    EXPECT_EQ(without_names(layout_of(name##_bag.named_schema)),            \
              without_names(layout_of(name##_bag.compact_schema)));         \
    EXPECT_TRUE(Schema(name##_bag.named_schema).has_names());               \
    EXPECT_FALSE(Schema(name##_bag.compact_schema).has_names());            \
    EXPECT_EQ(Schema(name##_bag.named_schema).record().extent.size, bytes); \
  }
#include "native_records.def"
}

}  // namespace
}  // namespace ocifip
