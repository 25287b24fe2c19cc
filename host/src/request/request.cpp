#include "request/request.h"

#include <algorithm>
#include <cstdlib>

#include "device/subinterface_name.h"
#include "io/data_path.h"
#include "request/refusal_hint.h"
#include "result_codes.h"
#include "yfw/mapping.h"
#include "yfw/text.h"

namespace ocifip {
namespace {

constexpr const char* kAllocationName = "YFW HOST";
constexpr const char* kNoWords = "the plug-in returned a code that has no words";

// What instance_path looks at: the node, and of an entry its keys.
DocumentNode path_step(const InputNode& node, const lysc_node* schema) {
  DocumentNode step;
  step.tag = node.tag == nullptr ? "" : node.tag;
  step.kind = static_cast<NodeKind>(node.kind);
  step.schema = schema;
  for (const std::string& key :
       schema == nullptr ? std::vector<std::string>() : Models::keys(schema)) {
    const InputNode* leaf = find_child(node, key);
    if (leaf != nullptr && leaf->value != nullptr) {
      DocumentNode& child = step.children.emplace_back();
      child.tag = key;
      child.kind = NodeKind::kLeaf;
      child.value = leaf->value;
    }
  }
  return step;
}

const lysc_node* schema_of(const Models& models, const lysc_node* parent, const InputNode& node) {
  return node.tag == nullptr || node.module_namespace == nullptr
             ? nullptr
             : models.child(parent, node.tag, node.module_namespace);
}

}  // namespace

std::string instance_path(const Models& models, std::span<const InputNode* const> nodes) {
  std::vector<DocumentNode> steps;
  const lysc_node* schema = nullptr;
  for (const InputNode* node : nodes) {
    // Below a node that no model knows, none is known.
    schema = steps.empty() || schema != nullptr ? schema_of(models, schema, *node) : nullptr;
    steps.push_back(path_step(*node, schema));
  }
  std::vector<const DocumentNode*> pointers(steps.size());
  std::transform(steps.begin(), steps.end(), pointers.begin(),
                 [](const DocumentNode& step) { return &step; });
  return instance_path(pointers);
}

Request::Request(const Framework& framework, const InputTree& input,
                 const RequestSettings& settings)
    : framework_(framework),
      input_(input),
      is_query_(settings.is_query),
      written_(settings.written),
      output_(arena_, framework.paths.root()),
      hierarchy_(state_) {
  if (settings.record_calls) {
    recorder_.emplace(framework.models);
  }
  state_.request.request_op = settings.request_op;
  state_.list_edit_op = static_cast<std::uint8_t>(settings.operation);
  state_.visited_entries = &visited_entries_;
  context_.head.error_channel = this;
  context_.head.trace_buffer_on = settings.trace ? 1 : 0;
  context_.head.request_state = &state_;
  context_.owner = this;
}

Request::~Request() {
  ombos_named_free(state_.unsupported_tag);
  ombos_named_free(state_.error_message);
  std::free(state_.address_db);
  std::free(state_.vrrp_vip_db);
}

Request& Request::of(yfw_map_ctx* ctx) { return *reinterpret_cast<Context*>(ctx)->owner; }

bool Request::is_edit() const {
  const std::uint32_t op = state_.request.request_op;
  return op != YFW_MAP_REQUEST_READ_CONFIG && op != YFW_MAP_REQUEST_READ_STATE;
}

InputNode& Request::copy(const InputNode& node, std::span<const InputNode* const> children) {
  InputNode& copied = *arena_.make<InputNode>(node);
  const auto copies = arena_.make_array<InputNode>(children.size());
  originals_.emplace(&copied, &node);
  for (std::size_t i = 0; i < copies.size(); ++i) {
    copies[i] = *children[i];
    originals_.emplace(&copies[i], children[i]);
  }
  copied.children = copies.data();
  copied.child_count = static_cast<std::uint32_t>(copies.size());
  if (copies.empty()) {
    copied.children = nullptr;
    copied.flags &= static_cast<std::uint8_t>(~NIDL_YFW_FLAG_HAS_SUBTREE);
  }
  return copied;
}

const void* Request::cause_of(const InputNode* node) const {
  for (auto copy = originals_.find(node); copy != originals_.end(); copy = originals_.find(node)) {
    node = copy->second;
  }
  return node == nullptr ? nullptr : input_.cause_of(*node);
}

void Request::forget_current_entries() {
  output_.forget_current_entries();
  state_.current_list_node = nullptr;
  trim_prefix_.clear();
}

std::string Request::path_of(const InputNode& child) const {
  const auto walked = hierarchy_.nodes();
  std::vector<const InputNode*> nodes(walked.begin(), walked.end());
  nodes.push_back(&child);
  return instance_path(framework_.models, nodes);
}

std::string Request::native_interface_name() const {
  return native_name(state_.current_ifname, state_.current_subif_index);
}

void Request::begin(const char* stage, std::span<const InputNode> interfaces) const {
  if (framework_.progress != nullptr) {
    framework_.progress->begin(stage, interfaces.size());
  }
}

void Request::advance() const {
  if (framework_.progress != nullptr) {
    framework_.progress->advance();
  }
}

void Request::note(const std::string& remark) {
  if (std::find(notes_.begin(), notes_.end(), remark) == notes_.end()) {
    notes_.push_back(remark);
  }
}

void Request::mark_error_path() {
  const auto nodes = hierarchy_.nodes();
  failing_nodes_.emplace(nodes.begin(), nodes.end());
}

cerrno Request::refuse(cerrno code, const char* tag, const char* message) {
  mark_error_path();
  ombos_named_free(std::exchange(state_.unsupported_tag, yfw_strdup(tag, kAllocationName)));
  ombos_named_free(std::exchange(state_.error_message, yfw_strdup(message, kAllocationName)));
  return code;
}

Refusal Request::refusal(cerrno code) const {
  const std::string tag = state_.unsupported_tag == nullptr ? "" : state_.unsupported_tag;
  const auto nodes = failing_nodes();
  const bool is_of_walked = tag.empty() && !nodes.empty() && nodes.back()->tag != nullptr;
  Refusal refusal;
  refusal.code = code;
  refusal.tag = is_of_walked ? nodes.back()->tag : tag;
  refusal.path = refused_path(nodes, tag);
  refusal.message = refusal_message(code);
  refusal.hint = refusal_hint(framework_.models, code, nodes, tag);
  if (code == kListKey && is_key_missing(nodes, tag)) refusal.missing_key = tag;
  return refusal;
}

// A mapping that does not mark the failing path fails in the nodes that it entered last.
std::vector<const InputNode*> Request::failing_nodes() const {
  const auto pushed = hierarchy_.last_pushed();
  return failing_nodes_.value_or(std::vector<const InputNode*>(pushed.begin(), pushed.end()));
}

std::string Request::refused_path(std::vector<const InputNode*> nodes, std::string_view tag) const {
  if (!nodes.empty() && !tag.empty()) {
    if (const InputNode* refused = find_child(*nodes.back(), tag)) {
      nodes.push_back(refused);
    }
  }
  return instance_path(framework_.models, nodes);
}

std::string Request::refusal_message(cerrno code) const {
  std::string message = has_words(code) ? cerr_strerror(code) : kNoWords;
  if (!error_line_.empty()) message = error_line_;
  if (state_.error_message != nullptr) {
    message = state_.error_message;
  }
  message.erase(message.find_last_not_of(" \n") + 1);
  return message;
}

}  // namespace ocifip
