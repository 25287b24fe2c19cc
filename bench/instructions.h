// Counting of instructions: where others have work for the machine, or its clock wavers, they tell
// more than times.
#ifndef OCIFIP_BENCH_INSTRUCTIONS_H_
#define OCIFIP_BENCH_INSTRUCTIONS_H_

#include <functional>
#include <string>

namespace ocifip::bench {

// Has a measurement made, and its instructions counted instead of its seconds. The processor's
// counter does it, and a line with the name and the number goes to standard output. Where the
// system has none, callgrind does, which the program was started with (--instr-atstart=no
// --collect-atstart=no): it writes a profile that the name triggers. Otherwise an error,
// std::runtime_error.
void count_instructions(const std::string& name, const std::function<double()>& measurement);

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_INSTRUCTIONS_H_
