#include "ocifip/host.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "device/configuration_content.h"
#include "device/item_bytes.h"
#include "device/native_edit.h"
#include "io/data_path.h"
#include "io/deleted_values.h"
#include "io/device_file.h"
#include "io/device_json.h"
#include "io/document_nodes.h"
#include "io/models.h"
#include "io/module_library.h"
#include "io/print_document.h"
#include "io/print_parts.h"
#include "io/save_file.h"
#include "io/text.h"
#include "mapping/configuration_changes.h"
#include "mapping/coverage.h"
#include "mapping/device_views.h"
#include "mapping/plugin.h"
#include "mapping/reading.h"
#include "result_codes.h"

namespace ocifip {
namespace {

// What the host itself walks must be among the models.
void check_models(const Models& models, const std::string& folder) {
  for (const char* module : {"openconfig-interfaces", "Halvane-Ombrix-ifmgr-cfg"}) {
    if (models.namespace_of(module).empty()) {
      throw load_error("models in", folder, std::string("no module ") + module);
    }
  }
}

// The configuration that an edit has changed.
Configuration changed_configuration(const Mapper& mapper, const EditedDevice& edited) {
  return Configuration(std::make_shared<const Configuration::Content>(
      NativeConfiguration(edited.native), mapper.accepted()));
}

}  // namespace

class Host::Impl {
 public:
  explicit Impl(const HostOptions& options)
      : models_(options.models),
        device_file_(options.device),
        device_text_(
            std::make_shared<const std::string>(device_file_ ? read_file(*device_file_) : "")) {
    Device device =
        device_file_ ? open_device(models_, *device_file_, device_text_) : example_device(models_);
    plugin_ = std::make_unique<Plugin>(options.plugin);
    views_ = std::make_unique<DeviceViews>(models_, plugin_->entries(), options, std::move(device));
    check_models(models_, options.models);
    check_items(views_->of_running()->device);
  }

  void check_device() const { check_configuration(models_, views_->running().content().native()); }

  Mapper& mapper() { return views_->of_running()->mapper; }

  Outcome apply(const ApplyRequest& request, Format format);
  [[nodiscard]] Configuration running() const { return views_->running(); }
  [[nodiscard]] Configuration empty() const;
  Change change(const Configuration& base, const EditRequest& request);
  // A remark, or "".
  std::string commit(const Configuration& configuration,
                     const std::function<void()>* saved_when_ready);
  std::vector<ChangedNode> changes(const Configuration& before, const Configuration& after);
  std::unique_ptr<Reading> read(const Configuration& configuration, const QueryRequest& request);

  [[nodiscard]] std::string registrations(Format format) const {
    return print_registrations(plugin_->version(), plugin_->registrations(), format);
  }
  [[nodiscard]] Coverage coverage() const { return find_coverage(models_, plugin_->entries()); }
  [[nodiscard]] const Models& models() const { return models_; }

 private:
  std::string save(const Document& native, const std::function<void()>& ready);
  void check_can_save() const;

  Models models_;
  std::optional<std::string> device_file_;
  std::shared_ptr<const std::string> device_text_;  // as it was read or saved last
  bool is_saved_ = true;                            // what runs is in the file
  std::unique_ptr<Plugin> plugin_;
  std::unique_ptr<DeviceViews> views_;
};

void Host::Impl::check_can_save() const {
  if (device_file_) return;
  throw InputError("nothing to save to: no device file was given", {InputFault::Kind::kNotSaved});
}

Outcome Host::Impl::apply(const ApplyRequest& request, Format format) {
  if (request.save) check_can_save();
  const std::shared_ptr<DeviceView> view = views_->of_running();
  EditedDevice edited = view->mapper.apply(request.edit, format);
  if (edited.native) {
    const std::function<void()> ready = [&] {
      if (request.before_saving) request.before_saving(edited.outcome);
    };
    const std::string remark =
        commit(changed_configuration(view->mapper, edited), request.save ? &ready : nullptr);
    if (!remark.empty()) edited.outcome.notes.push_back(remark);
  }
  return std::move(edited.outcome);
}

Configuration Host::Impl::empty() const {
  const Document& native = views_->running().content().native().whole();
  Document state = {native.name, {}};
  std::copy_if(native.roots.begin(), native.roots.end(), std::back_inserter(state.roots), is_state);
  return Configuration(
      std::make_shared<const Configuration::Content>(NativeConfiguration(std::move(state))));
}

Change Host::Impl::change(const Configuration& base, const EditRequest& request) {
  const std::shared_ptr<DeviceView> view = views_->of(base);
  EditedDevice edited = view->mapper.change(request, Views::kBoth, Format::kXml);
  Change change;
  change.refusals = std::move(edited.refusals);
  if (!change.refusals.empty()) return change;
  change.notes = std::move(edited.outcome.notes);
  change.result = edited.native ? changed_configuration(view->mapper, edited) : base;
  DeletedValues deleted([&](const Document& /*edit*/) -> const std::vector<DocumentNode>& {
    return base.content().native().whole().roots;
  });
  deleted.give(edited.native_edit);
  change.native_edit = print_elements(edited.native_edit, change.notes);
  change.difference = print_elements(edited.difference, change.notes);
  return change;
}

std::vector<ChangedNode> Host::Impl::changes(const Configuration& before,
                                             const Configuration& after) {
  if (before == after) return {};
  const std::shared_ptr<DeviceView> former = views_->of(before);
  return find_changes(models_, *former, *views_->of(after));
}

std::unique_ptr<Reading> Host::Impl::read(const Configuration& configuration,
                                          const QueryRequest& request) {
  std::shared_ptr<DeviceView> view = views_->of(configuration);
  ReadInput read = view->mapper.read(request, Views::kBoth);
  return std::make_unique<ConfigurationReading>(models_, std::move(view), std::move(read));
}

// The file comes first: when it cannot be written, nothing has happened.
std::string Host::Impl::commit(const Configuration& configuration,
                               const std::function<void()>* saved_when_ready) {
  const bool is_saving = saved_when_ready != nullptr;
  if (configuration == views_->running() && (is_saved_ || !is_saving)) return {};
  std::string remark;
  if (is_saving) {
    check_can_save();
    remark = save(configuration.content().native().whole(), *saved_when_ready);
  }
  is_saved_ = is_saving;
  views_->run(configuration);
  return remark;
}

// The configuration is printed in the order that it was read in.
std::string Host::Impl::save(const Document& native, const std::function<void()>& ready) {
  std::vector<std::string> notes;  // none: what is saved has been checked
  std::string text =
      with_native(*device_file_, *device_text_, print_json(native, notes, NodeOrder::kAsRead));
  std::string remark = save_file(*device_file_, *device_text_, text, ready);
  device_text_ = std::make_shared<const std::string>(std::move(text));
  return remark;
}

Host::Host(const HostOptions& options) : impl_(std::make_unique<Impl>(options)) {}

Host::~Host() = default;

void Host::check_device() const { impl_->check_device(); }

Outcome Host::edit(const EditRequest& request, Format format) {
  return impl_->mapper().edit(request, format);
}

Outcome Host::apply(const ApplyRequest& request, Format format) {
  return impl_->apply(request, format);
}

Outcome Host::query(const QueryRequest& request, Format format) {
  return impl_->mapper().query(request, format);
}

Outcome Host::get(const QueryRequest& request, Format format) {
  return impl_->mapper().get(request, format);
}

Outcome Host::report(const ReportRequest& request, Format format) {
  return impl_->mapper().report(request, format);
}

std::string Host::registrations(Format format) const { return impl_->registrations(format); }

Coverage Host::coverage() const { return impl_->coverage(); }

DataPath Host::data_path(const std::string& instance_path) const {
  return ocifip::data_path(impl_->models(), instance_path);
}

std::vector<std::vector<std::pair<std::string, std::string>>> Host::paths_to(
    const std::string& name_space, const std::string& name) const {
  std::vector<std::vector<std::pair<std::string, std::string>>> paths;
  std::vector<std::pair<std::string, std::string>> path;
  const std::function<void(const lysc_node*)> look_below = [&](const lysc_node* parent) {
    for (const lysc_node* node : impl_->models().children(parent)) {
      const bool is_inner = !Models::is_leaf(node);
      const bool is_it = Models::tag(node) == name && Models::module_namespace(node) == name_space;
      if (is_inner) path.emplace_back(Models::module_namespace(node), Models::tag(node));
      if (is_it && (paths.empty() || paths.back() != path)) paths.push_back(path);
      look_below(node);
      if (is_inner) path.pop_back();
    }
  };
  look_below(nullptr);
  return paths;
}

std::vector<std::string> Host::list_keys(
    const std::vector<std::pair<std::string, std::string>>& path) const {
  const lysc_node* node = nullptr;
  for (const auto& [name_space, tag] : path) {
    node = impl_->models().child(node, tag, name_space);
    if (node == nullptr) return {};
  }
  return node == nullptr ? std::vector<std::string>() : Models::keys(node);
}

Configuration Host::running() const { return impl_->running(); }

Configuration Host::empty() const { return impl_->empty(); }

Change Host::change(const Configuration& base, const EditRequest& request) {
  return impl_->change(base, request);
}

std::optional<Refusal> Host::validate(const Configuration& configuration) const {
  try {
    return find_fault(impl_->models(), configuration.content().native().whole());
  } catch (const InputError& error) {
    // Of a device file, it may be seen only now that it cannot be read.
    const InputFault& fault = error.fault();
    return Refusal{kInvalidData, fault.tag, fault.path, error.what()};
  }
}

std::vector<std::string> Host::commit(const Configuration& configuration, bool save) {
  const std::function<void()> ready;
  std::string remark = impl_->commit(configuration, save ? &ready : nullptr);
  return remark.empty() ? std::vector<std::string>() : std::vector{std::move(remark)};
}

std::vector<ChangedNode> Host::changes(const Configuration& before, const Configuration& after) {
  return impl_->changes(before, after);
}

std::unique_ptr<Reading> Host::read(const Configuration& configuration,
                                    const QueryRequest& request) {
  return impl_->read(configuration, request);
}

std::vector<Module> Host::modules() const { return module_list(impl_->models()); }

std::optional<std::string> Host::module_text(const std::string& name,
                                             const std::string& revision) const {
  return ocifip::module_text(impl_->models(), name, revision);
}

}  // namespace ocifip
