// The mapping plug-in as a library.
#ifndef OCIFIP_HOST_MAPPING_PLUGIN_H_
#define OCIFIP_HOST_MAPPING_PLUGIN_H_

#include <memory>
#include <string>
#include <vector>

#include "mapping/read_back.h"
#include "mapping/registrations.h"
#include "request/augment_entries.h"

namespace ocifip {

// All the callbacks of a plug-in that the host enters.
struct PluginEntries {
  yfw_map_leaf_callback openconfig = nullptr;  // takes an OpenConfig request
  AugmentEntries augments;
  ReadBackEntries read_back;

  // Those that map a part of a request or of native data and are there: all but `openconfig`.
  std::vector<yfw_map_leaf_callback*> parts();
};

class Plugin {
 public:
  // Loads the library, asks for which contract it was built, finds the entry callbacks that have no
  // record, has it fill its registration records, and has it register its database records. Throws
  // LoadError.
  explicit Plugin(const std::string& file);
  // Calls the unload hooks first.
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  [[nodiscard]] const PluginEntries& entries() const { return entries_; }
  // Its own version and that of its contract, "0.1.0 for contract 1.0".
  [[nodiscard]] const std::string& version() const { return version_; }
  [[nodiscard]] const std::vector<RegistrationRecord>& registrations() const {
    return registrations_;
  }

 private:
  struct Close {
    void operator()(void* library) const;
  };

  [[nodiscard]] yfw_map_leaf_callback find(const std::string& file, const char* symbol) const;
  [[nodiscard]] yfw_map_leaf_callback find_optional(const char* symbol) const;  // null without it

  std::unique_ptr<void, Close> library_;
  std::string version_;
  PluginEntries entries_;
  std::vector<RegistrationRecord> registrations_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_PLUGIN_H_
