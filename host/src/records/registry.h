// The records that the codec knows by name, because a library has registered them.
#ifndef OCIFIP_HOST_RECORDS_REGISTRY_H_
#define OCIFIP_HOST_RECORDS_REGISTRY_H_

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bag/bag.h"
#include "records/schema.h"

namespace ocifip {

// A copy of what a descriptor says: the library that it belongs to may be gone.
struct RegisteredRecord {
  std::string name;
  std::uint32_t major_version = 0;
  std::uint32_t minor_version = 0;
  std::optional<Schema> schema;  // absent when the descriptor has none
};

class RecordRegistry {
 public:
  // The registry of the process, which the functions of bag/bag.h work on.
  static RecordRegistry& instance();

  // The record of a name, or null. It stays until a record of the same name is committed.
  [[nodiscard]] const RegisteredRecord* find(const std::string& name) const;

  // Opens a batch. Throws RecordError when one is open.
  void start();
  // Adds a record to the batch. Throws RecordError, also for a schema that cannot be used; a
  // missing schema is no failure.
  void add(const bag_descriptor& descriptor);
  // Commits the batch: its records replace those of the same names. Throws RecordError without one.
  void commit();
  // Drops the batch, if there is one.
  void abort() { batch_.reset(); }

 private:
  std::map<std::string, RegisteredRecord> records_;
  std::optional<std::vector<RegisteredRecord>> batch_;
};

// Has a loaded library register its records, a family after the other. Throws LoadError that names
// the library's file.
void load_records(void* library, const std::string& file);

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_REGISTRY_H_
