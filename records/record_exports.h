// What the library exports for the native operational records.
#ifndef RECORDS_RECORD_EXPORTS_H_
#define RECORDS_RECORD_EXPORTS_H_

#include <cstdint>

#include "bag/bag.h"

#define RECORDS_EXPORT extern "C" __attribute__((visibility("default")))

// Registers a family's records as one batch.
//
//   loader_1 to loader_6  what the codec's loader passes; handed on unchanged
//
// Returns 0, or the first failure, after which no record of the family is registered.
#define RECORD_FAMILY(family, major, minor)                                   \
  RECORDS_EXPORT std::uint32_t bag_register_all_##family##_bags(              \
      std::uint64_t loader_1, std::uint64_t loader_2, std::uint64_t loader_3, \
      std::uint64_t loader_4, std::uint64_t loader_5, std::uint64_t loader_6);

// A record's descriptor, and an accessor that returns the descriptor's address.
#define RECORD(family, name, structures, bytes)   \
  RECORDS_EXPORT const bag_descriptor name##_bag; \
  RECORDS_EXPORT const bag_descriptor* name##_bag_getfn();

// Also a record's named schema and its version.
#define VERSIONED_RECORD(family, name, structures, bytes)      \
  RECORD(family, name, structures, bytes)                      \
  RECORDS_EXPORT const char* const bag_bytecode_##name;        \
  RECORDS_EXPORT const std::uint32_t bag_major_version_##name; \
  RECORDS_EXPORT const std::uint32_t bag_minor_version_##name;
#include "native_records.def"

// Hands a caller's argument to bag_fetch_string with the type's key. Returns its result.
#define VRRP_TYPE(name, key) \
  RECORDS_EXPORT std::uint32_t bag_fetch_##name##_2_8(std::uint64_t destination);
#include "vrrp_types.def"

#endif  // RECORDS_RECORD_EXPORTS_H_
