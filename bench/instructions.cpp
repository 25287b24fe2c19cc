#include "instructions.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <stdexcept>

#include "measure.h"

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define RUNNING_ON_VALGRIND 0
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

namespace ocifip::bench {
namespace {

constexpr int kClosed = -1;
int counter = kClosed;  // of the processor, while it is asked instead of the clock

// Seconds of processor time of the calling thread: what others do with the machine is not counted.
double cpu_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The instructions of the calling thread, without those of the system. Returns kClosed where there
// is no counter.
int open_counter() {
  perf_event_attr wanted{};
  wanted.size = sizeof wanted;
  wanted.type = PERF_TYPE_HARDWARE;
  wanted.config = PERF_COUNT_HW_INSTRUCTIONS;
  wanted.exclude_kernel = 1;
  wanted.exclude_hv = 1;
  return static_cast<int>(syscall(SYS_perf_event_open, &wanted, 0, -1, -1, 0));
}

double meter() {
  if (counter == kClosed) {
    return cpu_seconds();
  }
  std::uint64_t count = 0;
  if (read(counter, &count, sizeof count) != sizeof count) {
    throw std::runtime_error("the processor's counter cannot be read");
  }
  return static_cast<double>(count);
}

void count_by_processor(const std::string& name, const std::function<double()>& measurement) {
  std::printf("%s %.0f\n", name.c_str(), measurement());
  close(counter);
  counter = kClosed;
}

void count_by_callgrind(const std::string& name, const std::function<double()>& measurement) {
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  measurement();
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  CALLGRIND_STOP_INSTRUMENTATION;
}

}  // namespace

double start_of_measured() {
  const double start = meter();
  CALLGRIND_TOGGLE_COLLECT;
  return start;
}

double end_of_measured() {
  CALLGRIND_TOGGLE_COLLECT;
  return meter();
}

void count_instructions(const std::string& name, const std::function<double()>& measurement) {
  if (RUNNING_ON_VALGRIND != 0) {
    count_by_callgrind(name, measurement);
    return;
  }
  counter = open_counter();
  if (counter == kClosed) {
    throw std::runtime_error("the processor has no counter of instructions that may be read");
  }
  count_by_processor(name, measurement);
}

}  // namespace ocifip::bench
