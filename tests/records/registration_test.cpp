// The descriptors and their registration, with a codec that writes down what it is asked for.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "native_records.h"

namespace {

// While a script is set, the codec's functions below write lines and answer as it says; otherwise
// they are the host's.
struct Script {
  std::uint64_t start_result = 0;
  std::size_t failing = 0;  // number of the bag_register that fails, from 1; 0 for none
  std::uint32_t register_result = 0;
  std::uint32_t end_result = 0;

  std::size_t registered = 0;
  std::string lines{};
};
std::optional<Script> script;

template <typename Function>
Function* host(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

std::uint64_t bag_register_start(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d,
                                 std::uint64_t e, std::uint64_t f) {
  if (!script) return host<decltype(bag_register_start)>("bag_register_start")(a, b, c, d, e, f);
  std::ostringstream line;
  line << "start " << a << ' ' << b << ' ' << c << ' ' << d << ' ' << e << ' ' << f << '\n';
  script->lines += line.str();
  return script->start_result;
}

std::uint32_t bag_register(const bag_descriptor* descriptor) {
  if (!script) return host<decltype(bag_register)>("bag_register")(descriptor);
  script->lines += std::string(descriptor->name) + '\n';
  return ++script->registered == script->failing ? script->register_result : 0;
}

std::uint32_t bag_register_end() {
  if (!script) return host<decltype(bag_register_end)>("bag_register_end")();
  script->lines += "end\n";
  return script->end_result;
}

void bag_register_abort() {
  if (!script) return host<decltype(bag_register_abort)>("bag_register_abort")();
  script->lines += "abort\n";
}

std::uint32_t bag_fetch_string(std::uint64_t destination, const std::uint32_t* keys,
                               std::uint32_t count) {
  return static_cast<std::uint32_t>(destination) + *keys * 100 + count * 10000;
}
}

namespace {

// --- descriptors ---------------------------------------------------------------------------------

// What the platform says of its records, in the order of their families. A digest of the schema
// holds the names of its fields in their order; whole, they would repeat the rows.
constexpr const char* kRecords =
    "arp_gmp_vrf_entry 0.3 0/24\n"
    "arp_gmp_config_entry 0.3 0/32 3869091475\n"
    "arp_gmp_route_entry 0.3 0/32\n"
    "arp_gmp_intf_entry 0.3 1/40\n"
    "vrrp_vrouter_info 2.8 4/480 3248481262\n"
    "vrrp_trackitem_info 2.8 0/48 2615181244\n"
    "vrrp_interface_info 2.8 0/20 719002269\n"
    "vrrp_mgo_info 2.8 1/48 2495561582\n"
    "vrrp_summary_info 2.8 0/184 3394877517\n"
    "ifstatsbag_generic 6.0 0/192\n"
    "ifstatsbag_basic 6.0 0/80\n"
    "statsdbag_datarate 6.0 0/80\n"
    "ifstatsbag_proto 6.0 0/88\n"
    "statsbag_accounting 6.0 0/32\n"
    "statsbag_flow 6.0 0/32\n"
    "ifstatsbag_srp 6.0 2/132\n"
    "statsbag_ethernet_l1 6.0 4/80\n"
    "statsbag_ethernet_l2 6.0 2/472\n"
    "ifcs_rate_bag 6.0 0/64\n"
    "ipv4_if_brief 4.2 0/24\n"
    "multi_acl_config 4.2 1/120\n"
    "ipv4_if_detail 4.2 9/408 1419757615\n"
    "ipv4_if_summary 4.2 1/52\n"
    "ipv4_ma_oc_if_summary 4.2 4/56 2816591317\n"
    "ipv4_ma_oc_client_summary 4.2 2/40 845431188\n"
    "ipv6_nd_neighbor_entry 2.8 1/88\n"
    "ipv6_nd_if_params 2.8 0/84\n"
    "ipv6_nd_bl_node_entry 2.8 1/56\n"
    "ipv6_nd_addr 2.8 0/56\n"
    "ipv6_nd_gspnode 2.8 0/8\n"
    "ipv6_nd_if_entry 2.8 3/256\n"
    "ipv6_nd_neighbor_entry_summary 2.8 1/56\n"
    "ipv6_nd_vr_entry 2.8 1/112\n"
    "ipv6_nd_clear_params 2.8 0/24\n"
    "ipv6_nd_prefixQ 2.8 0/56\n"
    "ipv6_nd_ra_info 2.8 2/96\n"
    "ipv6_nd_slaac_intfs_info 2.8 3/32\n"
    "ipv6_nd_dbg_ns 2.8 0/16\n"
    "ipv6_nd_dbg_ra 2.8 0/1\n"
    "ipv6_nd_dbg_na 2.8 0/24\n"
    "ipv6_nd_dbg_gl 2.8 0/1\n"
    "ipv6_nd_dbg_re 2.8 0/16\n"
    "ipv6_nd_dbg_packet 2.8 7/104\n";

std::uint32_t digest(std::string_view schema) {
  std::uint32_t hash = 2166136261;
  for (const char c : schema) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
  return hash;
}

TEST(Descriptors, AreThePlatforms) {
  std::ostringstream lines;
  const auto add = [&lines](const char* name, const bag_descriptor& descriptor,
                            const bag_descriptor* accessed) {
    EXPECT_EQ(accessed, &descriptor) << name;
    EXPECT_STREQ(descriptor.name, name);
    EXPECT_EQ(descriptor.format, 1u) << name;
    EXPECT_TRUE(std::string(descriptor.library).ends_with(".so")) << name;
    lines << descriptor.name << ' ' << descriptor.major_version << '.' << descriptor.minor_version
          << ' ' << descriptor.layout[0] << '/' << descriptor.layout[1];
    if (*descriptor.named_schema != '\0') lines << ' ' << digest(descriptor.named_schema);
    lines << '\n';
  };
#define RECORD(family, name, structures, bytes) add(#name, name##_bag, name##_bag_getfn());
#include "native_records.def"
  EXPECT_EQ(lines.str(), kRecords);
}

// Of some records both schemas are written out, which holds the rows that they are made from.
TEST(Descriptors, SchemasHaveNamesOrNone) {
  EXPECT_STREQ(arp_gmp_config_entry_bag.named_schema,
               "$1={arp_gmp_config_entry}{IPAddress}N{HardwareAddress}6x%m"
               "{EncapsulationType}[arp_gmp_bag_encap]e{EntryType}[arp_gmp_bag_entry_type]e"
               "{InterfaceName}s");
  EXPECT_STREQ(arp_gmp_config_entry_bag.compact_schema,
               "$1=N6x%m[arp_gmp_bag_encap]e[arp_gmp_bag_entry_type]es");
  EXPECT_STREQ(vrrp_mgo_info_bag.compact_schema,
               "$16=64x%SD$17=16x%SD%h[vrrp_b_af]eD[vrrp_bag_protocol_state]ea($16)");
  EXPECT_STREQ(vrrp_vrouter_info_bag.compact_schema,
               "$3=16x%s$6=DD$8=[vrrp_bag_protocol_state]e[vrrp_bag_protocol_state]e"
               "[vrrp_state_change_reason]e$6$13=D%hDI32x%SCC$14=PD%h64sDC[vrrp_b_af]e16x%SDb16x%S"
               "CCa(N)Na($3)Ca(N)a($3)16x%s[vrrp_vip_state]eN16x%sC[vrrp_bag_protocol_state]e"
               "[vrrp_prot_auth]esDDDDbDDbbbbbICCDDDDDa($13)DDDDDDDDDDDDDDDDD"
               "[vrrp_bfd_session_state]eDDN16x%sb$6$6a($8)N16x%s6x%m[vrrp_vmac_state]e");
  EXPECT_STREQ(ipv4_if_detail_bag.compact_schema,
               "$1=N$2=NIII$3=ssss$4=s$5=5A($4)5A($4)5A($4)$6=a(N)$7=bbb[rpf_mode]e$8=bbb$9=$8$8"
               "$10=NIIs[ipv4_ma_oper_line_state_type]eIIIa($1)Ibbbbbbssa($2)b$3$5p($6)$7$9bbIHI"
               "[ipv4_ma_oper_line_state_type]eN[ipv4_ma_oper_config_type]eb"
               "[im_state_type_]e[im_state_type_]e[im_state_type_]eHNIb");
  EXPECT_STREQ(vrrp_trackitem_info_bag.compact_schema, "$13=D%hDI32x%SCC");
  EXPECT_STREQ(vrrp_interface_info_bag.compact_schema, "$15=D%hDDDD");
  EXPECT_EQ(vrrp_summary_info_bag.compact_schema, "$18=" + std::string(46, 'D'));
  EXPECT_STREQ(ipv4_ma_oc_client_summary_bag.compact_schema, "$1=sHsCbba(I)$2=sa($1)$6=IIb$2");
  EXPECT_STREQ(ipv4_ma_oc_if_summary_bag.compact_schema,
               "$1=sHsCbba(I)$2=sa($1)$3=NIII$4=64x%S$5=Ip($3)p($4)b$2");
  EXPECT_STREQ(ipv6_nd_addr_bag.named_schema, "");
  EXPECT_STREQ(ipv6_nd_addr_bag.compact_schema, "");
}

TEST(Descriptors, VrrpRecordsExportTheirSchemaAndVersion) {
#define VERSIONED_RECORD(family, name, structures, bytes)     \
  EXPECT_STREQ(bag_bytecode_##name, name##_bag.named_schema); \
  EXPECT_EQ(bag_major_version_##name, 2u);                    \
  EXPECT_EQ(bag_minor_version_##name, 8u);
#include "native_records.def"
}

TEST(Descriptors, VrrpTypesAreFetchedByTheirKeys) {
  std::set<std::uint32_t> results;
#define VRRP_TYPE(name, key) results.insert(bag_fetch_##name##_2_8(1ULL << 32 | 42));
#include "vrrp_types.def"
  EXPECT_EQ(results.size(), 18u);
  EXPECT_EQ(bag_fetch_vrrp_vrouter_info_2_8(42), 11442u);
}

// --- registration --------------------------------------------------------------------------------

using Registration = decltype(bag_register_all_vrrp_bags);

struct Family {
  const char* name;
  Registration* register_all;
  const char* first;  // record
  const char* next;   // first record of the next family
};

class Families : public testing::TestWithParam<Family> {
 protected:
  void TearDown() override { script.reset(); }

  static std::uint32_t run(const Script& answers) {
    script = answers;
    return GetParam().register_all(1, 2, 3, 4, 5, ~std::uint64_t{0});
  }
  // The lines of the first records, of all when there are no more.
  static std::string records(std::size_t count) {
    const std::string all = kRecords;
    const std::size_t begin = all.find(GetParam().first);
    std::istringstream family(all.substr(begin, all.find(GetParam().next) - begin));
    std::string names;
    std::string line;
    while (count-- != 0 && std::getline(family, line)) {
      names += line.substr(0, line.find(' ')) + '\n';
    }
    return names;
  }

  static constexpr const char* kStart = "start 1 2 3 4 5 18446744073709551615\n";
};

INSTANTIATE_TEST_SUITE_P(
    All, Families,
    testing::Values(Family{"arp_gmp_edm", bag_register_all_arp_gmp_edm_bags, "arp_gmp_vrf", "vrrp"},
                    Family{"vrrp", bag_register_all_vrrp_bags, "vrrp_", "ifstatsbag_generic"},
                    Family{"statsd", bag_register_all_statsd_bags, "ifstatsbag_g", "ipv4_if_brief"},
                    Family{"ipv4_ma_oper_interface", bag_register_all_ipv4_ma_oper_interface_bags,
                           "ipv4_if_brief", "ipv6_nd_neighbor_entry "},
                    Family{"ipv6_nd", bag_register_all_ipv6_nd_bags, "ipv6_nd_neighbor_entry ",
                           "no more"}),
    [](const testing::TestParamInfo<Family>& each) { return each.param.name; });

TEST_P(Families, AreRegisteredInTheirOrder) {
  EXPECT_EQ(run({.end_result = 0x77}), 0x77u);
  EXPECT_EQ(script->lines, kStart + records(99) + "end\n");
}

TEST_P(Families, AreNotRegisteredWithoutABatch) {
  EXPECT_EQ(run({.start_result = 0x500000009}), 9u);
  EXPECT_EQ(script->lines, kStart);
  // Only the low half of the result counts.
  EXPECT_EQ(run({.start_result = 0x500000000}), 0u);
  EXPECT_EQ(script->lines, kStart + records(99) + "end\n");
}

TEST_P(Families, AreDroppedWhenOneFails) {
  run({});
  const std::size_t count = script->registered;
  for (std::size_t failing = 1; failing <= count; ++failing) {
    EXPECT_EQ(run({.failing = failing, .register_result = 0x88}), 0x88u);
    EXPECT_EQ(script->lines, kStart + records(failing) + "abort\n");
  }
}

}  // namespace
