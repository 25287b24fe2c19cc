// What is measured, and with which clock.
#ifndef OCIFIP_BENCH_MEASURE_H_
#define OCIFIP_BENCH_MEASURE_H_

#include <cstddef>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace ocifip::bench {

// Seconds of processor time of the calling thread: what others do with the machine is not counted.
inline double cpu_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Seconds that one of `times` repetitions of some work takes. What the work returns is kept until
// the time has been taken, so that its destruction is not counted.
template <class Work>
double seconds_of(std::size_t times, const Work& work) {
  std::vector<std::invoke_result_t<Work>> results(times);
  const double start = cpu_seconds();
  for (auto& result : results) {
    result = work();
  }
  return (cpu_seconds() - start) / static_cast<double>(times);
}

// Has Google Benchmark measure something at a size, under a name. `seconds` does it, and returns
// how long it took once.
void measure(std::size_t size, const char* what, std::function<double()> seconds);

// The groups of measurements, at a size: subinterfaces, or interfaces of the device.
void measure_request(std::string_view request, bool traced, std::size_t size);
void measure_small_edit(std::size_t size);
void measure_idle_callback();
void measure_load();

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_MEASURE_H_
