#include "ymap_frame.h"

// What assert calls is declared in builds with assertions alone.
#undef NDEBUG
#include <cassert>

namespace ymap {

void fail_without_context(const char* file, unsigned line, const char* callback, const char* form) {
  std::array<char, 400> signature;
  std::snprintf(signature.data(), signature.size(), "cerrno %s(%s)", callback, form);
  __assert_fail("NULL != ctx", file, line, signature.data());
}

namespace {

cerrno run_framed(const Call& call, FrameSites& sites, Body body) {
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

}  // namespace

cerrno run_leaf(yfw_map_ctx* ctx, const Node* in, Node* out, const char* name, FrameSites& sites,
                Body body) {
  return run_framed({ctx, in, out, 0, name}, sites, body);
}

cerrno run_container(yfw_map_ctx* ctx, const Node* in, std::uint32_t child_count, Node* out,
                     const char* name, FrameSites& sites, Body body) {
  return run_framed({ctx, in, out, child_count, name}, sites, body);
}

}  // namespace ymap
