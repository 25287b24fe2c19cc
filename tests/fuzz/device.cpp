// Device files, and what a device answers.
#include <cstdlib>
#include <iostream>
#include <memory>

#include "io/device_json.h"
#include "io/print_document.h"
#include "target.h"

namespace {

// A device, or what is wrong with it.
template <class Read>
std::string told(const Read& read) {
  try {
    const ocifip::Device device = read();
    std::vector<std::string> notes;
    return print_document(device.native.whole(), ocifip::Format::kTree, notes);
  } catch (const ocifip::InputError& error) {
    return error.what();
  }
}

// A text is the same device for both ways to read it.
void compare(const std::string& text) {
  using namespace ocifip;
  const auto shared = std::make_shared<const std::string>(text);
  const std::string read = told([&] { return read_device(faults::models(), "device", text); });
  const std::string opened = told([&] { return open_device(faults::models(), "device", shared); });
  if (read != opened) {
    std::cerr << read << "\nbut opened:\n" << opened << '\n';
    std::abort();
  }
}

void run(const std::string& text) {
  using namespace ocifip;
  const DeviceDirectory directory(read_device(faults::models(), "device", text));
  check_configuration(faults::models(), directory.device().native);
  check_items(directory);
  with_native("device", text, "{}");
  Mapper mapper(faults::models(), directory, fuzz::session().entries, {});
  mapper.get({{}, {"/interfaces"}}, Format::kTree);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = ocifip::fuzz::text_of(data, size);
  compare(text);
  ocifip::fuzz::attempt([&] { run(text); });
  return 0;
}
