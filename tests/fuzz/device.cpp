// Device files, and what a device answers.
#include "io/device_json.h"
#include "target.h"

namespace {

void run(const std::string& text) {
  using namespace ocifip;
  const DeviceDirectory directory(read_device(faults::models(), "device", text));
  check_native(faults::models(), directory.device().native);
  check_items(directory);
  with_native("device", text, "{}");
  Mapper mapper(faults::models(), directory, fuzz::session().entries, {});
  mapper.get({{}, {"/interfaces"}}, Format::kTree);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ocifip::fuzz::attempt([&] { run(ocifip::fuzz::text_of(data, size)); });
  return 0;
}
