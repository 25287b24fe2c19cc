// What the device's services look up: its interfaces by name, and its nodes.
#ifndef OCIFIP_HOST_DEVICE_DEVICE_DIRECTORY_H_
#define OCIFIP_HOST_DEVICE_DEVICE_DIRECTORY_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "device/native_addresses.h"
#include "io/device_file.h"
#include "node/node.h"

namespace ocifip {

// An interface as the interface manager knows it.
struct InterfaceRecord {
  std::string name;
  nodeid_t node = NODEID_NONE;  // its own, else the device's, else none
  // The device file's, or those of the native configuration.
  DeviceAddresses ipv4;
  DeviceAddresses ipv6;
  // Which of them are still to be taken from there.
  bool lacks_ipv4 = false;
  bool lacks_ipv6 = false;
};

class DeviceDirectory {
 public:
  explicit DeviceDirectory(Device device);

  // Gives the device another native configuration, and what follows from it: addresses, names and
  // items of the database. Handles and node identifiers stay.
  void configure(NativeConfiguration native);

  [[nodiscard]] const Device& device() const { return device_; }
  // Items of the database that the native configuration implies; explicit ones hide them.
  [[nodiscard]] const DatabaseItems& configured_items() const;
  // Handles count from 1; 0 is no interface.
  [[nodiscard]] std::uint32_t handle_of(const std::string& internal_name) const;
  [[nodiscard]] const InterfaceRecord* interface(std::uint32_t handle) const;
  // What the interface manager knows: the interfaces that the device file lists and those that the
  // native configuration names; the one with handle 1 first.
  [[nodiscard]] const std::vector<InterfaceRecord>& interfaces() const;
  // The local node, or NODEID_NONE. Node identifiers count from 1.
  [[nodiscard]] nodeid_t own_node() const;
  // Null for an identifier that no node has.
  [[nodiscard]] const std::string* node_name(nodeid_t node) const;

  // Native names of the interfaces that are configured, that the interface manager knows, or that
  // have a summary, each once.
  [[nodiscard]] const std::vector<std::string>& interface_names() const { return names_; }
  // Whether a native name is one of them.
  [[nodiscard]] bool knows(const std::string& name) const;

  // The directory that the services answer from, or null outside of requests.
  static const DeviceDirectory* active();

 private:
  friend class ActiveDevice;

  void enter_names(const std::vector<std::string>& configured);
  nodeid_t enter_node(const std::string& name);
  void enter_interface(const DeviceInterface& interface);
  void enter_configured(const std::string& name);
  void complete(InterfaceRecord& record) const;

  Device device_;
  mutable std::optional<DatabaseItems> configured_items_;  // when they have been asked for
  std::vector<std::string> nodes_;
  mutable std::vector<InterfaceRecord> interfaces_;  // some without addresses, until asked for
  mutable std::unordered_map<std::string, ConfiguredAddresses> configured_;  // what follows has
  mutable const Document* configured_in_ = nullptr;
  std::vector<std::string> names_;
  std::unordered_set<std::string> other_names_;             // which have no record of their own
  std::unordered_map<std::string, std::uint32_t> handles_;  // of interfaces that are not listed
};

// Lets the services answer from a directory for as long as it lives: the one made last.
class ActiveDevice {
 public:
  explicit ActiveDevice(const DeviceDirectory& directory);
  ~ActiveDevice();
  ActiveDevice(const ActiveDevice&) = delete;
  ActiveDevice& operator=(const ActiveDevice&) = delete;

 private:
  const DeviceDirectory* former_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_DEVICE_DIRECTORY_H_
