#include "mapping/reading.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ocifip {

ConfigurationReading::ConfigurationReading(const Models& models, std::shared_ptr<DeviceView> view,
                                           ReadInput read)
    : models_(models),
      view_(std::move(view)),
      read_(std::move(read)),
      has_native_(read_.is_all_native || !read_.native.asked.empty()) {
  if (read_.openconfig.asked.empty()) return;
  ReadInput openconfig = read_;
  openconfig.native = {};
  openconfig_.emplace(view_->mapper, std::move(openconfig), Format::kXml);
}

bool ConfigurationReading::step() {
  if (openconfig_) {
    if (openconfig_->step()) return true;
    outcome_ = openconfig_->finish();
    openconfig_.reset();
    has_native_ = has_native_ && !outcome_.refusal;
    return has_native_;
  }
  if (!has_native_) return false;
  if (!native_) native_.emplace(models_, view_->device.device().native, read_);
  return native_->step();
}

Outcome ConfigurationReading::finish() {
  if (!native_) return std::move(outcome_);
  Outcome native = native_->finish();
  if (!native.text.empty()) std::erase(outcome_.notes, kNothingFound);
  outcome_.text = std::move(native.text.insert(0, outcome_.text));
  std::move(native.notes.begin(), native.notes.end(), std::back_inserter(outcome_.notes));
  return std::move(outcome_);
}

}  // namespace ocifip
