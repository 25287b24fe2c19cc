#include "device/device_directory.h"

#include <algorithm>
#include <utility>

#include "device/implied_items.h"
#include "device/native_addresses.h"
#include "device/subinterface_name.h"
#include "yfw/interfaces_mapping.h"

namespace ocifip {
namespace {

const DeviceDirectory* active_directory = nullptr;

// Any number but 0; the interface manager's services look at nothing else.
constexpr imc_connid kSiblingConnection = 1;

void activate(const DeviceDirectory* directory) {
  active_directory = directory;
  const bool is_reachable = directory != nullptr && !directory->device().interface_manager_absent;
  yfw_ocifmgr_im_conn = is_reachable ? kSiblingConnection : 0;
}

}  // namespace

DeviceDirectory::DeviceDirectory(Device device) : device_(std::move(device)) {
  if (device_.node) {
    enter_node(*device_.node);
  }
  const std::vector<std::string> configured = configured_interfaces(device_.native.entries());
  const std::vector<DeviceInterface>& listed = device_.interfaces.all();
  interfaces_.reserve(std::max(listed.size(), configured.size()));  // many are both
  names_.reserve(interfaces_.capacity());
  for (const DeviceInterface& interface : listed) enter_interface(interface);
  enter_names(configured);
  // The summaries are the native trees that arrange subinterfaces as OpenConfig does.
  for (const auto& [interface, index] : subinterfaces_in(device_.native.part({}).roots)) {
    std::string name = native_name(interface, index);
    if (!knows(name)) names_.push_back(*other_names_.insert(std::move(name)).first);
  }
}

// What is configured is an interface, whether the device file lists it or not; the names of what is
// configured come first.
void DeviceDirectory::enter_names(const std::vector<std::string>& configured) {
  const std::size_t listed = interfaces_.size();
  std::vector<bool> is_named(listed);
  for (const std::string& name : configured) {
    const std::uint32_t handle = handle_of(internal_name(name));
    bool is_new = handle == 0;
    if (is_new) {
      enter_configured(name);
    } else if (interfaces_[handle - 1].name != name) {
      is_new = other_names_.insert(name).second;
    } else if (handle <= listed) {
      is_new = !is_named[handle - 1];
      is_named[handle - 1] = true;
    }
    if (is_new) names_.push_back(name);
  }
  for (std::size_t at = 0; at < listed; ++at) {
    if (!is_named[at]) names_.push_back(interfaces_[at].name);
  }
}

bool DeviceDirectory::knows(const std::string& name) const {
  const std::uint32_t handle = handle_of(internal_name(name));
  return (handle != 0 && interfaces_[handle - 1].name == name) || other_names_.contains(name);
}

void DeviceDirectory::configure(NativeConfiguration native) {
  Device device = std::move(device_);
  device.native = std::move(native);
  *this = DeviceDirectory(std::move(device));
}

nodeid_t DeviceDirectory::enter_node(const std::string& name) {
  const auto known = std::find(nodes_.begin(), nodes_.end(), name);
  if (known == nodes_.end()) {
    nodes_.push_back(name);
    return static_cast<nodeid_t>(nodes_.size());
  }
  return static_cast<nodeid_t>(known - nodes_.begin()) + 1;
}

void DeviceDirectory::enter_interface(const DeviceInterface& interface) {
  InterfaceRecord& record = interfaces_.emplace_back();
  record.name = interface.name;
  record.node = interface.node ? enter_node(*interface.node) : own_node();
  if (interface.ipv4) record.ipv4 = *interface.ipv4;
  if (interface.ipv6) record.ipv6 = *interface.ipv6;
  record.lacks_ipv4 = !interface.ipv4;
  record.lacks_ipv6 = !interface.ipv6;
}

void DeviceDirectory::enter_configured(const std::string& name) {
  DeviceInterface interface;
  interface.name = name;
  enter_interface(interface);
  handles_.emplace(internal_name(name), static_cast<std::uint32_t>(interfaces_.size()));
}

std::uint32_t DeviceDirectory::handle_of(const std::string& internal_name) const {
  const auto listed = device_.interfaces.find(internal_name);
  if (listed) return static_cast<std::uint32_t>(*listed) + 1;
  const auto found = handles_.find(internal_name);
  return found == handles_.end() ? 0 : found->second;
}

const InterfaceRecord* DeviceDirectory::interface(std::uint32_t handle) const {
  if (handle == 0 || handle > interfaces_.size()) return nullptr;
  InterfaceRecord& record = interfaces_[handle - 1];
  complete(record);
  return &record;
}

const std::vector<InterfaceRecord>& DeviceDirectory::interfaces() const {
  static_cast<void>(device_.native.whole());  // rather than part by part
  for (InterfaceRecord& record : interfaces_) complete(record);
  return interfaces_;
}

// Gives an interface the addresses that the native configuration has for it.
void DeviceDirectory::complete(InterfaceRecord& record) const {
  if (!record.lacks_ipv4 && !record.lacks_ipv6) return;
  const Document& native = device_.native.part({record.name});
  if (&native != configured_in_) {
    configured_.clear();
    for (ConfiguredAddresses& addresses : native_addresses(native)) {
      configured_.emplace(addresses.name, std::move(addresses));
    }
    configured_in_ = &native;
  }
  const auto found = configured_.find(record.name);
  if (found != configured_.end() && record.lacks_ipv4) record.ipv4 = found->second.ipv4;
  if (found != configured_.end() && record.lacks_ipv6) record.ipv6 = found->second.ipv6;
  record.lacks_ipv4 = record.lacks_ipv6 = false;
}

const DatabaseItems& DeviceDirectory::configured_items() const {
  if (!configured_items_) configured_items_ = items_configured_by(device_.native.whole());
  return *configured_items_;
}

// The device's own node is the first that was entered.
nodeid_t DeviceDirectory::own_node() const { return device_.node ? 1 : NODEID_NONE; }

const std::string* DeviceDirectory::node_name(nodeid_t node) const {
  return node == NODEID_NONE || node > nodes_.size() ? nullptr : &nodes_[node - 1];
}

const DeviceDirectory* DeviceDirectory::active() { return active_directory; }

ActiveDevice::ActiveDevice(const DeviceDirectory& directory) : former_(active_directory) {
  activate(&directory);
}

ActiveDevice::~ActiveDevice() { activate(former_); }

}  // namespace ocifip

imc_connid yfw_ocifmgr_im_conn = 0;  // of C linkage, as its header declares it
