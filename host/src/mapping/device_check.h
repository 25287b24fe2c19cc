// Holding the device's native configuration against the models, as far as requests concern it.
#ifndef OCIFIP_HOST_MAPPING_DEVICE_CHECK_H_
#define OCIFIP_HOST_MAPPING_DEVICE_CHECK_H_

#include <utility>

#include "device/configuration_content.h"
#include "device/device_directory.h"
#include "device/native_part.h"
#include "io/document.h"
#include "io/models.h"

namespace ocifip {

class DeviceCheck {
 public:
  // The first two outlive the check. `accepted` has been looked at before.
  DeviceCheck(const Models& models, const DeviceDirectory& device, AcceptedPart accepted = {})
      : models_(models), device_(device), accepted_(std::move(accepted)) {}

  // Throws InputError unless the models accept the configuration of every interface that a request
  // may be about, and what is no interface's. What has been accepted is not looked at again.
  void check(const Document& request);

  [[nodiscard]] const AcceptedPart& accepted() const { return accepted_; }

 private:
  void check_part(const InterfaceNames& interfaces) const;

  const Models& models_;
  const DeviceDirectory& device_;
  AcceptedPart accepted_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_DEVICE_CHECK_H_
