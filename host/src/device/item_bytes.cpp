#include "device/item_bytes.h"

#include <nlohmann/json.hpp>

#include "io/text.h"
#include "records/encoder.h"
#include "records/registry.h"

namespace ocifip {

std::string item_bytes(const DatabaseItem& item, const DeviceDirectory& directory) {
  if (item.record.empty()) return item.text;
  const RegisteredRecord* record = RecordRegistry::instance().find(item.record);
  if (record == nullptr) {
    throw input_error(item.place + ".record", 0, "no record " + in_quotes(item.record));
  }
  return encode_record(
      *record, nlohmann::ordered_json::parse(item.fields), item.place + ".fields",
      [&directory](const std::string& name) { return directory.handle_of(internal_name(name)); });
}

void check_items(const DeviceDirectory& directory) {
  for (const auto& [path, item] : directory.device().sysdb) {
    item_bytes(item, directory);
  }
}

}  // namespace ocifip
