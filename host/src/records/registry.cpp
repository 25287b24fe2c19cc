// Registration of record descriptors, for bag/bag.h.
#include "records/registry.h"

#include <dlfcn.h>

#include <utility>

#include "io/text.h"
#include "records/codec_result.h"
#include "records/decoder.h"
#include "records/record_error.h"

namespace ocifip {
namespace {

constexpr std::uint64_t kDescriptorFormat = 1;

constexpr const char* kRegistrations[] = {
    "bag_register_all_arp_gmp_edm_bags", "bag_register_all_vrrp_bags",
    "bag_register_all_statsd_bags",      "bag_register_all_ipv4_ma_oper_interface_bags",
    "bag_register_all_ipv6_nd_bags",
};

using Registration = std::uint32_t (*)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                       std::uint64_t, std::uint64_t);

}  // namespace

RecordRegistry& RecordRegistry::instance() {
  static RecordRegistry registry;
  return registry;
}

const RegisteredRecord* RecordRegistry::find(const std::string& name) const {
  const auto found = records_.find(name);
  return found == records_.end() ? nullptr : &found->second;
}

void RecordRegistry::start() {
  if (batch_) throw RecordError(kRecordBatch, "a batch of records is open already");
  batch_.emplace();
}

void RecordRegistry::add(const bag_descriptor& descriptor) {
  if (!batch_) throw RecordError(kRecordBatch, "no batch of records is open");
  if (descriptor.format != kDescriptorFormat || descriptor.name == nullptr) {
    throw RecordError(kInvalidArgument, "the descriptor is of another format, or without a name");
  }
  RegisteredRecord record{descriptor.name, descriptor.major_version, descriptor.minor_version, {}};
  try {
    record.schema = schema_of(descriptor);
  } catch (const RecordError& error) {
    if (error.code() != kRecordSchemaMissing) throw;
  }
  batch_->push_back(std::move(record));
}

void RecordRegistry::commit() {
  if (!batch_) throw RecordError(kRecordBatch, "no batch of records is open");
  std::vector<RegisteredRecord> batch = std::move(*batch_);
  batch_.reset();
  for (RegisteredRecord& record : batch) {
    const std::string name = record.name;
    records_.insert_or_assign(name, std::move(record));
  }
}

void load_records(void* library, const std::string& file) {
  for (const char* name : kRegistrations) {
    void* symbol = dlsym(library, name);
    const auto fail = [&](const std::string& reason) { throw load_error("plug-in", file, reason); };
    if (symbol == nullptr) fail(std::string("it does not export ") + name);
    // What the loader passes is of no use to this codec.
    const cerrno result = reinterpret_cast<Registration>(symbol)(0, 0, 0, 0, 0, 0);
    if (result != kOk) fail(std::string(name) + " fails with " + hexadecimal(result));
  }
}

}  // namespace ocifip

using ocifip::codec_result;
using ocifip::RecordRegistry;

extern "C" {

uint64_t bag_register_start(uint64_t /*loader_1*/, uint64_t /*loader_2*/, uint64_t /*loader_3*/,
                            uint64_t /*loader_4*/, uint64_t /*loader_5*/, uint64_t /*loader_6*/) {
  return codec_result([] { RecordRegistry::instance().start(); });
}

uint32_t bag_register(const bag_descriptor* descriptor) {
  return descriptor == nullptr ? ocifip::kInvalidArgument
                               : codec_result([&] { RecordRegistry::instance().add(*descriptor); });
}

uint32_t bag_register_end(void) {
  return codec_result([] { RecordRegistry::instance().commit(); });
}

void bag_register_abort(void) { RecordRegistry::instance().abort(); }

// The texts behind the types' keys belong to the families' descriptor libraries, which this
// platform has not: no key has one.
uint32_t bag_fetch_string(uint64_t /*destination*/, const uint32_t* keys, uint32_t count) {
  return keys == nullptr || count == 0 ? ocifip::kInvalidArgument : ocifip::kNotFound;
}

}  // extern "C"
