// The mapping plug-in as a library.
#ifndef OCIFIP_HOST_MAPPING_PLUGIN_H_
#define OCIFIP_HOST_MAPPING_PLUGIN_H_

#include <memory>
#include <string>
#include <vector>

#include "mapping/augment_entries.h"
#include "mapping/read_back.h"
#include "mapping/registrations.h"

namespace ocifip {

// All the callbacks of a plug-in that the host enters.
struct PluginEntries {
  yfw_map_leaf_callback openconfig = nullptr;  // takes an OpenConfig request
  AugmentEntries augments;
  ReadBackEntries read_back;
};

class Plugin {
 public:
  // Loads the library, has it fill its registration records, finds the entry callbacks that have no
  // record, and has it register its database records. Throws LoadError.
  explicit Plugin(const std::string& file);
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  [[nodiscard]] const PluginEntries& entries() const { return entries_; }
  [[nodiscard]] const std::vector<RegistrationRecord>& registrations() const {
    return registrations_;
  }

 private:
  struct Close {
    void operator()(void* library) const;
  };

  [[nodiscard]] yfw_map_leaf_callback find(const std::string& file, const char* symbol) const;

  std::unique_ptr<void, Close> library_;
  PluginEntries entries_;
  std::vector<RegistrationRecord> registrations_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_PLUGIN_H_
