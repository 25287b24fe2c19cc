#include "worker.h"

#include <utility>

namespace ocifip::agent {
namespace {

// After which it is looked again at what all work waits for.
constexpr std::chrono::milliseconds kMoment{2};

}  // namespace

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
  if (!work_.empty() && waiting_ >= work_.size()) {
    const std::size_t size = work_.size();
    has_work_.wait_for(lock, kMoment, [&] { return work_.size() > size; });
    waiting_ = 0;
  }
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
    if (auto work = next()) {
      const Step step = (*work)();
      waiting_ = step == Step::kWaiting ? waiting_ + 1 : 0;
      if (step != Step::kDone) add(std::move(*work));  // behind what others wait for
    }
    const auto deadline = deadline_();
    if (deadline && *deadline <= Clock::now()) expire_();
    const std::lock_guard lock(mutex_);
    if (is_ending_ && work_.empty()) return;
  }
}

}  // namespace ocifip::agent
