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
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"
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

std::vector<std::string> keys_of(const Model& model, const Row& row) {
  std::vector<std::string> keys;
  for (const char* key :
       row.kind == RowKind::kList ? model.lists[row.list].keys : decltype(ymap::List::keys){}) {
    if (key != nullptr) {
      keys.emplace_back(key);
    }
  }
  return keys;
}

const char* word_of(RowKind kind) {
  return kind == RowKind::kLeaf ? "leaf" : kind == RowKind::kList ? "list" : "container";
}

// The rows from one on to the last below it, a line each, the keys of a list before its other
// children. Returns the index behind the last.
RowIndex append_rows(const Model& model, RowIndex first, const std::string& parent,
                     std::vector<std::string>& lines) {
  const Row& row = model.rows[first];
  const std::string path = parent + "/" + row.tag;
  const std::vector<std::string> keys = keys_of(model, row);
  lines.push_back(line_of(path, word_of(row.kind), keys));
  std::vector<std::string> others;
  RowIndex i = first + 1;
  while (i < model.row_count && model.parents[i] == first) {
    const bool is_key = std::count(keys.begin(), keys.end(), model.rows[i].tag) != 0;
    i = append_rows(model, i, path, is_key ? lines : others);
  }
  lines.insert(lines.end(), others.begin(), others.end());
  return i;
}

std::vector<std::string> rows_of(const Model& model, RowIndex first) {
  std::vector<std::string> lines;
  append_rows(model, first, "", lines);
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
const std::vector<std::string> kNativeInterface = {"interface-configurations",
                                                   "interface-configuration"};
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
                         {"/interfaces/interface/subinterfaces/subinterface/config/enabled leaf"}},
                    Tree{"ipv4_network",
                         ymap::halvane_ombrix_ipv4_io_cfg::kModel,
                         ymap::halvane_ombrix_ipv4_io_cfg::row_lvla_ipv4network,
                         below(kNativeInterface, "ipv4-network"),
                         {}},
                    Tree{"ipv4_network_forwarding",
                         ymap::halvane_ombrix_ipv4_io_cfg::kModel,
                         ymap::halvane_ombrix_ipv4_io_cfg::row_lvla_ipv4networkforwarding,
                         below(kNativeInterface, "ipv4-network-forwarding"),
                         {}},
                    Tree{"ipv4_network_state",
                         ymap::halvane_ombrix_ipv4_io_oper::kModel,
                         ymap::halvane_ombrix_ipv4_io_oper::row_lvla_ipv4network,
                         {"ipv4-network"},
                         {}},
                    Tree{"ocifipv4ma",
                         ymap::halvane_ombrix_private_ocifip_v4ma_oper::kModel,
                         ymap::halvane_ombrix_private_ocifip_v4ma_oper::row_lvla_ocifipv4ma,
                         {"ocifipv4ma"},
                         {}},
                    Tree{"ocifipv6ma",
                         ymap::halvane_ombrix_private_ocifip_v6ma_oper::kModel,
                         ymap::halvane_ombrix_private_ocifip_v6ma_oper::row_lvla_ocifipv6ma,
                         {"ocifipv6ma"},
                         {}},
                    Tree{"global_interface_configuration",
                         ymap::halvane_ombrix_ifmgr_cfg::kModel,
                         ymap::halvane_ombrix_ifmgr_cfg::row_lvla_globalinterfaceconfiguration,
                         {"global-interface-configuration"},
                         {}},
                    Tree{"interface_configurations",
                         ymap::halvane_ombrix_ifmgr_cfg::kModel,
                         ymap::halvane_ombrix_ifmgr_cfg::row_lvla_interfaceconfigurations,
                         {"interface-configurations"},
                         {}}),
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

// What the rows of every model export.
std::set<std::string> names_of_rows() {
  std::set<std::string> names;
  // clang-format off
#include "ymap_ocifip_openconfig_if_ip.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_openconfig_interfaces.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_cfg.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_oper.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.inc"
#include "exported_names.inc"
#include "ymap_model_end.inc"
  // clang-format on
  return names;
}

// What the records export.
std::set<std::string> names_of_records() {
  std::set<std::string> names;
#define RECORD_FAMILY(family, major, minor) names.insert("bag_register_all_" #family "_bags");
#define RECORD(family, name, structures, bytes) names.insert({#name "_bag", #name "_bag_getfn"});
#define VERSIONED_RECORD(family, name, structures, bytes) \
  RECORD(family, name, structures, bytes)                 \
  names.insert({"bag_bytecode_" #name, "bag_major_version_" #name, "bag_minor_version_" #name});
#include "native_records.def"
#define VRRP_TYPE(name, key) names.insert("bag_fetch_" #name "_2_8");
#include "vrrp_types.def"
  return names;
}

// An entry callback with its augment hook.
void add_entry(std::set<std::string>& names, const std::string& model, const std::string& level,
               const std::string& node) {
  names.insert(model + "augment_" + level + "_" + node);
  names.insert(model + level + "_" + node + "_parse_augments");
}

TEST(Exports, AreTheRowsTheEntriesTheHooksAndTheRecords) {
  const std::string if_ip = "ymap_ox_ocifip_openconfigifip_";
  const std::string ipv4_io_cfg = "ymap_xo_ocifip_halvaneombrixipv4iocfg_";
  std::set<std::string> names = names_of_rows();
  names.merge(names_of_records());
  names.insert({"yfw_map_contract_version", "yfw_map_plugin_version"});
  names.insert({"yfw_map_oc_dhcp_sysdb_unbind", "yfw_map_oc_ipv6_sysdb_unbind",
                "ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index"});
  names.insert({"yfw_map_reg_ocifip_v4ma_oper", "yfw_map_reg_ocifip_v6ma_oper"});
  for (const char* level : {"lvla", "lvlb"}) {
    add_entry(names, if_ip, level, "subinterface");
    add_entry(names, if_ip, level, "routed_vlan");
    add_entry(names, ipv4_io_cfg, level, "interface_configuration");
  }
  // The sanitizers add symbols of their own: marks of exported data, and types of functions; so
  // does clang where it counts lines.
  EXPECT_EQ(output_lines("nm -D --defined-only --format=just-symbols '" OCIFIP_PLUGIN
                         "' | grep -vE '^(__odr_asan|_ZT[IS]F)|___llvm_prf_'"),
            names);
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
