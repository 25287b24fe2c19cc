#include "layout.h"

#include <filesystem>
#include <system_error>

namespace ocifip::tool {
namespace {

// A path given relative to the folder of the running program.
std::string beside_program(const std::filesystem::path& relative) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path() / relative).lexically_normal().string();
}

}  // namespace

std::string default_plugin() { return beside_program(OCIFIP_BIN_TO_LIB "/libymap_ocifip.so"); }

std::string default_models() { return beside_program(OCIFIP_BIN_TO_MODELS); }

}  // namespace ocifip::tool
