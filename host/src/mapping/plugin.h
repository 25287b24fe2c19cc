// The mapping plug-in as a library.
#ifndef OCIFIP_HOST_MAPPING_PLUGIN_H_
#define OCIFIP_HOST_MAPPING_PLUGIN_H_

#include <memory>
#include <string>

#include "mapping/augment_entries.h"
#include "mapping/read_back.h"

namespace ocifip {

class Plugin {
 public:
  // Loads the library, finds its entry callbacks and has it register its records. Throws LoadError.
  explicit Plugin(const std::string& file);
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  [[nodiscard]] const AugmentEntries& entries() const { return entries_; }
  [[nodiscard]] const ReadBackEntries& read_back() const { return read_back_; }

 private:
  struct Close {
    void operator()(void* library) const;
  };

  [[nodiscard]] yfw_map_leaf_callback find(const std::string& file, const char* symbol) const;

  std::unique_ptr<void, Close> library_;
  AugmentEntries entries_;
  ReadBackEntries read_back_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_PLUGIN_H_
