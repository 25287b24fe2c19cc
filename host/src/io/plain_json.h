// JSON text without faults, parsed as a whole and looked at where it is needed.
//
// It is the quick way: of a fault nothing is said but that there is one, and no value has a place.
// The text is then read again by the parser that says what is wrong, and where (json_source.h).
#ifndef OCIFIP_HOST_IO_PLAIN_JSON_H_
#define OCIFIP_HOST_IO_PLAIN_JSON_H_

#include <simdjson.h>

#include <exception>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "io/json_source.h"

namespace ocifip {

// What is thrown for text that is not plain: a fault of JSON, a name that is twice in an object,
// deep nesting, and numbers that a mapping would not see as they were written.
class NotPlain : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "not plain JSON"; }
};

class PlainJson {
 public:
  using Value = simdjson::dom::element;

  // The text is not needed afterwards; one with room behind it (read_file) is not copied. Throws
  // NotPlain.
  explicit PlainJson(const std::string& text);

  [[nodiscard]] Value top() const { return top_; }

 private:
  simdjson::dom::parser parser_;
  Value top_;
};

// The text of the first member of a text's object that has a name and is an object itself. "" when
// there is none, and for text without room behind it (read_file).
std::string_view object_text(const std::string& text, std::string_view name);

// A value as nlohmann-json has it. Throws NotPlain.
nlohmann::ordered_json to_json(PlainJson::Value value);

// Chooses among the elements of the array that was begun last.
using ElementFilter = std::function<bool(const PlainJson::Value& element)>;

// Sends the events of a value to a reader. For each array, after its beginning has been sent,
// `choose` tells which of its elements are sent: all for an empty filter. Within an element that a
// filter has chosen all is sent. Throws NotPlain.
void send(PlainJson::Value value, JsonEvents& events, const std::function<ElementFilter()>& choose);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_PLAIN_JSON_H_
