// What a configuration that users hold is made of.
#ifndef OCIFIP_HOST_DEVICE_CONFIGURATION_CONTENT_H_
#define OCIFIP_HOST_DEVICE_CONFIGURATION_CONTENT_H_

#include <memory>
#include <utility>

#include "io/native_configuration.h"
#include "ocifip/configuration.h"

namespace ocifip {

// What the models are known to accept of a native configuration.
struct AcceptedPart {
  InterfaceNames interfaces;
  bool has_shared = false;  // what is no interface's
  bool is_all = false;
};

class Configuration::Content : public std::enable_shared_from_this<Configuration::Content> {
 public:
  explicit Content(NativeConfiguration native, AcceptedPart accepted = {})
      : native_(std::move(native)), accepted_(std::move(accepted)) {}

  [[nodiscard]] const NativeConfiguration& native() const { return native_; }
  // As far as it was known when the content was made.
  [[nodiscard]] const AcceptedPart& accepted() const { return accepted_; }

 private:
  NativeConfiguration native_;
  AcceptedPart accepted_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_CONFIGURATION_CONTENT_H_
