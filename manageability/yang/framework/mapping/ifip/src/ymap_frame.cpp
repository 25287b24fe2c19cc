#include "ymap_frame.h"

namespace ymap {

cerrno run_framed(const Call& call, FrameSites& sites, cerrno (*body)(const Call& call)) {
  emit(call.ctx, Site{call.name, sites.line, &sites.start}, kStart);
  const Site invalid_arguments{call.name, sites.line, &sites.invalid_arguments};
  const bool complete = call.in != nullptr && call.out != nullptr;
  const bool checked_late = sites.kind == FrameKind::kContainerCheckedLate;
  if (!complete && !checked_late) [[unlikely]] {
    return reject_arguments(call.ctx, invalid_arguments);
  }
  if ((checked_late || sites.kind == FrameKind::kContainer) && call.child_count == 0) {
    emit(call.ctx, Site{call.name, sites.line, &sites.no_subtrees}, kNoSubtrees);
  }
  const cerrno result = body(call);
  if (!complete) [[unlikely]] {
    return reject_arguments(call.ctx, invalid_arguments);
  }
  if (sites.kind != FrameKind::kGenerated) {
    if (call.wrote) {
      emit(call.ctx, Site{call.name, sites.line, &sites.mapping_done}, kMappingDone);
    } else {
      emit(call.ctx, Site{call.name, sites.line, &sites.no_mapping_done}, kNoMappingDone);
    }
  }
  emit(call.ctx, Site{call.name, sites.line, &sites.end}, kEnd);
  return result;
}

}  // namespace ymap
