// Logging and tracing, for log/log.h.
#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

#include "guarded.h"
#include "log/log.h"
#include "request/request.h"

namespace ocifip {
namespace {

constexpr std::string_view kErrorHead = "ERR: YFW: ctx=";

std::string format_line(const char* format, va_list arguments) {
  std::array<char, 1024> line{};
  std::vsnprintf(line.data(), line.size(), format, arguments);
  return line.data();
}

// The message of an error line, without the head that every line has.
std::string message_of(const std::string& line) {
  const std::size_t end = line.find(',');
  return line.starts_with(kErrorHead) && end != std::string::npos ? line.substr(end + 1) : line;
}

}  // namespace
}  // namespace ocifip

extern "C" {

// Error lines are wanted, since a refusal may quote them; trace lines go to the trace buffer alone.
int yfw_debug_should_log(const void* /*filter*/, uint32_t level) { return level == YFW_LOG_ERROR; }

uint32_t ret_nc_yfw_trace_index_incr(void) {
  static std::atomic<uint32_t> index{0};
  return ++index;
}

// The error channel is the request's; the trace channel is null, and what is written to it is
// dropped. Site words are left as they are.
void _ombos_dt_log_filter_adv(void* channel, uint32_t /*reserved_1*/, uint32_t /*reserved_2*/,
                              uint32_t /*reserved_3*/, uint32_t /*reserved_4*/,
                              uint32_t /*reserved_5*/, uint32_t* /*site_word*/, const char* format,
                              ...) {
  if (channel == nullptr || format == nullptr) {
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  ocifip::guarded([&] {
    static_cast<ocifip::Request*>(channel)->add_error_line(
        ocifip::message_of(ocifip::format_line(format, arguments)));
    return ocifip::kOk;
  });
  va_end(arguments);
}

void _lstrace(void* /*buffer*/, uint64_t /*flags*/, const char* line) {
  if (line != nullptr) {
    std::fprintf(stderr, "%s\n", line);
  }
}

}  // extern "C"
