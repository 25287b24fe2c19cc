// Schemas: the layout that they give a structure, and what is wrong with malformed ones.
#include "records/schema.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>

#include "native_records.h"
#include "records/decoder.h"
#include "records/record_error.h"

namespace ocifip {
namespace {

using namespace std::string_view_literals;

std::string repeat(const std::string& text, int count) {
  std::string result;
  while (count-- > 0) result += text;
  return result;
}

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

struct Case {
  std::string schema;
  std::string layout;
};

std::ostream& operator<<(std::ostream& out, const Case& row) {
  return out << row.schema.substr(0, 80);
}

class Schemas : public testing::TestWithParam<Case> {};
TEST_P(Schemas, AreLaidOutOrRefused) { EXPECT_EQ(layout_of(GetParam().schema), GetParam().layout); }

INSTANTIATE_TEST_SUITE_P(
    LaidOut, Schemas,
    testing::Values(Case{"$1=C", "0 /1 1"}, Case{"$1=CNCDCICbC", "0 4 8 12 16 20 24 28 32 /36 4"},
                    Case{"$1=CHC", "0 8 16 /24 8"}, Case{"$1=C[x]eC", "0 4 8 /12 4"},
                    Case{"$1=Cs3s", "0 8 16 /24 8"}, Case{"$1=C3x6x%mN", "0 1 4 12 /16 4"},
                    Case{"$1=Ca(C)p(C)C", "0 8 24 32 /40 8"}, Case{"$1=C3A(D)C", "0 4 16 /20 4"},
                    Case{"$1=DC$2=C$1C", "0 4 12 /16 4"},
                    Case{"$1=D$2=C2A($1)2A(2A(C))", "0 4 12 /16 4"}, Case{"$1=CPC", "0 8 /16 8"},
                    Case{"$1=PCP", "0 /8 8"}, Case{"$1=CPPD", "0 8 /16 8"},
                    Case{"$14=D$16=$14 5A(C)$17=$14a($16)", "0 8 /24 8"},
                    Case{"$1={pair}{a}C{b.2-x}PD%h", "a0 b.2-x8 /16 8"},
                    Case{"$1={pair}P{a}C", "a0 /8 8"},
                    Case{"\n$1={x} {a}C\n\t{b}D\n", "a0 b4 /8 4"}));

INSTANTIATE_TEST_SUITE_P(
    Malformed, Schemas,
    testing::Values(
        Case{"", "1: defines no structure"}, Case{" $1={ \n", "6: no name"},
        Case{"D", "1: no definition of a structure"}, Case{"$=D", "2: no number"},
        Case{"$1", "1: no definition of a structure"}, Case{"$1=", "4: a structure without fields"},
        Case{"$1=P", "5: a structure without fields"},
        Case{"$1=$2=D", "4: a structure without fields"},
        Case{"$1=D$1=D", "7: a second definition of the structure"},
        Case{"$1=$1", "6: structure 1 is not defined before it is used"},
        Case{"$1=$2$2=D", "6: structure 2 is not defined before it is used"},
        Case{"$1=Q", "4: no type"}, Case{"$1=D%", "6: no print hint"},
        Case{"$1=D%1", "6: no print hint"}, Case{"$1=[x]D", "7: no \"e\""},
        Case{"$1=[]e", "5: no name"}, Case{"$1=[x", "6: no \"]\""}, Case{"$1=6", "5: no \"x\""},
        Case{"$1=0x", "5: the number is 0"}, Case{"$1=0A(D)", "5: the number is 0"},
        Case{"$1=2A(D", "8: no \")\""}, Case{"$1=aD", "5: no \"(\""}, Case{"$1=a()", "6: no type"},
        Case{"$1=p(PD)", "6: no type"}, Case{"$1={a}{b}D{b}D", "14: a second field \"b\""},
        Case{"$1={a}D", "7: no \"{\""},
        Case{"$1={a}{b}D$2=D",
             "14: some structures have names and "
             "others have none"},
        Case{"$1=D{a}D", "5: no type"}, Case{"$1={a b}", "6: no \"}\""},
        Case{"$99999999=D", "8: the number is too large"},
        Case{"$1=9999999x", "10: the number is too large"},
        Case{"$1=1048576xC", "13: the structure is too large"},
        Case{"$1=1048576A(2x)", "16: the array is too large"},
        Case{"$1=1024A(1024A(1024A(C)))", "26: the array is too large"},
        Case{"$1=" + repeat("a(", 32) + "D" + repeat(")", 32), "68: nested too deeply"},
        Case{"$1=" + repeat("a(", 31) + "D" + repeat(")", 31) + "$2=a($1)",
             "106: nested too deeply"},
        Case{"$1=" + repeat("D", 65534), "1: the text is too long"}));

// However a schema is cut or changed, it is read or refused, and stays within the limits.
TEST(SchemaTexts, SurviveDamage) {
  const std::string whole =
      "$3={in}{a}C{b}a(a(s))$4={out}{c}PD%h{d}5A($3){e}[x]e{f}16x%s{g}p($3){h}64s";
  std::size_t refused = 0;
  const auto read = [&refused](const std::string& text) {
    try {
      EXPECT_LE(Schema(text).record().extent.size, Schema::kLargest) << text;
    } catch (const RecordError& error) {
      EXPECT_EQ(error.code(), kRecordSchemaMalformed) << text;
      ++refused;
    }
  };
  for (std::size_t at = 0; at < whole.size(); ++at) {
    read(whole.substr(0, at));
    for (const char c : "$={}[]()0999aAPsxe%\xff"sv) {
      std::string damaged = whole;
      damaged[at] = c;
      read(damaged);
      damaged.insert(at, "9999");
      read(damaged);
    }
  }
  EXPECT_GT(refused, 10 * whole.size());
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
