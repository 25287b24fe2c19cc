// The descriptors and their registration, with a codec that writes down what it is asked for.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cases.h"
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

std::vector<cases::Case> families_of_platform() {
  return cases::read(OCIFIP_CASES "descriptors.txt");
}

std::uint32_t digest(std::string_view schema) {
  std::uint32_t hash = 2166136261;
  for (const char c : schema) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
  return hash;
}

TEST(Descriptors, AreThePlatforms) {
  std::map<std::string, std::ostringstream> families;
  const auto add = [&](const char* family, const char* name, const bag_descriptor& descriptor,
                       const bag_descriptor* accessed) {
    EXPECT_EQ(accessed, &descriptor) << name;
    EXPECT_STREQ(descriptor.name, name);
    EXPECT_EQ(descriptor.format, 1u) << name;
    EXPECT_TRUE(std::string(descriptor.library).ends_with(".so")) << name;
    std::ostringstream& lines = families[family];
    lines << descriptor.name << ' ' << descriptor.major_version << '.' << descriptor.minor_version
          << ' ' << descriptor.layout[0] << '/' << descriptor.layout[1];
    if (*descriptor.named_schema != '\0') lines << ' ' << digest(descriptor.named_schema);
    lines << '\n';
  };
#define RECORD(family, name, structures, bytes) add(#family, #name, name##_bag, name##_bag_getfn());
#include "native_records.def"
  for (const auto& each : families_of_platform()) {
    EXPECT_EQ(families[each["family"]].str(), each["records"]);
  }
  EXPECT_EQ(families.size(), 5u);
}

TEST(Descriptors, SchemasHaveNamesOrNone) {
  std::map<std::string, const bag_descriptor*> descriptors;
#define RECORD(family, name, structures, bytes) descriptors[#name] = &name##_bag;
#include "native_records.def"
  for (const auto& each : cases::read(OCIFIP_CASES "descriptor-schemas.txt")) {
    const bag_descriptor& descriptor = *descriptors.at(each["name"]);
    EXPECT_EQ(descriptor.compact_schema, each["compact"]);
    EXPECT_TRUE(!each.has("named") || descriptor.named_schema == each["named"]) << each.where;
  }
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

const std::map<std::string, Registration*> kRegistrations = {
#define RECORD_FAMILY(family, major, minor) {#family, bag_register_all_##family##_bags},
#include "native_records.def"
};

constexpr const char* kStart = "start 1 2 3 4 5 18446744073709551615\n";

// What a family's registration makes of the answers; its lines stand in the script.
std::uint32_t run(const cases::Case& family, const Script& answers) {
  SCOPED_TRACE(family["family"]);
  script = answers;
  return kRegistrations.at(family["family"])(1, 2, 3, 4, 5, ~std::uint64_t{0});
}

// The lines of a family's first records.
std::string records(const cases::Case& family, std::size_t count) {
  std::string names;
  for (const std::string& line : cases::lines_of(family["records"])) {
    if (count-- == 0) break;
    names += line.substr(0, line.find(' ')) + '\n';
  }
  return names;
}

class Families : public testing::Test {
 protected:
  void TearDown() override { script.reset(); }
};

TEST_F(Families, AreRegisteredInTheirOrderAndAsOneBatch) {
  for (const auto& family : families_of_platform()) {
    const std::string all = records(family, 99);
    EXPECT_EQ(run(family, {.end_result = 0x77}), 0x77u);
    EXPECT_EQ(script->lines, kStart + all + "end\n");
    EXPECT_EQ(run(family, {.start_result = 0x500000009}), 9u);
    EXPECT_EQ(script->lines, kStart);
    // Only the low half of the result counts.
    EXPECT_EQ(run(family, {.start_result = 0x500000000}), 0u);
    EXPECT_EQ(script->lines, kStart + all + "end\n");
  }
}

TEST_F(Families, AreDroppedWhenOneFails) {
  for (const auto& family : families_of_platform()) {
    run(family, {});
    const std::size_t count = script->registered;
    for (std::size_t failing = 1; failing <= count; ++failing) {
      EXPECT_EQ(run(family, {.failing = failing, .register_result = 0x88}), 0x88u);
      EXPECT_EQ(script->lines, kStart + records(family, failing) + "abort\n");
    }
  }
}

}  // namespace
