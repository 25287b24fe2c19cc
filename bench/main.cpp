// The benchmarks' program: the options of Google Benchmark, a group of measurements, and sizes.
// With `count` before them the measurements' instructions are counted instead; `files FOLDER
// SIZE...` writes the files of whole commands.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <iostream>
#include <limits>
#include <map>
#include <string>
#include <string_view>

#include "instructions.h"
#include "measure.h"

namespace ocifip::bench {
namespace {

struct Measurement {
  const char* what;
  std::function<double()> seconds;
};
std::map<std::size_t, std::vector<Measurement>> measurements;  // by size

// All measurements of a size, one right after the other: they are compared with each other.
void run_once(benchmark::State& state, const std::vector<Measurement>& all) {
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
  if (group == "growth") {
    measure_growth(size);
  } else if (group == "small-edit") {
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

std::size_t number(const std::string& text) { return std::stoul(text); }

// A group of measurements, and sizes.
void set_up(const std::vector<std::string>& names) {
  keep_freed_memory();
  for (std::size_t i = 1; i < names.size(); ++i) {
    measure_group(names[0], number(names[i]));
  }
}

void measure_all() {
  for (const auto& [size, all] : measurements) {
    benchmark::RegisterBenchmark(std::to_string(size).c_str(), run_once, all)->Iterations(1);
  }
  benchmark::RunSpecifiedBenchmarks();
}

// Each is made twice: what the first one does once and for all is not counted.
void count_all() {
  for (const auto& [size, all] : measurements) {
    for (const Measurement& each : all) {
      each.seconds();
      count_instructions(std::to_string(size) + ' ' + each.what, each.seconds);
    }
  }
}

// What comes of the arguments after the options.
void run(const std::vector<std::string>& names) {
  const std::string job = names.empty() ? "" : names[0];
  if (job == "files") {
    for (std::size_t i = 2; i < names.size(); ++i) {
      write_files(names[1], number(names[i]));
    }
  } else if (job == "count") {
    counting = true;
    set_up({names.begin() + 1, names.end()});
    count_all();
  } else {
    set_up(names);
    measure_all();
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
    benchmark::Initialize(&count, arguments);
    ocifip::bench::run({arguments + 1, arguments + count});
  } catch (const std::exception& error) {
    std::cerr << arguments[0] << ": " << error.what() << '\n';
    status = 1;
  }
  // What they keep goes before what they share.
  benchmark::ClearRegisteredBenchmarks();
  ocifip::bench::measurements.clear();
  return status;
}
