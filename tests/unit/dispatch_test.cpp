// The tables of the OpenConfig models: every row is found by its tag, is named after its place, and
// does what its row says.

#include <set>

#include "mapping_test.h"
#include "models.h"

using namespace recording;
using ymap::kNoRow;
using ymap::Model;
using ymap::Row;
using ymap::RowIndex;
using ymap::RowKind;

namespace {

constexpr const char* kSubinterface =
    "/oc-if:interfaces/oc-if:interface/oc-if:subinterfaces/oc-if:subinterface";
constexpr const char* kRoutedVlan = "/oc-if:interfaces/oc-if:interface/oc-vlan:routed-vlan";

using Paths = std::set<std::string>;

// One of the trees of a model.
struct ModelTree {
  const char* name;
  const Model& model;
  RowIndex root;
  const char* list_prefix;  // of the paths of its lists; null: each tag is prefixed
  Paths refused_edits;      // containers and lists at which no edit may end; "*" is all
  Paths refusing_leaves;    // refused by a callback of their own, not the fallback; the same
  Paths refused_addresses;  // leaves that refuse the value "10.0.0.1", or this one without more

  friend std::ostream& operator<<(std::ostream& stream, const ModelTree& tree) {
    return stream << tree.name;
  }
};

namespace if_ip = ymap::openconfig_if_ip;
namespace interfaces = ymap::openconfig_interfaces;

// clang-format off
const std::vector<ModelTree> kTrees = {
    {"SubinterfaceIpv4", if_ip::kModel, if_ip::row_lvla_ipv4, kSubinterface, {}, {},
     {"/ipv4/addresses/address/vrrp/vrrp-group/config/accept-mode",
      "/ipv4/addresses/address/vrrp/vrrp-group/config/preempt",
      "/ipv4/addresses/address/vrrp/vrrp-group/config/virtual-address"}},
    {"SubinterfaceIpv6", if_ip::kModel, if_ip::row_lvla_ipv6, kSubinterface, {},
     {"/ipv6/config/dhcp-client", "/ipv6/router-advertisement/state/interval", "/ipv6/state/dhcp-client",
      "/ipv6/state/enabled"},
     {"/ipv6/addresses/address/vrrp/vrrp-group/config/accept-mode",
      "/ipv6/addresses/address/vrrp/vrrp-group/config/preempt"}},
    {"RoutedVlanIpv4", if_ip::kModel, if_ip::row_lvlb_ipv4, kRoutedVlan, {"*"}, {"*"}, {}},
    {"RoutedVlanIpv6", if_ip::kModel, if_ip::row_lvlb_ipv6, kRoutedVlan, {"*"}, {"*"}, {}},
    {"Interfaces", interfaces::kModel, interfaces::row_lvla_interfaces, nullptr, {}, {}, {}},
};
// clang-format on

using Refusals = MappingTest;

class Dispatch : public MappingTest, public testing::WithParamInterface<ModelTree> {
 protected:
  static const Row& row(RowIndex index) { return GetParam().model.rows[index]; }
  static RowIndex parent(RowIndex index) { return GetParam().model.parents[index]; }

  static const ymap::List& list(RowIndex index) { return GetParam().model.lists[row(index).list]; }
  static std::string augments_name(RowIndex index) {
    return std::string(row(index).name) + "_parse_augments";
  }

  // The rows of the tree: up to the next one that is not below the root.
  static std::vector<RowIndex> rows() {
    std::vector<RowIndex> all = {GetParam().root};
    for (RowIndex index = GetParam().root + 1; index < GetParam().model.row_count; ++index) {
      if (parent(index) == kNoRow) {
        break;
      }
      all.push_back(index);
    }
    return all;
  }

  static std::string path(RowIndex index, const std::string& prefix = "/") {
    return (parent(index) != kNoRow ? path(parent(index), prefix) : "") + prefix + row(index).tag;
  }

  // An input tree that leads to a row, around what stands there. Keys follow, so that the row is
  // the first leaf to be met.
  static Tree leading_to(RowIndex index, Tree tree) {
    for (RowIndex at = parent(index); at != kNoRow; at = parent(at)) {
      std::vector<Tree> children = {tree};
      if (row(at).kind == RowKind::kList) {
        for (const char* key : list(at).keys) {
          if (key != nullptr && tree.tag != key) {
            children.push_back(made_for(leaf(key, "10.0.0.1")));
          }
        }
      }
      tree = made_for(node(row(at).tag, children));
    }
    return tree;
  }

  static Tree made_for(const Tree& tree) { return tree.in(GetParam().model.module_namespace); }
};

TEST_P(Dispatch, EveryLeafIsCalledOnce) {
  Paths refused;
  Paths refusing;
  Paths refused_addresses;
  for (const RowIndex index : rows()) {
    if (row(index).kind != RowKind::kLeaf) {
      continue;
    }
    SCOPED_TRACE(path(index));
    platform.forget_calls();
    const Tree tree = made_for(leaf(row(index).tag, "10.0.0.1"));
    ymap::walk(GetParam().model, GetParam().root, &ctx, plant(leading_to(index, tree)), &out);
    // The dispatch writes a start line under the leaf's name, its callback another.
    const std::string lines = lines_of(row(index).name);
    const bool is_called = row(index).callback.leaf != nullptr && !row(index).has(ymap::kReadsOnly);
    EXPECT_EQ(lines.starts_with("trc Start\ntrc Start\n"), is_called) << lines;
    EXPECT_TRUE(lines.starts_with("trc Start\n") && lines.ends_with("trc End\n")) << lines;
    // By itself: an entry's key may be refused when the leaf is not.
    const cerrno result = ymap::dispatch_leaf(GetParam().model, index, &ctx, plant(tree), &out);
    if (result != 0 && refused_tag() == "-") {
      refused_addresses.insert(path(index));
    } else if (result != 0) {
      EXPECT_EQ(result, 0xaaf2ee00);
      EXPECT_EQ(refused_tag(), row(index).tag);
      refused.insert(path(index));
      if (row(index).callback.leaf != nullptr) refusing.insert(path(index));
    }
  }
  EXPECT_EQ(refusing,
            GetParam().refusing_leaves == Paths{"*"} ? refused : GetParam().refusing_leaves);
  EXPECT_EQ(refused_addresses, GetParam().refused_addresses);
}

// Without a request state, or a stack for its entries, a request is a read of configuration; of an
// interface without a name, which its keys are empty for.
TEST_P(Dispatch, EveryLeafIsReadWithoutARequestState) {
  for (const RowIndex index : rows()) {
    if (row(index).kind != RowKind::kLeaf) {
      continue;
    }
    SCOPED_TRACE(path(index));
    const Node* in = plant(leading_to(index, made_for(leaf(row(index).tag, "10"))));
    const auto read = [&] {
      platform.forget_calls();
      const cerrno result = ymap::walk(GetParam().model, GetParam().root, &ctx, in, &out);
      return std::pair{result, platform.recorded(kWrites)};
    };
    next(YFW_MAP_REQUEST_READ_CONFIG);
    state.current_ifname[0] = '\0';
    const auto expected = read();
    state.visited_entries = nullptr;
    EXPECT_EQ(read(), expected);
    ctx.request_state = nullptr;
    EXPECT_EQ(read(), expected);
    ctx.request_state = &state;
  }
}

// ymap_ox_ocifip_MODULE_[leaf_]LEVEL_PATH: the path is the top container and the last two
// components, without hyphens.
TEST_P(Dispatch, RowsAreNamedAfterTheirPlace) {
  std::set<std::string> names;
  for (const RowIndex index : rows()) {
    std::string expected = row(GetParam().root).tag;
    if (index != GetParam().root) {
      if (parent(index) != GetParam().root) {
        expected += std::string("_") + row(parent(index)).tag;
      }
      expected += std::string("_") + row(index).tag;
    }
    std::erase(expected, '-');
    const std::string name = row(index).name;
    EXPECT_TRUE(name.ends_with("_" + expected)) << name << " at " << path(index);
    std::string before = name.substr(0, name.size() - expected.size() - 1);
    before.erase(0, before.rfind('_') + 1);
    EXPECT_TRUE(before.size() == 4 && before.starts_with("lvl")) << name;
    EXPECT_TRUE(names.insert(name).second) << name;
  }
}

TEST_P(Dispatch, ListsRecordTheirSchemaPath) {
  for (const RowIndex index : rows()) {
    if (row(index).kind == RowKind::kList) {
      const char* prefix = GetParam().list_prefix;
      EXPECT_EQ(list(index).path,
                prefix != nullptr ? prefix + path(index) : path(index, "/oc-if:"));
      EXPECT_NE(list(index).keys[0], nullptr) << path(index);
    }
  }
}

// Each container and list has an augment hook, which refuses what another module adds.
TEST_P(Dispatch, EveryContainerRefusesAForeignNode) {
  for (const RowIndex index : rows()) {
    if (row(index).kind == RowKind::kLeaf) {
      continue;
    }
    SCOPED_TRACE(path(index));
    next(YFW_MAP_REQUEST_MERGE);
    Node* visitor = plant(leaf("visitor").in(kForeign));
    EXPECT_EQ(ymap::parse_augments(GetParam().model, index, &ctx, visitor, &out), 0xaaf2f800);
    EXPECT_EQ(lines_of(augments_name(index)), "");
  }
}

// A delete of all below a container of which nothing is mapped must not pass without effect.
TEST_P(Dispatch, EditsThatEndAtAnUnmappedContainerAreRefused) {
  Paths refused;
  Paths all;
  for (const RowIndex index : rows()) {
    if (row(index).kind == RowKind::kLeaf) {
      continue;
    }
    SCOPED_TRACE(path(index));
    all.insert(path(index));
    Node* deleted = plant(made_for(node(row(index).tag).with(NIDL_YFW_EDIT_DELETE)));
    next(YFW_MAP_REQUEST_READ_CONFIG);
    EXPECT_EQ(ymap::walk(GetParam().model, index, &ctx, deleted, &out), 0U);
    next(YFW_MAP_REQUEST_MERGE);
    state.list_wide = 1;
    ymap::walk(GetParam().model, index, &ctx, deleted, &out);
    if (refused_tag() != "-") {
      EXPECT_EQ(refused_tag(), row(index).tag);
      refused.insert(path(index));
    }
  }
  EXPECT_EQ(refused, GetParam().refused_edits == Paths{"*"} ? all : GetParam().refused_edits);
}

INSTANTIATE_TEST_SUITE_P(Trees, Dispatch, testing::ValuesIn(kTrees),
                         [](const auto& instance) { return instance.param.name; });

// The refusal of a leaf without a mapping: the path first, then the tag, which names the copy, too.
TEST_F(Refusals, RecordTheLeaf) {
  for (const auto& duck : {ymap_ox_ocifip_openconfigifip_duck_map_leaf,
                           ymap_ox_ocifip_openconfiginterfaces_duck_map_leaf}) {
    platform.forget_calls();
    EXPECT_EQ(duck(&ctx, plant(leaf("enabled", "true")), &out), 0xaaf2ee00);
    EXPECT_EQ(refused_tag(), "enabled");
  }
  EXPECT_EQ(platform.recorded(kRefusals),
            calls("error_path; free =\"enabled\"; strdup =\"enabled\" as enabled"));
}

TEST_F(Refusals, NeedNoRequestState) {
  ctx.request_state = nullptr;
  EXPECT_EQ(ymap_ox_ocifip_openconfigifip_duck_map_leaf(&ctx, plant(leaf("enabled")), &out),
            0xaaf2ee00);
  EXPECT_EQ(platform.recorded(kRefusals), "error_path\n");
}

}  // namespace
