#include "mapping/reading.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "device/native_part.h"
#include "io/document_nodes.h"
#include "io/print_document.h"
#include "io/select_data.h"
#include "mapping/native_input.h"

namespace ocifip {
namespace {

// Takes out state, and the containers that have nothing else.
void drop_state(std::vector<DocumentNode>& nodes) {
  std::erase_if(nodes, [](DocumentNode& node) {
    if (is_state(node)) return true;
    if (node.children.empty()) return false;
    drop_state(node.children);
    const bool is_plain = node.schema != nullptr && Models::is_plain_container(node.schema);
    return is_plain && node.children.empty();
  });
}

Document all_native(const Document& native) {
  Document all = {native.name, {}};
  std::copy_if(native.roots.begin(), native.roots.end(), std::back_inserter(all.roots),
               is_native_root);
  return all;
}

}  // namespace

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
  } else if (has_native_) {
    read_native();
    has_native_ = false;
  }
  return has_native_;
}

void ConfigurationReading::read_native() {
  const NativeConfiguration& native = view_->device.device().native;
  Document selected;
  if (read_.is_all_native) {
    selected = all_native(native.whole());
  } else {
    const Document asked = joined(read_.native.asked);
    const Document& data = part_asked(models_, native, asked);
    selected = read_.values_choose ? select_chosen(data, joined(read_.native.chosen))
                                   : select_data(data, asked);
  }
  if (read_.content == Content::kConfig) drop_state(selected.roots);
  native_.text = print_elements(std::move(selected), native_.notes);
}

Outcome ConfigurationReading::finish() {
  if (!native_.text.empty()) std::erase(outcome_.notes, kNothingFound);
  outcome_.text += native_.text;
  std::move(native_.notes.begin(), native_.notes.end(), std::back_inserter(outcome_.notes));
  return std::move(outcome_);
}

}  // namespace ocifip
