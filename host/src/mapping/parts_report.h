// What users are told of a request that is carried out part by part.
#ifndef OCIFIP_HOST_MAPPING_PARTS_REPORT_H_
#define OCIFIP_HOST_MAPPING_PARTS_REPORT_H_

#include <cstddef>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "mapping/read_groups.h"
#include "ocifip/progress.h"

namespace ocifip {

// Remarks on the parts of a request, each once, as a request has them.
class Remarks {
 public:
  void add(const std::vector<std::string>& notes) {
    for (const std::string& note : notes) {
      if (known_.insert(note).second) notes_.push_back(note);
    }
  }

  std::vector<std::string> take() { return std::move(notes_); }

 private:
  std::vector<std::string> notes_;
  std::unordered_set<std::string> known_;
};

// Progress by interfaces that are done with, instead of the steps for each group of them.
class SilentProgress {
 public:
  explicit SilentProgress(Progress*& progress)
      : place_(progress), progress_(std::exchange(progress, nullptr)) {}
  ~SilentProgress() { place_ = progress_; }
  SilentProgress(const SilentProgress&) = delete;
  SilentProgress& operator=(const SilentProgress&) = delete;

  void begin(const char* stage, const std::vector<ReadGroup>& groups) const {
    std::size_t count = 0;
    for (const ReadGroup& group : groups) count += group.interfaces.size();
    if (progress_ != nullptr) progress_->begin(stage, count);
  }
  void advance(const ReadGroup& group) const {
    for (std::size_t i = 0; progress_ != nullptr && i < group.interfaces.size(); ++i) {
      progress_->advance();
    }
  }

 private:
  Progress*& place_;
  Progress* progress_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_PARTS_REPORT_H_
