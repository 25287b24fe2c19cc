#include "mapping/native_read.h"

#include <chrono>
#include <utility>
#include <vector>

#include "device/native_part.h"
#include "io/document_nodes.h"
#include "mapping/native_input.h"

namespace ocifip {
namespace {

// How long others may have to wait.
constexpr std::chrono::milliseconds kStep{10};

// Asks for all of the native models.
Document all_native(const Document& native) {
  Document all = {native.name, {}};
  for (const DocumentNode& root : native.roots) {
    if (is_native_root(root)) all.roots.push_back(bare(root));
  }
  return all;
}

Document query_of(const NativeConfiguration& native, const ReadInput& read) {
  if (read.is_all_native) return all_native(native.whole());
  return joined(read.values_choose ? read.native.chosen : read.native.asked);
}

const Document& data_for(const Models& models, const NativeConfiguration& native,
                         const ReadInput& read) {
  return read.is_all_native ? native.whole()
                            : part_asked(models, native, joined(read.native.asked));
}

}  // namespace

NativeRead::NativeRead(const Models& models, const NativeConfiguration& native,
                       const ReadInput& read)
    : query_(query_of(native, read)),
      selection_(
          data_for(models, native, read), query_,
          {.values_choose = read.values_choose, .with_state = read.content != Content::kConfig}) {}

bool NativeRead::step() {
  std::vector<SelectedPart> parts;
  const bool has_more = selection_.go_on(SelectionInSteps::Clock::now() + kStep, parts);
  for (SelectedPart& part : parts) {
    switch (part.kind) {
      case SelectedPart::Kind::kNodes:
        printer_.add(part.nodes);
        break;
      case SelectedPart::Kind::kBegin:
        printer_.begin(std::move(part.nodes.front()));
        break;
      case SelectedPart::Kind::kEnd:
        printer_.end();
        break;
    }
  }
  return has_more;
}

Outcome NativeRead::finish() {
  outcome_.text = printer_.take();
  return std::move(outcome_);
}

}  // namespace ocifip
