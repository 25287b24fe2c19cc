// Reads that are carried out in steps.
#ifndef OCIFIP_HOST_MAPPING_READING_H_
#define OCIFIP_HOST_MAPPING_READING_H_

#include <memory>
#include <optional>

#include "io/models.h"
#include "mapping/device_views.h"
#include "mapping/native_read.h"
#include "mapping/openconfig_read.h"
#include "mapping/read_input.h"
#include "ocifip/configuration.h"

namespace ocifip {

// A read of a configuration in both views: of OpenConfig some interfaces a step, then of the native
// models some entries.
class ConfigurationReading : public Reading {
 public:
  // The models outlive it.
  ConfigurationReading(const Models& models, std::shared_ptr<DeviceView> view, ReadInput read);

  bool step() override;
  Outcome finish() override;

 private:
  const Models& models_;
  std::shared_ptr<DeviceView> view_;
  ReadInput read_;
  std::optional<OpenConfigRead> openconfig_;  // while there is more to read of it
  bool has_native_ = false;                   // whether they are asked for
  std::optional<NativeRead> native_;          // when it is their turn
  Outcome outcome_;                           // of OpenConfig
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READING_H_
