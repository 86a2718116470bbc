#include "engine/map_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace gae {
namespace {

using ::testing::ElementsAre;

// The renumbering as its rule reads: for each number below the largest, if no marker uses
// it (after the removals so far), every larger number moves down by one.
void LiteralGroupCheck(int32_t n, int32_t* num_groups, int32_t* group) {
  const int32_t M = *std::max_element(group, group + n);
  int32_t R = 0;
  if (M - 1 < 1) return;
  for (int32_t i = 1; i <= M - 1; ++i) {
    if (std::count(group, group + n, i - R) == 0) {
      ++R;
      for (int32_t k = 0; k < n; ++k)
        if (group[k] > i - R) --group[k];
      --*num_groups;
    }
  }
}

TEST(MapGroupCheck, ClosesGapsAsTheLiteralRuleOnRandomGroups) {
  std::mt19937 rng(1);
  for (int trial = 0; trial < 500; ++trial) {
    const int32_t n = 1 + static_cast<int32_t>(rng() % 30);
    std::uniform_int_distribution<int32_t> value(-3, 12);
    std::vector<int32_t> ours(n);
    for (int32_t& v : ours) v = value(rng);
    std::vector<int32_t> literal = ours;
    int32_t our_groups = 20, literal_groups = 20;
    MapGroupCheck(n, &our_groups, ours.data());
    LiteralGroupCheck(n, &literal_groups, literal.data());
    ASSERT_EQ(ours, literal);
    ASSERT_EQ(our_groups, literal_groups);
  }
}

TEST(MapState, AllocateRebuildRelease) {
  MapModel map;
  AllocateMapState(map, 6);
  EXPECT_EQ(map.map_state, kMapAllocated);
  EXPECT_THAT(map.order, ElementsAre(1, 2, 3, 4, 5, 6));
  EXPECT_THAT(map.anchor, ElementsAre(0, 0, 0, 0, 0, 0));
  EXPECT_TRUE(map.group_size.empty());

  map.group = {4, 0, 2, -7, 4, -1};
  RebuildGroupModel(map);
  EXPECT_EQ(map.map_state, kMapGrouped);
  EXPECT_EQ(map.num_groups, 2);
  EXPECT_THAT(map.group, ElementsAre(2, 0, 1, -7, 2, -1));
  EXPECT_EQ(map.num_mapped, 3);
  EXPECT_EQ(map.num_unlinked, 1);
  EXPECT_EQ(map.num_deleted, 2);  // -7 counts as -1 does
  EXPECT_THAT(map.group_size, ElementsAre(1, 2));
  EXPECT_THAT(map.group_status, ElementsAre(1, 1));
  // group 1, group 2, then unlinked, then deleted, each by marker number
  EXPECT_THAT(map.order, ElementsAre(3, 1, 5, 2, 4, 6));
  EXPECT_THAT(map.position, ElementsAre(0, 0, 0, 0, 0, 0));

  map.group[1] = 1;  // a grouped model is not rebuilt
  RebuildGroupModel(map);
  EXPECT_EQ(map.num_unlinked, 1);

  // A new allocation starts over; with every marker unlinked the model is empty.
  AllocateMapState(map, 3);
  EXPECT_TRUE(map.group_size.empty());
  RebuildGroupModel(map);
  EXPECT_EQ(map.num_groups, 0);
  EXPECT_EQ(map.num_mapped, 0);
  EXPECT_EQ(map.num_unlinked, 3);
  EXPECT_TRUE(map.group_size.empty());
  EXPECT_THAT(map.order, ElementsAre(1, 2, 3));
  ReleaseMapState(map);
  EXPECT_EQ(map.map_state, kMapReleased);
  EXPECT_TRUE(map.order.empty());
}

TEST(MapState, GroupNamesFollowStatus) {
  std::vector<int32_t> status(100001, 7);
  status[0] = 1;        // Group1
  status[2] = 3;        // Chromsome3
  status[11] = 2;       // Chromsome12
  status[9999] = 1;     // Group10000
  status[100000] = 2;   // number 100001 does not fit five digits
  std::vector<std::string> names(status.size(), std::string(19, 'x'));
  NameGroups(static_cast<int32_t>(status.size()), status.data(), names);
  EXPECT_EQ(names[0], "Group1             ");
  EXPECT_EQ(names[2], "Chromsome3         ");
  EXPECT_EQ(names[11], "Chromsome12        ");
  EXPECT_EQ(names[9999], "Group10000         ");
  EXPECT_EQ(names[100000], "Chromsome*****     ");
  EXPECT_EQ(names[1], std::string(19, 'x'));  // another status: untouched
}

}  // namespace
}  // namespace gae
