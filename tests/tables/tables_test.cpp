// The plug-in's tables, held against the YANG modules and against the names that the library
// exports.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "io/models.h"
#include "mapping/plugin.h"
#include "model_headers.h"

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

// --- the models ----------------------------------------------------------------------------------

// A model with rows.
struct RowModel {
  std::string name;    // of its files, without "ymap_ocifip_"
  std::string prefix;  // of its callbacks
  const Model& model;
};

std::vector<RowModel> row_models() {
  std::vector<RowModel> models;
#define MODEL_EVENT "add_model.inc"
#include "models.inc"
#undef MODEL_EVENT
  return models;
}

// Nodes to which the modules of others add theirs.
const std::vector<std::string> kAugmented[] = {
    {"interface-configurations", "interface-configuration"},
    {"interfaces", "interface", "subinterfaces", "subinterface"},
    {"interfaces", "interface", "routed-vlan"},
    {"interfaces", "interface", "subinterfaces", "subinterface", "ipv6"},
};

// Published nodes that are deliberately not dispatched.
const std::set<std::string> kWithoutRow = {
    "/interfaces/interface/subinterfaces/subinterface/config/enabled leaf"};

// The tops of a model's rows.
std::vector<RowIndex> tops_of(const Model& model) {
  std::vector<RowIndex> tops;
  for (RowIndex i = 0; i < model.row_count; ++i) {
    if (model.parents[i] == ymap::kNoRow) {
      tops.push_back(i);
    }
  }
  return tops;
}

// The schemas of the nodes that a top may be of: at the top of a module, or below what it augments.
// Where as many tops have a tag as there are schemas of it, they have one each, in that order.
std::vector<const lysc_node*> schemas_of(const Models& models, const RowModel& rows, RowIndex top) {
  const Model& model = rows.model;
  std::vector<const lysc_node*> parents = {nullptr};
  for (const std::vector<std::string>& augmented : kAugmented) {
    parents.push_back(find(models, augmented));
  }
  std::vector<const lysc_node*> schemas;
  for (const lysc_node* parent : parents) {
    if (const lysc_node* node = models.child(parent, model.rows[top].tag, model.module_namespace)) {
      schemas.push_back(node);
    }
  }
  std::vector<RowIndex> namesakes = tops_of(model);
  std::erase_if(namesakes, [&](RowIndex other) {
    return std::string(model.rows[other].tag) != model.rows[top].tag;
  });
  if (namesakes.size() == schemas.size()) {
    const auto own = std::find(namesakes.begin(), namesakes.end(), top) - namesakes.begin();
    return {schemas[static_cast<std::size_t>(own)]};
  }
  return schemas;
}

// The nodes that a module has at the top, and adds to what it augments.
std::set<std::string> tags_of(const Models& models, const std::string& module_namespace) {
  std::set<std::string> tags;
  const auto add = [&](const lysc_node* parent) {
    for (const lysc_node* child : models.children(parent)) {
      if (Models::module_namespace(child) == module_namespace &&
          (parent == nullptr || Models::module(parent) != Models::module(child))) {
        tags.emplace(Models::tag(child));
      }
    }
  };
  add(nullptr);
  for (const std::vector<std::string>& augmented : kAugmented) {
    add(find(models, augmented));
  }
  return tags;
}

class Tables : public testing::TestWithParam<RowModel> {};

TEST_P(Tables, HaveTheSchemasNodesInItsOrder) {
  const Models models(OCIFIP_MODELS_DIR);
  std::set<std::string> tags = tags_of(models, GetParam().model.module_namespace);
  for (const RowIndex top : tops_of(GetParam().model)) {
    SCOPED_TRACE(GetParam().model.rows[top].name);
    tags.erase(GetParam().model.rows[top].tag);
    const auto schemas = schemas_of(models, GetParam(), top);
    EXPECT_FALSE(schemas.empty()) << "no model has this node";
    for (const lysc_node* schema : schemas) {
      std::vector<std::string> lines;
      append_schema(models, schema, "", lines);
      std::erase_if(lines, [](const std::string& line) { return kWithoutRow.contains(line); });
      EXPECT_EQ(rows_of(GetParam().model, top), lines);
    }
  }
  EXPECT_EQ(tags, std::set<std::string>()) << "no row has these";
}

INSTANTIATE_TEST_SUITE_P(, Tables, testing::ValuesIn(row_models()),
                         [](const auto& each) { return each.param.name; });

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
#define MODEL_EVENT "exported_names.inc"
#include "models.inc"
#undef MODEL_EVENT
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

using Names = std::vector<std::string>;

Names without(const std::set<std::string>& names, const std::set<std::string>& others) {
  Names rest;
  std::set_difference(names.begin(), names.end(), others.begin(), others.end(),
                      std::back_inserter(rest));
  return rest;
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
                "ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index",
                "ymap_xo_ocifip_return_address_state"});
  names.insert({"yfw_map_reg_ifip_conf", "yfw_map_reg_ifip_conf_ipv6",
                "yfw_map_reg_ifip_oper_ipv6_nd", "yfw_map_reg_ifip_ma_ipv6",
                "yfw_map_reg_ifip_origin_ipv4", "yfw_map_reg_ocifip_vrrp_conf",
                "yfw_map_reg_ocifip_vrrp_oper", "yfw_map_reg_ocifip_v4ma_oper",
                "yfw_map_reg_ocifip_v6ma_oper"});
  for (const char* level : {"lvla", "lvlb"}) {
    add_entry(names, if_ip, level, "subinterface");
    add_entry(names, if_ip, level, "routed_vlan");
    add_entry(names, ipv4_io_cfg, level, "interface_configuration");
  }
  for (const char* model : {"ipv6macfg_", "ipv4arpcfg_", "ipv6ndcfg_"}) {
    add_entry(names, std::string("ymap_xo_ocifip_halvaneombrix") + model, "lvla",
              "interface_configuration");
  }
  add_entry(names, "ymap_ox_ocifip_openconfigifipext_", "lvla", "ipv6");
  // The sanitizers add symbols of their own: marks of exported data, and types of functions; so
  // does clang where it counts lines. Without optimisation, templates of the C++ library stand
  // beside them.
  const std::set<std::string> exported =
      output_lines("nm -D --defined-only --format=just-symbols '" OCIFIP_PLUGIN
                   "' | grep -vE '^(__odr_asan|_ZT[IS]F|_ZN9__gnu_cxx)|___llvm_prf_'");
  EXPECT_EQ(without(exported, names), Names()) << "are exported, and nothing names them";
  EXPECT_EQ(without(names, exported), Names()) << "are not exported";
}

// --- entries -------------------------------------------------------------------------------------

std::string symbol_of(yfw_map_leaf_callback callback) {
  Dl_info symbol{};
  const bool is_known = dladdr(reinterpret_cast<void*>(callback), &symbol) != 0;
  return is_known && symbol.dli_sname != nullptr ? symbol.dli_sname : "";
}

// The callbacks that the host enters with native data, by name.
std::set<std::string> names_of_entries(const ocifip::PluginEntries& entries) {
  std::set<std::string> names;
  for (const yfw_map_leaf_callback callback : entries.read_back.interface_configuration) {
    names.insert(symbol_of(callback));
  }
  for (const auto* trees : {&entries.read_back.trees, &entries.read_back.summaries}) {
    for (const ocifip::NativeTree& tree : *trees) {
      names.insert(symbol_of(tree.enter));
    }
  }
  return names;
}

// Native data that no entry takes would read back as nothing.
TEST(Entries, TakeTheTopsOfEveryNativeModel) {
  const Models models(OCIFIP_MODELS_DIR);
  const ocifip::Plugin plugin(OCIFIP_PLUGIN);
  const std::set<std::string> entered = names_of_entries(plugin.entries());
  std::set<std::string> exported =
      output_lines("nm -D --defined-only --format=just-symbols '" OCIFIP_PLUGIN
                   "' | grep -E '^ymap_xo_.*_augment_[a-z]+_interface_configuration$'");
  for (const RowModel& rows : row_models()) {
    if (rows.model.direction != ymap::Direction::kToOpenConfig) {
      continue;
    }
    for (const RowIndex top : tops_of(rows.model)) {
      const Row& row = rows.model.rows[top];
      const lysc_node* at_the_top = models.child(nullptr, row.tag, rows.model.module_namespace);
      const auto schemas = schemas_of(models, rows, top);
      if (at_the_top != nullptr && std::count(schemas.begin(), schemas.end(), at_the_top) != 0) {
        exported.insert(row.name);
      }
    }
  }
  // The host walks this one by itself, and enters the walker of its list.
  const std::string list = "ymap_xo_ocifip_halvaneombrixifmgrcfg_lvla_interfaceconfigurations";
  EXPECT_EQ(exported.erase(list), 1U);
  exported.insert(list + "_interfaceconfiguration");
  EXPECT_EQ(entered, exported);
}

TEST(Imports, AreDeclaredByTheContract) {
  const std::set<std::string> undefined =
      output_lines("nm -D --undefined-only --format=just-symbols '" OCIFIP_PLUGIN
                   "' | grep -v -e @ -e '^_ITM_' -e '^__gmon_start__' -e '^__[au]' ");
  const std::set<std::string> declared =
      output_lines("grep -rhoE '[A-Za-z_][A-Za-z0-9_]+' '" OCIFIP_PLATFORM_INCLUDE "' | sort -u");
  EXPECT_EQ(without(undefined, declared), Names());
  EXPECT_TRUE(undefined.contains("yfw_map_datatree_add_path_flagged"));
}

}  // namespace
