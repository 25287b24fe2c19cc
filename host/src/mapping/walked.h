// The nodes that the host itself walks on the way to those that the plug-in does.
#ifndef OCIFIP_HOST_MAPPING_WALKED_H_
#define OCIFIP_HOST_MAPPING_WALKED_H_

#include "request/request.h"
#include "result_codes.h"
#include "yfw/mapping.h"
#include "yfw/stack.h"

namespace ocifip {

// A list that is walked by the host: the path by which its current entry is recorded, and its key.
struct WalkedList {
  const char* path;
  const char* key;
};

// A node being walked, for as long as it lives.
class Walked {
 public:
  Walked(Request& request, const InputNode& container) : request_(request), node_(container) {
    yfw_map_add_to_node_hierarchy(request.context(), &node_, YFW_MAP_HIERARCHY_CONTAINER);
  }
  Walked(Request& request, const InputNode& entry, const WalkedList& list)
      : request_(request), node_(entry) {
    yfw_map_add_to_node_hierarchy(request.context(), &node_, YFW_MAP_HIERARCHY_LIST_ENTRY);
    yfw_map_update_current_list_node(request.context(), list.path);
    remembered_ =
        yfw_map_util_itree_stack_push(request.state().visited_entries, &node_, nullptr, 0) == kOk;
  }
  ~Walked() {
    if (remembered_) {
      yfw_map_util_itree_stack_pop(request_.state().visited_entries);
    }
    yfw_map_remove_from_node_hierarchy(request_.context(), &node_);
  }
  Walked(const Walked&) = delete;
  Walked& operator=(const Walked&) = delete;

 private:
  Request& request_;
  const InputNode& node_;
  bool remembered_ = false;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_WALKED_H_
