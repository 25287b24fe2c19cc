#include "request/refusal_hint.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "device/device_directory.h"
#include "device/subinterface_name.h"
#include "io/text.h"
#include "ocifip/nearest_name.h"
#include "request/request.h"
#include "result_codes.h"
#include "text_services.h"
#include "yfw/text.h"

namespace ocifip {
namespace {

using Nodes = std::span<const InputNode* const>;

std::string text_of(const char* text) { return text == nullptr ? "" : text; }

bool is_list(const InputNode* node) { return static_cast<NodeKind>(node->kind) == NodeKind::kList; }

// How many nodes lead to the innermost entry, and are it; 0 when there is none.
std::size_t depth_of_entry(Nodes nodes) {
  const auto entry = std::find_if(nodes.rbegin(), nodes.rend(), is_list);
  return static_cast<std::size_t>(std::distance(entry, nodes.rend()));
}

// What is wrong with the key of an entry.
std::string key_hint(const Models& models, Nodes nodes, std::string_view key) {
  const std::size_t depth = depth_of_entry(nodes);
  if (depth == 0) return {};
  const InputNode& entry = *nodes[depth - 1];
  const std::size_t above = instance_path(models, nodes.first(depth - 1)).size();
  const std::string path = instance_path(models, nodes.first(depth));
  const std::string where = "in the entry " + path.substr(std::min(above + 1, path.size()));
  const std::string name = "the key " + in_quotes(key);
  std::vector<std::string> values;
  for (const auto& child : children_of(entry)) {
    if (text_of(child.tag) == key) values.push_back(text_of(child.value));
  }
  if (values.empty()) return name + " is missing " + where;
  if (values.size() > 1) {
    return name + " is given " + std::to_string(values.size()) + " times " + where;
  }
  if (values[0].empty()) return name + " has no value " + where;
  const InputNode* config = find_child(entry, "config");
  const InputNode* leaf = config == nullptr ? nullptr : find_child(*config, key);
  if (leaf == nullptr || text_of(leaf->value) == values[0]) return {};
  return name + " is " + in_quotes(values[0]) + ", but \"config/" + std::string(key) + "\" is " +
         in_quotes(text_of(leaf->value)) + ' ' + where;
}

std::string key_value_of(Nodes nodes, std::string_view list, std::string_view key) {
  const auto entry = std::find_if(nodes.begin(), nodes.end(),
                                  [&](const auto* node) { return text_of(node->tag) == list; });
  const InputNode* leaf = entry == nodes.end() ? nullptr : find_child(**entry, key);
  return leaf == nullptr ? "" : text_of(leaf->value);
}

// The one text that is made of input and kept in a limited place is the native name.
std::string name_hint(Nodes nodes) {
  const std::string name = native_name(key_value_of(nodes, "interface", "name"),
                                       key_value_of(nodes, "subinterface", "index"));
  if (name.size() <= last_text_limit()) return {};
  return "the interface name " + in_quotes(name) + " has " + std::to_string(name.size()) +
         " characters, the limit is " + std::to_string(last_text_limit());
}

// The schema node of the innermost of some nodes, or null.
const lysc_node* schema_of(const Models& models, Nodes nodes) {
  const lysc_node* schema = nullptr;
  for (const auto* node : nodes) {
    const bool is_named = node->tag != nullptr && node->module_namespace != nullptr;
    schema = is_named ? models.child(schema, node->tag, node->module_namespace) : nullptr;
    if (schema == nullptr) break;
  }
  return schema;
}

// The node that was meant by one that no model has.
std::string tag_hint(const Models& models, Nodes nodes, std::string_view tag) {
  const lysc_node* parent = schema_of(models, nodes);
  if (parent == nullptr) return {};
  const InputNode* refused = find_child(*nodes.back(), tag);
  if (refused == nullptr) return {};
  if (models.child(parent, tag, text_of(refused->module_namespace)) != nullptr) return {};
  std::vector<std::string> known;
  for (const auto* child : models.children(parent)) known.emplace_back(Models::tag(child));
  const auto nearest = std::find(known.begin(), known.end(), nearest_name(tag, known));
  if (nearest == known.end()) return {};
  const auto* meant = models.children(parent)[static_cast<std::size_t>(nearest - known.begin())];
  return "the nearest known node is " +
         in_quotes(std::string(Models::module(meant)) + ':' + *nearest);
}

// Where a code without words comes from: an item of the device's database that cannot be read.
std::string database_hint(cerrno code) {
  const auto* directory = DeviceDirectory::active();
  if (has_words(code) || directory == nullptr) return {};
  std::vector<std::string> paths;
  for (const auto& [path, item] : directory->device().sysdb) {
    if (item.error == code) paths.push_back(path);
  }
  if (paths.empty()) return {};
  return paths.size() == 1
             ? "the database item " + in_quotes(paths[0]) + " fails with this code"
             : std::to_string(paths.size()) + " items of the database fail with this code";
}

}  // namespace

bool is_key_missing(Nodes nodes, std::string_view key) {
  const std::size_t depth = depth_of_entry(nodes);
  return depth > 0 && find_child(*nodes[depth - 1], key) == nullptr;
}

std::string refusal_hint(const Models& models, cerrno code, Nodes nodes, std::string_view tag) {
  switch (code) {
    case kListKey:
      return key_hint(models, nodes, tag);
    case kUnsupported:
    case YFW_MAP_ERR_UNSUPPORTED_AUGMENT:
      return tag_hint(models, nodes, tag);
    case YFW_TEXT_NO_SPACE:
      return name_hint(nodes);
    default:
      return database_hint(code);
  }
}

}  // namespace ocifip
