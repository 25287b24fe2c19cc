// What a host is at, for users who wait.
#ifndef OCIFIP_PROGRESS_H_
#define OCIFIP_PROGRESS_H_

#include <atomic>
#include <cstddef>

namespace ocifip {

// Told by the thread that works, and looked at by any other. What is read together may belong to
// two stages; the next look tells.
class Progress {
 public:
  // A stage begins. Its name is what is being done, "mapping the request", and is never freed.
  // `total` is its number of interfaces, 0 when it is unknown.
  void begin(const char* stage, std::size_t total = 0) {
    done_ = 0;
    total_ = total;
    stage_ = stage;
  }
  // One more interface of the stage is done.
  void advance() { done_.fetch_add(1, std::memory_order_relaxed); }

  [[nodiscard]] const char* stage() const { return stage_; }
  [[nodiscard]] std::size_t done() const { return done_; }
  [[nodiscard]] std::size_t total() const { return total_; }

 private:
  std::atomic<const char*> stage_{"starting"};
  std::atomic<std::size_t> done_{0};
  std::atomic<std::size_t> total_{0};
};

}  // namespace ocifip

#endif  // OCIFIP_PROGRESS_H_
