// The rows of the native models that are read back.

#include "mapping_test.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_arp_oper.h"
#include "ymap_ocifip_halvane_ombrix_ipv4_io_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v4ma_oper.h"
#include "ymap_ocifip_halvane_ombrix_private_ocifip_v6ma_oper.h"

using namespace recording;
using ymap::Row;
using ymap::RowIndex;
using ymap::RowKind;

namespace {

using NativeRows = MappingTest;
const ymap::Model& state_model = ymap::halvane_ombrix_ipv4_io_oper::kModel;

// A node for a row and for each row below it. Moves the index behind them.
Tree with_all_below(RowIndex& index) {
  const RowIndex parent = index;
  const Row& row = state_model.rows[index++];
  Tree tree = node(row.tag).in(state_model.module_namespace);
  if (row.kind == RowKind::kLeaf) {
    tree.value = "24";
  }
  while (index < state_model.row_count && state_model.parents[index] == parent) {
    tree.children.push_back(with_all_below(index));
  }
  return tree;
}

TEST_F(NativeRows, OnlyThreeLeavesOfTheStateAreWritten) {
  RowIndex rows = 0;
  const Node* all = plant(with_all_below(rows));
  EXPECT_EQ(ymap_xo_ocifip_halvaneombrixipv4iooper_lvla_ipv4network(&ctx, all, &out), 0U);
  std::string writes = platform.recorded(kWrites);
  replace_all(writes, "add ip /interfaces/interface/subinterfaces/subinterface/ipv4/", "");
  EXPECT_EQ(writes,
            calls("address/state/ip =\"24\"; addresses/address/state/prefix-length =\"24\"; "
                  "addresses/address/state/origin =\"STATIC\"; state/mtu =\"24\""));
}

TEST_F(NativeRows, HaveCallbacksOfTheirOwn) {
  for (const ymap::Model* model : {&state_model, &ymap::halvane_ombrix_ipv4_arp_oper::kModel,
                                   &ymap::halvane_ombrix_private_ocifip_v4ma_oper::kModel,
                                   &ymap::halvane_ombrix_private_ocifip_v6ma_oper::kModel}) {
    for (RowIndex i = 0; i < model->row_count; ++i) {
      const Row& row = model->rows[i];
      EXPECT_TRUE(row.kind == RowKind::kLeaf ? row.callback.leaf != nullptr
                                             : row.callback.hook != nullptr)
          << row.name;
    }
  }
}

}  // namespace
