// The codec of records: a line with a schema, and the bytes of a record, or the fields of one.
#include <cstdio>
#include <cstdlib>

#include "records/schema.h"
#include "records_testing.h"
#include "target.h"

namespace {

void run(const std::string& schema_text, const std::string& rest) {
  using namespace ocifip;
  const Schema schema(schema_text);
  const TestDescriptor descriptor(schema_text.c_str(), schema.record().extent.size);
  decode_and_free(test_record("") + rest, descriptor);
  const bool has_fields = nlohmann::ordered_json::accept(rest);
  const std::string record = encoded(schema_text.c_str(), has_fields ? rest : "{}");
  if (record.starts_with("bag") && decode_and_free(record, descriptor) != 0) {
    std::fputs("what was encoded is not decoded\n", stderr);
    std::abort();
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = ocifip::fuzz::text_of(data, size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  try {
    run(input.substr(0, end), input.substr(std::min(end + 1, input.size())));
  } catch (const ocifip::RecordError&) {
    // A schema that cannot be used is turned down by this, and by nothing else.
  }
  return 0;
}
