// The benchmarks' program: the options of Google Benchmark, a group of measurements, and sizes.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <iostream>
#include <limits>
#include <map>
#include <string>
#include <string_view>

#include "measure.h"

namespace ocifip::bench {
namespace {

struct Measurement {
  const char* what;
  std::function<double()> seconds;
};
std::map<std::size_t, std::vector<Measurement>> measurements;  // by size

// All measurements of a size, one right after the other: they are compared with each other.
void run(benchmark::State& state, const std::vector<Measurement>& all) {
  for ([[maybe_unused]] auto _ : state) {
    for (const Measurement& each : all) {
      state.counters[each.what] = each.seconds();
    }
  }
}

// Keeps what has been freed for what is allocated next, as a process that has run for a while does.
// Otherwise it is chance which of two requests asks the system for its memory.
void keep_freed_memory() {
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
}

// Requests are named as they are, or with "traced-" before it.
void measure_group(std::string_view group, std::size_t size) {
  constexpr std::string_view kTraced = "traced-";
  if (group == "small-edit") {
    measure_small_edit(size);
  } else if (group == "idle-callback") {
    measure_idle_callback();
  } else if (group == "load") {
    measure_load();
  } else {
    const bool traced = group.starts_with(kTraced);
    measure_request(group.substr(traced ? kTraced.size() : 0), traced, size);
  }
}

}  // namespace

void measure(std::size_t size, const char* what, std::function<double()> seconds) {
  measurements[size].push_back({what, std::move(seconds)});
}

}  // namespace ocifip::bench

int main(int count, char** arguments) {
  int status = 0;
  try {
    ocifip::bench::keep_freed_memory();
    benchmark::Initialize(&count, arguments);
    for (int i = 2; i < count; ++i) {
      ocifip::bench::measure_group(arguments[1], std::strtoul(arguments[i], nullptr, 10));
    }
    for (const auto& [size, all] : ocifip::bench::measurements) {
      benchmark::RegisterBenchmark(std::to_string(size).c_str(), ocifip::bench::run, all)
          ->Iterations(1);
    }
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& error) {
    std::cerr << arguments[0] << ": " << error.what() << '\n';
    status = 1;
  }
  // What they keep goes before what they share.
  benchmark::ClearRegisteredBenchmarks();
  ocifip::bench::measurements.clear();
  return status;
}
