// Looks into the calls that a loaded library makes of other libraries.
#ifndef OCIFIP_BENCH_REDIRECTED_CALLS_H_
#define OCIFIP_BENCH_REDIRECTED_CALLS_H_

#include <span>
#include <utility>
#include <vector>

namespace ocifip::bench {

struct Redirection {
  const char* function;
  void* to;
};

// Redirects calls of a library for as long as it lives. The library's file is the one that is
// shipped, and once this is gone its calls are direct again: it is measured as it is.
class RedirectedCalls {
 public:
  //   library       handle of the library
  //   redirections  functions of other libraries, and where calls of them go instead
  //   provider      if given, a function of the library whose other functions, which are not
  //                 redirected, `others` takes the place of
  //
  // Throws std::runtime_error.
  RedirectedCalls(void* library, std::span<const Redirection> redirections,
                  const void* provider = nullptr, void* others = nullptr);
  ~RedirectedCalls();
  RedirectedCalls(const RedirectedCalls&) = delete;
  RedirectedCalls& operator=(const RedirectedCalls&) = delete;

 private:
  std::vector<std::pair<void**, void*>> former_;  // the places written to, and what was there
};

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_REDIRECTED_CALLS_H_
