// The files that whole commands are measured with.
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "data.h"
#include "job.h"
#include "measure.h"
#include "others.h"

namespace ocifip::bench {
namespace {

void write_file(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) {
    throw std::runtime_error("cannot write " + path.string());
  }
}

}  // namespace

void write_files(const std::string& folder, std::size_t size) {
  const std::filesystem::path path = std::filesystem::path(folder) / std::to_string(size);
  std::filesystem::create_directories(path);
  const Layout layout{.subinterfaces = size};
  const std::string json = openconfig_json(layout);
  const std::string native = native_json(layout);
  write_file(path / "edit.json", json);
  write_file(path / "edit.xml", print(parse(platform().models.context(), json, LYD_JSON), LYD_XML));
  write_file(path / "native.json", native);
  write_file(path / "subinterfaces.json", device_json(layout, native));
  const Layout interfaces{.subinterfaces = size, .per_interface = 1};
  write_file(path / "interfaces.json", device_json(interfaces, native_json(interfaces)));
  write_file(path / "small-edit.json", small_edit_json(interfaces, size / 2));
}

}  // namespace ocifip::bench
