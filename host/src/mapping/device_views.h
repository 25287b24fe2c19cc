// A device with the configurations that it has, had, or may have.
#ifndef OCIFIP_HOST_MAPPING_DEVICE_VIEWS_H_
#define OCIFIP_HOST_MAPPING_DEVICE_VIEWS_H_

#include <deque>
#include <memory>

#include "device/configuration_content.h"
#include "device/device_directory.h"
#include "io/models.h"
#include "mapping/mapper.h"
#include "mapping/plugin.h"
#include "ocifip/configuration.h"
#include "ocifip/host.h"

namespace ocifip {

// A device with one configuration, and requests on it.
struct DeviceView {
  DeviceView(const Models& models, const PluginEntries& plugin, const HostOptions& options,
             Device described, AcceptedPart accepted)
      : device(std::move(described)),
        mapper(models, device, plugin, options, std::move(accepted)) {}

  const DeviceDirectory device;
  Mapper mapper;
};

// To make a view takes time with the number of interfaces. Kept are that of the running
// configuration, and those of the few that were used last, as long as somebody has them.
class DeviceViews {
 public:
  // All but the device outlive the views.
  DeviceViews(const Models& models, const PluginEntries& plugin, const HostOptions& options,
              Device device);

  [[nodiscard]] const Configuration& running() const { return running_; }
  void run(const Configuration& configuration) { running_ = configuration; }

  // Whoever goes on with a view holds it.
  [[nodiscard]] std::shared_ptr<DeviceView> of(const Configuration& configuration);
  [[nodiscard]] std::shared_ptr<DeviceView> of_running() { return of(running_); }

 private:
  struct Known {
    std::weak_ptr<const Configuration::Content> content;
    std::shared_ptr<DeviceView> view;
  };

  std::shared_ptr<DeviceView> make(const Configuration& configuration) const;
  void forget();

  const Models& models_;
  const PluginEntries& plugin_;
  HostOptions options_;
  Configuration running_;
  std::deque<Known> known_;  // the one that was used last first
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_DEVICE_VIEWS_H_
