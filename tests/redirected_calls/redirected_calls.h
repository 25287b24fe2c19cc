// Looks into the calls that a loaded library makes of other libraries.
#ifndef OCIFIP_TESTS_REDIRECTED_CALLS_H_
#define OCIFIP_TESTS_REDIRECTED_CALLS_H_

#include <link.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ocifip {

// Whether two addresses are in one library.
bool are_in_one_library(const void* first, const void* second);

// Redirects references of a library for as long as it lives, and no longer than the library is
// loaded. The library's file is the one that is shipped, and once this is gone its calls are direct
// again.
class RedirectedCalls {
 public:
  // Is given a symbol of another library that this one refers to, and its address, null for none,
  // and gives the address that takes its place, which may be the same.
  using Redirect = std::function<void*(std::string_view symbol, void* address)>;

  // The library's file. Throws std::runtime_error when it is not loaded, and whatever `redirect`
  // throws, with all references as they were.
  RedirectedCalls(const std::string& library, const Redirect& redirect);
  ~RedirectedCalls() { restore(); }
  RedirectedCalls(const RedirectedCalls&) = delete;
  RedirectedCalls& operator=(const RedirectedCalls&) = delete;

 private:
  void redirect_table(const link_map& library, std::int64_t table, std::int64_t size,
                      const Redirect& redirect);
  void restore();

  std::vector<std::pair<void**, void*>> former_;  // the places written to, and what was there
};

}  // namespace ocifip

#endif  // OCIFIP_TESTS_REDIRECTED_CALLS_H_
