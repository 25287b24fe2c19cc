#include "io/device_file.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "io/address_text.h"
#include "io/check_data.h"
#include "io/device_json.h"
#include "io/document_nodes.h"
#include "io/plain_device.h"
#include "io/plain_json.h"
#include "io/text.h"
#include "ocifip/device.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLongestName = 200;  // of an interface, in bytes

constexpr const char* kHasControlCharacter = " has a control character";

bool has_control_character(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; });
}

// A value of the device file with the place that messages name it by.
class Field {
 public:
  // The whole file.
  Field(const std::string& file, const Json& value) : file_(file), value_(value) {}

  // The place as messages name it.
  [[nodiscard]] std::string place() const {
    return parent_ == nullptr ? file_ : file_ + ": " + place_in_file();
  }

  [[noreturn]] void fail(const std::string& reason) const { throw input_error(place(), 0, reason); }

  // Checks that it is an object with no other members than these.
  const Field& object(std::initializer_list<std::string_view> members) const {
    if (!value_.is_object()) fail("not an object");
    for (const auto& [name, value] : value_.get_ref<const Json::object_t&>()) {
      if (std::find(members.begin(), members.end(), name) == members.end()) {
        member_field(in_short(name), value).fail("unknown field" + among(members));
      }
    }
    return *this;
  }

  // Calls a function with a member, if there is one.
  template <typename Function>
  void with(std::string_view name, Function function) const {
    const auto found = value_.find(name);
    if (found != value_.end()) function(member_field(name, *found));
  }

  [[nodiscard]] Field required(std::string_view name) const {
    const auto found = value_.find(name);
    if (found == value_.end()) fail("no " + in_quotes(name));
    return member_field(name, *found);
  }

  // Calls a function with each element, or with each member and its name.
  template <typename Function>
  void each_element(Function function) const {
    if (!value_.is_array()) fail("not an array");
    for (std::size_t at = 0; at < value_.size(); ++at) {
      function(Field(*this, Step::kElement, {}, at, value_[at]));
    }
  }
  template <typename Function>
  void each_member(Function function) const {
    if (!value_.is_object()) fail("not an object");
    for (const auto& [name, value] : value_.get_ref<const Json::object_t&>()) {
      function(name, Field(*this, Step::kNamed, name, 0, value));
    }
  }

  [[nodiscard]] bool has(std::string_view name) const { return value_.contains(name); }
  [[nodiscard]] bool is_null() const { return value_.is_null(); }

  [[nodiscard]] const std::string& text() const {
    if (!value_.is_string()) fail("not a string");
    const auto& text = value_.get_ref<const std::string&>();
    if (text.find('\0') != std::string::npos) fail("a NUL character in a string");
    return text;
  }

  [[nodiscard]] const std::string& name() const {
    const auto& name = text();
    if (name.empty()) fail("the name is empty");
    if (has_control_character(name)) fail(in_quotes(name) + kHasControlCharacter);
    return name;
  }

  [[nodiscard]] std::uint32_t number() const {
    const bool is_number = value_.is_number_unsigned() && value_.get<std::uint64_t>() <= UINT32_MAX;
    if (!is_number) fail("not a number from 0 to " + std::to_string(UINT32_MAX));
    return value_.get<std::uint32_t>();
  }

  // The code of a failure: "0x40814200".
  [[nodiscard]] cerrno failure() const {
    const std::string_view code = text();
    const std::string_view digits = code.substr(std::min<std::size_t>(2, code.size()));
    const auto* const end = digits.data() + digits.size();
    cerrno result = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, result, 16);
    if (!code.starts_with("0x") || error != std::errc() || stop != end || result == 0) {
      fail(in_quotes(code) + " is not the code of a failure, as \"0x40814200\" is");
    }
    return result;
  }

  [[nodiscard]] std::string json_object() const {
    if (!value_.is_object()) fail("not an object");
    return value_.dump();
  }

 private:
  // How a place goes on: `.name`, `[7]` or `["name"]`.
  enum class Step { kMember, kElement, kNamed };

  // A field within another, which outlives it. The name does, too.
  Field(const Field& parent, Step step, std::string_view name, std::size_t number,
        const Json& value)
      : file_(parent.file_),
        parent_(&parent),
        step_(step),
        name_(name),
        number_(number),
        value_(value) {}

  [[nodiscard]] Field member_field(std::string_view name, const Json& value) const {
    return {*this, Step::kMember, name, 0, value};
  }

  [[nodiscard]] std::string place_in_file() const {
    std::string place = parent_->parent_ == nullptr ? "" : parent_->place_in_file();
    switch (step_) {
      case Step::kMember:
        return place + (place.empty() ? "" : ".") + std::string(name_);
      case Step::kElement:
        return place + '[' + std::to_string(number_) + ']';
      case Step::kNamed:
        return place + '[' + in_quotes(name_) + ']';
    }
    return place;
  }

  // `; known here: "name" and "node"`
  static std::string among(std::initializer_list<std::string_view> members) {
    std::string text;
    for (const auto* name = members.begin(); name != members.end(); ++name) {
      const bool is_last = name + 1 == members.end();
      text += text.empty() ? "; known here: " : (is_last ? " and " : ", ");
      text += in_quotes(*name);
    }
    return text;
  }

  const std::string& file_;
  const Field* parent_ = nullptr;
  Step step_ = Step::kMember;
  std::string_view name_;
  std::size_t number_ = 0;
  const Json& value_;
};

void check_is_native(const Document& native) {
  for (const DocumentNode& root : native.roots) {
    if (!root.module.text().starts_with("openconfig-")) continue;
    throw input_error(native.name, root.line,
                      in_quotes(qualified_name(root)) + " is OpenConfig, not native data");
  }
}

// Why a key has no name of an interface or subinterface, or "".
std::string key_fault(const lysc_node* list, std::string_view key, std::string_view value) {
  const bool is_configured = Models::module(list).ends_with("-cfg");
  if (!is_configured) return "";
  return value.empty() ? in_quotes(key) + " is empty" : native_name_fault(value);
}

// The interfaces that a native configuration names in keys.
void check_names(const std::string& file, const std::vector<DocumentNode>& nodes) {
  for (const DocumentNode& node : nodes) {
    const std::string* key = interface_key(node.schema);
    const DocumentNode* leaf = key == nullptr ? nullptr : find_key(node, *key);
    const std::string fault = leaf == nullptr ? "" : key_fault(node.schema, *key, *leaf->value);
    if (!fault.empty()) {
      throw input_error(file, leaf->line, fault, {InputFault::Kind::kBadValue, leaf->tag});
    }
    check_names(file, node.children);
  }
}

DeviceAddress address_of(const Field& field, AddressFamily family) {
  DeviceAddress address;
  std::string reason;
  if (!read_address(family, field.text(), address, reason)) field.fail(reason);
  return address;
}

// An interface has an address once, whatever its prefix length.
DeviceAddresses addresses_of(const Field& field, AddressFamily family) {
  field.object({"primary", "secondaries"});
  DeviceAddresses addresses;
  std::set<decltype(DeviceAddress::bytes)> known;
  const auto take = [&](const Field& each) {
    const DeviceAddress address = address_of(each, family);
    if (known.insert(address.bytes).second) return address;
    each.fail("the interface has " + in_quotes(each.text()) + " already");
  };
  field.with("primary", [&](const Field& primary) { addresses.primary = take(primary); });
  field.with("secondaries", [&](const Field& secondaries) {
    secondaries.each_element(
        [&](const Field& secondary) { addresses.secondaries.push_back(take(secondary)); });
  });
  return addresses;
}

DeviceInterface interface_of(const Field& field) {
  field.object({"name", "node", "ipv4", "ipv6"});
  const auto name = field.required("name");
  DeviceInterface interface;
  interface.name = name.name();
  if (interface.name.size() > kLongestName) {
    name.fail("longer than " + std::to_string(kLongestName) + " characters");
  }
  const std::string fault = native_name_fault(interface.name);
  if (!fault.empty()) name.fail(fault);
  field.with("node", [&](const Field& node) { interface.node = node.name(); });
  field.with("ipv4",
             [&](const Field& ipv4) { interface.ipv4 = addresses_of(ipv4, AddressFamily::kIpv4); });
  field.with("ipv6",
             [&](const Field& ipv6) { interface.ipv6 = addresses_of(ipv6, AddressFamily::kIpv6); });
  return interface;
}

DeviceInterfaces interfaces_of(const Field& field) {
  DeviceInterfaces interfaces;
  field.each_element([&](const Field& element) {
    if (interfaces.add(interface_of(element))) return;
    const Field field_of_name = element.required("name");
    const std::string& name = field_of_name.text();
    const std::string internal = internal_name(name);
    const std::string& other = interfaces.all()[*interfaces.find(internal)].name;
    field_of_name.fail(other == name ? "a second interface " + in_quotes(name)
                                     : in_quotes(name) + " and " + in_quotes(other) +
                                           " have one internal name, " + in_quotes(internal));
  });
  return interfaces;
}

// The name of an interface of which nothing else is said, or "".
std::string_view lone_name(const PlainJson::Value& element) {
  simdjson::dom::object members;
  std::string_view name;
  if (element.get(members) != simdjson::SUCCESS || members.size() != 1) return {};
  const auto member = *members.begin();
  return member.key == "name" && member.value.get(name) == simdjson::SUCCESS ? name
                                                                             : std::string_view();
}

// The same without places: throws NotPlain or InputError for what has to be told by the other.
DeviceInterfaces plain_interfaces(const std::string& file, const PlainJson::Value& list) {
  const simdjson::dom::array elements = list.get_array();
  DeviceInterfaces interfaces;
  interfaces.reserve(elements.size());
  for (const PlainJson::Value element : elements) {
    DeviceInterface interface;
    interface.name = lone_name(element);
    if (interface.name.empty()) {
      const Json json = to_json(element);
      interface = interface_of(Field(file, json));
    } else if (interface.name.size() > kLongestName || !native_name_fault(interface.name).empty()) {
      throw NotPlain();
    }
    if (!interfaces.add(std::move(interface))) throw NotPlain();
  }
  return interfaces;
}

DatabaseItem item_of(const Field& field) {
  DatabaseItem item;
  item.place = field.place();
  field.object({"type", "text", "record", "fields", "error"});
  if (field.has("error")) {
    item.error = field.object({"error"}).required("error").failure();
  } else if (field.has("record")) {
    field.object({"type", "record", "fields"});
    item.record = field.required("record").name();
    item.fields = field.required("fields").json_object();
    field.with("type", [&](const Field& type) { item.type = type.number(); });
  } else {
    field.object({"type", "text"});
    item.type = field.required("type").number();
    item.text = field.required("text").text();
  }
  return item;
}

DatabaseItems database_of(const Field& field) {
  DatabaseItems items;
  field.each_member([&](const std::string& path, const Field& item) {
    if (!path.starts_with('/')) item.fail("the path does not begin with \"/\"");
    items.emplace(path, item_of(item));
  });
  return items;
}

bool is_absent(const Field& faults, std::string_view service) {
  bool absent = false;
  faults.with(service, [&absent](const Field& fault) {
    if (fault.text() != "absent") fault.fail(in_quotes(fault.text()) + " is not \"absent\"");
    absent = true;
  });
  return absent;
}

}  // namespace

void DeviceInterfaces::reserve(std::size_t count) {
  interfaces_.reserve(count);
  places_.reserve(count);
}

bool DeviceInterfaces::add(DeviceInterface interface) {
  const bool is_new = places_.emplace(internal_name(interface.name), interfaces_.size()).second;
  if (is_new) interfaces_.push_back(std::move(interface));
  return is_new;
}

std::optional<std::size_t> DeviceInterfaces::find(const std::string& internal_name) const {
  const auto found = places_.find(internal_name);
  return found == places_.end() ? std::nullopt : std::optional(found->second);
}

std::string internal_name(std::string_view name) {
  std::string internal(name);
  std::replace(internal.begin(), internal.end(), '/', '_');
  return internal;
}

std::string native_name_fault(std::string_view name) {
  if (has_control_character(name)) return in_quotes(name) + kHasControlCharacter;
  const std::size_t dot = name.find('.');
  if (dot == 0) return in_quotes(name) + " begins with a dot";
  if (dot == std::string::npos) return "";
  const std::string_view index = name.substr(dot + 1);
  if (index.find_first_not_of('0') == std::string_view::npos) {
    return in_quotes(name) + " is subinterface 0, whose native name is " +
           in_quotes(name.substr(0, dot));
  }
  const bool has_zero =
      index.front() == '0' && index.find_first_not_of("0123456789") == std::string_view::npos;
  return has_zero ? in_quotes(name) + " has a subinterface index that begins with 0" : "";
}

namespace {

// All of a device but its native configuration.
Device device_of(const std::string& name, const Json& fields) {
  const Field top(name, fields);
  top.object({"node", "interfaces", "native", "sysdb", "faults"});

  Device device;
  top.with("node", [&](const Field& node) {
    if (!node.is_null()) device.node = node.name();
  });
  top.with("interfaces", [&](const Field& list) { device.interfaces = interfaces_of(list); });
  top.with("native", [](const Field& native) { native.object({}); });
  top.with("sysdb", [&](const Field& sysdb) { device.sysdb = database_of(sysdb); });
  top.with("faults", [&](const Field& faults) {
    faults.object({"sysdb", "interface-manager", "node"});
    device.sysdb_absent = is_absent(faults, "sysdb");
    device.interface_manager_absent = is_absent(faults, "interface-manager");
    device.node_absent = is_absent(faults, "node");
  });
  return device;
}

}  // namespace

Device read_device(const Models& models, const std::string& name, const std::string& text) {
  check_text(name, text);
  DeviceJson json = read_device_json(models, name, text);
  Device device = device_of(name, json.fields);
  check_is_native(json.native);
  check_native_names(json.native);
  device.native = NativeConfiguration(std::move(json.native));
  return device;
}

Device open_device(const Models& models, const std::string& name,
                   const std::shared_ptr<const std::string>& text) {
  try {
    PlainDeviceJson json = open_device_json(models, name, text);
    Device device = device_of(name, json.fields);
    if (json.interfaces) device.interfaces = plain_interfaces(name, *json.interfaces);
    if (json.native == nullptr) return device;
    const auto& entries = json.native->entries();
    const bool is_sound = std::all_of(entries.begin(), entries.end(), [](const auto& entry) {
      return key_fault(entry.list, {}, entry.interface).empty();
    });
    device.native = NativeConfiguration(std::move(json.native));
    check_is_native(device.native.part({}));
    if (is_sound) return device;
  } catch (const NotPlain&) {
  } catch (const InputError&) {
  }
  // Whatever is wrong, it is told with its place.
  return read_device(models, name, *text);
}

void check_native(const Models& models, const Document& native) {
  if (const auto fault = check_data(models, native)) {
    const std::string place = fault->path.empty() ? "" : ", at " + fault->path;
    throw input_error(native.name, fault->line, fault->reason + place,
                      {InputFault::Kind::kOther, fault->tag, fault->path});
  }
}

void check_native_names(const Document& native) { check_names(native.name, native.roots); }

void check_configuration(const Models& models, const NativeConfiguration& native) {
  // What the models accept needs no lines.
  if (check_data(models, native.whole())) check_native(models, native.with_lines());
}

Device example_device(const Models& models) {
  return read_device(models, "the example device", std::string(example_device_file()));
}

}  // namespace ocifip
