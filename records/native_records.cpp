#include <span>

#include "record_schemas.h"

namespace records {
namespace {

#define RECORD_FAMILY(family, major, minor)        \
  constexpr std::uint32_t kMajor_##family = major; \
  constexpr std::uint32_t kMinor_##family = minor;
#define RECORD(family, name, structures, bytes)                   \
  constexpr std::uint64_t kLayout_##name[] = {structures, bytes}; \
  constexpr std::string_view kNamed_##name = named_schema(#name); \
  constexpr auto kCompact_##name = compact_schema<compact_size(kNamed_##name)>(kNamed_##name);
#include "native_records.def"

struct LoaderArguments {
  std::uint64_t values[6];
};

std::uint32_t register_all(const LoaderArguments& loader,
                           std::span<const bag_descriptor* const> family) {
  const auto& values = loader.values;
  const auto started = static_cast<std::uint32_t>(
      bag_register_start(values[0], values[1], values[2], values[3], values[4], values[5]));
  if (started != 0) return started;
  for (const bag_descriptor* descriptor : family) {
    if (const std::uint32_t result = bag_register(descriptor)) {
      bag_register_abort();
      return result;
    }
  }
  return bag_register_end();
}

}  // namespace
}  // namespace records

// The descriptor library's file name is a setting of the build.
#define RECORD(family, name, structures, bytes)                        \
  const bag_descriptor name##_bag = {1,                                \
                                     #name,                            \
                                     records::kMajor_##family,         \
                                     records::kMinor_##family,         \
                                     OCIFIP_RECORD_LIBRARY_##family,   \
                                     records::kLayout_##name,          \
                                     records::kNamed_##name.data(),    \
                                     records::kCompact_##name.data()}; \
  const bag_descriptor* name##_bag_getfn() { return &name##_bag; }
#define VERSIONED_RECORD(family, name, structures, bytes)                  \
  RECORD(family, name, structures, bytes)                                  \
  const char* const bag_bytecode_##name = records::kNamed_##name.data();   \
  const std::uint32_t bag_major_version_##name = records::kMajor_##family; \
  const std::uint32_t bag_minor_version_##name = records::kMinor_##family;
#include "native_records.def"

#define RECORD_FAMILY(family, major, minor)                                                        \
  std::uint32_t bag_register_all_##family##_bags(std::uint64_t loader_1, std::uint64_t loader_2,   \
                                                 std::uint64_t loader_3, std::uint64_t loader_4,   \
                                                 std::uint64_t loader_5, std::uint64_t loader_6) { \
    const records::LoaderArguments loader = {                                                      \
        {loader_1, loader_2, loader_3, loader_4, loader_5, loader_6}};                             \
    static constexpr const bag_descriptor* kFamily[] = {
#define RECORD(family, name, structures, bytes) &name##_bag,
#define RECORD_FAMILY_END(family)                \
  }                                              \
  ;                                              \
  return records::register_all(loader, kFamily); \
  }
#include "native_records.def"

#define VRRP_TYPE(name, key)                                        \
  std::uint32_t bag_fetch_##name##_2_8(std::uint64_t destination) { \
    static constexpr std::uint32_t kKey = key;                      \
    return bag_fetch_string(destination, &kKey, 1);                 \
  }
#include "vrrp_types.def"
