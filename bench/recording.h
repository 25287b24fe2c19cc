// The calls that the plug-in makes of the framework while it maps a request, with their arguments;
// and the same calls made again without the plug-in.
#ifndef OCIFIP_BENCH_RECORDING_H_
#define OCIFIP_BENCH_RECORDING_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "request/hierarchy.h"
#include "tree/arena.h"
#include "yfw/context.h"

namespace ocifip::bench {

// Calls in the order in which they were made: the number of each function, then its arguments.
struct Recording {
  std::vector<std::uint32_t> words;
  std::vector<std::size_t> entries;  // where the calls of each call of an entry callback begin
  std::vector<std::uint64_t>
      wide;      // pointers and other long arguments, each once: words tell which
  Arena copies;  // of texts and structures that were handed over
};

// Records what the plug-in calls while `map` runs.
//
//   plugin  file name of the plug-in, which is loaded
//   map     maps the request; it enters the plug-in through record_entry
//
// Ends the process at a call that cannot be recorded.
void record(const std::string& plugin, Recording& recording, const std::function<void()>& map);

// Enters the plug-in while its calls are recorded.
cerrno record_entry(yfw_map_leaf_callback callback, yfw_map_ctx* ctx, const nidl_yfw_datatree* in,
                    nidl_yfw_datatree* out);

// What is done with the calls of a recording that is played.
enum class Playing {
  kCalls,    // they are made
  kReading,  // their arguments are read, and nothing is called: the cost of the playing itself
};

// Plays a recording from its start: what play_entry is called for first are the calls of the first
// entry. The recording outlives it. One at a time.
void start_playing(const Recording& recording);

// Whether all entries of the recording have been played.
bool played_to_the_end();

// Takes the place of an entry callback of the plug-in.
template <Playing kPlaying>
cerrno play_entry(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out);

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_RECORDING_H_
