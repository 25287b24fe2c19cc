// The plug-in's tables, held against the YANG modules and against the names that the library
// exports.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "io/models.h"
#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_ocifip_openconfig_interfaces.h"

namespace {

using ocifip::Models;
using ocifip::NodeKind;
using ymap::Model;
using ymap::Row;
using ymap::RowIndex;
using ymap::RowKind;

std::string line_of(const std::string& path, const char* kind,
                    const std::vector<std::string>& keys) {
  std::string line = path + " " + kind;
  for (const std::string& key : keys) {
    line += " [" + key + "]";
  }
  return line;
}

// The rows from one on to its end, a line each.
std::vector<std::string> rows_of(const Model& model, RowIndex first) {
  std::vector<std::string> lines;
  std::vector<std::string> paths = {""};
  for (RowIndex i = first; paths.size() > 1 || i == first; ++i) {
    const Row& row = model.rows[i];
    if (row.kind == RowKind::kClose) {
      paths.pop_back();
      continue;
    }
    const std::string path = paths.back() + "/" + row.tag;
    std::vector<std::string> keys;
    for (const char* key : row.keys) {
      if (key != nullptr) {
        keys.emplace_back(key);
      }
    }
    lines.push_back(line_of(path,
                            row.kind == RowKind::kLeaf   ? "leaf"
                            : row.kind == RowKind::kList ? "list"
                                                         : "container",
                            keys));
    if (row.kind != RowKind::kLeaf) {
      paths.push_back(path);
    }
  }
  return lines;
}

// The schema nodes of one module from one on down, a line each.
void append_schema(const Models& models, const lysc_node* node, const std::string& parent,
                   std::vector<std::string>& lines) {
  const std::string path = parent + "/" + std::string(Models::tag(node));
  const NodeKind kind = Models::kind(node);
  lines.push_back(line_of(path,
                          kind == NodeKind::kList        ? "list"
                          : kind == NodeKind::kContainer ? "container"
                                                         : "leaf",
                          Models::keys(node)));
  for (const lysc_node* child : models.children(node)) {
    if (Models::module(child) == Models::module(node)) {
      append_schema(models, child, path, lines);
    }
  }
}

const lysc_node* find(const Models& models, const std::vector<std::string>& tags) {
  const lysc_node* node = nullptr;
  for (const std::string& tag : tags) {
    for (const lysc_node* child : models.children(node)) {
      if (Models::tag(child) == tag) {
        node = child;
        break;
      }
    }
  }
  return node;
}

std::vector<std::string> schema_of(const std::vector<std::string>& tags) {
  const Models models(OCIFIP_MODELS_DIR);
  std::vector<std::string> lines;
  append_schema(models, find(models, tags), "", lines);
  return lines;
}

struct Tree {
  const char* name;
  const Model& model;
  RowIndex row;
  std::vector<std::string> node;
  std::vector<std::string> without_row;  // published nodes that are deliberately not dispatched
};

class Tables : public testing::TestWithParam<Tree> {};

TEST_P(Tables, HaveTheSchemasNodesInItsOrder) {
  const Tree& tree = GetParam();
  std::vector<std::string> schema = schema_of(tree.node);
  for (const std::string& line : tree.without_row) {
    EXPECT_EQ(std::erase(schema, line), 1u) << line;
  }
  EXPECT_EQ(rows_of(tree.model, tree.row), schema);
}

const std::vector<std::string> kSubinterface = {"interfaces", "interface", "subinterfaces",
                                                "subinterface"};
const std::vector<std::string> kRoutedVlan = {"interfaces", "interface", "routed-vlan"};

std::vector<std::string> below(std::vector<std::string> tags, const char* tag) {
  tags.emplace_back(tag);
  return tags;
}

using namespace ymap::openconfig_if_ip;
INSTANTIATE_TEST_SUITE_P(
    , Tables,
    testing::Values(Tree{"ipv4", kModel, row_lvla_ipv4, below(kSubinterface, "ipv4"), {}},
                    Tree{"ipv6", kModel, row_lvla_ipv6, below(kSubinterface, "ipv6"), {}},
                    Tree{"routed_ipv4", kModel, row_lvlb_ipv4, below(kRoutedVlan, "ipv4"), {}},
                    Tree{"routed_ipv6", kModel, row_lvlb_ipv6, below(kRoutedVlan, "ipv6"), {}},
                    Tree{"interfaces",
                         ymap::openconfig_interfaces::kModel,
                         ymap::openconfig_interfaces::row_lvla_interfaces,
                         {"interfaces"},
                         {"/interfaces/interface/subinterfaces/subinterface/config/enabled leaf"}}),
    [](const testing::TestParamInfo<Tree>& each) { return each.param.name; });

// --- exported names ------------------------------------------------------------------------------

std::set<std::string> output_lines(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::set<std::string> lines;
  char line[512];
  while (pipe != nullptr && std::fgets(line, sizeof line, pipe.get()) != nullptr) {
    std::string text = line;
    text.erase(text.find_last_not_of("\r\n") + 1);
    lines.insert(text);
  }
  return lines;
}

// What a model's rows export: walkers with their augment hooks, and leaf callbacks. A leaf that
// waits for its mapping has none.
void add_names(const Model& model, RowIndex count, std::set<std::string>& names,
               const std::set<std::string>& waiting) {
  for (RowIndex i = 0; i < count; ++i) {
    const Row& row = model.rows[i];
    if (row.kind == RowKind::kClose || waiting.contains(row.name)) {
      continue;
    }
    names.insert(row.name);
    if (row.augments_name != nullptr) {
      names.insert(row.augments_name);
    }
  }
}

std::set<std::string> waiting_names() {
  std::set<std::string> names;
#define YMAP_LEAF_NAME_BY_HAND(level, path)
#define YMAP_LEAF_NAME_REFUSED(level, path)
#define YMAP_LEAF_NAME_UNMAPPED(level, path)
#define YMAP_LEAF_NAME_LATER(level, path) \
  names.insert("ymap_ox_ocifip_openconfigifip_" #level "_" #path);
#define YMAP_CONTAINER_ROW(level, path, tag, hook, announces)
#define YMAP_LIST_ROW(level, path, tag, hook, list_path, ...)
#define YMAP_LEAF_ROW(level, path, tag, behaviour) YMAP_LEAF_NAME_##behaviour(level, path)
#define YMAP_CALLING_ROW(level, path, tag, requests, function)
#define YMAP_END_ROW(level, path)
#include "ymap_ocifip_openconfig_if_ip.def"
  return names;
}

TEST(Exports, AreTheCallbacksAndTheUnloadHooks) {
  const std::string if_ip = "ymap_ox_ocifip_openconfigifip_";
  std::set<std::string> names = {
      "yfw_map_oc_dhcp_sysdb_unbind",     "yfw_map_oc_ipv6_sysdb_unbind",
      "ymap_oc_2_ombrix_v4_dhcpclient",   if_ip + "cont_lvla_ipv4",
      if_ip + "cont_lvla_ipv4_addresses", if_ip + "list_lvla_ipv4_addresses_address",
  };
  for (const char* entry : {"subinterface", "routed_vlan"}) {
    for (const char* level : {"lvla_", "lvlb_"}) {
      names.insert(if_ip + "augment_" + level + entry);
      names.insert(if_ip + level + entry + "_parse_augments");
    }
  }
  for (const char* model : {"openconfigifip", "openconfiginterfaces"}) {
    for (const char* hook : {"container", "list", "leaf"}) {
      names.insert("ymap_ox_ocifip_" + std::string(model) + "_duck_map_" + hook);
    }
  }
  add_names(kModel, end_lvlb_ipv6 + 1, names, waiting_names());
  add_names(ymap::openconfig_interfaces::kModel,
            ymap::openconfig_interfaces::end_lvla_interfaces + 1, names, {});
  EXPECT_EQ(output_lines("nm -D --defined-only --format=just-symbols '" OCIFIP_PLUGIN "'"), names);
}

TEST(Imports, AreDeclaredByTheContract) {
  const std::set<std::string> undefined =
      output_lines("nm -D --undefined-only --format=just-symbols '" OCIFIP_PLUGIN
                   "' | grep -v -e @ -e '^_ITM_' -e '^__gmon_start__' -e '^__[au]' ");
  const std::set<std::string> declared =
      output_lines("grep -rhoE '[A-Za-z_][A-Za-z0-9_]+' '" OCIFIP_PLATFORM_INCLUDE "' | sort -u");
  std::vector<std::string> unknown;
  std::set_difference(undefined.begin(), undefined.end(), declared.begin(), declared.end(),
                      std::back_inserter(unknown));
  EXPECT_EQ(unknown, std::vector<std::string>());
  EXPECT_TRUE(undefined.contains("yfw_map_datatree_add_path_flagged"));
}

}  // namespace
