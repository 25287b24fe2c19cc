// What the mapping asked of the framework, a line a write call.
#ifndef OCIFIP_HOST_REQUEST_RECORDER_H_
#define OCIFIP_HOST_REQUEST_RECORDER_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "io/models.h"
#include "yfw/mapping.h"

namespace ocifip {

class Recorder {
 public:
  explicit Recorder(const Models& models) : models_(models) {}

  void add_path(const char* module_namespace, const char* path, const char* value,
                const nidl_yfw_datatree* source, std::uint32_t create, std::uint32_t flags,
                const std::string& trim_prefix, cerrno result);
  void add_leaf(const char* module_namespace, std::span<const char* const> steps);
  void stitch(const yfw_map_stitch_request& request);
  void xpath(const yfw_map_xpath_request& request, cerrno result);

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  // The name of a namespace's module, or the namespace itself when no model has it.
  [[nodiscard]] std::string_view module(std::string_view module_namespace) const;
  void append_value(const char* value);
  void append_result(cerrno result);

  const Models& models_;
  std::string text_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_RECORDER_H_
