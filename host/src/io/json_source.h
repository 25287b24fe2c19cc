// JSON text as nlohmann-json's parser reads it, with the place that it has come to.
#ifndef OCIFIP_HOST_IO_JSON_SOURCE_H_
#define OCIFIP_HOST_IO_JSON_SOURCE_H_

#include <cstddef>
#include <cstdint>
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace ocifip {

class JsonSource {
 public:
  // The parser keeps copies of the iterators; all of them report to the source.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Iterator(const char* at, JsonSource* source) : at_(at), source_(source) {}
    reference operator*() const { return *at_; }
    Iterator& operator++() {
      source_->last_ = at_++;
      return *this;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }
    bool operator!=(const Iterator& other) const { return at_ != other.at_; }

   private:
    const char* at_;
    JsonSource* source_;
  };

  // The text must outlive the source.
  explicit JsonSource(std::string_view text)
      : text_(text), last_(text.data()), counted_(text.data()) {}
  JsonSource(const JsonSource&) = delete;
  JsonSource& operator=(const JsonSource&) = delete;

  Iterator begin() { return {text_.data(), this}; }
  Iterator end() { return {text_.data() + text_.size(), this}; }

  // Of events that come from no text: they have no lines.
  JsonSource() : JsonSource(std::string_view()) {}

  // Line of the token read last, 0 without a text. The parser stops at the end of a token, or one
  // character behind it, which may be a line feed.
  int line();

  // Place of the character read last.
  [[nodiscard]] std::size_t at() const { return static_cast<std::size_t>(last_ - text_.data()); }

 private:
  std::string_view text_;
  const char* last_;
  const char* counted_;  // lines are counted up to here
  int line_ = 1;
};

// What takes a parser's events: its functions are those that nlohmann-json's parser calls, and
// return whether it is to go on. Texts may be moved out of.
class JsonEvents {
 public:
  JsonEvents() = default;
  JsonEvents(const JsonEvents&) = delete;
  JsonEvents& operator=(const JsonEvents&) = delete;
  virtual ~JsonEvents() = default;

  virtual bool null() = 0;
  virtual bool boolean(bool value) = 0;
  // A negative number, or zero that was written "-0".
  virtual bool number_integer(std::int64_t value) = 0;
  virtual bool number_unsigned(std::uint64_t value) = 0;
  virtual bool number_float(double value, const std::string& text) = 0;
  virtual bool string(std::string& text) = 0;
  virtual bool start_object(std::size_t size) = 0;
  virtual bool key(std::string& name) = 0;
  virtual bool end_object() = 0;
  virtual bool start_array(std::size_t size) = 0;
  virtual bool end_array() = 0;
  virtual bool parse_error(std::size_t at, const std::string& token,
                           const std::exception& exception) = 0;
  static bool binary(const std::vector<std::uint8_t>& /*bytes*/) { return false; }  // text has none
};

// The reason in a message of the parser's exceptions, for a user.
std::string json_reason(std::string_view message);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_JSON_SOURCE_H_
