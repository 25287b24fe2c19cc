// The part of the mapper that finds what becomes of a device by an edit.
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

#include "device/edit_overlap.h"
#include "device/native_edit.h"
#include "io/difference.h"
#include "io/print_document.h"
#include "mapping/mapper.h"

namespace ocifip {
namespace {

// Of one kind that are told.
constexpr std::size_t kMostRefusals = 10;

// What refuses an edit before anything is applied.
std::vector<Refusal> find_refusals(const EditInput& input, const Document& mapped,
                                   EditCycle& cycle) {
  if (auto refusal = find_deleted_key(input.native)) return {*refusal};
  if (auto refusal = cycle.find_misplaced()) return {*refusal};
  return find_overlaps(mapped, input.native, kMostRefusals);
}

}  // namespace

EditedDevice Mapper::change(const EditRequest& request, Views views, Format format) {
  const ActiveDevice active(device_);
  EditInput input = read_edit(models_, request, InputRules(options_), views);
  check_device(input.openconfig);
  check_device(input.native);
  EditedDevice edited;
  try {
    make_change(input, format, edited);
  } catch (ReadRefused& refused) {
    edited.refusals.push_back(std::move(refused.refusal));
  }
  if (!edited.refusals.empty()) {
    const bool has_calls = format == Format::kCalls;
    const std::string calls = has_calls ? std::move(edited.outcome.text) : std::string();
    edited = {{calls, edited.refusals.front(), {}}, std::move(edited.refusals), {}, {}, {}};
  }
  return edited;
}

// Native nodes come first, so that what they create is not there for what the mapping writes.
void Mapper::make_change(EditInput& input, Format format, EditedDevice& edited) {
  // What a list holds of others is asked while the edit is mapped.
  const Document& former = device_.device().native.whole();
  EditCycle cycle(framework_, plugin_, device_, reads_);
  MappedEdit mapped;
  const bool is_native = input.openconfig.roots.empty() && !input.native.roots.empty();
  if (!is_native) mapped = map_edit(input, format, EditCycle::Purpose::kDevice, cycle);
  edited.outcome = std::move(mapped.outcome);
  edited.refusals = edited.outcome.refusal ? std::vector{*edited.outcome.refusal}
                                           : find_refusals(input, mapped.native, cycle);
  if (!edited.refusals.empty()) return;
  const std::array edits = {
      NativeEdit{input.native, {}, true},
      NativeEdit{mapped.native, [&](const void* cause, const Refusal& refusal) {
                   return cycle.judge_deletion(cause, refusal);
                 }}};
  EditedNative result = edit_native(models_, former, edits);
  if (result.refusal) {
    edited.refusals.push_back(std::move(*result.refusal));
    return;
  }
  edited.difference = difference(former, result.native);
  if (edited.difference.roots.empty()) {
    edited.outcome.notes.emplace_back("nothing changed on the device");
  } else {
    edited.native = std::make_shared<const Document>(std::move(result.native));
  }
  if (auto refusal = find_left(cycle, edited)) edited.refusals.push_back(std::move(*refusal));
  edited.native_edit = std::move(input.native);
  auto& roots = edited.native_edit.roots;
  roots.insert(roots.begin(), std::make_move_iterator(mapped.native.roots.begin()),
               std::make_move_iterator(mapped.native.roots.end()));
}

// The refusal of a deletion of what the device shows all the same after the edit.
std::optional<Refusal> Mapper::find_left(const EditCycle& cycle, const EditedDevice& edited) const {
  if (!cycle.deletes_entries()) return std::nullopt;
  if (!edited.native) return cycle.find_left(reads_);
  Device device = device_.device();
  device.native = NativeConfiguration(edited.native);
  const DeviceDirectory directory(std::move(device));
  const ActiveDevice active(directory);
  const Mapper reader(models_, directory, plugin_, options_);
  return cycle.find_left(reader.reads_);
}

EditedDevice Mapper::apply(const EditRequest& request, Format format) {
  EditedDevice edited = change(request, Views::kOpenConfig, format);
  if (edited.outcome.refusal) return edited;
  if (format == Format::kTree) {
    edited.outcome.text = print_changes(edited.difference, device_.device().native.whole());
  } else if (format != Format::kCalls) {
    edited.outcome.text = print_document(edited.difference, format, edited.outcome.notes);
  }
  return edited;
}

}  // namespace ocifip
