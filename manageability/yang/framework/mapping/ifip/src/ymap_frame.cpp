#include "ymap_frame.h"

// What assert calls is declared in builds with assertions alone.
#undef NDEBUG
#include <cassert>

namespace ymap {

void fail_without_context(const char* file, unsigned line, const char* callback, const char* form,
                          const char* ending, const char* result) {
  std::array<char, 400> signature;
  std::snprintf(signature.data(), signature.size(), "%s %s%s(%s)", result, callback, ending, form);
  __assert_fail("NULL != ctx", file, line, signature.data());
}

cerrno run_framed(const Call& call, const Frame& frame, Body body) {
  const auto line = [&](std::uint32_t& word, const Message& message) {
    emit(call.ctx, Site{call.name, frame.line, &word}, message);
  };
  const bool lacks = call.in == nullptr || call.ctx->request_state == nullptr;
  if (frame.kind == FrameKind::kByHandQuiet && lacks) {
    return YMAP_ERR_INVALID_ARGS;
  }
  line(frame.words[kFrameStart], kStart);
  const Site invalid_arguments{call.name, frame.line, &frame.words[kFrameInvalidArguments]};
  const bool complete = call.in != nullptr && call.out != nullptr;
  const bool checked_late = frame.kind == FrameKind::kContainerCheckedLate;
  if (!complete && !checked_late) [[unlikely]] {
    return reject_arguments(call.ctx, invalid_arguments);
  }
  if ((checked_late || frame.kind == FrameKind::kContainer) && call.child_count == 0) {
    line(frame.more[kFrameNoSubtrees], kNoSubtrees);
  }
  const cerrno result = body(call);
  if (!complete) [[unlikely]] {
    return reject_arguments(call.ctx, invalid_arguments);
  }
  if (frame.kind != FrameKind::kGenerated) {
    if (call.wrote) {
      line(frame.more[kFrameMappingDone], kMappingDone);
    } else {
      line(frame.more[kFrameNoMappingDone], kNoMappingDone);
    }
  }
  line(frame.words[kFrameEnd], kEnd);
  return result;
}

namespace {

Frame frame_of(FrameSites& sites) {
  const bool is_generated = sites.kind == FrameKind::kGenerated;
  return {sites.line, sites.kind, sites.words.data(),
          is_generated ? nullptr : static_cast<MoreFrameSites&>(sites).more.data()};
}

}  // namespace

cerrno run_leaf(yfw_map_ctx* ctx, const Node* in, Node* out, const char* name, FrameSites& sites,
                Body body) {
  return run_framed({ctx, in, out, 0, name}, frame_of(sites), body);
}

cerrno run_container(yfw_map_ctx* ctx, const Node* in, std::uint32_t child_count, Node* out,
                     const char* name, FrameSites& sites, Body body) {
  return run_framed({ctx, in, out, child_count, name}, frame_of(sites), body);
}

}  // namespace ymap
