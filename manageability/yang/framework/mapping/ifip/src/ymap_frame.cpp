#include "ymap_frame.h"

namespace ymap {

cerrno run_framed(const Call& call, FrameSites& sites, cerrno (*body)(const Call& call)) {
  emit(call.ctx, Site{call.name, sites.line, &sites.start}, kStart);
  if (call.in == nullptr || call.out == nullptr) [[unlikely]] {
    return reject_arguments(call.ctx, Site{call.name, sites.line, &sites.invalid_arguments});
  }
  const cerrno result = body(call);
  emit(call.ctx, Site{call.name, sites.line, &sites.end}, kEnd);
  return result;
}

}  // namespace ymap
