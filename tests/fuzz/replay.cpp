// Runs a fuzz target on saved inputs.
//
// Usage: fuzz_TARGET FILE|FOLDER...
#include <filesystem>
#include <iostream>

#include "target.h"

namespace {

int replayed = 0;

void replay(const std::filesystem::path& path) {
  if (std::filesystem::is_directory(path)) {
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      replay(entry.path());
    }
    return;
  }
  const std::string input = ocifip::read_file(path);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
  ++replayed;
}

}  // namespace

int main(int count, char** arguments) {
  for (int i = 1; i < count; ++i) {
    replay(arguments[i]);
  }
  std::cout << replayed << " inputs\n";
  return replayed > 0 ? 0 : 1;
}
