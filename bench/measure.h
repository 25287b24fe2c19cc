// What is measured, and with which clock.
#ifndef OCIFIP_BENCH_MEASURE_H_
#define OCIFIP_BENCH_MEASURE_H_

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace ocifip::bench {

// Whether instructions are counted, and not seconds: once is enough then.
inline bool counting = false;

// What is measured is enclosed by these. They return seconds, or whatever else is being counted.
double start_of_measured();
double end_of_measured();

// Seconds that one of `times` repetitions of some work takes. What the work returns is kept until
// the time has been taken, so that its destruction is not counted.
template <class Work>
double seconds_of(std::size_t times, const Work& work) {
  std::vector<std::invoke_result_t<Work>> results(times);
  const double start = start_of_measured();
  for (auto& result : results) {
    result = work();
  }
  return (end_of_measured() - start) / static_cast<double>(times);
}

// Has Google Benchmark measure something at a size, under a name. `seconds` does it, and returns
// how long it took once.
void measure(std::size_t size, const char* what, std::function<double()> seconds);

// The groups of measurements, at a size: subinterfaces, or interfaces of the device.
void measure_request(std::string_view request, bool traced, std::size_t size);
void measure_growth(std::size_t size);
void measure_small_edit(std::size_t size);
void measure_idle_callback();
void measure_load();

// Writes the files of whole commands to FOLDER/SIZE: an edit of so many subinterfaces (edit.json,
// edit.xml), what it makes (native.json), a device that has it (subinterfaces.json), a device of so
// many interfaces (interfaces.json) and an edit of one of them (small-edit.json). Throws
// std::runtime_error when a file cannot be written.
void write_files(const std::string& folder, std::size_t size);

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_MEASURE_H_
