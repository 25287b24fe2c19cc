// JSON documents.
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ocifip::fuzz::run_document(ocifip::Encoding::kJson, ocifip::fuzz::text_of(data, size));
  return 0;
}
