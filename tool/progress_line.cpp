#include "progress_line.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>

namespace ocifip::tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kPace{200};

// Goes to the start of the line and clears it.
constexpr const char* kClear = "\r\033[K";

std::string describe(const Progress& progress, Clock::duration elapsed) {
  std::string line = std::string("ocifip: ") + progress.stage();
  if (progress.total() != 0) {
    line += ", " + std::to_string(progress.done()) + " of " + std::to_string(progress.total()) +
            " interfaces";
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed);
  return line + ", " + std::to_string(seconds.count()) + " s";
}

}  // namespace

ProgressLine::ProgressLine(const Progress& progress) : progress_(progress) {
  if (isatty(STDERR_FILENO) != 0) thread_ = std::thread([this] { run(); });
}

ProgressLine::~ProgressLine() { end(); }

void ProgressLine::end() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    is_ending_ = true;
  }
  ending_.notify_one();
  thread_.join();
}

void ProgressLine::run() {
  const auto start = Clock::now();
  const auto is_ending = [this] { return is_ending_; };
  std::unique_lock lock(mutex_);
  if (ending_.wait_for(lock, kPatience, is_ending)) return;
  do {
    std::fputs((kClear + describe(progress_, Clock::now() - start)).c_str(), stderr);
  } while (!ending_.wait_for(lock, kPace, is_ending));
  std::fputs(kClear, stderr);
}

}  // namespace ocifip::tool
