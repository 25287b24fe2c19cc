// Work that may take too much, in a process of its own.
#ifndef OCIFIP_AGENT_LIMITED_PROCESS_H_
#define OCIFIP_AGENT_LIMITED_PROCESS_H_

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "descriptor.h"

namespace ocifip::agent {

// A copy of this process, which sees its memory as it is now, and nothing of its files. It has the
// calling thread alone.
class LimitedProcess {
 public:
  struct Limits {
    std::chrono::seconds processor_time;  // of the wall clock, twice as much
    std::size_t more_memory;              // bytes, beside what there is
  };

  // Begins. What `work` returns is the result; nothing else of what it does is seen. It must not
  // wait for other threads, and ends with its parent. Throws OperationError when the system has no
  // process for it.
  LimitedProcess(const std::function<std::string()>& work, const Limits& limits);
  // Ends the process.
  ~LimitedProcess();
  LimitedProcess(const LimitedProcess&) = delete;
  LimitedProcess& operator=(const LimitedProcess&) = delete;

  // Takes what it says, and waits for that as long as this. Whether it goes on.
  bool goes_on(std::chrono::milliseconds patience);
  // The result, when it does not; nothing when it has ended without one.
  std::optional<std::string> result();

  // How many there are.
  static int count() { return count_; }

 private:
  static std::atomic<int> count_;

  pid_t process_ = -1;
  Descriptor output_;
  std::string result_;
  bool has_ended_ = false;
  std::chrono::steady_clock::time_point deadline_;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_LIMITED_PROCESS_H_
