// A line on the terminal for users who wait.
#ifndef OCIFIP_TOOL_PROGRESS_LINE_H_
#define OCIFIP_TOOL_PROGRESS_LINE_H_

#include <condition_variable>
#include <mutex>
#include <thread>

#include "ocifip/progress.h"

namespace ocifip::tool {

// Shows progress on standard error, from the second second on, until it is destroyed. Nothing is
// shown when standard error is no terminal.
class ProgressLine {
 public:
  explicit ProgressLine(const Progress& progress);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // Removes the line for good.
  void end();

 private:
  void run();

  const Progress& progress_;
  std::mutex mutex_;
  std::condition_variable ending_;
  bool is_ending_ = false;
  std::thread thread_;  // last: it uses the others
};

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_PROGRESS_LINE_H_
