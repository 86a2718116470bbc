// The editing exports on a real pairwise file: random sequences through the C entries give
// exactly what the inner steps give with the same records in memory, and without a file
// only the edits that need no distance take place.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "engine/edit_group_order.h"
#include "engine/edit_marker_move.h"
#include "engine/edit_test_map.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "support/pair_store.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::EditRequest;
using testing::TestMap;

class EditingExports : public testing::InTempDir {
 protected:
  // Writes the records as the project's .LRD and leaves its name where a CheckError export
  // would.
  static void InstallStore(const TestMap& map) {
    testing::MemoryStore store;
    store.records = map.records;
    testing::UseStoreFile(store, "project.LRD", map.mapping_function);
  }
  static void MarkerMove(TestMap& m, int index, int target, int mode) {
    MAPGroupMarkerMove(index, target, mode, static_cast<int>(m.group_size.size()),
                       static_cast<int>(m.order.size()), &m.num_mapped, &m.num_unlinked,
                       &m.num_deleted, m.group_size.data(), m.group_status.data(),
                       m.group.data(), m.order.data(), m.position.data());
  }
  static void GroupMove(TestMap& m, int id, int direction) {
    MAPGroupMove(id, direction, static_cast<int>(m.group_size.size()),
                 static_cast<int>(m.order.size()), m.group_size.data(), m.group_status.data(),
                 m.group.data(), m.order.data(), m.position.data());
  }
};

TEST_F(EditingExports, RandomSequencesMatchTheInnerStepsOnTheSameRecords) {
  std::mt19937 rng(7);
  for (int sequence = 0; sequence < 400; ++sequence) {
    TestMap inner = testing::RandomMappedExample(rng);
    TestMap exported = inner;
    InstallStore(inner);
    const PairTable table = inner.Table();
    for (int step = 0; step < 20; ++step) {
      GroupModelArrays model = inner.Arrays();
      const EditRequest edit = testing::RandomEdit(rng, model);
      if (edit.kind == EditRequest::kMarkerMove) {
        ApplyMarkerMove(model, PlanMarkerMove(model, edit.a, edit.b, edit.c), &table);
        inner.TakeCounts(model);
        MarkerMove(exported, edit.a, edit.b, edit.c);
      } else if (edit.kind == EditRequest::kGroupMove) {
        MoveGroup(edit.a, edit.b, model.num_groups, model.num_markers, model.group_size,
                  model.group_status, model.group, model.order, model.position);
        GroupMove(exported, edit.a, edit.b);
      } else {
        const int32_t start = GroupStart(model, edit.a);
        const int32_t size = model.group_size[edit.a - 1];
        ReverseGroup(size, model.order + start, model.position + start);
        MAPGroupReverse(size, &exported.order[start], &exported.position[start]);
      }
      ASSERT_TRUE(inner == exported) << "sequence " << sequence << " step " << step;
      ASSERT_TRUE(testing::LayoutHolds(exported.Arrays()));
    }
  }
  EXPECT_FALSE(Process().log.IsConnected());
  EXPECT_EQ(MessageCode(), 0);
}

TEST_F(EditingExports, WithoutAStoreOnlyEditsThatNeedNoDistanceHappen) {
  // Ordered group 1: markers 1 2 3; unordered group 2: 4 5; unlinked 6.
  const std::vector<testing::MarkerSpot> spots = {{1, 0.0f}, {1, 25.0f}, {1, 37.5f},
                                                  {2, 0.0f}, {2, 10.0f}, {1, 50.0f}};
  TestMap map = testing::LayOut(spots, 3, {{1, 2, 3}, {4, 5}}, {2, 1}, {6}, {});
  const TestMap start = map;
  MarkerMove(map, 2, 0, 1);  // joining 1 and 3 needs their distance
  MarkerMove(map, 1, 1, 2);  // so does a swap in an ordered group of three
  MarkerMove(map, 6, 1, 1);  // and measuring a newcomer from the group's last marker
  EXPECT_TRUE(map == start);
  Process().pair_store = PairStoreSettings{"missing.LRD", 2, 3};
  MarkerMove(map, 2, 0, 1);
  EXPECT_TRUE(map == start);
  MarkerMove(map, 3, 0, 1);  // the last marker leaves without measuring anything
  MarkerMove(map, 5, 2, 3);  // the unlinked marker (now at 5) joins the unordered group
  EXPECT_EQ(map.order, (std::vector<int32_t>{1, 2, 4, 5, 6, 3}));
  EXPECT_EQ(map.group, (std::vector<int32_t>{1, 1, -1, 2, 2, 2}));
  EXPECT_EQ(std::vector<int>({map.num_mapped, map.num_unlinked, map.num_deleted}),
            std::vector<int>({5, 0, 1}));
  GroupMove(map, 2, 1);
  EXPECT_EQ(map.order, (std::vector<int32_t>{4, 5, 6, 1, 2, 3}));
  MAPGroupReverse(2, &map.order[3], &map.position[3]);
  EXPECT_EQ(map.order, (std::vector<int32_t>{4, 5, 6, 2, 1, 3}));
  EXPECT_EQ(map.position[4], 25.0f);
  EXPECT_TRUE(testing::LayoutHolds(map.Arrays()));
  // Missing arrays are refused, not dereferenced.
  MAPGroupMarkerMove(1, 0, 1, 2, 6, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                     nullptr, nullptr);
  MAPGroupMove(2, 1, 2, 6, nullptr, nullptr, nullptr, nullptr, nullptr);
  MAPGroupReverse(2, nullptr, nullptr);
  EXPECT_FALSE(testing::FileExists("MAP.log"));
}

}  // namespace
}  // namespace gae
