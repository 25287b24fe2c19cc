// What the tests of the host's input and output have in common.
#ifndef OCIFIP_TESTS_HOST_IO_TESTING_H_
#define OCIFIP_TESTS_HOST_IO_TESTING_H_

#include <ostream>
#include <string>
#include <vector>

#include "io/models.h"
#include "io/print_document.h"

namespace ocifip {

inline const Models& models() {
  static const Models loaded(OCIFIP_MODELS_DIR);
  return loaded;
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

// A row of a table: a text, and what becomes of it.
struct Case {
  std::string given;
  std::string expected;
};

inline std::ostream& operator<<(std::ostream& out, const Case& row) {
  return out << row.given.substr(0, 200);
}

}  // namespace ocifip

#endif  // OCIFIP_TESTS_HOST_IO_TESTING_H_
