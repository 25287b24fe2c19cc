#include "ocifip/host.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "device/device_directory.h"
#include "io/device_file.h"
#include "io/models.h"
#include "mapping/mapper.h"
#include "mapping/plugin.h"
#include "records/item_bytes.h"

namespace ocifip {
namespace {

std::string read_file(const std::string& name) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                             &std::fclose);
  std::string text;
  std::array<char, 65536> part;
  std::size_t length = 0;
  while (file != nullptr && (length = std::fread(part.data(), 1, part.size(), file.get())) != 0) {
    text.append(part.data(), length);
  }
  if (file == nullptr || std::ferror(file.get()) != 0) {
    throw InputError(name + ": " + std::strerror(errno));
  }
  return text;
}

// What the host itself walks must be among the models.
void check_models(const Models& models, const std::string& folder) {
  for (const char* module : {"openconfig-interfaces", "Halvane-Ombrix-ifmgr-cfg"}) {
    if (models.namespace_of(module).empty()) {
      throw LoadError("cannot load the models in " + folder + ": no module " + module);
    }
  }
}

Device read_device_of(const Models& models, const HostOptions& options) {
  return options.device ? read_device(models, *options.device, read_file(*options.device))
                        : example_device();
}

}  // namespace

class Host::Impl {
 public:
  explicit Impl(const HostOptions& options)
      : models_(options.models),
        device_(read_device_of(models_, options)),
        plugin_(options.plugin),
        mapper_(models_, device_, plugin_.entries(), options.trace) {
    check_models(models_, options.models);
    check_items(device_);
  }

  Mapper& mapper() { return mapper_; }
  [[nodiscard]] const Plugin& plugin() const { return plugin_; }

 private:
  Models models_;
  DeviceDirectory device_;
  Plugin plugin_;
  Mapper mapper_;
};

Host::Host(const HostOptions& options) : impl_(std::make_unique<Impl>(options)) {}

Host::~Host() = default;

Outcome Host::edit(const EditRequest& request, Format format) {
  return impl_->mapper().edit(request, format);
}

Outcome Host::query(const QueryRequest& request, Format format) {
  return impl_->mapper().query(request, format);
}

Outcome Host::report(const ReportRequest& request, Format format) {
  return impl_->mapper().report(request, impl_->plugin().read_back(), format);
}

}  // namespace ocifip
