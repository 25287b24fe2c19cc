// What the tests of the records and of their codec have in common.
#ifndef OCIFIP_TESTS_RECORDS_RECORDS_TESTING_H_
#define OCIFIP_TESTS_RECORDS_RECORDS_TESTING_H_

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bag/bag.h"
#include "ocifip/host.h"
#include "records/encoder.h"
#include "records/record_error.h"
#include "records/value_text.h"

namespace ocifip {

// A descriptor of a record that only a test knows: "test", version 1.2.
class TestDescriptor : public bag_descriptor {
 public:
  TestDescriptor(const char* schema, std::uint64_t bytes) : bag_descriptor{} {
    format = 1;
    name = "test";
    major_version = 1;
    minor_version = 2;
    layout = layout_.data();
    layout_ = {0, bytes};
    named_schema = schema;
    compact_schema = "";
  }
  TestDescriptor(const TestDescriptor&) = delete;
  TestDescriptor& operator=(const TestDescriptor&) = delete;

 private:
  std::array<std::uint64_t, 2> layout_{};
};

// Bytes of hexadecimal digits, of which blanks are no part.
inline std::string bytes_of(const std::string& digits) {
  std::string joined;
  for (const char c : digits) {
    if (c != ' ') joined += c;
  }
  return hexadecimal_bytes(joined, joined.size() / 2).value_or("not hexadecimal");
}

// The head of a record "test" of version 1.2, in front of the digits of its fields.
inline std::string test_record(const std::string& digits) {
  return bytes_of("62616701 00000004 74657374 00000001 00000002" + digits);
}

// Bytes where a sanitizer sees every access beyond them.
class ExactBytes {
 public:
  explicit ExactBytes(const std::string& bytes)
      : length_(static_cast<std::uint32_t>(bytes.size())), bytes_(new char[bytes.size()]) {
    std::memcpy(bytes_.get(), bytes.data(), bytes.size());
  }
  [[nodiscard]] const void* data() const { return bytes_.get(); }
  [[nodiscard]] std::uint32_t length() const { return length_; }

 private:
  std::uint32_t length_;
  std::unique_ptr<char[]> bytes_;
};

// The result of decoding, after everything was freed.
inline std::uint32_t decode_and_free(const std::string& bytes, const bag_descriptor& descriptor) {
  const ExactBytes exact(bytes);
  const auto structure = std::make_unique<std::uint64_t[]>(descriptor.layout[1] / 8 + 1);
  const std::uint32_t result =
      bag_decode(exact.data(), exact.length(), structure.get(), &descriptor);
  bag_free_indirections(structure.get(), &descriptor);
  return result;
}

inline std::uint32_t test_handles(const std::string& name) { return name == "Eth1" ? 7 : 0; }

// A record "test" of a schema, encoded, or what is wrong with its fields.
inline std::string encoded(const char* schema, const std::string& fields) {
  try {
    const RegisteredRecord record{"test", 1, 2, Schema(schema)};
    return encode_record(record, nlohmann::ordered_json::parse(fields), "here", test_handles);
  } catch (const InputError& error) {
    return error.what();
  }
}

}  // namespace ocifip

#endif  // OCIFIP_TESTS_RECORDS_RECORDS_TESTING_H_
