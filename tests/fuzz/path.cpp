// Instance paths, read and deleted.
#include "target.h"

using ocifip::Format;
using ocifip::fuzz::attempt;
using ocifip::fuzz::session;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = ocifip::fuzz::text_of(data, size);
  attempt([&] { session().mapper.get({{}, {path}}, Format::kXml); });
  attempt([&] { session().mapper.edit({{}, {path}}, Format::kJson); });
  return 0;
}
