// Hand edits of a map: hand-computed cases on a small map whose positions are multiples of 6.25 cM
// under the Morgan function (every expected value plain arithmetic), and thousands of random edit
// sequences after each of which the layout holds, the moved marker lands where the request sends
// it and every gap of an ordered group is the stored distance of its two markers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "engine/edit_blocks.h"
#include "engine/edit_group_order.h"
#include "engine/edit_in_group.h"
#include "engine/edit_marker_move.h"
#include "engine/edit_test_map.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::EditRequest;
using testing::LayOut;
using testing::LayoutHolds;
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

using Snapshot = TestMap;  // a copy of the map before an edit

int32_t Start(const Snapshot& s, int32_t g) {  // 1-based index of group g's first entry
  int32_t start = 1;
  for (int32_t i = 1; i < g; ++i) start += s.group_size[i - 1];
  return start;
}

std::vector<int32_t> Without(std::vector<int32_t> order, int32_t m) {
  std::erase(order, m);
  return order;
}

// Would this request take the first marker out of an ordered group of three or more?
bool ShiftsPositionsOutOfStep(const Snapshot& s, const EditRequest& edit) {
  if (edit.kind != EditRequest::kMarkerMove) return false;
  const int32_t num_groups = static_cast<int32_t>(s.group_size.size());
  if (edit.a < 1 || edit.a > static_cast<int32_t>(s.order.size())) return false;
  const int32_t g = s.group[s.order[edit.a - 1] - 1];
  return g >= 1 && g <= num_groups && g != edit.b && s.group_status[g - 1] != 1 &&
         s.group_size[g - 1] >= 3 && edit.a == Start(s, g);
}

// The moved marker's new block and index range, read off the request alone.
::testing::AssertionResult MarkerLanded(const Snapshot& before, const Snapshot& after,
                                        const EditRequest& edit) {
  const int32_t n = static_cast<int32_t>(before.order.size());
  const int32_t num_groups = static_cast<int32_t>(before.group_size.size());
  if (edit.a < 1 || edit.a > n) {
    return before == after ? ::testing::AssertionSuccess()
                           : ::testing::AssertionFailure() << "invalid index changed the map";
  }
  const int32_t m = before.order[edit.a - 1];
  const int32_t s = before.group[m - 1];
  const int32_t t = edit.b;
  int32_t expected_group, low, high;
  if (t >= 1 && t <= num_groups) {
    expected_group = t;
    low = Start(after, t);
    high = low + after.group_size[t - 1] - 1;
    const int32_t p = edit.a - low + 1;
    const bool anywhere = edit.c == 4 && after.group_status[t - 1] != 1;
    if (s == t && !anywhere) {
      const int32_t size = after.group_size[t - 1];
      const int32_t place = edit.c == 1 ? std::max(p - 1, 1)
                            : edit.c == 2 ? std::min(p + 1, size)
                            : edit.c == 3 ? size
                                          : p;
      low = high = low + place - 1;
    } else if (!anywhere) {
      low = high;
    }
  } else if (t == num_groups + 1) {
    expected_group = 0;
    low = high = s == 0 ? edit.a : after.num_mapped + after.num_unlinked;
  } else {
    expected_group = -1;
    low = high = s == -1 ? edit.a : n;
  }
  int32_t landed = 0;
  for (int32_t i = 1; i <= n; ++i) {
    if (after.order[i - 1] == m) landed = i;
  }
  if (after.group[m - 1] != expected_group || landed < low || landed > high) {
    return ::testing::AssertionFailure()
           << "marker " << m << " from group " << s << " sent to " << t << " mode " << edit.c
           << " landed at " << landed << " in group " << after.group[m - 1] << ", expected "
           << low << ".." << high << " in group " << expected_group;
  }
  if (Without(before.order, m) != Without(after.order, m)) {
    return ::testing::AssertionFailure() << "other markers changed their sequence";
  }
  return ::testing::AssertionSuccess();
}

// Reversing twice gives the same order back, and positions within the rounding of T - p.
::testing::AssertionResult ReversedTwiceIsTheSame(int32_t n, int32_t* order, float* position) {
  const std::vector<int32_t> order_before(order, order + n);
  const std::vector<float> position_before(position, position + n);
  ReverseGroup(n, order, position);
  ReverseGroup(n, order, position);
  if (std::vector<int32_t>(order, order + n) != order_before) {
    return ::testing::AssertionFailure() << "order changed";
  }
  if (n == 0) return ::testing::AssertionSuccess();
  const float last = position_before[n - 1];
  const float ulp = std::nextafter(last, std::numeric_limits<float>::infinity()) - last;
  for (int32_t i = 0; i < n; ++i) {
    if (std::fabs(position[i] - position_before[i]) > ulp) {
      return ::testing::AssertionFailure() << "position " << i + 1 << " went from "
                                           << position_before[i] << " to " << position[i];
    }
  }
  return ::testing::AssertionSuccess();
}

TEST(EditProperty, RandomEditSequencesKeepTheMapWhole) {
  std::mt19937 rng(20240611);
  int moves_applied = 0;
  for (int sequence = 0; sequence < 2000; ++sequence) {
    TestMap map = testing::RandomMappedExample(rng);
    const PairTable table = map.Table();
    const bool check_gaps = sequence % 2 == 0;
    for (int step = 0; step < 25; ++step) {
      GroupModelArrays model = map.Arrays();
      const EditRequest edit = testing::RandomEdit(rng, model);
      const Snapshot before = map;
      if (check_gaps && ShiftsPositionsOutOfStep(before, edit)) continue;
      switch (edit.kind) {
        case EditRequest::kMarkerMove:
          ApplyMarkerMove(model, PlanMarkerMove(model, edit.a, edit.b, edit.c), &table);
          map.TakeCounts(model);
          ASSERT_TRUE(MarkerLanded(before, map, edit)) << "sequence " << sequence;
          moves_applied += map != before;
          break;
        case EditRequest::kGroupMove:
          MoveGroup(edit.a, edit.b, model.num_groups, model.num_markers, map.group_size.data(),
                    map.group_status.data(), map.group.data(), map.order.data(),
                    map.position.data());
          if (step % 2 == 1) {  // an exchange of two neighbours undoes itself
            MoveGroup(edit.a, edit.b, model.num_groups, model.num_markers,
                      map.group_size.data(), map.group_status.data(), map.group.data(),
                      map.order.data(), map.position.data());
            ASSERT_TRUE(map == before);
          }
          break;
        case EditRequest::kGroupReverse: {
          const int32_t start = GroupStart(model, edit.a);
          const int32_t size = map.group_size[edit.a - 1];
          ASSERT_TRUE(ReversedTwiceIsTheSame(size, &map.order[start], &map.position[start]));
          if (step % 2 == 1) ReverseGroup(size, &map.order[start], &map.position[start]);
          break;
        }
      }
      ASSERT_TRUE(testing::LayoutHolds(map.Arrays())) << "sequence " << sequence;
      if (check_gaps) {
        ASSERT_TRUE(testing::GapsMatchTable(map.Arrays(), table));
      }
    }
  }
  // The draws must actually move markers most of the time, not just hit invalid requests.
  EXPECT_GT(moves_applied, 20000);
}

}  // namespace
}  // namespace gae
