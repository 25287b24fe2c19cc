// The thread that does all work on the device, a part of one thing after a part of another.
#ifndef OCIFIP_AGENT_WORKER_H_
#define OCIFIP_AGENT_WORKER_H_

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "core.h"

namespace ocifip::agent {

class Worker {
 public:
  // `deadline` and `expire` are called by the worker's thread: when there is something to do at a
  // time, and to do it.
  Worker(std::function<std::optional<Clock::time_point>()> deadline, std::function<void()> expire);
  // Does all that has been given to it before.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  // May be called from any thread. Work does not throw.
  void add(Work work);

 private:
  void run();
  std::optional<Work> next();

  std::function<std::optional<Clock::time_point>()> deadline_;
  std::function<void()> expire_;
  std::mutex mutex_;
  std::condition_variable has_work_;
  std::deque<Work> work_;
  bool is_ending_ = false;
  std::size_t waiting_ = 0;  // of the works that were last tried, one behind the other
  std::thread thread_;       // the last member: it uses the others
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_WORKER_H_
