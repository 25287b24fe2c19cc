#include "mapping/outcomes.h"

#include <cstdint>

#include "result_codes.h"
#include "tree/operations.h"

namespace ocifip {

Outcome outcome_of(Request& request, cerrno result) {
  Outcome outcome;
  if (request.recorder() != nullptr) {
    outcome.text = request.recorder()->text();
  }
  if (result != kOk) {
    outcome.refusal = request.refusal(result);
  } else {
    outcome.notes = request.notes();
  }
  return outcome;
}

bool has_effect(const OutputNode& node) {
  const Place& place = *node.place;
  const std::uint8_t operation = operation_of(node);
  if (node.is_asked_for && node.slots == nullptr) {
    return true;
  }
  const bool is_thing = place.is_list() ? place.role != PlaceRole::kNativeInterface
                                        : place.kind != NodeKind::kContainer && !place.is_key;
  if ((operation == NIDL_YFW_EDIT_WRITE && is_thing) || operation == NIDL_YFW_EDIT_REPLACE ||
      is_deleting(operation)) {
    return true;
  }
  for (const ChildSlot* slot = node.slots; slot != nullptr; slot = slot->next) {
    for (const OutputNode* child = slot->first; child != nullptr; child = child->next) {
      if (OutputTree::is_shown(child) && has_effect(*child)) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace ocifip
