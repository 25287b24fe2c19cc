#include "request/stack.h"

#include "guarded.h"

using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kNotFound;
using ocifip::kOk;

extern "C" {

cerrno yfw_map_util_itree_stack_push(yfw_itree_stack* stack, const nidl_yfw_datatree* node,
                                     const nidl_yfw_datatree* second, uint32_t /*reserved*/) {
  if (stack == nullptr || node == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    stack->elements.push_back({node, second});
    return kOk;
  });
}

cerrno yfw_map_util_itree_stack_pop(yfw_itree_stack* stack) {
  if (stack == nullptr || stack->elements.empty()) {
    return kNotFound;
  }
  stack->elements.pop_back();
  return kOk;
}

cerrno yfw_map_util_itree_stack_peak(yfw_itree_stack* stack, const nidl_yfw_datatree** top) {
  if (stack == nullptr || top == nullptr || stack->elements.empty()) {
    return kNotFound;
  }
  *top = stack->elements.back().node;
  return kOk;
}

uint32_t yfw_map_util_itree_stack_size(const yfw_itree_stack* stack) {
  return stack == nullptr ? 0 : static_cast<uint32_t>(stack->elements.size());
}

}  // extern "C"
