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
  void Move(int32_t order_index, int32_t target, int32_t place_mode, bool with_table = true) {
    GroupModelArrays model = map_.Arrays();
    const PairTable table = map_.Table();
    ApplyMarkerMove(model, PlanMarkerMove(model, order_index, target, place_mode),
                    with_table ? &table : nullptr);
    map_.TakeCounts(model);
    ASSERT_TRUE(LayoutHolds(map_.Arrays()));
  }
  std::vector<int32_t> Counts() const {
    return {map_.num_mapped, map_.num_unlinked, map_.num_deleted};
  }
  TestMap map_ = HandMap();
};

TEST_F(HandEdits, ASwapMeasuresOnlyTheNewNeighbours) {
  const PairTable table = map_.Table();
  auto swapped = [&](int32_t k) {
    TestMap m = HandMap();
    SwapUp(k, 4, 2, m.order.data(), m.position.data(), &table);
    return std::make_pair(std::vector<int32_t>(m.order.begin(), m.order.begin() + 4),
                          std::vector<float>(m.position.begin(), m.position.begin() + 4));
  };
  // Middle: 1-3 is 18.75 and 2-4 is 31.25, the 3-2 gap of 6.25 stays.
  EXPECT_EQ(swapped(3).first, (std::vector<int32_t>{1, 3, 2, 4}));
  EXPECT_THAT(swapped(3).second, ElementsAre(0.0f, 18.75f, 25.0f, 56.25f));
  // At the top: 1-3 is new; at the bottom: 2-4 is new.
  EXPECT_THAT(swapped(2).second, ElementsAre(0.0f, 12.5f, 31.25f, 56.25f));
  EXPECT_THAT(swapped(4).second, ElementsAre(0.0f, 12.5f, 43.75f, 68.75f));
  EXPECT_EQ(swapped(1).first, (std::vector<int32_t>{1, 2, 3, 4}));
  EXPECT_EQ(swapped(5).first, (std::vector<int32_t>{1, 2, 3, 4}));

  // Two markers: exchanged, the one gap unchanged, and no distance needed.
  std::vector<int32_t> pair_order = {7, 8};
  std::vector<float> pair_position = {0.0f, 6.25f};
  SwapUp(2, 2, 2, pair_order.data(), pair_position.data(), nullptr);
  EXPECT_THAT(pair_order, ElementsAre(8, 7));
  EXPECT_THAT(pair_position, ElementsAre(0.0f, 6.25f));
  // An ordered group without a store to measure from stays as it is; a group that is not
  // ordered has nothing to measure.
  SwapUp(3, 4, 2, map_.order.data(), map_.position.data(), nullptr);
  EXPECT_THAT(std::vector<int32_t>(map_.order.begin(), map_.order.begin() + 4),
              ElementsAre(1, 2, 3, 4));
  Move(5, 2, 2, /*with_table=*/false);
  EXPECT_THAT(std::vector<int32_t>(map_.order.begin() + 4, map_.order.begin() + 6),
              ElementsAre(6, 5));
}

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

// Where a request lands and the gaps it leaves are checked on random maps (edit_property_test);
// here the best place, and the moves that work or refuse without a store.
TEST_F(HandEdits, TheBestPlaceAndMovesWithoutAStore) {
  Move(10, 1, 4);  // unlinked 10 into group 1 at the best place: between 3 and 4
  EXPECT_THAT(std::vector<int32_t>(map_.order.begin(), map_.order.begin() + 5),
              ElementsAre(1, 2, 3, 10, 4));
  EXPECT_THAT(std::vector<float>(map_.position.begin(), map_.position.begin() + 5),
              ElementsAre(0.0f, 12.5f, 18.75f, 31.25f, 43.75f));

  map_ = HandMap();
  Move(12, 4, 1, /*with_table=*/false);  // deleted 12 into the empty group: first, at 0
  EXPECT_THAT(map_.order, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 10, 11));
  EXPECT_EQ(map_.position[9], 0.0f);
  EXPECT_THAT(Counts(), ElementsAre(10, 2, 0));

  map_ = HandMap();
  Move(2, 3, 1, /*with_table=*/false);  // between ordered groups: neither half happens
  EXPECT_EQ(map_.order, HandMap().order);
  // A deletion mark the editor does not write, and counts that do not fit: nothing either.
  map_.group[11] = -7;
  EXPECT_EQ(PlanMarkerMove(map_.Arrays(), 12, 5, 1).edit, MarkerEdit::kNone);
  map_.group[11] = kDeletedGroup;
  map_.num_deleted = 2;
  EXPECT_EQ(PlanMarkerMove(map_.Arrays(), 1, 0, 1).edit, MarkerEdit::kNone);
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
