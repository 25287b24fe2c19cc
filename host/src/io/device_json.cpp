#include "io/device_json.h"

#include <functional>
#include <memory>
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
constexpr std::string_view kInterfaces = "interfaces";
constexpr std::string_view kActive = "active";

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

// The object "native" of a device file.
class PlainNative : public NativeText {
 public:
  PlainNative(const Models& models, std::string name, std::shared_ptr<const std::string> text,
              std::shared_ptr<const PlainJson> json, PlainJson::Value native)
      : models_(models),
        name_(std::move(name)),
        text_(std::move(text)),
        json_(std::move(json)),
        native_(native) {
    outline_ = read_plainly({}, &entries_);
  }

  [[nodiscard]] Document read_exactly() const override {
    return read_device_json(models_, name_, *text_).native;
  }
  [[nodiscard]] Document read_all() const override {
    return explain([this] { return build({}); });
  }
  [[nodiscard]] Document read(const InterfaceNames& interfaces) const override {
    static const InterfaceNames kNone;
    if (kNone.contains(interfaces)) return outline_;
    return explain([&] { return read_plainly(interfaces, nullptr); });
  }
  [[nodiscard]] const std::vector<InterfaceEntry>& entries() const override { return entries_; }

 private:
  using Choice = std::function<ElementFilter(const DocumentEvents& reader)>;

  // Has a fault told by those who know its place.
  template <class Read>
  [[nodiscard]] Document explain(const Read& read) const {
    try {
      return read();
    } catch (const NotPlain&) {
    } catch (const InputError&) {
    }
    return read_exactly();
  }

  [[nodiscard]] Document build(const Choice& choose) const {
    JsonSource nowhere;
    const auto reader =
        json_document(models_, name_ + ": native", nowhere, OtherAnnotations::kRefused);
    send(native_, *reader,
         choose ? [&] { return choose(*reader); } : std::function<ElementFilter()>());
    return reader->finish();
  }

  // Passes over the entries of other interfaces; tells of all entries when asked to.
  Document read_plainly(const InterfaceNames& interfaces,
                        std::vector<InterfaceEntry>* entries) const {
    return build([&](const DocumentEvents& reader) -> ElementFilter {
      const lysc_node* list = reader.elements();
      const std::string* key = interface_key(list);
      if (key == nullptr) return {};
      const bool has_state = Models::keys(list).front() == kActive;
      return [&interfaces, entries, list, key, has_state](const PlainJson::Value& element) {
        const auto name = element[*key].get_string();
        const auto active = element[kActive].get_string();
        // What lacks a key is looked at, and refused, by the reader.
        if (name.error() || (has_state && active.error())) return true;
        if (entries != nullptr) {
          entries->push_back(
              {list, name.value_unsafe(), !has_state || active.value_unsafe() == "act"});
        }
        return interfaces.contains(name.value_unsafe());
      };
    });
  }

  const Models& models_;
  std::string name_;
  std::shared_ptr<const std::string> text_;
  std::shared_ptr<const PlainJson> json_;
  PlainJson::Value native_;
  Document outline_;  // what is no interface's
  std::vector<InterfaceEntry> entries_;
};

}  // namespace

DeviceJson read_device_json(const Models& models, const std::string& name,
                            const std::string& text) {
  JsonSource source(text);
  const auto native = json_document(models, name + ": native", source, OtherAnnotations::kRefused);
  DeviceReader reader(name, text, source, native.get());
  Json::sax_parse(source.begin(), source.end(), &reader);
  return {reader.fields(), native->finish()};
}

PlainDeviceJson open_device_json(const Models& models, const std::string& name,
                                 const std::shared_ptr<const std::string>& text) {
  const auto json = std::make_shared<const PlainJson>(*text);
  simdjson::dom::object members;
  if (json->top().get_object().get(members) != simdjson::SUCCESS) throw NotPlain();
  PlainDeviceJson device{Json::object(), nullptr, std::nullopt, json};
  for (const auto& [member, value] : members) {
    if (device.fields.contains(member)) throw NotPlain();
    Json& field = device.fields[std::string(member)];
    if (member == kNative && value.is_object()) {
      field = Json::object();
      device.native = std::make_shared<const PlainNative>(models, name, text, json, value);
    } else if (member == kInterfaces && value.is_array()) {
      field = Json::array();
      device.interfaces = value;
    } else {
      field = to_json(value);
    }
  }
  return device;
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
