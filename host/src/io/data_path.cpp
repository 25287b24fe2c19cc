#include "io/data_path.h"

#include <algorithm>

#include "io/document_nodes.h"
#include "io/instance_steps.h"
#include "io/text.h"

namespace ocifip {
namespace {

// XPath has no escapes, so that the value decides which quotes are around it.
void append_predicate(std::string& out, std::string_view name, std::string_view value) {
  const char quote = value.find('\'') == std::string_view::npos ? '\'' : '"';
  out.append("[").append(name).append("=").append(1, quote).append(value);
  out.append(1, quote).append("]");
}

std::string as_it_is(std::string_view text) { return std::string(text); }

// `prefix`: what stands before the names of the step. `shown`: what is written of names and values.
void append_step(std::string& out, const std::string& prefix, const DocumentNode& node,
                 std::string (*shown)(std::string_view text)) {
  out.append("/").append(prefix).append(shown(node.tag));
  if (node.kind == NodeKind::kLeafList && node.value) {
    append_predicate(out, ".", shown(*node.value));
  }
  if (node.kind != NodeKind::kList || node.schema == nullptr) return;
  for (const std::string& key : Models::keys(node.schema)) {
    const std::string* value = key_value(node, key);
    if (value != nullptr) append_predicate(out, prefix + key, shown(*value));
  }
}

// Whether in_short() may have made a text of another.
bool may_be_shortened(std::string_view text) {
  return text.ends_with("...") || text.find('\\') != std::string_view::npos;
}

// The node that a step without its module means.
const lysc_node* find_step(const Models& models, const lysc_node* parent, std::string_view tag) {
  if (const lysc_node* own = models.child(parent, tag, {})) return own;
  const auto& children = models.children(parent);
  const auto found = std::find_if(children.begin(), children.end(), [&](const lysc_node* child) {
    return Models::tag(child) == tag;
  });
  return found == children.end() ? nullptr : *found;
}

}  // namespace

// Control characters are escaped: the path is shown in one line.
std::string instance_path(const std::vector<const DocumentNode*>& nodes) {
  std::string path;
  for (const DocumentNode* node : nodes) append_step(path, "", *node, in_short);
  return path;
}

DataPath data_path(const std::vector<const DocumentNode*>& nodes) {
  DataPath path;
  for (const DocumentNode* node : nodes) {
    const std::string module = node->module.text();
    append_step(path.text, module + ':', *node, as_it_is);
    const bool is_known =
        std::find(path.modules.begin(), path.modules.end(), module) != path.modules.end();
    if (!is_known) path.modules.push_back(module);
  }
  return path;
}

DataPath data_path(const Models& models, std::string_view instance_path) {
  const auto steps = split_instance_path(instance_path);
  if (!steps) return {};
  std::vector<DocumentNode> nodes;
  const lysc_node* schema = nullptr;
  for (const InstanceStep& step : *steps) {
    schema = find_step(models, schema, step.tag);
    if (schema == nullptr) break;
    DocumentNode& node = nodes.emplace_back(node_of(schema));
    for (const KeyPredicate& key : step.keys) {
      if (may_be_shortened(key.value)) return {};
      const lysc_node* leaf = key.key == "." ? nullptr : models.child(schema, key.key, {});
      if (leaf != nullptr) node.children.push_back(node_of(leaf));
      (leaf == nullptr ? node : node.children.back()).value = key.value;
    }
  }
  std::vector<const DocumentNode*> pointers(nodes.size());
  std::transform(nodes.begin(), nodes.end(), pointers.begin(),
                 [](const DocumentNode& node) { return &node; });
  return data_path(pointers);
}

}  // namespace ocifip
