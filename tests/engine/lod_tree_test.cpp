// The LOD tree against grouping itself: every row must be the partition that MAPGrouping
// (threshold method on the LOD) makes at that threshold, fold-in of near-identical markers
// included, on stores with ties, values exactly at the thresholds and NaN records.
#include "engine/lod_tree.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "engine/engine_test_support.h"
#include "engine/grouping.h"
#include "gaengine.h"
#include "support/temp_dir.h"

namespace gae {
namespace {

using testing::MemoryStore;

class LodTree : public testing::InTempDir {};

// Groups renumbered in the order of their lowest marker, so that partitions compare as such.
std::vector<int32_t> Canonical(const std::vector<int32_t>& group) {
  std::vector<int32_t> out(group.size());
  std::vector<std::pair<int32_t, int32_t>> seen;
  for (std::size_t i = 0; i < group.size(); ++i) {
    int32_t number = 0;
    for (const auto& [g, k] : seen)
      if (g == group[i]) number = k;
    if (number == 0) {
      number = static_cast<int32_t>(seen.size()) + 1;
      seen.push_back({group[i], number});
    }
    out[i] = number;
  }
  return out;
}

void ExpectRowsMatchGrouping(const MemoryStore& store, const std::vector<float>& thresholds,
                             const std::string& what) {
  const int32_t n = store.markers;
  testing::UseStoreFile(store, "tree.LRD");
  const std::vector<LodTreeRow> rows = gae::LodTree(store.Table(), n, thresholds, true);
  // Pruning the pairs to a spanning forest as they come, many times over, changes nothing.
  const std::vector<LodTreeRow> pruned = gae::LodTree(store.Table(), n, thresholds, true, 1);
  for (std::size_t r = 0; r < rows.size(); ++r) EXPECT_EQ(pruned[r].group, rows[r].group) << what;
  ASSERT_EQ(rows.size(), thresholds.size());
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::vector<int32_t> anchor(static_cast<std::size_t>(n), 0), group(static_cast<std::size_t>(n), 0);
    int status = -1;
    MAPGrouping(104, 1, 1, thresholds[r], n, anchor.data(), group.data(), &status);
    ASSERT_EQ(status, 0);
    const std::vector<int32_t> expected = Canonical(group);
    EXPECT_EQ(rows[r].group, expected) << what << " at LOD " << thresholds[r];
    // The summary of the row describes that partition.
    const int32_t groups = *std::max_element(expected.begin(), expected.end());
    EXPECT_EQ(rows[r].groups, groups);
    int32_t total = 0;
    for (const int32_t s : rows[r].sizes) total += s;
    EXPECT_EQ(total, n);
    EXPECT_TRUE(std::is_sorted(rows[r].sizes.rbegin(), rows[r].sizes.rend()));
    EXPECT_EQ(rows[r].singletons, std::count(rows[r].sizes.begin(), rows[r].sizes.end(), 1));
  }
}

TEST_F(LodTree, EveryRowIsTheGroupingAtItsThreshold) {
  std::mt19937 rng(18);
  // Chromosomes whose LOD falls with distance: the tree goes from one group to many.
  for (int trial = 0; trial < 3; ++trial) {
    const MemoryStore linked = testing::LinkedStore(60 + 20 * trial, 3 + trial, rng);
    ExpectRowsMatchGrouping(linked, LodTreeThresholds(2.0f, 15.0f, 1.0f), "linked");
    ExpectRowsMatchGrouping(linked, {40.0f, 0.5f, 25.5f, 59.0f, 61.0f}, "linked, any order");
  }
  // Values on a grid of 0.5 (ties, LODs exactly at the thresholds), frequencies on a grid of
  // 0.005 (many pairs fold in whatever their LOD), and NaN records.
  for (int trial = 0; trial < 4; ++trial) {
    const MemoryStore grid = testing::RandomStore(30 + 10 * trial, rng, trial % 2 == 0 ? 0.0 : 0.05);
    ExpectRowsMatchGrouping(grid, LodTreeThresholds(0.0f, 10.5f, 0.5f), "grid");
  }
}

TEST(LodTreePlateau, LongestRunOfEqualCountsWithTiesToTheLowerRun) {
  // Counts of groups of at least three markers: 1 1 3 4 4 4 4 2 2 2 2.
  const std::vector<std::vector<int32_t>> sizes = {{20}, {20}, {8, 6, 6}, {5, 5, 5, 5}, {5, 5, 5, 3, 2},
                                                   {5, 5, 4, 3, 1, 1, 1}, {4, 4, 3, 3, 2, 2, 2}, {9, 9, 2},
                                                   {9, 9}, {9, 8, 1}, {9, 4, 2, 2, 2, 1}};
  std::vector<LodTreeRow> rows;
  for (std::size_t k = 0; k < sizes.size(); ++k) {
    LodTreeRow row;
    row.threshold = 2.0f + static_cast<float>(k);
    row.sizes = sizes[k];
    rows.push_back(row);
  }
  const LodPlateau p = LongestPlateau(rows, 3);
  EXPECT_EQ(p.first, 3);
  EXPECT_EQ(p.last, 6);
  EXPECT_EQ(p.groups, 4);
  rows.pop_back();
  rows.pop_back();
  rows.push_back(rows.back());
  rows.push_back(rows.back());  // now 2 2 2 2 as well: the lower run of four wins
  EXPECT_EQ(LongestPlateau(rows, 3).first, 3);
  EXPECT_EQ(LongestPlateau({}, 3).first, -1);
  EXPECT_EQ(LodTreeThresholds(2.0f, 15.0f, 1.0f).size(), 14u);
  EXPECT_EQ(LodTreeThresholds(2.0f, 3.0f, 0.25f).back(), 3.0f);
}

}  // namespace
}  // namespace gae

namespace gae {
namespace {

// The streaming forest under a frequency cap against grouping by threshold with the same cap,
// at every threshold: the rows of the tree and the final groups taken from the forest are the
// partitions grouping makes, and the pairs the cap took are those whose frequency reaches it.
TEST(LodForest, CappedForestGroupsAsGroupingDoesAtEveryThreshold) {
  std::mt19937 rng(36);
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  for (int trial = 0; trial < 6; ++trial) {
    testing::MemoryStore store = testing::LinkedStore(50 + 15 * trial, 2 + trial % 3, rng);
    // Chance pairs with high LODs on the far side of 1/2, which only the cap keeps out.
    for (int extra = 0; extra < 10; ++extra) {
      const int32_t i = 2 + static_cast<int32_t>(rng() % (store.markers - 1));
      store.Set(i, 1 + static_cast<int32_t>(rng() % (i - 1)), 3.0f + 10.0f * unit(rng), 0.5f + 0.4f * unit(rng));
    }
    const int32_t n = store.markers;
    const float max_rf = trial % 2 == 0 ? 0.5f : 0.35f;
    int64_t capped = 0;
    for (int32_t i = 2; i <= n; ++i)
      for (int32_t j = 1; j < i; ++j) capped += store.Second(i, j) < max_rf ? 0 : 1;
    const std::vector<float> thresholds = LodTreeThresholds(2.0f, 15.0f, 1.0f);
    const LodForest forest = BuildLodForest(store.Table(), n, 2.0f, max_rf, trial % 3 == 0 ? 1 : 0);
    EXPECT_EQ(forest.capped, capped);
    const std::vector<LodTreeRow> rows = LodTreeRows(forest, thresholds, true);
    for (std::size_t r = 0; r < thresholds.size(); ++r) {
      std::vector<int32_t> anchor(static_cast<std::size_t>(n), 0), group(static_cast<std::size_t>(n), 0);
      GroupByThreshold(store.Table(), kByFirstValue, n, -thresholds[r], anchor.data(), group.data(), max_rf);
      const std::vector<int32_t> expected = Canonical(group);
      EXPECT_EQ(rows[r].group, expected) << "trial " << trial << " at LOD " << thresholds[r];
      EXPECT_EQ(ForestGroups(forest, thresholds[r]), expected) << "trial " << trial << " at LOD " << thresholds[r];
    }
  }
}

}  // namespace
}  // namespace gae
