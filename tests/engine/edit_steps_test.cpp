// Hand-computed edits on a small map. Positions are multiples of 6.25 cM under the Morgan
// function, so frequencies (x/100) and every sum of positions are exact in 32 bits and each
// expected value below is plain arithmetic on the marker coordinates.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/edit_blocks.h"
#include "engine/edit_group_order.h"
#include "engine/edit_in_group.h"
#include "engine/edit_marker_move.h"
#include "engine/edit_test_map.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::LayoutHolds;
using testing::LayOut;
using testing::TestMap;

// Group 1 (ordered): markers 1 2 3 4 at 0, 12.5, 18.75, 43.75 on chromosome 1.
// Group 2 (not ordered): markers 5 6 on chromosome 2.
// Group 3 (ordered): markers 7 8 9 at 0, 6.25, 31.25 on chromosome 3.
// Group 4: empty, rippled. Unlinked: 10 (chromosome 1 at 31.25), 11 (chromosome 3 at 12.5).
// Deleted: 12 (chromosome 1 at 6.25).
TestMap HandMap() {
  const std::vector<testing::MarkerSpot> spots = {
      {1, 0.0f},  {1, 12.5f}, {1, 18.75f}, {1, 43.75f}, {2, 0.0f},     {2, 25.0f},
      {3, 0.0f},  {3, 6.25f}, {3, 31.25f}, {1, 31.25f}, {3, 12.5f}, {1, 6.25f}};
  return LayOut(spots, 3, {{1, 2, 3, 4}, {5, 6}, {7, 8, 9}, {}}, {2, 1, 2, 3}, {10, 11}, {12});
}

class HandEdits : public ::testing::Test {
 protected:
  void Move(int32_t order_index, int32_t target, int32_t place_mode) {
    GroupModelArrays model = map_.Arrays();
    const PairTable table = map_.Table();
    ApplyMarkerMove(model, PlanMarkerMove(model, order_index, target, place_mode), &table);
    map_.TakeCounts(model);
    ASSERT_TRUE(LayoutHolds(map_.Arrays()));
  }
  std::vector<int32_t> Counts() const {
    return {map_.num_mapped, map_.num_unlinked, map_.num_deleted};
  }
  TestMap map_ = HandMap();
};

TEST_F(HandEdits, BestPlaceKeepsTheShortestWalkAndPrefersThePresentPlace) {
  const PairTable table = map_.Table();
  // Marker 4 misplaced second: 81.25 long. Walking up gives 62.5, walking down to the end
  // gives the true order, 43.75.
  std::vector<int32_t> order = {1, 4, 2, 3};
  std::vector<float> position = {0.0f, 43.75f, 75.0f, 81.25f};
  BestPlace(2, 4, 3, order.data(), position.data(), &table);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(position, ElementsAre(0.0f, 12.5f, 18.75f, 43.75f));
  // A group that is not ordered is left alone.
  order = {1, 4, 2, 3};
  BestPlace(2, 4, 1, order.data(), position.data(), &table);
  EXPECT_THAT(order, ElementsAre(1, 4, 2, 3));

  // Two markers at one place: swapping them gives the same length, so nothing moves.
  const TestMap twins = LayOut({{1, 0.0f}, {1, 0.0f}, {1, 25.0f}}, 3, {{1, 2, 3}}, {2}, {}, {});
  const PairTable twin_table = twins.Table();
  order = {1, 2, 3};
  position = {0.0f, 0.0f, 25.0f};
  BestPlace(1, 3, 2, order.data(), position.data(), &twin_table);
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(HandEdits, RemovingTheFirstMarkerLeavesPositionsOnePlaceOutOfStep) {
  Move(7, 5, 1);  // group 3's first marker to the unlinked block (target NumGroups+1)
  EXPECT_THAT(map_.order, ElementsAre(1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 7, 12));
  EXPECT_THAT(std::vector<float>(map_.position.begin() + 6, map_.position.end()),
              ElementsAre(0.0f, 6.25f, 0.0f, 0.0f, 0.0f, 0.0f));
  EXPECT_THAT(map_.group_size, ElementsAre(4, 2, 2, 0));
  EXPECT_THAT(Counts(), ElementsAre(8, 3, 1));
  EXPECT_EQ(map_.group[6], 0);
}

TEST_F(HandEdits, GroupMovesExchangeNeighboursAndNothingElse) {
  auto move = [&](int32_t id, int32_t direction) {
    MoveGroup(id, direction, 4, 12, map_.group_size.data(), map_.group_status.data(),
              map_.group.data(), map_.order.data(), map_.position.data());
  };
  for (auto [id, direction] : std::vector<std::pair<int, int>>{{1, 1}, {4, 2}, {2, 3}, {0, 2}, {5, 1}}) {
    move(id, direction);
    EXPECT_EQ(map_.order, HandMap().order) << id << "," << direction;
  }
  move(3, 1);
  EXPECT_THAT(map_.order, ElementsAre(1, 2, 3, 4, 7, 8, 9, 5, 6, 10, 11, 12));
  EXPECT_THAT(map_.position, ElementsAre(0.0f, 12.5f, 18.75f, 43.75f, 0.0f, 6.25f, 31.25f,
                                         0.0f, 0.0f, 0.0f, 0.0f, 0.0f));
  EXPECT_THAT(map_.group_size, ElementsAre(4, 3, 2, 0));
  EXPECT_THAT(map_.group_status, ElementsAre(2, 2, 1, 3));
  EXPECT_THAT(map_.group, ElementsAre(1, 1, 1, 1, 3, 3, 2, 2, 2, 0, 0, -1));
  move(2, 2);  // the same exchange seen from the other group undoes it
  EXPECT_EQ(map_.group, HandMap().group);
  EXPECT_EQ(map_.position, HandMap().position);
}

TEST_F(HandEdits, ReversalMirrorsPositions) {
  ReverseGroup(4, map_.order.data(), map_.position.data());
  EXPECT_THAT(std::vector<float>(map_.position.begin(), map_.position.begin() + 4),
              ElementsAre(0.0f, 25.0f, 31.25f, 43.75f));
  ReverseGroup(1, map_.order.data(), map_.position.data());  // one marker: nothing to turn
  EXPECT_THAT(std::vector<int32_t>(map_.order.begin(), map_.order.begin() + 4), ElementsAre(4, 3, 2, 1));
}

}  // namespace
}  // namespace gae
