// A request that is mapped again and again, by the plug-in or by others in its place.
#ifndef OCIFIP_BENCH_JOB_H_
#define OCIFIP_BENCH_JOB_H_

#include <optional>
#include <string>
#include <vector>

#include "device/device_directory.h"
#include "device/subinterface_name.h"
#include "io/models.h"
#include "mapping/plugin.h"
#include "recording.h"
#include "request/input_tree.h"
#include "request/request.h"
#include "tree/path_cache.h"

namespace ocifip::bench {

// What every request needs.
struct Platform {
  Models models{OCIFIP_MODELS_DIR};
  Plugin plugin{OCIFIP_PLUGIN};
  PathCache paths{models};
};

// The one that all share, loaded when it is asked for first.
Platform& platform();

// Who answers when the host enters the plug-in.
enum class Mapping {
  kPlugin,   // the plug-in
  kFloor,    // the calls that the plug-in made of the framework, played from a recording
  kReading,  // the same without the calls: what the playing costs
};

enum class Direction { kToNative, kToOpenConfig };

// What makes a request, besides the device.
struct JobRequest {
  Document document;
  RequestSettings settings = {};
  Direction direction = Direction::kToNative;
  std::vector<SubinterfaceName> entered = {};  // subinterfaces that the output begins with
};

class Job {
 public:
  // The device outlives the job.
  Job(const DeviceDirectory& device, JobRequest request);

  // Maps the request a number of times. Returns the seconds that one mapping takes, from the first
  // entry to the last return; trees that are read and made before and after are not counted.
  double seconds(Mapping mapping, std::size_t times);

  // What the request is mapped to, printed.
  std::string result(Mapping mapping, Format format);

 private:
  // Makes fresh requests and has `work(runs, map)` done; `map(run)` maps one of them.
  template <class Work>
  void with_requests(Mapping mapping, std::size_t times, const Work& work);
  template <class Work>
  void with_requests(const PluginEntries& entries, std::size_t times, const Work& work);
  // The recorded calls of the plug-in; they are recorded when they are needed first.
  const Recording& recording();

  const DeviceDirectory& device_;
  JobRequest request_;
  InputTree input_;
  std::optional<Recording> recording_;
};

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_JOB_H_
