#include "request/recorder.h"

#include "io/print_parts.h"
#include "io/text.h"
#include "result_codes.h"

namespace ocifip {
namespace {

// What a write takes from its delete source.
std::string_view source_name(const nidl_yfw_datatree* source) {
  return source == nullptr ? "NONE"
                           : operation_name(static_cast<Operation>(source->edit_operation));
}

std::string_view or_empty(const char* text) { return text == nullptr ? "" : text; }

}  // namespace

std::string_view Recorder::module(std::string_view module_namespace) const {
  const std::string_view name = models_.module_of(module_namespace);
  return name.empty() ? module_namespace : name;
}

void Recorder::append_value(const char* value) {
  if (value == nullptr) {
    return;
  }
  text_.append(" =");
  append_quoted(text_, value);
}

void Recorder::append_result(cerrno result) {
  if (result != kOk) {
    text_.append(" result=").append(hexadecimal(result));
  }
  text_.push_back('\n');
}

void Recorder::add_path(const char* module_namespace, const char* path, const char* value,
                        const nidl_yfw_datatree* source, std::uint32_t create, std::uint32_t flags,
                        const std::string& trim_prefix, cerrno result) {
  text_.append("add-path ").append(module(or_empty(module_namespace)));
  text_.append(" ").append(or_empty(path));
  append_value(value);
  text_.append(" source=").append(source_name(source));
  text_.append(" create=").append(std::to_string(create));
  text_.append(" flags=").append(std::to_string(flags));
  if (!trim_prefix.empty()) {
    text_.append(" trim=").append(trim_prefix);
  }
  append_result(result);
}

void Recorder::add_leaf(const char* module_namespace, std::span<const char* const> steps) {
  text_.append("add-leaf ").append(module(or_empty(module_namespace))).append(" ");
  for (const char* step : steps) {
    text_.append(or_empty(step));
  }
  text_.push_back('\n');
}

void Recorder::stitch(const yfw_map_stitch_request& request) {
  text_.append("stitch ").append(module(request.module_namespace));
  text_.append(" ").append(request.instance_path).append(" ").append(request.list_path);
  text_.append(" operation=").append(std::to_string(request.operation)).push_back('\n');
}

void Recorder::xpath(const yfw_map_xpath_request& request, cerrno result) {
  text_.append("xpath ").append(module(request.module_namespace));
  text_.append(" ").append(request.xpath);
  append_value(request.value);
  text_.append(" operation=").append(std::to_string(request.operation));
  append_result(result);
}

}  // namespace ocifip
