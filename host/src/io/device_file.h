// The device file: what a device is made of, as its user writes it down.
#ifndef OCIFIP_HOST_IO_DEVICE_FILE_H_
#define OCIFIP_HOST_IO_DEVICE_FILE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "io/native_configuration.h"
#include "yfw/cerrno.h"

namespace ocifip {

// An address with its prefix length, checked: four or sixteen bytes in network order.
struct DeviceAddress {
  std::array<std::uint8_t, 16> bytes{};
  std::uint32_t prefix_length = 0;
};

struct DeviceAddresses {
  std::optional<DeviceAddress> primary;
  std::vector<DeviceAddress> secondaries;
};

struct DeviceInterface {
  std::string name;                 // native name, "Eth1" or "Eth1.20"
  std::optional<std::string> node;  // the node that it is on; the device's own when absent
  // Absent: taken from the native configuration.
  std::optional<DeviceAddresses> ipv4;
  std::optional<DeviceAddresses> ipv6;
};

// Interfaces in their order, each with an internal name of its own.
class DeviceInterfaces {
 public:
  void reserve(std::size_t count);
  // Adds an interface unless there is one of its internal name; tells whether it did.
  bool add(DeviceInterface interface);

  [[nodiscard]] const std::vector<DeviceInterface>& all() const { return interfaces_; }
  // The place of an interface among them, counted from 0.
  [[nodiscard]] std::optional<std::size_t> find(const std::string& internal_name) const;

 private:
  std::vector<DeviceInterface> interfaces_;
  std::unordered_map<std::string, std::size_t> places_;  // by internal names
};

// One item of the database. At a path that ends in "/", which is a list's, stands the item of the
// list that has no name; if it cannot be read, the whole list cannot.
struct DatabaseItem {
  cerrno error = 0;  // why it cannot be read; 0 when it can
  std::uint32_t type = 0;
  std::string text;    // the item's bytes, when it is not a record
  std::string record;  // name of the record, or ""
  std::string fields;  // the record's fields as JSON text
  std::string place;   // for messages: `device.json: sysdb["/a"]`; "" for an item that is implied
};

using DatabaseItems = std::map<std::string, DatabaseItem>;  // by full path

struct Device {
  std::optional<std::string> node;  // node identity; absent when the device has none
  DeviceInterfaces interfaces;
  NativeConfiguration native;
  DatabaseItems sysdb;
  bool sysdb_absent = false;  // faults
  bool interface_manager_absent = false;
  bool node_absent = false;
};

// Reads a device from its JSON text. Throws InputError that names the field by its place, as
// `device.json: interfaces[1].ipv4.primary: "10.0.0.1" has no prefix length`.
Device read_device(const Models& models, const std::string& name, const std::string& text);

// The same of a text that may be large: of the native configuration only what is asked for is read,
// and what is wrong elsewhere in it is not seen. The models outlive the device.
Device open_device(const Models& models, const std::string& name,
                   const std::shared_ptr<const std::string>& text);

// Throws InputError unless the models accept a native configuration, or a part of one:
// `device.json: native:12: no model has this node, at /a/b`.
void check_native(const Models& models, const Document& native);

// Throws InputError for a key of native data that names no interface as it should.
void check_native_names(const Document& native);

// Throws InputError unless the models accept all of a configuration.
void check_configuration(const Models& models, const NativeConfiguration& native);

// The device that the tool uses when none is given, of example_device_file().
Device example_device(const Models& models);

// The name under which the interface manager and the database know an interface: with "_" for "/".
std::string internal_name(std::string_view name);

// Why a name is no native name of an interface or subinterface, or "". The index of a subinterface
// stands behind the first dot, without zeros before it; the one of index 0 has the interface's own
// name.
std::string native_name_fault(std::string_view name);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DEVICE_FILE_H_
