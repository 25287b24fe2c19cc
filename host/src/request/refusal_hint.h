// What helps to understand a refusal, beside the mapping's own sentence.
#ifndef OCIFIP_HOST_REQUEST_REFUSAL_HINT_H_
#define OCIFIP_HOST_REQUEST_REFUSAL_HINT_H_

#include <span>
#include <string>
#include <string_view>

#include "io/models.h"
#include "request/hierarchy.h"
#include "yfw/cerrno.h"

namespace ocifip {

// A sentence for Refusal::hint, or "".
//
//   nodes  of the input, from the top down to those being walked
//   tag    of the child that is refused, or ""
std::string refusal_hint(const Models& models, cerrno code, std::span<const InputNode* const> nodes,
                         std::string_view tag);

// Whether the innermost entry of some nodes is without a key.
bool is_key_missing(std::span<const InputNode* const> nodes, std::string_view key);

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_REFUSAL_HINT_H_
