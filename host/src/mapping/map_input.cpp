#include "mapping/map_input.h"

#include "result_codes.h"

namespace ocifip {

cerrno map_input(Request& request, yfw_map_leaf_callback entry) {
  cerrno result = kOk;
  for (const InputNode& root : request.input().roots()) {
    result = entry(request.context(), &root, request.out());
    if (result != kOk) {
      break;
    }
  }
  return result;
}

}  // namespace ocifip
