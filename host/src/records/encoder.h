// Encoding of records from the values of their fields.
#ifndef OCIFIP_HOST_RECORDS_ENCODER_H_
#define OCIFIP_HOST_RECORDS_ENCODER_H_

#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "records/registry.h"

namespace ocifip {

// The handle of an interface, by its name; 0 when there is none.
using InterfaceHandles = std::function<std::uint32_t(const std::string& name)>;

// Encodes a record of which some fields are given, by name; the others are zero, empty or absent.
//
//   record   a registered record
//   fields   an object; docs/records.md says how each type's values are written
//   place    how messages name the object, as `device.json: sysdb["/a"].fields`
//   handles  for interface handles that are given by name
//
// Throws InputError that names the value by its place, or the record when it has no schema.
std::string encode_record(const RegisteredRecord& record, const nlohmann::ordered_json& fields,
                          const std::string& place, const InterfaceHandles& handles);

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_ENCODER_H_
