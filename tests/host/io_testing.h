// What the tests of the host's input and output have in common.
#ifndef OCIFIP_TESTS_HOST_IO_TESTING_H_
#define OCIFIP_TESTS_HOST_IO_TESTING_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "io/models.h"
#include "io/print_document.h"

namespace ocifip {

inline const Models& models() {
  static const Models loaded(OCIFIP_MODELS_DIR);
  return loaded;
}

// A folder of the test's own, gone at the end.
class Folder {
 public:
  Folder() {
    std::string pattern = std::filesystem::temp_directory_path() / "ocifip-test-XXXXXX";
    path_ = mkdtemp(pattern.data());
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name) << text;
    return path_ / name;
  }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// One module of the test's own.
inline std::unique_ptr<Models> models_of(const std::string& file, const std::string& module) {
  const Folder folder;
  folder.write(file, module);
  return std::make_unique<Models>(folder.path());
}

// What is printed, and behind it the notes, a line each.
inline std::string print(const Document& document, Format format) {
  std::vector<std::string> notes;
  auto text = print_document(document, format, notes);
  for (const auto& note : notes) text += "note: " + note + '\n';
  return text;
}

// What a function returns, or the message of the error that it throws.
template <typename Function>
std::string result_of(Function function) {
  try {
    return function();
  } catch (const InputError& error) {
    return error.what();
  } catch (const LoadError& error) {
    return error.what();
  }
}

inline std::string repeat(const std::string& text, int count) {
  std::string result;
  while (count-- > 0) result += text;
  return result;
}

}  // namespace ocifip

#endif  // OCIFIP_TESTS_HOST_IO_TESTING_H_
