#include "job.h"

#include <array>
#include <deque>
#include <stdexcept>
#include <utility>

#include "io/print_document.h"
#include "mapping/map_input.h"
#include "mapping/read_back.h"
#include "mapping/subinterfaces.h"
#include "measure.h"
#include "result_codes.h"
#include "tree/output_document.h"

namespace ocifip::bench {
namespace {

// The plug-in's entries with others in their places.
template <class Replace>
PluginEntries replaced(PluginEntries entries, const Replace& replace) {
  for (yfw_map_leaf_callback* entry : entries.parts()) {
    *entry = replace(*entry);
  }
  return entries;
}

PluginEntries answered_by(const PluginEntries& entries, yfw_map_leaf_callback answer) {
  return replaced(entries, [answer](yfw_map_leaf_callback) { return answer; });
}

// A callback has no room for what stands behind it, so that each has a function of its own.
constexpr std::size_t kMostEntries = 32;
std::array<yfw_map_leaf_callback, kMostEntries> recorded;

template <std::size_t kIndex>
cerrno recording_entry(yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out) {
  return record_entry(recorded[kIndex], ctx, in, out);
}

template <std::size_t... kIndexes>
PluginEntries recording_all(const PluginEntries& entries, std::index_sequence<kIndexes...>) {
  static constexpr std::array kEntries{&recording_entry<kIndexes>...};
  std::size_t count = 0;
  return replaced(entries, [&](yfw_map_leaf_callback callback) {
    recorded.at(count) = callback;
    return kEntries[count++];
  });
}

}  // namespace

Platform& platform() {
  static Platform platform;
  return platform;
}

Job::Job(const DeviceDirectory& device, JobRequest request)
    : device_(device),
      request_(std::move(request)),
      input_(request_.document, request_.settings.operation) {}

template <class Work>
void Job::with_requests(const PluginEntries& entries, std::size_t times, const Work& work) {
  const ActiveDevice active(device_);
  const Framework framework{platform().models, platform().paths, entries.augments};
  std::deque<Request> runs;
  for (std::size_t i = 0; i < times; ++i) {
    enter_subinterfaces(runs.emplace_back(framework, input_, request_.settings), request_.entered);
  }
  work(runs, [&](Request& run) {
    return request_.direction == Direction::kToNative ? map_input(run, entries.openconfig)
                                                      : read_back(run, entries.read_back);
  });
}

template <class Work>
void Job::with_requests(Mapping mapping, std::size_t times, const Work& work) {
  const PluginEntries& plugin = platform().plugin.entries();
  if (mapping == Mapping::kPlugin) {
    with_requests(plugin, times, work);
    return;
  }
  const Recording& played = recording();
  const auto play =
      mapping == Mapping::kFloor ? play_entry<Playing::kCalls> : play_entry<Playing::kReading>;
  with_requests(answered_by(plugin, play), times, [&](auto& runs, const auto& map) {
    work(runs, [&](Request& run) {
      start_playing(played);
      const cerrno result = map(run);
      return played_to_the_end() ? result : kInvalidArgument;
    });
  });
}

const Recording& Job::recording() {
  if (!recording_) {
    // What the plug-in does once and for all is no request's.
    seconds(Mapping::kPlugin, 1);
    recording_.emplace();
    with_requests(
        recording_all(platform().plugin.entries(), std::make_index_sequence<kMostEntries>()), 1,
        [&](auto& runs, const auto& map) {
          record(OCIFIP_PLUGIN, *recording_, [&] { map(runs.front()); });
        });
  }
  return *recording_;
}

double Job::seconds(Mapping mapping, std::size_t times) {
  double seconds = 0;
  cerrno result = kOk;
  with_requests(mapping, times, [&](auto& runs, const auto& map) {
    auto run = runs.begin();
    seconds = seconds_of(times, [&] { return result |= map(*run++); });
  });
  if (result != kOk) {
    throw std::runtime_error("a request of the benchmarks was refused");
  }
  return seconds;
}

std::string Job::result(Mapping mapping, Format format) {
  std::string text;
  with_requests(mapping, 1, [&](auto& runs, const auto& map) {
    map(runs.front());
    std::vector<std::string> notes;
    text = print_document(to_document(runs.front().output(), "result"), format, notes);
  });
  return text;
}

}  // namespace ocifip::bench
