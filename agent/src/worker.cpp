#include "worker.h"

#include <utility>

namespace ocifip::agent {

Worker::Worker(std::function<std::optional<Clock::time_point>()> deadline,
               std::function<void()> expire)
    : deadline_(std::move(deadline)), expire_(std::move(expire)), thread_([this] { run(); }) {}

Worker::~Worker() {
  {
    const std::lock_guard lock(mutex_);
    is_ending_ = true;
  }
  has_work_.notify_one();
  thread_.join();
}

void Worker::add(Work work) {
  {
    const std::lock_guard lock(mutex_);
    work_.push_back(std::move(work));
  }
  has_work_.notify_one();
}

// Nothing when it is time to do what has a time, or to end.
std::optional<Work> Worker::next() {
  const auto deadline = deadline_();
  std::unique_lock lock(mutex_);
  const auto is_due = [this] { return !work_.empty() || is_ending_; };
  if (deadline) {
    has_work_.wait_until(lock, *deadline, is_due);
  } else {
    has_work_.wait(lock, is_due);
  }
  if (work_.empty()) return std::nullopt;
  Work work = std::move(work_.front());
  work_.pop_front();
  return work;
}

void Worker::run() {
  for (;;) {
    auto work = next();
    if (work && (*work)()) add(std::move(*work));  // behind what others wait for
    const auto deadline = deadline_();
    if (deadline && *deadline <= Clock::now()) expire_();
    const std::lock_guard lock(mutex_);
    if (is_ending_ && work_.empty()) return;
  }
}

}  // namespace ocifip::agent
