// The border between the host's C++ and the C functions that it offers.
#ifndef OCIFIP_HOST_GUARDED_H_
#define OCIFIP_HOST_GUARDED_H_

#include <utility>

#include "result_codes.h"

namespace ocifip {

// Runs a service's work. No exception leaves a C function: what can be thrown inside is a want of
// memory, for which the service fails.
template <class Work>
cerrno guarded(Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return kNoMemory;
  }
}

}  // namespace ocifip

#endif  // OCIFIP_HOST_GUARDED_H_
