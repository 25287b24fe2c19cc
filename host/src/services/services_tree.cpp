// Building output trees, for yfw/mapping.h.
#include <string>
#include <string_view>

#include "guarded.h"
#include "request/placement.h"
#include "request/request.h"
#include "yfw/mapping.h"

namespace ocifip {
namespace {

std::string_view or_empty(const char* text) { return text == nullptr ? "" : text; }

void store(nidl_yfw_datatree** where, OutputNode* node) {
  if (where != nullptr) {
    *where = &node->head;
  }
}

cerrno add_path(Request& request, const PathWrite& write, nidl_yfw_datatree** created) {
  request.forget_error_line();
  OutputNode* node = nullptr;
  const cerrno result = Placement(request).write(write, &node);
  if (result == kOk) {
    store(created, node);
  }
  return result;
}

struct ListSearch {
  OutputNode* base;
  std::string_view list_path;
  std::string_view key;
  std::string_view value;
  std::string_view module_namespace;
};

// Goes to the node that holds the list: null when something on the way is absent and not made.
OutputNode* parent_of_list(Placement& placement, const Start& start, bool make) {
  OutputNode* node = start.node;
  for (const Place* step : start.steps.first(start.steps.size() - 1)) {
    node = make ? placement.through(node, step) : placement.existing(node, step);
  }
  return node;
}

// Finds an entry by one key, or makes it.
cerrno find_entry(Request& request, const ListSearch& search, bool make,
                  nidl_yfw_datatree** found) {
  Placement placement(request);
  const auto start = placement.start_at(search.base, search.list_path, search.module_namespace);
  if (!start || start->steps.empty()) {
    return kPathMalformed;
  }
  const Place* list = start->steps.back();
  request.paths().declare_list(list, search.key);
  const Place* key = request.paths().child(list, search.key, list->module_namespace);
  if (!list->is_list() || !key->is_key) {
    return kInvalidArgument;
  }
  OutputNode* parent = parent_of_list(placement, *start, make);
  OutputTree& tree = request.output();
  OutputNode* entry = tree.find_entry_by_key(parent, list, key, search.value);
  if (entry == nullptr && make) {
    entry = tree.name_entry(tree.add_entry(parent, list), key, search.value);
    OutputTree::show(entry);
  }
  if (entry == nullptr) {
    return kNotFound;
  }
  tree.make_current(entry);
  store(found, entry);
  return kOk;
}

cerrno run_search(yfw_map_ctx* ctx, nidl_yfw_datatree* base, nidl_yfw_datatree** found,
                  const char* list_path, const char* key_value, const char* key_leaf,
                  const char* module_namespace, bool make) {
  if (base == nullptr || list_path == nullptr || key_value == nullptr || key_leaf == nullptr) {
    return kInvalidArgument;
  }
  const ListSearch search{OutputTree::node_of(base), list_path, key_leaf, key_value,
                          or_empty(module_namespace)};
  return guarded([&] { return find_entry(Request::of(ctx), search, make, found); });
}

}  // namespace
}  // namespace ocifip

using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kOk;
using ocifip::OutputTree;
using ocifip::Request;

extern "C" {

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx* ctx, nidl_yfw_datatree* base,
                                         const char* path, const char* module_namespace,
                                         const char* value, const nidl_yfw_datatree* delete_source,
                                         nidl_yfw_datatree** created, uint32_t create,
                                         uint32_t flags) {
  return guarded([&] {
    Request& request = Request::of(ctx);
    cerrno result = kInvalidArgument;
    if (base != nullptr && path != nullptr && module_namespace != nullptr) {
      const ocifip::PathWrite write{.base = OutputTree::node_of(base),
                                    .path = path,
                                    .module_namespace = module_namespace,
                                    .value = value,
                                    .source = delete_source,
                                    .create = create != 0,
                                    .flags = flags};
      result = ocifip::add_path(request, write, created);
    }
    if (auto* recorder = request.recorder()) {
      recorder->add_path(module_namespace, path, value, delete_source, create, flags,
                         request.trim_prefix(), result);
    }
    return result;
  });
}

cerrno yfw_map_search_list(yfw_map_ctx* ctx, nidl_yfw_datatree* base, nidl_yfw_datatree** found,
                           const char* list_path, const char* key_value, const char* key_leaf,
                           const char* module_namespace) {
  return ocifip::run_search(ctx, base, found, list_path, key_value, key_leaf, module_namespace,
                            false);
}

cerrno yfw_map_search_or_add_list(yfw_map_ctx* ctx, nidl_yfw_datatree* base,
                                  nidl_yfw_datatree** found, const char* list_path,
                                  const char* key_value, const char* key_leaf,
                                  const char* module_namespace) {
  return ocifip::run_search(ctx, base, found, list_path, key_value, key_leaf, module_namespace,
                            true);
}

cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx* ctx, const char* prefix) {
  if (prefix == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    Request::of(ctx).set_trim_prefix(prefix);
    return kOk;
  });
}

void yfw_map_free_trim_path_list_ctx(yfw_map_ctx* ctx) { Request::of(ctx).set_trim_prefix({}); }

}  // extern "C"
