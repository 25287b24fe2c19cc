// The frame that every callback runs in: the start and end lines, the argument checks, and the
// writing of a line to the two trace channels.
//
// A callback written by hand is declared and defined at once, and its body is only its own work:
//
//   YMAP_LEAF(ymap_ox_..._leaf_lvla_ipv4_config_mtu) {
//     return ...;  // `call` holds the context, the node, the output tree and the callback's name
//   }
//
// A container's is YMAP_CONTAINER, a list entry's YMAP_LIST_ENTRY.
#ifndef YMAP_FRAME_H_
#define YMAP_FRAME_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "log/log.h"
#include "yfw/context.h"
#include "yfw/mapping.h"
#include "yfw/mapping_results.h"

#define YMAP_EXPORT extern "C" __attribute__((visibility("default")))

namespace ymap {

using Node = nidl_yfw_datatree;

// --- the context ---------------------------------------------------------------------------------

// The arguments of the two forms of a callback, as an assertion names them.
inline constexpr const char* kLeafForm =
    "yfw_map_ctx*, const nidl_yfw_datatree*, nidl_yfw_datatree*";
inline constexpr const char* kContainerForm =
    "yfw_map_ctx*, const nidl_yfw_datatree*, uint32_t, nidl_yfw_datatree*";

// Stops the process as assert does when `NULL != ctx` does not hold. `ending` is the end of the
// callback's name, where only its beginning is kept.
[[noreturn]] void fail_without_context(const char* file, unsigned line, const char* callback,
                                       const char* form, const char* ending = "",
                                       const char* result = "cerrno");

// A callback entered without a context is a programming error that stops the process in every
// build. Not assert itself: it keeps a text with the whole signature of each callback, and all
// those texts take as much room as the code.
#define YMAP_ASSERT_CONTEXT(ctx, callback, form)                             \
  do {                                                                       \
    if ((ctx) == nullptr) {                                                  \
      ymap::fail_without_context(__FILE__, __LINE__, #callback, ymap::form); \
    }                                                                        \
  } while (false)

// --- results and lines ---------------------------------------------------------------------------

// Results of the library, as the contract has them. Callers compare against the values.
inline constexpr cerrno YMAP_OK = YFW_MAP_OK;
inline constexpr cerrno YMAP_ERR_INVALID_ARGS = YFW_MAP_ERR_INVALID_ARGS;
inline constexpr cerrno YMAP_ERR_NO_SUBTREE = YFW_MAP_ERR_NO_SUBTREE;
inline constexpr cerrno YMAP_ERR_NO_KEYS = YFW_MAP_ERR_NO_KEYS;
inline constexpr cerrno YMAP_ERR_LIST_KEY = YFW_MAP_ERR_LIST_KEY;
inline constexpr cerrno YMAP_ERR_KEY_DELETE = YFW_MAP_ERR_KEY_DELETE;
inline constexpr cerrno YMAP_ERR_VALUE_RANGE = YFW_MAP_ERR_VALUE_RANGE;
inline constexpr cerrno YMAP_ERR_UNSUPPORTED = YFW_MAP_ERR_UNSUPPORTED;
inline constexpr cerrno YMAP_ERR_UNSUPPORTED_AUGMENT = YFW_MAP_ERR_UNSUPPORTED_AUGMENT;
inline constexpr cerrno YMAP_ERR_NO_MEMORY = YFW_MAP_ERR_NO_MEMORY;
inline constexpr cerrno YMAP_ERR_PREFIX_LENGTH = YFW_MAP_ERR_PREFIX_LENGTH;
inline constexpr cerrno YMAP_ERR_NO_RECORD = YFW_MAP_ERR_NO_RECORD;
inline constexpr cerrno YMAP_ERR_ADDRESS_LIST = YFW_MAP_ERR_ADDRESS_LIST;
inline constexpr cerrno YMAP_ERR_NAMELESS_ITEM = YFW_MAP_ERR_NAMELESS_ITEM;
inline constexpr cerrno YMAP_ERR_XPATH_NOT_ADDED = YFW_MAP_XPATH_NOT_ADDED;

// A line of the debug log and of the trace buffer. Both formats begin with the context; the trace
// buffer's also with the sequence number, the callback's name and the source line.
struct Message {
  std::uint32_t level;  // enum yfw_log_level
  const char* debug_format;
  const char* buffer_format;  // the name comes in two parts
};

#define YMAP_TRACE_TEXT(text) \
  ::ymap::Message { YFW_LOG_TRACE, "TRC: YFW: ctx=%p," text, "#%u: TRC: %s%s:%d ctx=%p," text }
#define YMAP_ERROR_TEXT(text) \
  ::ymap::Message { YFW_LOG_ERROR, "ERR: YFW: ctx=%p," text, "#%u: ERR: %s%s:%d ctx=%p," text }

inline constexpr Message kStart = YMAP_TRACE_TEXT("Start");
inline constexpr Message kEnd = YMAP_TRACE_TEXT("End");
inline constexpr Message kInvalidArguments = YMAP_ERROR_TEXT("Invalid arguments passed!");
inline constexpr Message kFailedSubtrees = YMAP_ERROR_TEXT("Failed to get subtrees!");
inline constexpr Message kTagMissing = YMAP_ERROR_TEXT("Tag name is not available!");
inline constexpr Message kUnsupportedTag =
    YMAP_ERROR_TEXT("Unsupported tag is specified in the request.");
inline constexpr Message kUnsupportedIgnoring = YMAP_TRACE_TEXT("Unsupported tag. Ignoring.");
inline constexpr Message kProcessing = YMAP_TRACE_TEXT("Processing tag '%s'");
inline constexpr Message kNoSubtrees = YMAP_TRACE_TEXT("No subtrees");
inline constexpr Message kMappingDone = YMAP_TRACE_TEXT("Mapping done for this node");
inline constexpr Message kNoMappingDone = YMAP_TRACE_TEXT("No mapping done for this node");

// What a site word holds before the logging service has seen it.
inline constexpr std::uint32_t kFreshSiteWord = 0xffffffff;

// A place that writes a line.
struct Site {
  const char* function;  // the callback's own name
  int line;
  std::uint32_t* word;      // the site's own word, handed to the logging service
  const char* ending = "";  // what the name ends in, where only its beginning is kept
};

// Of an entry in the trace buffer; the same at every site.
inline constexpr std::uint64_t kTraceBufferFlags = 0x10101000000;
inline constexpr std::size_t kTraceBufferLineSize = 250;

template <typename... Args>
[[gnu::cold, gnu::noinline]] void write_debug_line(yfw_map_ctx* ctx, std::uint32_t* word,
                                                   const Message& message, Args... args) {
  void* channel = message.level == YFW_LOG_ERROR ? ctx->error_channel : ctx->trace_channel;
  _ombos_dt_log_filter_adv(channel, 0, 0, 0, 0, 0, word, message.debug_format,
                           static_cast<void*>(ctx), args...);
}

template <typename... Args>
[[gnu::cold, gnu::noinline]] void write_buffer_line(yfw_map_ctx* ctx, const Site& site,
                                                    const Message& message, Args... args) {
  std::array<char, kTraceBufferLineSize> text;
  std::snprintf(text.data(), text.size(), message.buffer_format, ret_nc_yfw_trace_index_incr(),
                site.function, site.ending, site.line, static_cast<void*>(ctx), args...);
  _lstrace(ctx->trace_buffer, kTraceBufferFlags, text.data());
}

// Writes a line to the debug log, if its filter wants it, and to the trace buffer, if that is on.
// On a quiet system this is one filter test and one flag test.
template <typename... Args>
inline void emit(yfw_map_ctx* ctx, const Site& site, const Message& message, Args... args) {
  if (yfw_debug_should_log(ctx->debug_filter, message.level) != 0) [[unlikely]] {
    write_debug_line(ctx, site.word, message, args...);
  }
  if (ctx->trace_buffer_on != 0) [[unlikely]] {
    write_buffer_line(ctx, site, message, args...);
  }
}

// Writes a line from a site of its own. `name` is the writing function's.
#define YMAP_EMIT(ctx, name, message, ...)                                  \
  do {                                                                      \
    static constinit std::uint32_t ymap_site_word = ::ymap::kFreshSiteWord; \
    static constexpr ::ymap::Message ymap_message = message;                \
    ::ymap::emit(ctx, ::ymap::Site{name, __LINE__, &ymap_site_word},        \
                 ymap_message __VA_OPT__(, ) __VA_ARGS__);                  \
  } while (false)

// The same within a callback's body, under the callback's name.
#define YMAP_TRACE(call, text, ...) \
  YMAP_EMIT((call).ctx, (call).name, YMAP_TRACE_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)
#define YMAP_ERROR(call, text, ...) \
  YMAP_EMIT((call).ctx, (call).name, YMAP_ERROR_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)

// One call of a callback.
struct Call {
  yfw_map_ctx* ctx;
  const Node* in;
  Node* out;
  std::uint32_t child_count;   // 0 in the leaf form
  const char* name;            // the callback's own
  mutable bool wrote = false;  // set by the writing of an output path
};

// How much a callback's frame says.
enum class FrameKind : std::uint8_t {
  kGenerated,    // start and end
  kByHand,       // whether something was mapped, too
  kByHandQuiet,  // the same, but nothing at all when there is no node, or no request state
  kContainer,    // and that a container came without children
  // The same, with the arguments checked when the body is done: it finds null ones.
  kContainerCheckedLate
};

// Reports a missing node or tree: no end line follows.
inline cerrno reject_arguments(yfw_map_ctx* ctx, const Site& site) {
  emit(ctx, site, kInvalidArguments);
  yfw_oc_error_path(ctx);
  return YMAP_ERR_INVALID_ARGS;
}

template <std::size_t kWords>
consteval std::array<std::uint32_t, kWords> fresh_site_words() {
  std::array<std::uint32_t, kWords> words{};
  words.fill(kFreshSiteWord);
  return words;
}

// The lines that every frame can write, and those that all but the generated ones' can.
enum FrameSite : std::uint8_t { kFrameStart, kFrameInvalidArguments, kFrameEnd, kFrameSiteCount };
enum MoreFrameSite : std::uint8_t {
  kFrameMappingDone,
  kFrameNoMappingDone,
  kFrameNoSubtrees,
  kMoreFrameSiteCount
};

// The words of a frame's lines, with its line in the source.
struct FrameSites {
  std::uint16_t line;
  FrameKind kind = FrameKind::kGenerated;
  std::array<std::uint32_t, kFrameSiteCount> words = fresh_site_words<kFrameSiteCount>();
};
// Those of frames that are not generated; there are hundreds of the others.
struct MoreFrameSites : FrameSites {
  constexpr MoreFrameSites(std::uint16_t at, FrameKind frame_kind) : FrameSites{at, frame_kind} {}
  std::array<std::uint32_t, kMoreFrameSiteCount> more = fresh_site_words<kMoreFrameSiteCount>();
};
template <FrameKind kKind>
consteval auto fresh_frame_sites(std::uint16_t line) {
  if constexpr (kKind == FrameKind::kGenerated) {
    return FrameSites{line};
  } else {
    return MoreFrameSites(line, kKind);
  }
}

// A frame as it is run.
struct Frame {
  int line;
  FrameKind kind;
  std::uint32_t* words;  // one for each FrameSite
  std::uint32_t* more;   // one for each MoreFrameSite; null for a generated frame
};

using Body = cerrno (*)(const Call& call);

// Runs a callback's body inside its frame: start line, argument checks, body, end line.
cerrno run_framed(const Call& call, const Frame& frame, Body body);

// The same for a callback's arguments, which come first and in its order, so that nothing is moved:
// hundreds of callbacks are no more than this call. `sites` is what fresh_frame_sites made.
cerrno run_leaf(yfw_map_ctx* ctx, const Node* in, Node* out, const char* name, FrameSites& sites,
                Body body);
cerrno run_container(yfw_map_ctx* ctx, const Node* in, std::uint32_t child_count, Node* out,
                     const char* name, FrameSites& sites, Body body);

}  // namespace ymap

// Declares and opens a callback of the leaf form.
#define YMAP_LEAF_FORM(name, frame_kind)                                                           \
  static cerrno name##_body(const ymap::Call& call);                                               \
  YMAP_EXPORT cerrno name(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out) { \
    static constinit auto sites = ymap::fresh_frame_sites<ymap::FrameKind::frame_kind>(__LINE__);  \
    YMAP_ASSERT_CONTEXT(ctx, name, kLeafForm);                                                     \
    return ymap::run_leaf(ctx, in, out, #name, sites, name##_body);                                \
  }                                                                                                \
  static cerrno name##_body([[maybe_unused]] const ymap::Call& call)

// Declares and opens a callback of the container form.
#define YMAP_CONTAINER_FORM(name, frame_kind)                                                     \
  static cerrno name##_body(const ymap::Call& call);                                              \
  YMAP_EXPORT cerrno name(yfw_map_ctx* ctx, const nidl_yfw_datatree* in,                          \
                          std::uint32_t child_count, nidl_yfw_datatree* out) {                    \
    static constinit auto sites = ymap::fresh_frame_sites<ymap::FrameKind::frame_kind>(__LINE__); \
    YMAP_ASSERT_CONTEXT(ctx, name, kContainerForm);                                               \
    return ymap::run_container(ctx, in, child_count, out, #name, sites, name##_body);             \
  }                                                                                               \
  static cerrno name##_body([[maybe_unused]] const ymap::Call& call)

// The callbacks written by hand.
#define YMAP_LEAF(name) YMAP_LEAF_FORM(name, kByHand)
#define YMAP_LIST_ENTRY(name) YMAP_CONTAINER_FORM(name, kByHand)
#define YMAP_QUIET_LIST_ENTRY(name) YMAP_CONTAINER_FORM(name, kByHandQuiet)
#define YMAP_CONTAINER(name) YMAP_CONTAINER_FORM(name, kContainer)
#define YMAP_CONTAINER_CHECKED_LATE(name) YMAP_CONTAINER_FORM(name, kContainerCheckedLate)

// The generated ones.
#define YMAP_GENERATED_LEAF(name) YMAP_LEAF_FORM(name, kGenerated)
#define YMAP_GENERATED_CONTAINER(name) YMAP_CONTAINER_FORM(name, kGenerated)

#endif  // YMAP_FRAME_H_
