#include "io/device_json.h"

#include <set>
#include <vector>

#include "io/json_source.h"
#include "io/text.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;
using Event = Json::parse_event_t;

constexpr std::size_t kDeepestValue = 64;
constexpr std::string_view kNative = "native";

class DeviceParser {
 public:
  DeviceParser(const std::string& name, const std::string& text)
      : name_(name), text_(text), source_(text) {}

  Json parse();
  [[nodiscard]] std::string native() const;
  [[nodiscard]] std::string with_native(std::string native);

 private:
  [[noreturn]] void fail(const std::string& reason) {
    throw input_error(name_, source_.line(), reason);
  }
  bool take(std::size_t depth, Event event, const Json& value);
  void take_key(std::size_t depth, const std::string& key);

  const std::string& name_;
  const std::string& text_;
  JsonSource source_;
  std::vector<std::set<std::string>> names_;  // of each open object, outermost first
  bool is_in_native_ = false;
  std::size_t native_begin_ = 0;
  std::size_t native_end_ = 0;
  std::size_t end_ = 0;  // where the closing brace of the whole stands
};

Json DeviceParser::parse() {
  try {
    return Json::parse(source_.begin(), source_.end(),
                       [this](int depth, Event event, const Json& value) {
                         return take(static_cast<std::size_t>(depth), event, value);
                       });
  } catch (const Json::exception& exception) {
    fail(json_reason(exception.what()));
  }
}

std::string DeviceParser::native() const {
  if (native_end_ <= native_begin_) return {};
  std::string native(static_cast<std::size_t>(line_at(text_, native_begin_)) - 1, '\n');
  return native.append(text_, native_begin_, native_end_ - native_begin_);
}

// The lines behind the first get the indentation of the line that the text is put into.
void indent_like(std::string_view line, std::string& text) {
  const auto indentation = line.substr(0, line.find_first_not_of(" \t"));
  for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    text.insert(at + 1, indentation);
  }
}

std::string DeviceParser::with_native(std::string native) {
  native.erase(native.find_last_not_of('\n') + 1);
  if (native_end_ > native_begin_) {
    const auto line = text_.rfind('\n', native_begin_) + 1;
    indent_like(std::string_view(text_).substr(line, native_begin_ - line), native);
    return text_.substr(0, native_begin_) + native + text_.substr(native_end_);
  }
  const auto last = text_.find_last_not_of(" \t\r\n", end_ - 1);
  indent_like("  ", native);
  return text_.substr(0, last + 1) + (text_[last] == '{' ? "\n" : ",\n") +
         "  \"native\": " + native + '\n' + text_.substr(end_);
}

// Whether a part of the text is to be kept.
bool DeviceParser::take(std::size_t depth, Event event, const Json& value) {
  const bool is_below_native = is_in_native_ && depth > 1;
  if (is_below_native) return event != Event::key;
  switch (event) {
    case Event::object_start:
      if (depth == kDeepestValue) fail("nested too deeply");
      names_.resize(depth);
      names_.emplace_back();
      if (is_in_native_) native_begin_ = source_.at();
      break;
    case Event::array_start:
      if (depth == kDeepestValue) fail("nested too deeply");
      names_.resize(depth);
      names_.emplace_back();
      break;
    case Event::object_end:
      if (is_in_native_ && depth == 1) native_end_ = source_.at() + 1;
      if (depth == 0) end_ = source_.at();
      break;
    case Event::key:
      take_key(depth, value.get_ref<const std::string&>());
      break;
    default:
      break;
  }
  return true;
}

void DeviceParser::take_key(std::size_t depth, const std::string& key) {
  if (!names_[depth - 1].insert(key).second) fail("a second field " + in_quotes(key));
  if (depth == 1) is_in_native_ = key == kNative;
}

}  // namespace

DeviceJson::DeviceJson(const std::string& name, const std::string& text) {
  DeviceParser parser(name, text);
  fields = parser.parse();
  native = parser.native();
}

std::string with_native(const std::string& name, const std::string& text,
                        const std::string& native) {
  DeviceParser parser(name, text);
  const Json fields = parser.parse();
  if (!fields.is_object() || !fields.value(kNative, Json::object()).is_object()) {
    throw input_error(name, 0, "there is no place for a native configuration");
  }
  return parser.with_native(native);
}

}  // namespace ocifip
