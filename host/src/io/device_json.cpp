#include "io/device_json.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "io/json_source.h"
#include "io/plain_json.h"
#include "io/read_json.h"
#include "io/text.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kDeepestValue = 64;
constexpr std::string_view kNative = "native";

// Builds the fields, and has what is in "native" taken by others.
class DeviceReader : public JsonEvents {
 public:
  // `native` takes the events of the object "native"; without it, they are passed over.
  DeviceReader(const std::string& name, const std::string& text, JsonSource& source,
               JsonEvents* native)
      : name_(name), text_(text), source_(source), native_(native) {}

  bool null() override {
    return is_in_native() ? native_ == nullptr || native_->null() : add(nullptr);
  }
  bool boolean(bool value) override {
    return is_in_native() ? native_ == nullptr || native_->boolean(value) : add(value);
  }
  bool number_integer(std::int64_t value) override {
    return is_in_native() ? native_ == nullptr || native_->number_integer(value) : add(value);
  }
  bool number_unsigned(std::uint64_t value) override {
    return is_in_native() ? native_ == nullptr || native_->number_unsigned(value) : add(value);
  }
  bool number_float(double value, const std::string& text) override {
    return is_in_native() ? native_ == nullptr || native_->number_float(value, text) : add(value);
  }
  bool string(std::string& text) override {
    return is_in_native() ? native_ == nullptr || native_->string(text) : add(std::move(text));
  }
  bool start_object(std::size_t size) override;
  bool key(std::string& name) override;
  bool end_object() override;
  bool start_array(std::size_t size) override;
  bool end_array() override;
  bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                   const std::exception& exception) override {
    fail(json_reason(exception.what()));
  }

  Json fields() { return std::move(fields_); }
  [[nodiscard]] std::string with_native(std::string native) const;

 private:
  struct Open {
    Json* value;
    std::unordered_set<std::string> names;  // of an object's members
  };

  [[noreturn]] void fail(const std::string& reason) {
    throw input_error(name_, source_.line(), reason);
  }
  [[nodiscard]] bool is_in_native() const { return depth_in_native_ > 0; }
  Json& place();
  bool add(Json value) {
    place() = std::move(value);
    return true;
  }
  void open(Json value);
  void close() { open_.pop_back(); }

  const std::string& name_;
  const std::string& text_;
  JsonSource& source_;
  JsonEvents* native_;
  Json fields_;
  std::vector<Open> open_;
  std::string member_;  // whose value comes next
  std::size_t depth_in_native_ = 0;
  std::size_t native_begin_ = 0;
  std::size_t native_end_ = 0;
  std::size_t end_ = 0;  // where the closing brace of the whole stands
};

// Where the next value goes.
Json& DeviceReader::place() {
  if (open_.empty()) return fields_;
  Json& parent = *open_.back().value;
  if (parent.is_array()) return parent.emplace_back();
  auto& members = parent.get_ref<Json::object_t&>();
  // It is known to be new: nothing has to be looked for.
  members.Container::emplace_back(std::move(member_), nullptr);
  return members.back().second;
}

void DeviceReader::open(Json value) {
  if (open_.size() == kDeepestValue) fail("nested too deeply");
  Json& opened = place();
  opened = std::move(value);
  open_.push_back({&opened, {}});
}

bool DeviceReader::start_object(std::size_t size) {
  const bool is_native = open_.size() == 1 && member_ == kNative && !is_in_native();
  if (is_native) native_begin_ = source_.at();
  if (is_native) add(Json::object());
  if (!is_native && !is_in_native()) {
    open(Json::object());
    return true;
  }
  ++depth_in_native_;
  return native_ == nullptr || native_->start_object(size);
}

bool DeviceReader::key(std::string& name) {
  if (is_in_native()) return native_ == nullptr || native_->key(name);
  if (!open_.back().names.insert(name).second) fail("a second field " + in_quotes(name));
  member_ = std::move(name);
  return true;
}

bool DeviceReader::end_object() {
  if (!is_in_native()) {
    close();
    if (open_.empty()) end_ = source_.at();
    return true;
  }
  if (--depth_in_native_ == 0) native_end_ = source_.at() + 1;
  return native_ == nullptr || native_->end_object();
}

bool DeviceReader::start_array(std::size_t size) {
  if (is_in_native()) return native_ == nullptr || native_->start_array(size);
  open(Json::array());
  return true;
}

bool DeviceReader::end_array() {
  if (is_in_native()) return native_ == nullptr || native_->end_array();
  close();
  return true;
}

// The lines behind the first get the indentation of the line that the text is put into.
std::string indented_like(std::string_view line, std::string text) {
  const auto indentation = line.substr(0, line.find_first_not_of(" \t"));
  if (indentation.empty()) return text;
  std::string indented;
  indented.reserve(text.size() + text.size() / 8);
  for (const char c : text) {
    indented += c;
    if (c == '\n') indented += indentation;
  }
  return indented;
}

// Puts another text in the place of a part of a text.
std::string replaced(const std::string& text, std::size_t begin, std::size_t end,
                     std::string native) {
  native.erase(native.find_last_not_of('\n') + 1);
  const auto line = text.rfind('\n', begin) + 1;
  const auto head = std::string_view(text).substr(line, begin - line);
  return text.substr(0, begin) + indented_like(head, std::move(native)) + text.substr(end);
}

std::string DeviceReader::with_native(std::string native) const {
  if (native_end_ > native_begin_) {
    return replaced(text_, native_begin_, native_end_, std::move(native));
  }
  native.erase(native.find_last_not_of('\n') + 1);
  const auto last = text_.find_last_not_of(" \t\r\n", end_ - 1);
  return text_.substr(0, last + 1) + (text_[last] == '{' ? "\n" : ",\n") +
         "  \"native\": " + indented_like("  ", std::move(native)) + '\n' + text_.substr(end_);
}

}  // namespace

DeviceJson read_device_json(const Models& models, const std::string& name,
                            const std::string& text) {
  JsonSource source(text);
  const auto native = json_document(models, name + ": native", source, OtherAnnotations::kRefused);
  DeviceReader reader(name, text, source, native.get());
  Json::sax_parse(source.begin(), source.end(), &reader);
  return {reader.fields(), native->finish()};
}

std::string with_native(const std::string& name, const std::string& text,
                        const std::string& native) {
  const std::string_view former = object_text(text, kNative);
  if (!former.empty()) {
    const auto begin = static_cast<std::size_t>(former.data() - text.data());
    return replaced(text, begin, begin + former.size(), native);
  }
  JsonSource source(text);
  DeviceReader reader(name, text, source, nullptr);
  Json::sax_parse(source.begin(), source.end(), &reader);
  const Json fields = reader.fields();
  if (!fields.is_object() || !fields.value(kNative, Json::object()).is_object()) {
    throw input_error(name, 0, "there is no place for a native configuration");
  }
  return reader.with_native(native);
}

}  // namespace ocifip
