// The reference host in parts: the plug-in, with a layer between it and its platform, and whole
// requests of a command line.
#ifndef SESSION_H_
#define SESSION_H_

#include <dlfcn.h>

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

// A callback that the host enters.
struct EntryCallback {
  std::string symbol;
  yfw_map_leaf_callback* callback;
};

// All of them.
inline std::vector<EntryCallback> callbacks_of(PluginEntries& entries) {
  std::vector<EntryCallback> callbacks = {{{}, &entries.openconfig}};
  for (yfw_map_leaf_callback* part : entries.parts()) {
    callbacks.push_back({{}, part});
  }
  for (EntryCallback& each : callbacks) {
    Dl_info symbol{};
    if (dladdr(reinterpret_cast<void*>(*each.callback), &symbol) != 0 &&
        symbol.dli_sname != nullptr) {
      each.symbol = symbol.dli_sname;
    }
  }
  return callbacks;
}

// A device with a plug-in that is freshly loaded.
class Session {
 public:
  // Throws InputError for a device that a host would not take.
  explicit Session(Device device) : directory_(std::move(device)) {
    check_configuration(models(), directory_.device().native);
    check_items(directory_);
  }

  [[nodiscard]] const DeviceDirectory& directory() const { return directory_; }

 private:
  DeviceDirectory directory_;
  Plugin plugin_{OCIFIP_PLUGIN};

 public:
  FaultLayer layer{OCIFIP_PLUGIN};
  PluginEntries entries = plugin_.entries();  // may be changed before the first request
  // What the plug-in makes of input is looked at, not what keeps it from the plug-in.
  Mapper mapper{models(), directory_, entries, HostOptions{.unchecked = true}};
};

}  // namespace ocifip::faults

#endif  // SESSION_H_
