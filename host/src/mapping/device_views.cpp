#include "mapping/device_views.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace ocifip {
namespace {

// Views that are kept: of the running configuration, of one that is being edited, and of what comes
// of the edit.
constexpr std::size_t kMostViews = 3;

}  // namespace

DeviceViews::DeviceViews(const Models& models, const PluginEntries& plugin,
                         const HostOptions& options, Device device)
    : models_(models),
      plugin_(plugin),
      options_(options),
      running_(std::make_shared<const Configuration::Content>(device.native)) {
  known_.push_back({running_.content().weak_from_this(),
                    std::make_shared<DeviceView>(models_, plugin_, options_, std::move(device),
                                                 AcceptedPart())});
}

std::shared_ptr<DeviceView> DeviceViews::of(const Configuration& configuration) {
  const auto found = std::find_if(known_.begin(), known_.end(), [&](const Known& each) {
    return each.content.lock().get() == &configuration.content();
  });
  Known used;
  if (found != known_.end()) {
    used = std::move(*found);
    known_.erase(found);
  } else {
    used = {configuration.content().weak_from_this(), make(configuration)};
  }
  known_.push_front(used);
  forget();
  return used.view;
}

// All but the configuration is the same in all views.
std::shared_ptr<DeviceView> DeviceViews::make(const Configuration& configuration) const {
  Device device = known_.front().view->device.device();
  device.native = configuration.content().native();
  return std::make_shared<DeviceView>(models_, plugin_, options_, std::move(device),
                                      configuration.content().accepted());
}

// Drops what nobody can ask for any more, and all but a few of the others. The first one stays.
void DeviceViews::forget() {
  const auto is_running = [&](const Known& each) {
    return each.content.lock().get() == &running_.content();
  };
  const auto second = known_.begin() + 1;
  known_.erase(std::remove_if(second, known_.end(),
                              [](const Known& each) { return each.content.expired(); }),
               known_.end());
  while (known_.size() > kMostViews) {
    const bool keeps_last = is_running(known_.back());
    known_.erase(known_.end() - (keeps_last ? 2 : 1));
  }
}

}  // namespace ocifip
