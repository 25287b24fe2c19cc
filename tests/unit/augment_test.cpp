// The entry callbacks: entered with a family's node or with the augmented entry, walked once or
// twice.

#include <tuple>

#include "mapping_test.h"
#include "models.h"

using namespace recording;

namespace {

constexpr auto kDelete = NIDL_YFW_EDIT_DELETE;
constexpr auto kRemove = NIDL_YFW_EDIT_REMOVE;

struct Entry {
  const char* name;
  yfw_map_leaf_callback call;
  const char* walker;
  yfw_map_leaf_callback hook;
  const char* entry_tag;
  const char* family;
  const char* other_family;

  friend std::ostream& operator<<(std::ostream& stream, const Entry& entry) {
    return stream << entry.name;
  }
};

// clang-format off
#define ENTRY(level, walker_level, place, tag, family, other)                                        \
  Entry{"ymap_ox_ocifip_openconfigifip_augment_" #level "_" #place,                                  \
        ymap_ox_ocifip_openconfigifip_augment_##level##_##place,                                     \
        "ymap_ox_ocifip_openconfigifip_" #walker_level "_" family,                                   \
        ymap_ox_ocifip_openconfigifip_##level##_##place##_parse_augments, tag, family, other}
// clang-format on

class EveryEntry : public MappingTest, public testing::WithParamInterface<Entry> {};

TEST_P(EveryEntry, WalksItsFamily) {
  const Entry& entry = GetParam();
  const Tree family = node(entry.family);
  const std::string visit = std::string("push 1 ") + entry.family + "; pop " + entry.family;
  request(YFW_MAP_REQUEST_READ_STATE);
  for (const Tree& tree : {family, node(entry.entry_tag, {family})}) {
    platform.forget_calls();
    EXPECT_EQ(entry.call(&ctx, plant(tree), &out), 0U);
    EXPECT_EQ(platform.recorded(kHierarchy), calls(visit + "; " + visit));
    EXPECT_EQ(lines_of(entry.walker).substr(0, 10), "trc Start\n");
    EXPECT_EQ(
        lines_of(entry.name),
        calls(std::string("trc Start; ") +
              (tree.children.empty() ? ""
                                     : std::string("trc Processing tag '") + entry.family + "'; ") +
              "trc End"));
  }
}

TEST_P(EveryEntry, RefusesWhatIsNotOfItsFamily) {
  const Entry& entry = GetParam();
  EXPECT_EQ(entry.call(&ctx, plant(node(entry.other_family)), &out), 0xaaf2ee00);
  EXPECT_EQ(refused_tag(), entry.other_family);
  // Its hook takes what other modules add.
  EXPECT_EQ(entry.call(&ctx, plant(node(entry.entry_tag, {leaf("visitor").in(kForeign)})), &out),
            0xaaf2f800);
  EXPECT_EQ(refused_tag(), "visitor");
  EXPECT_EQ(entry.hook(&ctx, plant(leaf("guest").in(kForeign)), &out), 0xaaf2f800);
  EXPECT_EQ(refused_tag(), "guest");
  // A list entry's key is the interfaces mapping's; a container has none.
  EXPECT_EQ(entry.call(&ctx, plant(node(entry.entry_tag, {leaf("index", "0")})), &out),
            std::string(entry.entry_tag) == "subinterface" ? 0U : 0xaaf2ee00U);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, EveryEntry,
    testing::Values(ENTRY(lvla, lvla, subinterface, "subinterface", "ipv4", "ipv6"),
                    ENTRY(lvlb, lvla, subinterface, "subinterface", "ipv6", "ipv4"),
                    ENTRY(lvla, lvlb, routed_vlan, "routed-vlan", "ipv4", "ipv6"),
                    ENTRY(lvlb, lvlb, routed_vlan, "routed-vlan", "ipv6", "ipv4")),
    [](const auto& instance) { return instance.param.name; });

class SubinterfaceEntry : public MappingTest {
 protected:
  cerrno enter(const Node* in) {
    return ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface(&ctx, in, &out);
  }
};

TEST_F(SubinterfaceEntry, WritesByRequestAndShape) {
  struct Case {
    const char* name;
    std::uint32_t request_op;
    Tree tree;
    cerrno result;
    std::string writes;
    std::string refusals;  // and questions
  };
  const Tree config = node("ipv4", {node("config", {leaf("mtu", "1400")})});
  const Tree index = leaf("index", "3").in(kInterfaces);
  const Tree unknown = node("ipv5");
  const Tree visitor = leaf("visitor").in(kForeign);
  const auto entry = [](std::vector<Tree> children) {
    return node("subinterface", std::move(children)).in(kInterfaces);
  };
  const std::string merged = "ipv4-network NONE; ipv4-network/mtu=1400 write";
  const std::string query = "ipv4-network/mtu=1400 NONE; ipv4-network/mtu=1400 NONE";
  const std::string gone = "ipv4-network delete; ipv4-network remove!";
  const std::string asked = "is_request_add ipv4";
  const std::string unsupported = "strdup =\"ipv5\" as YFW MAP; error_path";
  const std::string refused = "is_request_add visitor; strdup =\"visitor\" as YFW MAP; error_path";
  // clang-format off
  for (const Case& each : {
           Case{"merge", 1, config, 0, merged, ""},
           Case{"merge of the entry", 1, entry({config}), 0, merged, ""},
           Case{"configuration read", 0, config, 0, query, asked},
           Case{"state read", 10, config, 0, query, asked},
           Case{"read of the entry", 0, entry({index, config}), 0, query, asked},
           Case{"delete", 1, node("ipv4").with(kDelete), 0, gone, asked},
           Case{"remove", 1, node("ipv4").with(kRemove), 0, "ipv4-network remove; ipv4-network remove", asked},
           Case{"delete in an entry that stays", 1, entry({node("ipv4").with(kDelete)}), 0, gone, asked},
           Case{"delete of a described container", 1, config.with(kDelete), 0xaaf2a000, "",
                "strdup =\"ipv4\" as YFW MAP; error_path"},
           Case{"deleted entry", 1, entry({}).with(kDelete), 0, "ipv4-network remove!", ""},
           Case{"removed entry", 1, entry({}).with(kRemove), 0, "ipv4-network remove", ""},
           Case{"deleted entry with its key", 1, entry({index}).with_all(kDelete), 0, "ipv4-network remove!", ""},
           Case{"key without the delete", 1, entry({index}).with(kDelete), 0, "ipv4-network remove!", ""},
           Case{"deleted entry with the container", 1, entry({node("ipv4")}).with_all(kDelete), 0, gone, asked},
           Case{"deleted entry with all below", 1, entry({index, config}).with_all(kDelete), 0,
                "ipv4-network NONE; ipv4-network/mtu delete; ipv4-network NONE; ipv4-network/mtu delete", asked},
           Case{"entry that stays", 1, entry({}), 0, "", ""},
           Case{"read of an empty entry", 0, entry({}).with(kDelete), 0, "", ""},
           Case{"unknown tag, edit", 1, unknown, 0xaaf2ee00, "", unsupported},
           Case{"unknown tag, other edit", 3, entry({unknown, config}), 0xaaf2ee00, "", unsupported},
           Case{"unknown tag, read", 0, unknown, 0, "", "is_request_add ipv5"},
           Case{"foreign node added", 1, visitor, 0xaaf2f800, "", refused},
           Case{"foreign node deleted", 1, visitor.with(kDelete), 0, "", "is_request_add visitor; is_request_add visitor"},
           Case{"unreadable container", 1, broken("ipv4", 2), 0xaaf29e00, "", ""},
           Case{"unreadable entry", 1, broken("subinterface", 2), 0xaaf29e00, "", ""},
           Case{"the first failure ends it", 1, entry({visitor, config}), 0xaaf2f800, "", refused},
       }) {
    // clang-format on
    SCOPED_TRACE(each.name);
    next(each.request_op);
    EXPECT_EQ(enter(plant(each.tree)), each.result);
    EXPECT_EQ(ipv4_writes(), calls(each.writes));
    EXPECT_EQ(platform.recorded(kRefusals | kQuestions), calls(each.refusals));
    EXPECT_EQ(platform.calls_of("push") == 0, each.writes.empty());
  }
}

TEST_F(SubinterfaceEntry, ADeleteIsARemoveForTheSecondPassOnly) {
  for (const auto& [operation, flags] : {std::pair{kDelete, 0x10}, std::pair{kRemove, 0}}) {
    for (const char* tag : {"ipv4", "subinterface"}) {
      Node* deleted = plant(node(tag).with(operation));
      EXPECT_EQ(enter(deleted), 0U);
      EXPECT_EQ(deleted->edit_operation, operation) << tag;
      EXPECT_EQ(deleted->flags, flags) << tag;
    }
  }
}

// The framework, walking a deleted subinterface, hands over a container that inherits the delete.
TEST_F(SubinterfaceEntry, ADeleteInheritedFromTheVisitedEntryMayHaveASubtree) {
  Node* ipv4 = plant(node("ipv4", {node("config", {leaf("mtu")})}).with_all(kDelete));
  EXPECT_EQ(enter(ipv4), 0xaaf2a000);
  for (const auto& [operation, result] :
       {std::pair{kDelete, 0U}, std::pair{NIDL_YFW_EDIT_WRITE, 0xaaf2a000U}}) {
    platform.visited.nodes = {plant(node("subinterface").with(operation))};
    EXPECT_EQ(enter(ipv4), result);
  }
  platform.visited.nodes.clear();
  state.visited_entries = nullptr;
  EXPECT_EQ(enter(ipv4), 0xaaf2a000);
}

TEST_F(SubinterfaceEntry, TheSecondPassHasNoResult) {
  const Tree config = node("ipv4", {node("config", {leaf("mtu")})});
  request(YFW_MAP_REQUEST_READ_CONFIG);
  platform.fail("add_path", 2, 55);
  EXPECT_EQ(enter(plant(config)), 0U);
  EXPECT_EQ(platform.calls_of("add_path"), 2);
  // A failure of the first pass is the result, and there is no second.
  platform.fail("add_path", 1, 56);
  EXPECT_EQ(enter(plant(config)), 56U);
  EXPECT_EQ(platform.calls_of("add_path"), 3);
}

TEST_F(SubinterfaceEntry, SaysWhyItFails) {
  Tree untagged = node("x");
  untagged.tag.reset();
  for (const auto& [tree, result, messages] : {
           std::tuple{
               node("subinterface", {node("ipv5")}), 0xaaf2ee00,
               "trc Processing tag 'ipv5'; err Unsupported tag is specified in the request."},
           {node("subinterface", {untagged}), 0xaaf29e00, "err Tag name is not available!"},
           {broken("subinterface", 1), 0xaaf29e00, "err Failed to get subtrees!"},
       }) {
    next(YFW_MAP_REQUEST_MERGE);
    EXPECT_EQ(enter(plant(tree)), result);
    EXPECT_EQ(lines_of("ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface"),
              calls(std::string("trc Start; ") + messages + "; trc End"));
  }
}

}  // namespace
