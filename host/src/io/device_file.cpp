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
  Field(const std::string& file, std::string place, const Json& value)
      : file_(file), place_(std::move(place)), value_(value) {}

  // The place as messages name it.
  [[nodiscard]] std::string place() const { return place_.empty() ? file_ : file_ + ": " + place_; }

  [[noreturn]] void fail(const std::string& reason) const { throw input_error(place(), 0, reason); }

  // Checks that it is an object with no other members than these.
  const Field& object(std::initializer_list<std::string_view> members) const {
    if (!value_.is_object()) fail("not an object");
    for (const auto& [name, value] : value_.items()) {
      if (std::find(members.begin(), members.end(), name) == members.end()) {
        member_field(name, value).fail("unknown field" + among(members));
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
      function(Field(file_, place_ + '[' + std::to_string(at) + ']', value_[at]));
    }
  }
  template <typename Function>
  void each_member(Function function) const {
    if (!value_.is_object()) fail("not an object");
    for (const auto& [name, value] : value_.items()) {
      function(name, Field(file_, place_ + '[' + in_quotes(name) + ']', value));
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
  [[nodiscard]] Field member_field(std::string_view name, const Json& value) const {
    return {file_, place_.empty() ? std::string(name) : place_ + '.' + std::string(name), value};
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
  std::string place_;
  const Json& value_;
};

void check_is_native(const Document& native) {
  for (const DocumentNode& root : native.roots) {
    if (!root.module.text().starts_with("openconfig-")) continue;
    throw input_error(native.name, root.line,
                      in_quotes(qualified_name(root)) + " is OpenConfig, not native data");
  }
}

// The interfaces that a native configuration names in keys.
void check_native_names(const std::string& file, const std::vector<DocumentNode>& nodes) {
  for (const DocumentNode& node : nodes) {
    const bool names_interface = node.tag == "interface-name" || node.tag == "interface";
    const bool is_configured = node.module.ends_with("-cfg");
    if (names_interface && is_configured && node.value && is_key(node)) {
      const std::string fault =
          node.value->empty() ? in_quotes(node.tag) + " is empty" : native_name_fault(*node.value);
      if (!fault.empty()) throw input_error(file, node.line, fault);
    }
    check_native_names(file, node.children);
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

std::vector<DeviceInterface> interfaces_of(const Field& field) {
  std::vector<DeviceInterface> interfaces;
  std::map<std::string, std::string> names;  // by their internal form
  field.each_element([&](const Field& element) {
    auto interface = interface_of(element);
    const auto [known, is_new] = names.emplace(internal_name(interface.name), interface.name);
    if (!is_new && known->second == interface.name) {
      element.required("name").fail("a second interface " + in_quotes(interface.name));
    }
    if (!is_new) {
      element.required("name").fail(in_quotes(interface.name) + " and " + in_quotes(known->second) +
                                    " have one internal name, " + in_quotes(known->first));
    }
    interfaces.push_back(std::move(interface));
  });
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

std::string internal_name(std::string_view name) {
  std::string internal(name);
  std::replace(internal.begin(), internal.end(), '/', '_');
  return internal;
}

std::string native_name_fault(const std::string& name) {
  if (has_control_character(name)) return in_quotes(name) + kHasControlCharacter;
  const std::size_t dot = name.find('.');
  if (dot == 0) return in_quotes(name) + " begins with a dot";
  if (dot == std::string::npos || name.find_first_not_of('0', dot + 1) != std::string::npos) {
    return "";
  }
  return in_quotes(name) + " is subinterface 0, whose native name is " +
         in_quotes(name.substr(0, dot));
}

Device read_device(const Models& models, const std::string& name, const std::string& text) {
  check_text(name, text);
  DeviceJson json = read_device_json(models, name, text);
  const Field top(name, "", json.fields);
  top.object({"node", "interfaces", "native", "sysdb", "faults"});

  Device device;
  top.with("node", [&](const Field& node) {
    if (!node.is_null()) device.node = node.name();
  });
  top.with("interfaces", [&](const Field& list) { device.interfaces = interfaces_of(list); });
  top.with("native", [](const Field& native) { native.object({}); });
  device.native = std::move(json.native);
  check_is_native(device.native);
  check_native_names(device.native.name, device.native.roots);
  top.with("sysdb", [&](const Field& sysdb) { device.sysdb = database_of(sysdb); });
  top.with("faults", [&](const Field& faults) {
    faults.object({"sysdb", "interface-manager", "node"});
    device.sysdb_absent = is_absent(faults, "sysdb");
    device.interface_manager_absent = is_absent(faults, "interface-manager");
    device.node_absent = is_absent(faults, "node");
  });
  return device;
}

void check_native(const Models& models, const Document& native) {
  if (const auto fault = check_data(models, native)) {
    const std::string place = fault->path.empty() ? "" : ", at " + fault->path;
    throw input_error(native.name, fault->line, fault->reason + place);
  }
}

Device example_device(const Models& models) {
  return read_device(models, "the example device", std::string(example_device_file()));
}

}  // namespace ocifip
