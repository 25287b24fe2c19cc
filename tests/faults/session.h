// The reference host in parts: the plug-in, with a layer between it and its platform, and whole
// requests of a command line.
#ifndef SESSION_H_
#define SESSION_H_

#include <string>
#include <vector>

#include "device/device_directory.h"
#include "device/item_bytes.h"
#include "fault_layer.h"
#include "io/models.h"
#include "mapping/mapper.h"
#include "mapping/plugin.h"

namespace ocifip::faults {

inline const Models& models() {
  static const Models loaded(OCIFIP_MODELS_DIR);
  return loaded;
}

// Every callback that the host enters.
inline std::vector<yfw_map_leaf_callback*> callbacks_of(PluginEntries& entries) {
  auto callbacks = entries.parts();
  callbacks.insert(callbacks.begin(), &entries.openconfig);
  return callbacks;
}

// A device with a plug-in that is freshly loaded.
class Session {
 public:
  // Throws InputError for a device that a host would not take.
  explicit Session(Device device) : directory_(std::move(device)) {
    check_native(models(), directory_.device());
    check_items(directory_);
  }

  [[nodiscard]] const DeviceDirectory& directory() const { return directory_; }

 private:
  DeviceDirectory directory_;
  Plugin plugin_{OCIFIP_PLUGIN};

 public:
  FaultLayer layer{OCIFIP_PLUGIN};
  PluginEntries entries = plugin_.entries();  // may be changed before the first request
  Mapper mapper{models(), directory_, entries, {}};
};

}  // namespace ocifip::faults

#endif  // SESSION_H_
