#include "ocifip/host.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "device/device_directory.h"
#include "device/item_bytes.h"
#include "io/device_file.h"
#include "io/device_json.h"
#include "io/models.h"
#include "io/module_library.h"
#include "io/print_document.h"
#include "io/save_file.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "mapping/coverage.h"
#include "mapping/mapper.h"
#include "mapping/plugin.h"

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

}  // namespace

class Host::Impl {
 public:
  explicit Impl(const HostOptions& options)
      : models_(options.models),
        device_file_(options.device),
        device_text_(
            std::make_shared<const std::string>(device_file_ ? read_file(*device_file_) : "")),
        device_(device_file_ ? open_device(models_, *device_file_, device_text_)
                             : example_device(models_)),
        plugin_(options.plugin),
        mapper_(models_, device_, plugin_.entries(), options) {
    check_models(models_, options.models);
    check_items(device_);
  }

  void check_device() const { check_configuration(models_, device_.device().native); }

  Mapper& mapper() { return mapper_; }

  Outcome apply(const ApplyRequest& request, Format format);
  [[nodiscard]] std::string registrations(Format format) const {
    return print_registrations(plugin_.version(), plugin_.registrations(), format);
  }
  [[nodiscard]] Coverage coverage() const { return find_coverage(models_, plugin_.entries()); }
  [[nodiscard]] const Models& models() const { return models_; }

 private:
  void save(Document& native, const std::function<void()>& ready);

  Models models_;
  std::optional<std::string> device_file_;
  std::shared_ptr<const std::string> device_text_;  // as it was read or saved last
  DeviceDirectory device_;
  Plugin plugin_;
  Mapper mapper_;
};

// The file comes first: when it cannot be written, nothing has happened.
Outcome Host::Impl::apply(const ApplyRequest& request, Format format) {
  if (request.save && !device_file_) {
    throw InputError("nothing to save to: no device file was given", {InputFault::Kind::kNotSaved});
  }
  Applied applied = mapper_.apply(request.edit, device_.device().native.whole(), format);
  if (applied.native) {
    if (request.save) {
      save(*applied.native, [&] {
        if (request.before_saving) request.before_saving(applied.outcome);
      });
    }
    device_.configure(NativeConfiguration(std::move(applied.native)));
  }
  return std::move(applied.outcome);
}

// The configuration is printed in the order that it was read in, and is as it was afterwards.
void Host::Impl::save(Document& native, const std::function<void()>& ready) {
  std::vector<std::string> notes;  // none: what is saved has been checked
  arrange_as_read(native.roots);
  std::string text =
      with_native(*device_file_, *device_text_, print_document(native, Format::kJson, notes));
  arrange_all(native.roots);
  save_file(*device_file_, *device_text_, text, ready);
  device_text_ = std::make_shared<const std::string>(std::move(text));
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

std::vector<std::string> Host::list_keys(
    const std::vector<std::pair<std::string, std::string>>& path) const {
  const lysc_node* node = nullptr;
  for (const auto& [name_space, tag] : path) {
    node = impl_->models().child(node, tag, name_space);
    if (node == nullptr) return {};
  }
  return node == nullptr ? std::vector<std::string>() : Models::keys(node);
}

std::vector<Module> Host::modules() const { return module_list(impl_->models()); }

std::optional<std::string> Host::module_text(const std::string& name,
                                             const std::string& revision) const {
  return ocifip::module_text(impl_->models(), name, revision);
}

}  // namespace ocifip
