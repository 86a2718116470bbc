// Ordering around a co-dominant frame on simulated F2 chromosomes, and the frequency cap on
// grouping read from a hand-made pair file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <vector>

#include "engine/frame_ordering.h"
#include "engine/frequency_cap.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"
#include "engine/rippling.h"
#include "engine/engine_test_support.h"
#include "support/map_simulation.h"
#include "support/temp_dir.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

using testing::MemoryStore;

// One F2 chromosome of 30 markers on 120 cM in 200 plants, its pairs estimated as the pair
// file holds them (minus the LOD, the frequency). Marker numbers are shuffled against the map.
struct SimulatedGroup {
  MemoryStore store;
  std::vector<int32_t> kind;     // by marker number - 1
  std::vector<double> truth_cm;  // by marker number - 1
};

SimulatedGroup Simulate(uint64_t seed, bool mixed) {
  const int32_t n = 30, plants = 200;
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<testing::SimulatedMarker> markers;
  for (int32_t m = 0; m < n; ++m) markers.push_back({"M", 120.0 * unit(rng)});
  std::sort(markers.begin(), markers.end(), [](const auto& a, const auto& b) { return a.position_cm < b.position_cm; });
  std::vector<std::string> letters = testing::SimulateF2Chromosome(markers, plants, 0.02, seed);
  std::vector<int32_t> number(n);
  std::iota(number.begin(), number.end(), 0);
  std::shuffle(number.begin(), number.end(), rng);
  SimulatedGroup s;
  s.kind.assign(n, 1);
  s.truth_cm.assign(n, 0.0);
  std::vector<std::string> by_number(n);
  for (int32_t m = 0; m < n; ++m) {
    // A third dominant (P1 and F1 alike), a third recessive (F1 and P2 alike).
    const int32_t kind = !mixed ? 1 : (m % 3 == 0 ? 1 : (m % 3 == 1 ? 12 : 10));
    for (char& g : letters[m]) {
      if (kind == 12 && (g == 'A' || g == 'H')) g = 'D';
      if (kind == 10 && (g == 'H' || g == 'B')) g = 'R';
    }
    s.kind[number[m]] = kind;
    s.truth_cm[number[m]] = markers[m].position_cm;
    by_number[number[m]] = letters[m];
  }
  s.store.markers = n;
  s.store.records.assign(static_cast<size_t>(n) * (n - 1), 0.0f);
  for (int32_t i = 2; i <= n; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      float cells[9], r = 0.0f, lod = 0.0f, se = 0.0f;
      PairCounts(plants, by_number[i - 1].data(), by_number[j - 1].data(), cells);
      TwoPointEstimate(7, PairCode(s.kind[i - 1], s.kind[j - 1]), cells, r, lod, se);
      s.store.First(i, j) = -std::max(lod, 0.0f);
      s.store.Second(i, j) = r;
    }
  }
  return s;
}

double AbsRankCorrelation(const std::vector<int32_t>& order, const std::vector<double>& truth_cm) {
  const size_t n = order.size();
  std::vector<size_t> by_truth(n);
  std::iota(by_truth.begin(), by_truth.end(), 0);
  std::sort(by_truth.begin(), by_truth.end(),
            [&](size_t a, size_t b) { return truth_cm[order[a] - 1] < truth_cm[order[b] - 1]; });
  double d2 = 0.0;  // map rank k against true rank
  for (size_t rank = 0; rank < n; ++rank) d2 += std::pow(static_cast<double>(by_truth[rank]) - rank, 2);
  return std::abs(1.0 - 6.0 * d2 / (static_cast<double>(n) * (n * n - 1.0)));
}

class FrameOrdering : public ::testing::Test {
 protected:
  void SetUp() override { setenv("GAENGINE_SEED", "4711", 1); }
  void TearDown() override { unsetenv("GAENGINE_SEED"); }

  // The default of a whole run: five random starts with the tour search, then a ripple by LOD.
  static FrameOrderingOptions Defaults() { return FrameOrderingOptions{{2, 2, 1, 5, 3}, 4, kByFirstValue, 5}; }

  static std::vector<int32_t> ByDefault(const SimulatedGroup& s, std::vector<float>& position) {
    const int32_t n = s.store.markers;
    std::vector<int32_t> order(n), no_anchor(n, 0);
    std::iota(order.begin(), order.end(), 1);
    position.assign(n, 0.0f);
    UniformStream random;
    OrderGroup(s.store.Table(), Defaults().frame, n, no_anchor.data(), order.data(), position.data(), random, {});
    RippleGroup(s.store.Table(), kByFirstValue, 5, n, order.data(), position.data());
    return order;
  }

  static std::vector<int32_t> AroundFrame(const SimulatedGroup& s, std::vector<float>& position,
                                          FrameOrderingResult& result, int32_t min_frame = 4) {
    const int32_t n = s.store.markers;
    std::vector<int32_t> order(n), kind(n);
    std::iota(order.begin(), order.end(), 1);
    for (int32_t i = 0; i < n; ++i) kind[i] = s.kind[order[i] - 1];
    position.assign(n, 0.0f);
    UniformStream random;
    FrameOrderingOptions options = Defaults();
    options.min_frame = min_frame;
    result = OrderAroundFrame(s.store.Table(), options, n, kind.data(), order.data(), position.data(), random, {});
    return order;
  }
};

TEST_F(FrameOrdering, DominantAndRecessiveMarkersOrderCloserToTheTruthThanByDefault) {
  double framed = 0.0, by_default = 0.0;
  for (const uint64_t seed : {21u, 22u, 23u}) {
    const SimulatedGroup s = Simulate(seed, true);
    std::vector<float> position;
    FrameOrderingResult result;
    const std::vector<int32_t> order = AroundFrame(s, position, result);
    EXPECT_TRUE(result.framed);
    EXPECT_EQ(result.frame_size, 10);
    std::vector<int32_t> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    for (int32_t i = 0; i < 30; ++i) ASSERT_EQ(sorted[i], i + 1);  // every marker exactly once
    EXPECT_TRUE(std::is_sorted(position.begin(), position.end()));
    framed += AbsRankCorrelation(order, s.truth_cm) / 3.0;
    by_default += AbsRankCorrelation(ByDefault(s, position), s.truth_cm) / 3.0;
  }
  EXPECT_GE(framed, 0.97);
  EXPECT_GT(framed, by_default + 0.01);
}

TEST_F(FrameOrdering, CodominantDataAndGroupsWithoutAFrameComeOutAsByDefault) {
  const SimulatedGroup s = Simulate(31, false);
  std::vector<float> expected_position, position;
  const std::vector<int32_t> expected = ByDefault(s, expected_position);
  FrameOrderingResult result;
  EXPECT_EQ(AroundFrame(s, position, result), expected);
  EXPECT_EQ(position, expected_position);
  EXPECT_TRUE(result.framed);

  // Ten co-dominant markers are too few for a frame of eleven: the default order and ripple.
  const SimulatedGroup mixed = Simulate(32, true);
  const std::vector<int32_t> mixed_default = ByDefault(mixed, expected_position);
  EXPECT_EQ(AroundFrame(mixed, position, result, 11), mixed_default);
  EXPECT_FALSE(result.framed);
  EXPECT_EQ(result.frame_size, 10);
}

TEST(FramePlacement, FitsTheWeightedDistancesByHand) {
  // Morgan's function: 100 cM a unit of frequency. Partners 1, 2, 3 at 0, 10 and 20 cM; marker
  // 4 lies 15, 5 and 5 cM from them, which only 15 cM between partners 2 and 3 fits exactly.
  MemoryStore store;
  store.markers = 5;
  store.records.assign(20, 0.0f);
  const float r[3] = {0.15f, 0.05f, 0.05f};
  for (int32_t j = 1; j <= 3; ++j) {
    store.First(4, j) = -2.0f;
    store.Second(4, j) = r[j - 1];
  }
  const int32_t partners[3] = {1, 2, 3};
  const float at[3] = {0.0f, 10.0f, 20.0f};
  Placement p = BestPlacement(store.Table(3), 4, partners, at, 3);
  EXPECT_EQ(p.gap, 2);
  EXPECT_NEAR(p.t, 15.0f, 1e-4f);
  EXPECT_NEAR(p.misfit, 0.0, 1e-6);

  // Weights are LODs: partner 1 now says 5 cM with LOD 6 against 5 cM from partner 3 with LOD
  // 2 (partner 2 silenced by a frequency that informs nothing): t between them at the weighted
  // mean 0.75 * 5 + 0.25 * 15, misfit 6 * 2.5^2 + 2 * 7.5^2.
  store.First(4, 1) = -6.0f;
  store.Second(4, 1) = 0.05f;
  store.Second(4, 2) = 0.45f;
  p = BestPlacement(store.Table(3), 4, partners, at, 3);
  EXPECT_EQ(p.gap, 1);
  EXPECT_NEAR(p.t, 7.5f, 1e-4f);
  EXPECT_NEAR(p.misfit, 6 * 2.5 * 2.5 + 2 * 7.5 * 7.5, 1e-3);

  store.First(4, 1) = store.First(4, 3) = 0.0f;  // no LOD, no information
  EXPECT_EQ(BestPlacement(store.Table(3), 4, partners, at, 3).gap, -1);
}

class FrequencyCap : public testing::InTempDir {};

TEST_F(FrequencyCap, AChanceLinkAboveTheCapNoLongerJoinsTwoGroups) {
  // Markers 1-3 and 4-6 are two tight chromosomes; 3 and 4 share a chance LOD of 4 at a
  // frequency of 0.7; every other pair between them is unlinked.
  MemoryStore hand;
  hand.markers = 6;
  hand.records.assign(30, 0.0f);
  for (int32_t i = 2; i <= 6; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      const bool same = (i <= 3) == (j <= 3);
      hand.First(i, j) = same ? -12.0f : 0.0f;
      hand.Second(i, j) = same ? 0.05f * static_cast<float>(i - j) : 0.5f;
    }
  }
  hand.First(4, 3) = -4.0f;
  hand.Second(4, 3) = 0.7f;
  FILE* file = std::fopen("hand.LRD", "wb");
  ASSERT_NE(file, nullptr);
  std::fwrite(hand.records.data(), sizeof(float), hand.records.size(), file);
  std::fclose(file);
  PairStoreFile store;
  ASSERT_TRUE(store.Open("hand.LRD", 2, 1));

  const std::vector<int32_t> anchor(6, 0);
  std::vector<int32_t> group(6);
  GroupByThreshold(store.Table(), kByFirstValue, 6, -3.0f, anchor.data(), group.data());
  EXPECT_EQ(group, std::vector<int32_t>(6, 1));

  const CappedPairs capped(store.Table(), 6, 0.5f);
  EXPECT_EQ(capped.Capped(), 9);  // the chance link and the eight unlinked pairs at 0.5
  GroupByThreshold(capped.Table(), kByFirstValue, 6, -3.0f, anchor.data(), group.data());
  EXPECT_EQ(group, (std::vector<int32_t>{1, 1, 1, 2, 2, 2}));
  const std::vector<LodTreeRow> rows = LodTree(capped.Table(), 6, {3.0f});
  EXPECT_EQ(rows[0].sizes, (std::vector<int32_t>{3, 3}));

  // A cap above the chance link's frequency changes nothing.
  GroupByThreshold(CappedPairs(store.Table(), 6, 0.75f).Table(), kByFirstValue, 6, -3.0f, anchor.data(), group.data());
  EXPECT_EQ(group, std::vector<int32_t>(6, 1));
}

}  // namespace
}  // namespace gae
