// A request without a plug-in: the test calls the framework as a mapping would.
#ifndef CORE_FIXTURE_H_
#define CORE_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "io/data_path.h"
#include "io/read_document.h"
#include "io_testing.h"
#include "request/request.h"
#include "result_codes.h"
#include "tree/output_document.h"
#include "yfw/mapping.h"
#include "yfw/text.h"

namespace ocifip {

inline constexpr const char* kIpv4Cfg = "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg";
inline constexpr const char* kOcInterfaces = "http://openconfig.net/yang/interfaces";
inline constexpr const char* kIfIp = "http://openconfig.net/yang/interfaces/ip";
inline const std::string kNative = "/interface-configurations/interface-configuration";
inline const std::string kNetwork = kNative + "/ipv4-network";
inline const std::string kSubinterface = "/interfaces/interface/subinterfaces/subinterface";

// The plug-in's entries, as a stand-in has them: each call is noted in `entered`, a line a call,
// with an exclamation mark at nodes in which a list is deleted as a whole, and the kind of the
// request in `entered_kind`; reads only when `notes_reads` says so. A leaf "mtu" is copied, a leaf
// "enabled" is refused.
inline std::string entered;
inline std::uint32_t entered_kind = 0;
inline bool notes_reads = true;

inline cerrno copy_mtu(yfw_map_ctx* ctx, const InputNode& leaf) {
  return yfw_map_datatree_add_path_flagged(ctx, Request::of(ctx).out(), (kNetwork + "/mtu").c_str(),
                                           kIpv4Cfg, leaf.value, &leaf, nullptr, 1,
                                           YFW_MAP_PATH_CURRENT);
}

// A list entry is entered as one but at the top, where it stands for the family's container.
inline cerrno visit(yfw_map_ctx* ctx, const InputNode& node, bool is_top = false) {
  const bool is_entry = node.kind == NIDL_YFW_KIND_LIST && !is_top;
  yfw_map_add_to_node_hierarchy(
      ctx, &node, is_entry ? YFW_MAP_HIERARCHY_LIST_ENTRY : YFW_MAP_HIERARCHY_CONTAINER);
  entered.append(ctx->request_state->list_wide != 0 ? "!" : "");
  cerrno result = kOk;
  for (const InputNode& child : children_of(node)) {
    const std::string_view tag = child.tag;
    entered.append(" ").append(tag);
    result = tag == "enabled" ? Request::of(ctx).refuse(kUnsupported, child.tag, "no")
             : tag == "mtu"   ? copy_mtu(ctx, child)
                              : visit(ctx, child);
    if (result != kOk) {
      break;
    }
  }
  yfw_map_remove_from_node_hierarchy(ctx, &node);
  return result;
}

template <char kEntry>
cerrno stand_in(yfw_map_ctx* ctx, const InputNode* in, nidl_yfw_datatree* /*out*/) {
  const std::string before = entered;
  const bool is_noted = notes_reads || Request::of(ctx).is_edit();
  entered_kind = is_noted ? ctx->request_state->request.request_op : entered_kind;
  entered.append(1, kEntry).append(":").append(Request::of(ctx).native_interface_name());
  entered.append(" op=").append(std::to_string(in->edit_operation));
  entered.append(" ").append(in->tag);
  const cerrno result = visit(ctx, *in, true);
  entered.append("\n");
  if (!is_noted) entered = before;
  return result;
}

inline constexpr AugmentEntries kStandIn = {stand_in<'4'>, stand_in<'6'>, stand_in<'a'>,
                                            stand_in<'b'>};

inline InputNode leaf_node(const char* tag, const char* value) {
  InputNode node{};
  node.tag = tag;
  node.value = value;
  return node;
}

inline InputNode entry_node(const char* tag, std::vector<InputNode>& leaves) {
  InputNode node{};
  node.tag = tag;
  node.children = leaves.data();
  node.child_count = static_cast<std::uint32_t>(leaves.size());
  node.kind = NIDL_YFW_KIND_LIST;
  node.flags = NIDL_YFW_FLAG_HAS_SUBTREE;
  return node;
}

// Where an output node stands: its instance path.
inline std::string path_of(nidl_yfw_datatree* head) {
  std::string path;
  for (const OutputNode* node = OutputTree::node_of(head); node->parent != nullptr;
       node = node->parent) {
    std::string step = "/" + node->place->tag;
    for (const Place* key : node->place->keys) {
      const std::string_view value = OutputTree::key_value(node, key);
      step += value.data() == nullptr ? "" : "[" + key->tag + "='" + std::string(value) + "']";
    }
    path.insert(0, step);
  }
  return path;
}

class CoreTest : public testing::Test {
 protected:
  explicit CoreTest(const Models& known = models()) : models_(known), paths(known) { begin("{}"); }

  // Begins a request with a JSON document.
  void begin(const std::string& json, RequestSettings settings = {}) {
    request.reset();
    entered.clear();
    document = read_document(models_, {"test", json, Encoding::kJson});
    input = std::make_unique<InputTree>(document, settings.operation);
    settings.record_calls = true;
    request =
        std::make_unique<Request>(Framework{models_, paths, plugin_entries}, *input, settings);
    ctx = request->context();
    out = request->out();
  }

  // Has a subinterface being mapped, as far as native writes care.
  void map_subinterface(const char* interface, const char* index) {
    std::strcpy(request->state().current_ifname, interface);
    std::strcpy(request->state().current_subif_index, index);
  }

  struct Write {
    std::string path;
    const char* value = nullptr;
    int operation = -1;  // of the delete source; none when negative
    bool create = false;
    const char* module = kIpv4Cfg;
    unsigned flags = YFW_MAP_PATH_CURRENT;
    nidl_yfw_datatree* base = nullptr;  // the root when null
  };

  nidl_yfw_datatree* add(const Write& write) {
    InputNode source{};
    source.edit_operation = static_cast<std::uint8_t>(write.operation);
    nidl_yfw_datatree* created = nullptr;
    const cerrno result = yfw_map_datatree_add_path_flagged(
        ctx, write.base == nullptr ? out : write.base, write.path.c_str(), write.module,
        write.value, write.operation < 0 ? nullptr : &source, &created, write.create ? 1 : 0,
        write.flags);
    EXPECT_EQ(result, kOk) << write.path;
    return created;
  }

  nidl_yfw_datatree* search_or_add(nidl_yfw_datatree* base, const char* list, const char* value,
                                   const char* key, const char* module_namespace) {
    nidl_yfw_datatree* found = nullptr;
    EXPECT_EQ(yfw_map_search_or_add_list(ctx, base, &found, list, value, key, module_namespace),
              kOk);
    return found;
  }

  // The output: a line for each node with a value, an operation or nothing below it, keys set
  // aside. "{Eth1}" stands for the native configuration of an interface.
  [[nodiscard]] std::string output() const {
    std::string text;
    std::vector<const DocumentNode*> path;
    for (const DocumentNode& root : to_document(request->output(), "test").roots) {
      append(text, path, root);
    }
    return text;
  }

  const Models& models_;
  AugmentEntries plugin_entries = kStandIn;
  PathCache paths;
  Document document;
  std::unique_ptr<InputTree> input;
  std::unique_ptr<Request> request;
  yfw_map_ctx* ctx = nullptr;
  nidl_yfw_datatree* out = nullptr;

 private:
  static void append(std::string& text, std::vector<const DocumentNode*>& path,
                     const DocumentNode& node) {
    path.push_back(&node);
    const std::size_t before = text.size();
    for (const DocumentNode& child : node.children) {
      if (child.schema == nullptr || !Models::is_key(child.schema)) {
        append(text, path, child);
      }
    }
    if (text.size() == before || node.value || node.operation) {
      text.insert(before, line_of(path));
    }
    path.pop_back();
  }

  static std::string line_of(const std::vector<const DocumentNode*>& path) {
    const DocumentNode& node = *path.back();
    std::string line = instance_path(path);
    const std::string head = kNative + "[active='act'][interface-name='";
    if (line.starts_with(head)) {
      line.replace(line.find("']", head.size()), 2, "}").replace(0, head.size(), "{");
    }
    line += node.value ? " = " + *node.value : "";
    line += node.operation ? " (" + std::to_string(static_cast<int>(*node.operation)) + ")" : "";
    return line + "\n";
  }
};

}  // namespace ocifip

#endif  // CORE_FIXTURE_H_
