// The bytes of an encoded record: numbers in network order, and a head that names the record.
#ifndef OCIFIP_HOST_RECORDS_WIRE_H_
#define OCIFIP_HOST_RECORDS_WIRE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "records/record_error.h"

namespace ocifip {

// First bytes of every record: a mark, and the version of this encoding.
inline constexpr std::string_view kRecordMark = {"bag\x01", 4};

class WireWriter {
 public:
  void put(std::string_view bytes) { bytes_ += bytes; }
  void put_number(std::uint64_t number, std::size_t size) {
    while (size-- != 0) bytes_ += static_cast<char>(number >> (8 * size));
  }
  void put_text(std::string_view text) {
    put_number(text.size(), 4);
    put(text);
  }
  void put_zeros(std::size_t count) { bytes_.append(count, '\0'); }

  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

// Throws RecordError when it is asked for more than there is.
class WireReader {
 public:
  explicit WireReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  [[nodiscard]] std::size_t left() const { return bytes_.size(); }

  std::span<const std::byte> take(std::size_t count) {
    if (count > bytes_.size()) fail("ends early");
    const auto taken = bytes_.first(count);
    bytes_ = bytes_.subspan(count);
    return taken;
  }
  std::uint64_t take_number(std::size_t size) {
    std::uint64_t number = 0;
    for (const std::byte byte : take(size)) number = number << 8 | static_cast<std::uint8_t>(byte);
    return number;
  }
  std::string_view take_text() {
    const auto text = take(take_number(4));
    return {reinterpret_cast<const char*>(text.data()), text.size()};
  }

  [[noreturn]] static void fail(const std::string& reason) {
    throw RecordError(kRecordMalformed, "the record " + reason);
  }

 private:
  std::span<const std::byte> bytes_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_WIRE_H_
