#include "io/plain_device.h"

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "io/device_json.h"
#include "io/json_source.h"
#include "io/read_json.h"
#include "ocifip/host.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kActive = "active";

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

PlainDeviceJson open_device_json(const Models& models, const std::string& name,
                                 const std::shared_ptr<const std::string>& text) {
  const auto json = std::make_shared<const PlainJson>(*text);
  simdjson::dom::object members;
  if (json->top().get_object().get(members) != simdjson::SUCCESS) throw NotPlain();
  PlainDeviceJson device{Json::object(), nullptr, std::nullopt, json};
  for (const auto& [member, value] : members) {
    if (device.fields.contains(member)) throw NotPlain();
    Json& field = device.fields[std::string(member)];
    if (member == "native" && value.is_object()) {
      field = Json::object();
      device.native = std::make_shared<const PlainNative>(models, name, text, json, value);
    } else if (member == "interfaces" && value.is_array()) {
      field = Json::array();
      device.interfaces = value;
    } else {
      field = to_json(value);
    }
  }
  return device;
}

}  // namespace ocifip
