#include "mapping/openconfig_read.h"

#include <iterator>
#include <utility>

#include "mapping/mapper.h"

namespace ocifip {
namespace {

// Subinterfaces that are read together, when there are many.
constexpr std::size_t kGroupSize = 200;

void append(std::vector<std::string>& to, std::vector<std::string> from) {
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

}  // namespace

OpenConfigRead::OpenConfigRead(Mapper& mapper, ReadInput read, Format format)
    : mapper_(mapper), read_(std::move(read)), format_(format), text_(format) {
  if (format == Format::kCalls || mapper.options_.trace) return;
  groups_ = read_groups(read_.openconfig.asked, mapper.device_.interface_names(), kGroupSize);
  if (groups_.size() > 1) return;
  if (!groups_.empty()) few_ = std::move(groups_.front().native_names);
  groups_.clear();
}

bool OpenConfigRead::step() {
  const ActiveDevice active(mapper_.device_);
  if (groups_.empty()) {
    const auto* few = few_ ? &*few_ : nullptr;
    const auto& names = few_ ? *few_ : mapper_.device_.interface_names();
    whole_ = mapper_.answer(mapper_.query_of(std::move(read_), names), format_, few);
    return false;
  }
  if (answer_next()) return next_ < groups_.size();
  groups_.clear();
  native_.reset();
  return true;
}

// False when a group cannot be answered by itself.
bool OpenConfigRead::answer_next() {
  const SilentProgress progress(mapper_.framework_.progress);
  if (next_ == 0) {
    progress.begin("reading", groups_);
    native_.emplace(mapper_.device_.device().native.whole());
  }
  const ReadGroup& group = groups_[next_++];
  const auto reply = mapper_.answer_group(read_, group, *native_);
  if (!reply) return false;
  of_queries_.add(reply->query_notes);
  of_replies_.add(reply->reply_notes);
  is_found_ = is_found_ || Mapper::has_content(reply->selected);
  text_.add(reply->selected, of_printing_);
  progress.advance(group);
  return true;
}

Outcome OpenConfigRead::finish() {
  if (groups_.empty()) return std::move(whole_);
  Outcome outcome;
  outcome.text = text_.finish();
  outcome.notes = of_queries_.take();
  append(outcome.notes, of_replies_.take());
  if (!is_found_) outcome.notes.emplace_back(kNothingFound);
  append(outcome.notes, std::move(of_printing_));
  return outcome;
}

}  // namespace ocifip
