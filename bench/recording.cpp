#include "recording.h"

#include <string_view>
#include <unordered_map>

#include "inet/inet.h"
#include "log/log.h"
#include "node/node.h"
#include "recorded_calls.h"
#include "redirected_calls.h"
#include "text/bounded_text.h"
#include "yfw/stack.h"
#include "yfw/text.h"

namespace ocifip::bench {
namespace {

// The services that accepted requests of the benchmarks' kinds use. SERVICE rows take a
// function, LIST_SERVICE rows also which argument is the length of its list of texts.
// clang-format off
#define SERVICES(SERVICE, LIST_SERVICE)       \
  SERVICE(yfw_debug_should_log)               \
  SERVICE(ret_nc_yfw_trace_index_incr)        \
  SERVICE(_lstrace)                           \
  SERVICE(yfw_map_do_these_match)             \
  SERVICE(yfw_map_add_to_node_hierarchy)      \
  SERVICE(yfw_map_remove_from_node_hierarchy) \
  SERVICE(yfw_map_update_current_list_node)   \
  SERVICE(yfw_map_get_node_info)              \
  SERVICE(yfw_add_to_output_list_ctx)         \
  SERVICE(yfw_remove_from_output_list_ctx)    \
  SERVICE(yfw_map_util_itree_stack_push)      \
  SERVICE(yfw_map_util_itree_stack_pop)       \
  SERVICE(yfw_map_util_itree_stack_peak)      \
  SERVICE(yfw_map_check_oc_leafref)           \
  SERVICE(yfw_map_is_request_add)             \
  SERVICE(yfw_map_is_request_delete)          \
  SERVICE(yfw_map_datatree_add_path_flagged)  \
  SERVICE(yfw_map_search_list)                \
  SERVICE(yfw_map_copy_trim_path_list_ctx)    \
  SERVICE(yfw_map_free_trim_path_list_ctx)    \
  SERVICE(yfw_map_stitch_list_to_list)        \
  LIST_SERVICE(yfw_map_add_leaf_from_xpath, 6) \
  SERVICE(yfw_strncpy_s)                      \
  SERVICE(yfw_strncat_s)                      \
  SERVICE(strcmp_s)                           \
  SERVICE(ombrix_inet_aton)                   \
  SERVICE(ombrix_inet_ntoa)                   \
  SERVICE(ombrix_inet_pton)                   \
  SERVICE(ombrix_inet_ntop)                   \
  SERVICE(ipv4_mask2prefixlen)                \
  SERVICE(ipv4_compare_prefix)                \
  LIST_SERVICE(imc_interface_find, 1)         \
  SERVICE(imc_attr_query)                     \
  SERVICE(iparm_al_c_tlv2addr)                \
  SERVICE(iparm_al_c_free)                    \
  SERVICE(im_internal_namestring)             \
  SERVICE(event_manager_create)               \
  SERVICE(iparm_al_c_init)                    \
  SERVICE(imc_control_server_bind)            \
  SERVICE(imc_control_server_unbind)          \
  SERVICE(imc_conn_ctx_to_connid)             \
  SERVICE(imc_s_interface_find)               \
  SERVICE(sysdb_datalist)                     \
  SERVICE(sysdb_datalist_free)                \
  SERVICE(imc_ifname_to_location)             \
  SERVICE(platform_get_my_nodeid)             \
  SERVICE(nodeid_to_str_external)             \
  SERVICE(cerr_strerror)
// clang-format on

enum ServiceNumber : Word {
  kNumberOfNone = kSetSlot,
#define NUMBER(function, ...) kNumberOf_##function,
  SERVICES(NUMBER, NUMBER)
#undef NUMBER
};

#define THE_SERVICE(function, ...) Service<kNumberOf_##function, &function, ##__VA_ARGS__>

#define RECORDER(function, ...) \
  {#function, reinterpret_cast<void*>(&THE_SERVICE(function, ##__VA_ARGS__)::record)},
const std::unordered_map<std::string_view, void*> kRecorders = {SERVICES(RECORDER, RECORDER)};
#undef RECORDER

void set_slot(Player& from) { from.node(kSlotNode) = from.node(from.word()); }

void pass_slot_over(Player& from) { from.word(); }

using Step = void (*)(Player& from);

#define STEP(function, ...) &THE_SERVICE(function, ##__VA_ARGS__)::play,
constexpr Step kCallingSteps[] = {set_slot, SERVICES(STEP, STEP)};
#undef STEP

#define STEP(function, ...) &THE_SERVICE(function, ##__VA_ARGS__)::read,
constexpr Step kReadingSteps[] = {pass_slot_over, SERVICES(STEP, STEP)};
#undef STEP

[[noreturn]] void refuse_to_record() {
  cannot_record("it calls a service that is not among those of recording.cpp");
}

void* recorder_of(std::string_view service, void* address) {
  if (const auto found = kRecorders.find(service); found != kRecorders.end()) {
    return found->second;
  }
  const bool is_service =
      are_in_one_library(address, reinterpret_cast<const void*>(&yfw_map_do_these_match));
  return is_service ? reinterpret_cast<void*>(&refuse_to_record) : address;
}

Player player;

}  // namespace

void record(const std::string& plugin, Recording& recording, const std::function<void()>& map) {
  const RedirectedCalls redirected(plugin, recorder_of);
  Recorder recorder(recording);
  Recorder::active = &recorder;
  map();
  Recorder::active = nullptr;
  recording.entries.push_back(recording.words.size());
  recording.words.shrink_to_fit();
}

cerrno record_entry(yfw_map_leaf_callback callback, yfw_map_ctx* ctx, const nidl_yfw_datatree* in,
                    nidl_yfw_datatree* out) {
  Recorder::active->begin_entry(ctx, out);
  return callback(ctx, in, out);
}

void start_playing(const Recording& recording) {
  player.recording = &recording;
  player.entry = 0;
}

bool played_to_the_end() { return player.entry + 1 == player.recording->entries.size(); }

template <Playing kPlaying>
cerrno play_entry(yfw_map_ctx* ctx, const nidl_yfw_datatree* /*in*/, nidl_yfw_datatree* out) {
  const std::size_t* entry = &player.recording->entries[player.entry++];
  const Word* words = player.recording->words.data();
  player.ctx = ctx;
  player.nodes[kRootNode] = out;
  player.next = words + entry[0];
  const Word* end = words + entry[1];
  while (player.next != end) {
    const Word service = player.word();
    (kPlaying == Playing::kCalls ? kCallingSteps : kReadingSteps)[service](player);
  }
  // What the plug-in frees itself.
  std::free(player.response);
  player.response = nullptr;
  return 0;
}

template cerrno play_entry<Playing::kCalls>(yfw_map_ctx*, const nidl_yfw_datatree*,
                                            nidl_yfw_datatree*);
template cerrno play_entry<Playing::kReading>(yfw_map_ctx*, const nidl_yfw_datatree*,
                                              nidl_yfw_datatree*);

}  // namespace ocifip::bench
