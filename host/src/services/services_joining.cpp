// Mirrored leaves, stitching and path operations, for yfw/mapping.h.
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "guarded.h"
#include "io/instance_steps.h"
#include "request/placement.h"
#include "request/request.h"
#include "yfw/mapping.h"

namespace ocifip {
namespace {

// Codes of the request records.
constexpr std::uint32_t kMakeCurrent = 2;
constexpr std::uint32_t kAddLeaf = 3;

// --- mirrored leaves -----------------------------------------------------------------------------

// The key that the interface and the subinterface being walked give to the list of a step; its data
// is null for another step.
struct WalkedKey {
  std::string_view step;
  std::string_view key;
  const char* value = nullptr;
};

WalkedKey walked_key(Request& request, std::string_view step) {
  const WalkedKey keys[] = {{"/interface", "name", request.state().current_ifname},
                            {"/subinterface", "index", request.state().current_subif_index}};
  for (const WalkedKey& key : keys) {
    if (key.step == step && key.value[0] != '\0') {
      return key;
    }
  }
  return {};
}

OutputNode* mirror_step(Request& request, OutputNode* parent, std::string_view step,
                        std::string_view module_namespace) {
  PathCache& paths = request.paths();
  const Place* place = paths.child(parent->place, step.substr(1), module_namespace);
  const WalkedKey key = walked_key(request, step);
  if (key.value == nullptr) {
    return Placement(request).through(parent, place);
  }
  paths.declare_list(place, key.key);
  const std::string_view value = key.value;
  return place->is_list() && place->keys.size() == 1
             ? request.output().entry(parent, place, {&value, 1})
             : Placement(request).through(parent, place);
}

bool is_step(const char* step) { return step != nullptr && step[0] == '/' && step[1] != '\0'; }

cerrno add_mirrored_leaf(Request& request, const InputNode& in, nidl_yfw_datatree* out,
                         std::string_view module_namespace, std::span<const char* const> steps) {
  OutputNode* node = OutputTree::node_of(out);
  for (const char* step : steps) {
    if (!is_step(step)) {
      return kPathMalformed;
    }
  }
  for (const char* step : steps.first(steps.size() - 1)) {
    node = mirror_step(request, node, step, module_namespace);
  }
  OutputNode* leaf = nullptr;
  const PathWrite write{
      .base = node, .path = steps.back(), .module_namespace = module_namespace, .value = in.value};
  return Placement(request).write(write, &leaf);
}

// The steps with the top node first, whether the mapping counts it among them or not.
std::vector<const char*> steps_from_top(const char* top, std::span<const char* const> steps) {
  std::vector<const char*> all(steps.begin(), steps.end());
  if (all.empty() || all.front() == nullptr || std::string_view(all.front()) != top) {
    all.insert(all.begin(), top);
  }
  return all;
}

// --- stitching and path operations ---------------------------------------------------------------

// The entry that a step with keys names, or null. A key that is no key of the list names nothing.
OutputNode* named_entry(OutputNode* parent, const Place* list, const InstanceStep& step) {
  std::vector<std::string_view> values;
  for (const Place* key : list->keys) {
    for (const KeyPredicate& predicate : step.keys) {
      if (predicate.key == key->tag) {
        values.push_back(predicate.value);
      }
    }
  }
  const bool complete = !values.empty() && values.size() == list->keys.size();
  return complete ? OutputTree::find_entry(parent, list, values) : nullptr;
}

// Goes along a path; entries that it names become current. Null when such an entry does not exist,
// or, unless nodes are to be made, when any node does not.
OutputNode* follow(Request& request, OutputNode* node, std::span<const InstanceStep> steps,
                   std::string_view module_namespace, bool make) {
  Placement placement(request);
  for (const InstanceStep& step : steps) {
    if (node == nullptr) {
      break;
    }
    const Place* place = request.paths().child(node->place, step.tag, module_namespace);
    if (step.keys.empty()) {
      node = make ? placement.through(node, place) : placement.existing(node, place);
      continue;
    }
    node = named_entry(node, place, step);
    if (node != nullptr) {
      request.output().make_current(node);
    }
  }
  return node;
}

cerrno stitch(Request& request, const yfw_map_stitch_request& stitch) {
  const auto steps = split_instance_path(stitch.instance_path);
  if (!steps || stitch.enabled == 0 || stitch.operation != kMakeCurrent || stitch.base == nullptr) {
    return kInvalidArgument;
  }
  OutputNode* entry =
      follow(request, OutputTree::node_of(stitch.base), *steps, stitch.module_namespace, false);
  if (entry == nullptr) {
    return kNotFound;
  }
  // Writes under the current entries begin at the slot.
  request.state().current_list_node = &entry->head;
  return kOk;
}

cerrno operate_on_path(Request& request, const yfw_map_xpath_request& operation) {
  const auto steps = split_instance_path(operation.xpath);
  if (operation.enabled == 0 || operation.operation != kAddLeaf || operation.base == nullptr) {
    return kInvalidArgument;
  }
  if (!steps) {
    return YFW_MAP_XPATH_NOT_ADDED;
  }
  OutputNode* leaf = follow(request, OutputTree::node_of(operation.base), *steps,
                            operation.module_namespace, true);
  const bool is_there = leaf != nullptr && leaf->head.value != nullptr;
  if (leaf == nullptr || is_there) {
    return YFW_MAP_XPATH_NOT_ADDED;
  }
  Placement(request).put(leaf, operation.value, nullptr);
  return kOk;
}

}  // namespace
}  // namespace ocifip

using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::Request;

extern "C" {

cerrno yfw_map_add_leaf_from_xpath(yfw_map_ctx* ctx, const nidl_yfw_datatree* in,
                                   nidl_yfw_datatree* out, const char* top,
                                   const char* module_namespace, const char* const* steps,
                                   uint32_t step_count) {
  if (in == nullptr || out == nullptr || top == nullptr || module_namespace == nullptr ||
      steps == nullptr || step_count == 0) {
    return kInvalidArgument;
  }
  return guarded([&] {
    Request& request = Request::of(ctx);
    const auto all = ocifip::steps_from_top(top, {steps, step_count});
    if (auto* recorder = request.recorder()) {
      recorder->add_leaf(module_namespace, all);
    }
    return ocifip::add_mirrored_leaf(request, *in, out, module_namespace, all);
  });
}

cerrno yfw_map_stitch_list_to_list(yfw_map_ctx* ctx, const yfw_map_stitch_request* request) {
  if (request == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    if (auto* recorder = Request::of(ctx).recorder()) {
      recorder->stitch(*request);
    }
    return ocifip::stitch(Request::of(ctx), *request);
  });
}

cerrno yfw_map_tree_xpath_operations(yfw_map_ctx* ctx, const yfw_map_xpath_request* request) {
  if (request == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    const cerrno result = ocifip::operate_on_path(Request::of(ctx), *request);
    if (auto* recorder = Request::of(ctx).recorder()) {
      recorder->xpath(*request, result);
    }
    return result;
  });
}

}  // extern "C"
