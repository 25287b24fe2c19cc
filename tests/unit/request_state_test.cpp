// What callbacks do to the state of a request, and to the nodes that they are given.

#include "mapping_test.h"
#include "models.h"
#include "yfw_map_ifip_util.h"

using namespace recording;

namespace {

class RequestState : public MappingTest {
 protected:
  RequestState() {
    platform.interfaces["Eth1"] = {{"10.0.0.1", 24}, {{"10.0.1.1", 25}, {"10.0.2.1", 16}}};
  }
  Node* walk(const std::string& text) {
    Node* ipv4 = plant(tree_of(text));
    EXPECT_EQ(ymap_ox_ocifip_openconfigifip_lvla_ipv4(&ctx, ipv4, &out), 0U);
    return ipv4;
  }
  ymap::AddressDb& db() { return *ymap::address_db(&ctx); }
};

TEST_F(RequestState, TheContainerBeginsADatabaseUnlessTheListIsDeletedAsAWhole) {
  for (const bool list_wide : {false, true}) {
    next(YFW_MAP_REQUEST_MERGE);
    state.list_wide = list_wide ? 1 : 0;
    db().handled_count = 7;
    const Node* ipv4 = plant(tree_of("ipv4{addresses{address address}}"));
    EXPECT_EQ(ymap_ox_ocifip_openconfigifip_cont_lvla_ipv4(&ctx, ipv4, 1, &out), 0U);
    EXPECT_EQ(db().handled_count, list_wide ? 7U : 0U);
    EXPECT_EQ(db().address_count, list_wide ? 0U : 2U);
  }
}

TEST_F(RequestState, APromotionGivesTheKeyItsOperationBack) {
  for (const char* operation : {"write", "delete"}) {
    const Node* ipv4 =
        walk("ipv4!none{addresses{address!delete{ip!" + std::string(operation) + "=10.0.0.1}}}");
    const Node& key = ipv4->children[0].children[0].children[0];
    EXPECT_EQ(key.edit_operation, operation_of(operation));
    EXPECT_NE(key.flags & NIDL_YFW_FLAG_OPERATION_OVERRIDE, 0);
  }
}

TEST_F(RequestState, ThePrimarysNetmaskFollowsPromotion) {
  db().entry_is_primary = 1;
  const Node* length = plant(tree_of("prefix-length!delete"));
  EXPECT_EQ(ymap_ox_ocifip_openconfigifip_leaf_lvla_ipv4_config_prefixlength(&ctx, length, &out),
            0U);
  EXPECT_EQ(db().entry_is_primary, 0U);
}

// The framework must not reuse a list's current entry while an entry, the MTU or a promotion is
// written.
TEST_F(RequestState, EntriesOfItsOwnAreAdded) {
  std::string reuse;
  platform.on_write = [&] { reuse += state.list_entry_reuse != 0 ? "y" : "n"; };
  walk(
      "ipv4{addresses{address{ip=10.0.9.1 config{ip=10.0.9.1 prefix-length=24}}} "
      "config{mtu=1400}}");
  // The two containers, the entry, four leaves, the MTU.
  EXPECT_EQ(reuse, "yynyyyyn");
  reuse.clear();
  walk("ipv4!none{addresses{address!delete{ip!write=10.0.1.1} address!delete{ip!write=10.0.0.1}}}");
  // The two containers, the secondary and its key, the promotion.
  EXPECT_EQ(reuse, "yynynnnnn");
}

}  // namespace
