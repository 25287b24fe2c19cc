// What the fuzz targets have in common: the entry that each defines, and the session that most use.
#ifndef FUZZ_TARGET_H_
#define FUZZ_TARGET_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "io/save_file.h"
#include "mapping/openconfig_read.h"
#include "session.h"

// Runs one input. A finding ends the process. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace ocifip::fuzz {

inline std::string text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Runs something that may turn its input down.
template <typename Function>
void attempt(const Function& function) {
  try {
    function();
  } catch (const InputError&) {
    // Malformed input is turned down by this, and by nothing else.
  }
}

// A device with interfaces, configuration, summaries and a database.
inline faults::Session& session() {
  static faults::Session the_session(
      read_device(faults::models(), "device", read_file(OCIFIP_FUZZ_DEVICE)));
  return the_session;
}

// A document, as each kind of request may bring it.
inline void run_document(Encoding encoding, const std::string& text) {
  const Source source{"input", text, encoding};
  Mapper& mapper = session().mapper;
  attempt([&] { mapper.edit({source, {}}, Format::kXml); });
  attempt([&] { mapper.apply({source, {}, DefaultOperation::kReplace}, Format::kTree); });
  attempt([&] {
    mapper.change({source, {}, DefaultOperation::kNone}, Views::kBoth, Format::kXml);
  });
  attempt([&] { mapper.get({source, {}}, Format::kTree); });
  attempt([&] {
    QueryRequest filter{source, {}};
    filter.values_choose = true;
    OpenConfigRead answer(mapper, mapper.read(filter, Views::kBoth), Format::kXml);
    while (answer.step()) {
    }
  });
  attempt([&] { mapper.report({source}, Format::kJson); });
}

}  // namespace ocifip::fuzz

#endif  // FUZZ_TARGET_H_
