// Ordering around a co-dominant frame on simulated F2 chromosomes, and the frequency cap on
// grouping read from a hand-made pair file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "engine/engine_test_support.h"
#include "engine/frame_ordering.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"
#include "engine/rippling.h"
#include "support/bred_data_sets.h"
#include "support/temp_dir.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

// One F2 chromosome, 30 markers on 120 cM in 200 plants, pairs estimated as the pair file
// holds them; with `mixed` a third dominant and a third recessive. Numbers are shuffled.
struct Simulated {
  testing::MemoryStore store;
  std::vector<int32_t> kind;  // by marker number - 1
  std::vector<double> cm;
};

Simulated Simulate(uint64_t seed, bool mixed, int32_t n = 30, double length_cm = 120.0) {
  std::mt19937_64 rng(seed);
  std::vector<testing::SimulatedMarker> markers(n, {"M", 0.0});
  for (auto& m : markers) m.position_cm = std::uniform_real_distribution<double>(0.0, length_cm)(rng);
  std::sort(markers.begin(), markers.end(), [](const auto& a, const auto& b) { return a.position_cm < b.position_cm; });
  std::vector<std::string> typed = testing::SimulateF2Chromosome(markers, 200, 0.02, seed), letters(n);
  std::vector<int32_t> number(n);
  std::iota(number.begin(), number.end(), 0);
  std::shuffle(number.begin(), number.end(), rng);
  Simulated s{testing::MemoryStore(n), std::vector<int32_t>(n), std::vector<double>(n)};
  for (int32_t m = 0; m < n; ++m) {
    const int32_t kind = !mixed || m % 3 == 0 ? 1 : (m % 3 == 1 ? 12 : 10);
    for (char& g : typed[m]) g = kind == 12 && g != 'B' && g != 'X' ? 'D' : kind == 10 && g != 'A' && g != 'X' ? 'R' : g;
    s.kind[number[m]] = kind;
    s.cm[number[m]] = markers[m].position_cm;
    letters[number[m]] = typed[m];
  }
  for (int32_t i = 2; i <= n; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      float cells[9], lod = 0.0f, se = 0.0f;
      PairCounts(200, letters[i - 1].data(), letters[j - 1].data(), cells);
      TwoPointEstimate(7, PairCode(s.kind[i - 1], s.kind[j - 1]), cells, s.store.Second(i, j), lod, se);
      s.store.First(i, j) = -std::max(lod, 0.0f);
    }
  }
  return s;
}

// Spearman's correlation of map rank and true rank, in absolute value (no ties in truth).
double RankCorrelation(const std::vector<int32_t>& order, const std::vector<double>& cm) {
  const double n = static_cast<double>(order.size());
  std::vector<size_t> by_truth(order.size());
  std::iota(by_truth.begin(), by_truth.end(), 0);
  std::sort(by_truth.begin(), by_truth.end(), [&](size_t a, size_t b) { return cm[order[a] - 1] < cm[order[b] - 1]; });
  double d2 = 0.0;
  for (size_t rank = 0; rank < by_truth.size(); ++rank) d2 += std::pow(static_cast<double>(by_truth[rank]) - rank, 2);
  return std::abs(1.0 - 6.0 * d2 / (n * (n * n - 1.0)));
}

class FrameOrdering : public ::testing::Test {
 protected:
  void SetUp() override { setenv("GAENGINE_SEED", "4711", 1); }
  void TearDown() override { unsetenv("GAENGINE_SEED"); }
  // The whole run's default: five random starts of the tour search, then a ripple by LOD.
  std::vector<int32_t> ByDefault(const Simulated& s) {
    const int32_t n = static_cast<int32_t>(s.kind.size());
    std::vector<int32_t> order(n), no_anchor(n, 0);
    std::iota(order.begin(), order.end(), 1);
    position_.assign(n, 0.0f);
    UniformStream random;
    OrderGroup(s.store.Table(), options_.frame, n, no_anchor.data(), order.data(), position_.data(), random, {});
    RippleGroup(s.store.Table(), kByFirstValue, 5, n, order.data(), position_.data());
    return order;
  }
  std::vector<int32_t> AroundFrame(const Simulated& s) {
    const int32_t n = static_cast<int32_t>(s.kind.size());
    std::vector<int32_t> order(n);
    std::iota(order.begin(), order.end(), 1);  // so that kinds by position are kinds by number
    position_.assign(n, 0.0f);
    UniformStream random;
    result_ = OrderAroundFrame(s.store.Table(), options_, n, s.kind.data(), order.data(), position_.data(), random, {});
    return order;
  }
  FrameOrderingOptions options_{{2, 2, 1, 5, 3}, 4, kByFirstValue, 5};
  std::vector<float> position_;
  FrameOrderingResult result_;
};

TEST_F(FrameOrdering, DominantAndRecessiveMarkersOrderCloserToTheTruthThanByDefault) {
  double framed = 0.0, by_default = 0.0;
  for (const uint64_t seed : {21u, 22u, 23u}) {
    const Simulated s = Simulate(seed, true);
    const std::vector<int32_t> order = AroundFrame(s);
    EXPECT_TRUE(result_.framed && result_.frame_size == 10);
    std::vector<int32_t> all(30);
    std::iota(all.begin(), all.end(), 1);
    EXPECT_TRUE(std::is_permutation(order.begin(), order.end(), all.begin()));
    framed += RankCorrelation(order, s.cm) / 3.0;
    by_default += RankCorrelation(ByDefault(s), s.cm) / 3.0;
  }
  EXPECT_GE(framed, 0.97);
  EXPECT_GT(framed, by_default + 0.01);
}

// Hundreds of co-dominant markers a fraction of a cM apart, two thirds of them labelled
// dominant so that they are placed into the frame of the others: the many long pairs of each
// placed marker must not outvote its few close ones, or neighbours interleave and the map grows.
TEST_F(FrameOrdering, ADenseGroupPlacedIntoItsFrameKeepsItsOrderAndLength) {
  Simulated s = Simulate(41, false, 240, 60.0);
  const std::vector<int32_t> by_default = ByDefault(s);
  const float default_length = position_.back();
  for (std::size_t m = 0; m < s.kind.size(); ++m) s.kind[m] = m % 3 == 0 ? 1 : 12;
  const std::vector<int32_t> order = AroundFrame(s);
  EXPECT_GE(RankCorrelation(order, s.cm), RankCorrelation(by_default, s.cm) - 0.002);
  EXPECT_LT(position_.back(), 1.1f * default_length);
}

TEST_F(FrameOrdering, CodominantDataAndGroupsWithoutAFrameComeOutAsByDefault) {
  const Simulated s = Simulate(31, false);
  const std::vector<int32_t> expected = ByDefault(s);
  const std::vector<float> expected_position = position_;
  EXPECT_EQ(AroundFrame(s), expected);
  EXPECT_EQ(position_, expected_position);
  // Ten co-dominant markers are too few for a frame of eleven: the default order and ripple.
  const Simulated mixed = Simulate(32, true);
  options_.min_frame = 11;
  EXPECT_EQ(AroundFrame(mixed), ByDefault(mixed));
  EXPECT_FALSE(result_.framed);
}

TEST(FramePlacement, FitsTheWeightedDistancesByHand) {
  // Morgan's function, 100 cM a unit. Partners 1, 2, 3 at 0, 10, 20 cM; marker 4 lies 15, 5
  // and 5 cM from them, which only t = 15 (between 2 and 3) fits exactly.
  testing::MemoryStore store(5);
  store.Set(4, 1, 2.0f, 0.15f);
  store.Set(4, 2, 2.0f, 0.05f);
  store.Set(4, 3, 2.0f, 0.05f);
  const int32_t partners[3] = {1, 2, 3};
  const float at[3] = {0.0f, 10.0f, 20.0f};
  Placement p = BestPlacement(store.Table(3), 4, partners, at, 3);
  EXPECT_EQ(p.gap, 2);
  EXPECT_NEAR(p.t, 15.0f, 1e-4f);
  // Partner 1 says 5 cM with LOD 6, partner 3 says 5 cM with LOD 2, partner 2 is silenced by
  // a frequency too large to inform. Weights (LOD (1 - 2r))^2 = 5.4^2 and 1.8^2, 9 to 1: the
  // weighted mean 0.9 * 5 + 0.1 * 15.
  store.Set(4, 1, 6.0f, 0.05f);
  store.Set(4, 2, 2.0f, 0.45f);
  p = BestPlacement(store.Table(3), 4, partners, at, 3);
  EXPECT_EQ(p.gap, 1);
  EXPECT_NEAR(p.t, 6.0f, 1e-4f);
  EXPECT_NEAR(p.misfit, 5.4 * 5.4 * 1 * 1 + 1.8 * 1.8 * 9 * 9, 1e-3);
}

class FrequencyCap : public testing::InTempDir {};

TEST_F(FrequencyCap, AChanceLinkAboveTheCapNoLongerJoinsTwoGroups) {
  // Markers 1-3 and 4-6 are two tight chromosomes, unlinked to each other but for a chance
  // LOD of 4 at a frequency of 0.7 between markers 3 and 4.
  testing::MemoryStore hand(6);
  for (int32_t i = 2; i <= 6; ++i) {
    for (int32_t j = 1; j < i; ++j) {
      const bool same = (i <= 3) == (j <= 3);
      hand.Set(i, j, same ? 12.0f : 0.0f, same ? 0.05f * static_cast<float>(i - j) : 0.5f);
    }
  }
  hand.Set(4, 3, 4.0f, 0.7f);
  hand.Write("hand.LRD");
  PairStoreFile store;
  ASSERT_TRUE(store.Open("hand.LRD", 2, 1));
  const std::vector<int32_t> anchor(6, 0), one(6, 1), two{1, 1, 1, 2, 2, 2};
  std::vector<int32_t> group(6);
  const auto group_at = [&](float max_rf) {
    GroupByThreshold(store.Table(), kByFirstValue, 6, -3.0f, anchor.data(), group.data(), max_rf);
    return group;
  };
  EXPECT_EQ(group_at(kNoFrequencyCap), one);
  const LodForest forest = BuildLodForest(store.Table(), 6, 3.0f, 0.5f);
  EXPECT_EQ(forest.capped, 9);  // the chance link and the eight unlinked pairs at 0.5
  EXPECT_EQ(group_at(0.5f), two);
  EXPECT_EQ(ForestGroups(forest, 3.0f), two);
  EXPECT_EQ(LodTree(store.Table(), 6, {3.0f}, false, 0, 0.5f)[0].sizes, (std::vector<int32_t>{3, 3}));
  EXPECT_EQ(group_at(0.75f), one);  // a cap above it changes nothing
}

}  // namespace
}  // namespace gae
