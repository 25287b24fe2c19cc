// The node hierarchy, the output list, request kinds and the error path, for yfw/mapping.h.
#include <limits>
#include <string_view>

#include "guarded.h"
#include "request/request.h"
#include "tree/operations.h"
#include "yfw/mapping.h"

namespace ocifip {
namespace {

bool same(const char* first, const char* second) {
  return first == nullptr || second == nullptr ? first == second
                                               : std::string_view(first) == second;
}

bool is_leaf(const InputNode& node) {
  return node.kind == NIDL_YFW_KIND_LEAF || node.kind == NIDL_YFW_KIND_LEAF_LIST;
}

// Whether every key of an entry with a value agrees with the leaf that it refers to. A leaf without
// a value, as a delete names it, disagrees with nothing.
bool agrees_with_leaf(const InputNode& entry, const InputNode& container, const char* key_value) {
  for (const InputNode& key : children_of(entry)) {
    if (!is_leaf(key) || key.tag == nullptr || !same(key.value, key_value)) {
      continue;
    }
    const InputNode* leaf = find_child(container, key.tag);
    if (leaf != nullptr && leaf->value != nullptr && !same(leaf->value, key_value)) {
      return false;
    }
  }
  return true;
}

cerrno look_up_leaf(Request& request, const char* list_path, const char* leaf, const char** value) {
  const InputNode* node = request.hierarchy().find(request.paths().without_prefixes(list_path));
  if (node == nullptr) {
    return kNotFound;
  }
  const InputNode* found = find_child(*node, leaf);
  *value = nullptr;
  if (found != nullptr) {
    *value = found->value == nullptr ? "" : found->value;
  }
  return kOk;
}

}  // namespace
}  // namespace ocifip

using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kListKey;
using ocifip::kOk;
using ocifip::kUnbalanced;
using ocifip::Request;

extern "C" {

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx* ctx, const nidl_yfw_datatree* node,
                                     uint32_t kind) {
  if (node == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    Request::of(ctx).forget_error_line();
    Request::of(ctx).hierarchy().push(*node, kind);
    return kOk;
  });
}

cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx* ctx, const nidl_yfw_datatree* node) {
  if (node == nullptr) {
    return kInvalidArgument;
  }
  return Request::of(ctx).hierarchy().pop(*node) ? kOk : kUnbalanced;
}

cerrno yfw_map_update_current_list_node(yfw_map_ctx* ctx, const char* list_path) {
  if (list_path == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    Request& request = Request::of(ctx);
    return request.hierarchy().make_current(request.paths().without_prefixes(list_path))
               ? kOk
               : kInvalidArgument;
  });
}

cerrno yfw_map_get_node_info(yfw_map_ctx* ctx, const char* list_path, const char* leaf,
                             const char** value) {
  if (list_path == nullptr || leaf == nullptr || value == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] { return ocifip::look_up_leaf(Request::of(ctx), list_path, leaf, value); });
}

cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* ctx, const nidl_yfw_datatree* entry,
                                  nidl_yfw_datatree* out) {
  if (entry == nullptr || out == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    Request& request = Request::of(ctx);
    // An entry beyond what the depth can count is not taken.
    if (request.state().output_list_depth < std::numeric_limits<uint8_t>::max()) {
      request.output_list().push_back(entry);
      ++request.state().output_list_depth;
    }
    return kOk;
  });
}

cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* ctx, const nidl_yfw_datatree* entry,
                                       nidl_yfw_datatree* out) {
  Request& request = Request::of(ctx);
  auto& list = request.output_list();
  if (entry == nullptr || out == nullptr || list.empty() || list.back() != entry) {
    return kUnbalanced;
  }
  list.pop_back();
  --request.state().output_list_depth;
  return kOk;
}

int yfw_map_is_request_add(yfw_map_ctx* ctx, const nidl_yfw_datatree* node,
                           nidl_yfw_datatree* /*out*/) {
  return node != nullptr && Request::of(ctx).is_edit() &&
         (node->edit_operation == NIDL_YFW_EDIT_WRITE ||
          node->edit_operation == NIDL_YFW_EDIT_REPLACE);
}

int yfw_map_is_request_delete(const nidl_yfw_datatree* node) {
  return node != nullptr && ocifip::is_deleting(node->edit_operation);
}

cerrno yfw_map_check_oc_leafref(yfw_map_ctx* /*ctx*/, const char* /*list_path*/,
                                const char* container, const char* key_value,
                                const nidl_yfw_datatree* entry) {
  if (container == nullptr || entry == nullptr) {
    return kInvalidArgument;
  }
  const nidl_yfw_datatree* node = ocifip::find_child(*entry, container);
  return node == nullptr || ocifip::agrees_with_leaf(*entry, *node, key_value) ? kOk : kListKey;
}

void yfw_oc_error_path(yfw_map_ctx* ctx) {
  guarded([&] {
    Request::of(ctx).mark_error_path();
    return kOk;
  });
}

}  // extern "C"
