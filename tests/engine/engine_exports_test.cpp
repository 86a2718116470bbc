// The map-engine exports as a front end calls them after a CheckError, on a pairwise file in the
// test's folder, and the map state they share.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>

#include "engine/engine_test_support.h"
#include "engine/map_state.h"
#include "frame/process_state.h"
#include "gaengine.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::MemoryStore;
using testing::ReadLines;

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
  EXPECT_THAT(map.group, ElementsAre(2, 0, 1, -7, 2, -1));
  // Groups, mapped, unlinked and deleted markers: -7 counts as -1 does.
  EXPECT_THAT((std::vector<int>{map.num_groups, map.num_mapped, map.num_unlinked, map.num_deleted}), ElementsAre(2, 3, 1, 2));
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
  EXPECT_THAT((std::vector<int>{map.num_groups, map.num_mapped, map.num_unlinked}), ElementsAre(0, 0, 3));
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
  EXPECT_EQ((std::vector<std::string>{names[0], names[2], names[11], names[9999], names[100000], names[1]}),
            (std::vector<std::string>{"Group1             ", "Chromsome3         ", "Chromsome12        ",
                                      "Group10000         ", "Chromsome*****     ", std::string(19, 'x')}));
}

class EngineExports : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    setenv("GAENGINE_SEED", "99", 1);
  }
  void TearDown() override {
    unsetenv("GAENGINE_SEED");
    InTempDir::TearDown();
  }
  std::vector<std::string> Log(const std::string& name = "MAP.log") { return ReadLines(name); }
};

// Every option a stage export refuses, with the tool whose rules refuse it: the status, the
// line that says why, and arrays left as they were.
TEST_F(EngineExports, OptionsOutOfRangeAreRefusedAndChangeNothing) {
  std::mt19937 rng(1);
  testing::UseStoreFile(testing::LinkedStore(6, 2, rng), "run.LRD");
  std::vector<int> anchor(6, 0), group = {1, 1, 1, 2, 2, 2}, order = {1, 2, 3, 4, 5, 6};
  std::vector<float> position(6, 0.0f);
  const std::vector<int> sizes = {3, 3};
  std::vector<int> statuses = {1, 1};
  int map_state = 1, status = -1;
  struct Case {
    const char* log;
    const char* line;  // a line the call adds to `log` when it refuses
    int status;
    std::function<void()> call;
  };
  const Case cases[] = {
      {"MAP", "--Error1106: ByWhat for Grouping is out of range [1,2,3]. ByWhat=4", 1106,
       [&] { MAPGrouping(104, 2, 4, 3.0f, 6, anchor.data(), group.data(), &status); }},
      {"MAP", "--Error1107: Method for Grouping is out of range [1,2,3]. Method=5", 1107,
       [&] { MAPGrouping(104, 5, 1, 3.0f, 6, anchor.data(), group.data(), &status); }},
      {"CMP", "--Error1105: ByWhat for Grouping is out of range [3]. ByWhat=2", 1105,
       [&] { MAPGrouping(105, 1, 2, 3.0f, 6, anchor.data(), group.data(), &status); }},
      {"MAP", "--Error1112: Method for Ordering is out of range [1,2,3,4]. Method=7", 1112,
       [&] {
         MAPOrderingAll(104, 7, 2, 1, 5, 3, 6, 2, sizes.data(), statuses.data(), &map_state, anchor.data(),
                        group.data(), order.data(), position.data(), &status);
       }},
      {"CMP", "--Error1111: ByWhat for Ordering is out of range [1,2]. ByWhat=2", 1111,
       [&] { MAPOrdering(105, 1, 2, 1, 5, 3, 3, anchor.data(), order.data(), position.data(), &status); }},
      {"MAP", "--Error1113: ByWhat for Ordering is out of range [1,2,3]. ByWhat=0", 1113,
       [&] { MAPOrdering(104, 1, 0, 1, 5, 3, 3, anchor.data(), order.data(), position.data(), &status); }},
      // A single marker is not even checked.
      {"MAP", "", 0,
       [&] { MAPOrdering(104, 1, 0, 1, 5, 3, 1, anchor.data(), order.data(), position.data(), &status); }},
      {"MAP", "--Error1117: WindowSize for Rippling is out of range [2,8]. WindowSize=1", 1117,
       [&] { MAPRippling(104, 1, 1, 3, order.data(), position.data(), &status); }},
      {"MAP", "--Error1117: WindowSize for Rippling is out of range [2,8]. WindowSize=9", 1117,
       [&] { MAPRippling(104, 1, 9, 3, order.data(), position.data(), &status); }},
      {"MAP", "--Error1116: ByWhat for Rippling is out of range [1,2,3]. ByWhat=4", 1116,
       [&] { MAPRippling(104, 4, 5, 3, order.data(), position.data(), &status); }},
      {"CMP", "--Error1115: ByWhat for Rippling is out of range [3]. ByWhat=2", 1115,
       [&] { MAPRippling(105, 2, 5, 3, order.data(), position.data(), &status); }},
  };
  for (const Case& c : cases) {
    const std::string log = std::string(c.log) + ".log";
    const size_t before = Log(log).size();
    status = -1;
    c.call();
    EXPECT_EQ(status, c.status) << c.line;
    const std::vector<std::string> lines = Log(log);
    if (c.status != 0) {
      EXPECT_THAT(std::vector<std::string>(lines.begin() + static_cast<std::ptrdiff_t>(before), lines.end()),
                  ::testing::Contains(c.line));
    }
    EXPECT_THAT(group, ElementsAre(1, 1, 1, 2, 2, 2)) << c.line;
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6)) << c.line;
  }
  // The whole-map ordering refuses per group, and neither group nor the map moves on.
  const std::vector<std::string> map_log = Log();
  EXPECT_EQ(std::count(map_log.begin(), map_log.end(),
                       "--Error1112: Method for Ordering is out of range [1,2,3,4]. Method=7"), 2);
  EXPECT_THAT(statuses, ElementsAre(1, 1));
  EXPECT_EQ(map_state, 1);
  // The consensus tool's rippling takes no window size.
  MAPRippling(105, 3, 9, 3, order.data(), position.data(), &status);
  EXPECT_EQ(status, 0);
  // Rippling passes over a group never ordered.
  statuses = {2, 1};
  MAPRipplingAll(104, 1, 5, 6, 2, sizes.data(), statuses.data(), &map_state, group.data(), order.data(),
                 position.data(), &status);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(statuses, ElementsAre(3, 1));
  EXPECT_EQ(map_state, 1);
}

TEST_F(EngineExports, GroupingMethodsThroughTheExport) {
  std::mt19937 rng(2);
  const MemoryStore store = testing::RandomStore(8, rng);
  testing::UseStoreFile(store, "run.LRD");
  std::vector<int> anchor(8, 0), group(8, 0);
  int status = -1;
  MAPGrouping(104, 2, 2, 2.5f, 8, anchor.data(), group.data(), &status);  // 2.5 rounds to 3
  EXPECT_EQ(status, 0);
  EXPECT_EQ(*std::max_element(group.begin(), group.end()), 3);
  EXPECT_THAT(Log(), ElementsAre("  Grouping is running ...!", "  Grouping was completed!",
                                 ::testing::StartsWith("   CPU time taken:")));
  MAPGrouping(104, 2, 2, -2.5f, 8, anchor.data(), group.data(), &status);  // no groups asked: one
  EXPECT_THAT(group, ElementsAre(1, 1, 1, 1, 1, 1, 1, 1));
  anchor = {2, 2, 5, 0, 0, 0, 0, 0};
  MAPGrouping(104, 3, 0, 0.0f, 8, anchor.data(), group.data(), &status);  // ByWhat unused
  EXPECT_EQ(status, 0);
  group.assign(8, 7);
  MAPGrouping(105, 4, 3, 1.0f, 8, anchor.data(), group.data(), &status);  // CMP: other methods idle
  EXPECT_EQ(status, 0);
  EXPECT_THAT(group, ElementsAre(7, 7, 7, 7, 7, 7, 7, 7));
}

TEST_F(EngineExports, WithoutAPairwiseFileNothingChanges) {
  std::vector<int> anchor(4, 0), group = {9, 9, 9, 9}, order = {1, 2, 3, 4};
  std::vector<float> position(4, 5.0f);
  int status = -1;
  MAPGrouping(104, 1, 1, 3.0f, 4, anchor.data(), group.data(), &status);
  EXPECT_EQ(status, 1002);
  EXPECT_EQ(MessageCode(), 1002);
  EXPECT_THAT(group, ElementsAre(9, 9, 9, 9));
  Process().pair_store.lrd_name = "gone.LRD";
  Process().pair_store.record_length = 2;
  MAPOrdering(104, 2, 2, 1, 5, 3, 4, anchor.data(), order.data(), position.data(), &status);
  EXPECT_EQ(status, 1002);
  MAPRippling(104, 1, 5, 4, order.data(), position.data(), &status);
  EXPECT_EQ(status, 1002);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(position, ElementsAre(5, 5, 5, 5));
  const std::vector<std::string> log = Log();
  EXPECT_EQ(log[1], " does not exist, and the program stops!");
  EXPECT_EQ(log.back(), "gone.LRD does not exist, and the program stops!");
  // Stages that need no pair value still work: grouping by anchors, ordering single markers.
  anchor = {1, 0, 1, 2};
  MAPGrouping(104, 3, 1, 0.0f, 4, anchor.data(), group.data(), &status);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(group, ElementsAre(1, 0, 1, 2));
  const std::vector<int> sizes = {1, 1};
  std::vector<int> statuses = {1, 1};
  int map_state = 1;
  MAPOrderingAll(104, 2, 2, 1, 5, 3, 4, 2, sizes.data(), statuses.data(), &map_state, anchor.data(),
                 group.data(), order.data(), position.data(), &status);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(statuses, ElementsAre(2, 2));
  EXPECT_EQ(map_state, 2);
}

TEST_F(EngineExports, SmallGroupsAndAnchorsThroughTheExports) {
  std::vector<int> anchor = {0, 0, 0};
  MAPAnchorMarker(2, 1, 1, 3, anchor.data());
  MAPAnchorMarker(3, 2, 1, 3, anchor.data());
  EXPECT_THAT(anchor, ElementsAre(0, 1, 0));
  int groups = 5;
  std::vector<int> group = {1, 3, 3, 5, 0};
  MapGroupCheck(5, &groups, group.data());
  EXPECT_FALSE(testing::FileExists("MAP.log"));  // these two keep no log
}

TEST_F(EngineExports, MissingArraysAndExtremeNumbersChangeNothing) {
  // Found by bad-argument runs: MapGroupCheck overflowed on group numbers near the lowest
  // integer, and MAPGrouping with Method 3 and no Anchor array crashed the host.
  const int low = std::numeric_limits<int>::min();
  std::vector<int> group = {low, low + 1, 0};
  int groups = low + 1;
  MapGroupCheck(3, &groups, group.data());
  EXPECT_THAT(group, ElementsAre(low, low + 1, 0));
  EXPECT_EQ(groups, low + 1);
  group = {1, 4, low};
  groups = low;
  MapGroupCheck(3, &groups, group.data());
  EXPECT_THAT(group, ElementsAre(1, 2, low));
  EXPECT_EQ(groups, low);  // stops at the lowest count instead of wrapping round
  std::mt19937 rng(4);
  testing::UseStoreFile(testing::LinkedStore(6, 1, rng), "run.LRD");
  std::vector<int> anchor(6, 1), order = {1, 2, 3, 4, 5, 6}, size = {6}, state = {2};
  std::vector<float> position(6, 0.0f);
  group.assign(6, 7);
  int status = -1, map_state = 1;
  MAPGrouping(104, 3, 1, 3.0f, 6, nullptr, group.data(), &status);
  EXPECT_EQ(status, 1101);
  EXPECT_THAT(group, ElementsAre(7, 7, 7, 7, 7, 7));
  MAPGrouping(104, 1, 1, 3.0f, 6, anchor.data(), nullptr, &status);
  EXPECT_EQ(status, 1101);
  MAPOrdering(104, 2, 2, 1, 5, 3, 6, nullptr, order.data(), position.data(), &status);
  EXPECT_EQ(status, 1101);
  MAPOrderingAll(104, 2, 2, 1, 5, 3, 6, 1, size.data(), state.data(), &map_state, anchor.data(),
                 group.data(), nullptr, position.data(), &status);
  EXPECT_EQ(status, 1101);
  MAPRipplingAll(104, 1, 5, 6, 1, nullptr, state.data(), &map_state, group.data(), order.data(),
                 position.data(), &status);
  EXPECT_EQ(status, 1101);
  MAPRippling(104, 1, 5, 6, order.data(), nullptr, &status);
  EXPECT_EQ(status, 1101);
  MAPAnchorMarker(1, 1, 1, 6, nullptr);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6));
  EXPECT_THAT(state, ElementsAre(2));
  EXPECT_EQ(map_state, 1);
  EXPECT_THAT(Log().back(), HasSubstr("--Error1101: error found in DLL! DLL name=DLL MAPRippling"));
}

}  // namespace
}  // namespace gae
