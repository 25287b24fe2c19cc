// The stack behind yfw/stack.h.
#ifndef OCIFIP_HOST_REQUEST_STACK_H_
#define OCIFIP_HOST_REQUEST_STACK_H_

#include <vector>

#include "yfw/stack.h"

struct yfw_itree_stack {
  struct Element {
    const nidl_yfw_datatree* node;
    const nidl_yfw_datatree* second;
  };
  std::vector<Element> elements;
};

#endif  // OCIFIP_HOST_REQUEST_STACK_H_
