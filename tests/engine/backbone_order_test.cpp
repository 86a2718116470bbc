// The backbone ordering of large groups: against the exhaustive best path on small groups,
// against the bred order on a simulated group, and the bridging of pairs that say nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <set>

#include "engine/backbone_order.h"
#include "engine/path_moves.h"
#include "pipeline/group_layout.h"
#include "support/bred_groups.h"
#include "support/pair_store.h"

namespace gae {
namespace {

// Cities along a line, each distance stretched or shrunk by up to 30%: what frequencies of
// markers along a chromosome look like, noise included.
TourMatrix NoisyLine(int32_t n, std::mt19937_64& rng) {
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  std::vector<double> x(static_cast<size_t>(n));
  for (double& v : x) v = unit(rng);
  TourMatrix d(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j)
      d.Set(i, j, static_cast<float>(std::abs(x[static_cast<size_t>(i - 1)] - x[static_cast<size_t>(j - 1)]) * (0.7 + 0.6 * unit(rng))));
  return d;
}

double ExhaustiveShortest(const TourMatrix& d) {
  std::vector<int32_t> order(static_cast<size_t>(d.Size()));
  std::iota(order.begin(), order.end(), 1);
  double best = 1e300;
  do best = std::min(best, PathLength(d, order));
  while (std::next_permutation(order.begin(), order.end()));
  return best;
}

TEST(BackboneOrder, FindsTheExhaustiveShortestPathOnSmallGroups) {
  std::mt19937_64 rng(5);
  int exact = 0, cases = 0;
  double excess = 0.0;
  for (int32_t n = 3; n <= 8; ++n)
    for (int rep = 0; rep < 30; ++rep, ++cases) {
      const TourMatrix d = NoisyLine(n, rng);
      std::vector<int32_t> order = BackboneOrder(d);
      std::vector<int32_t> sorted = order;
      std::sort(sorted.begin(), sorted.end());
      std::vector<int32_t> all(static_cast<size_t>(n));
      std::iota(all.begin(), all.end(), 1);
      ASSERT_EQ(sorted, all) << "every city once";
      const double best = ExhaustiveShortest(d), found = PathLength(d, order);
      exact += found <= best + 1e-6;
      excess += found / best - 1.0;
    }
  // A heuristic, so not always the best; but nearly always, and little off it on average.
  EXPECT_GE(exact, cases * 95 / 100);
  EXPECT_LT(excess / cases, 0.005);
}

TEST(BackboneOrder, LocalMovesOnlyShortenAndTurnAMisplacedBlockBack) {
  std::mt19937_64 rng(9);
  for (int rep = 0; rep < 20; ++rep) {
    const TourMatrix d = NoisyLine(60, rng);
    std::vector<int32_t> order(60);
    std::iota(order.begin(), order.end(), 1);
    std::shuffle(order.begin(), order.end(), rng);
    const double before = PathLength(d, order);
    ImprovePath(d, NearestCities(d, 12), 12, order);
    EXPECT_LE(PathLength(d, order), before);
    EXPECT_EQ(std::set<int32_t>(order.begin(), order.end()).size(), 60u);
  }
  // Cities 1..30 on a line one apart, the order 1..10, 20..11, 21..30: one move mends it.
  TourMatrix line(30);
  for (int32_t i = 2; i <= 30; ++i)
    for (int32_t j = 1; j < i; ++j) line.Set(i, j, static_cast<float>(i - j));
  std::vector<int32_t> order(30);
  std::iota(order.begin(), order.end(), 1);
  std::reverse(order.begin() + 10, order.begin() + 20);
  EXPECT_GE(ImprovePath(line, NearestCities(line, 4), 4, order), 1);
  EXPECT_DOUBLE_EQ(PathLength(line, order), 29.0);
}

TEST(BackboneOrder, AMistrustedPairIsAsFarAsTheWayThroughATrustedNeighbour) {
  testing::MemoryStore store(4);
  store.Set(1, 2, 10.0f, 0.02f);
  store.Set(2, 3, 10.0f, 0.03f);
  store.Set(1, 3, 1.0f, 0.45f);  // too little said: bridged through 2
  store.Set(1, 4, 1.0f, 0.01f);  // too little said and no trusted way round: unlinked
  store.Set(2, 4, 0.5f, 0.30f);
  store.Set(3, 4, 0.5f, 0.30f);
  const int32_t order[] = {1, 2, 3, 4};
  const TourMatrix d = TrustedFrequencies(store.Table(), 4, order, 3.0f);
  EXPECT_FLOAT_EQ(d(1, 2), 0.02f);
  EXPECT_FLOAT_EQ(d(1, 3), 0.05f);
  EXPECT_FLOAT_EQ(d(3, 1), 0.05f);
  EXPECT_FLOAT_EQ(d(1, 4), 0.5f);
}

// Pairs of a bred doubled-haploid group estimated by hand: the share of recombinant lines
// among those typed at both, and the LOD of that share against free recombination.
testing::MemoryStore DoubledHaploidPairs(const testing::BredGroup& group, int32_t markers, int individuals) {
  testing::MemoryStore store(markers);
  for (int32_t i = 2; i <= markers; ++i)
    for (int32_t j = 1; j < i; ++j) {
      double typed = 0, recombinant = 0;
      for (int k = 0; k < individuals; ++k) {
        const char a = group.types[static_cast<size_t>((i - 1) * individuals + k)];
        const char b = group.types[static_cast<size_t>((j - 1) * individuals + k)];
        if (a == 'X' || b == 'X') continue;
        typed += 1;
        recombinant += a != b;
      }
      const double r = std::clamp(recombinant / typed, 1e-4, 0.5);
      const double lod = typed * (r * std::log10(r) + (1 - r) * std::log10(1 - r) + std::log10(2.0));
      store.Set(i, j, static_cast<float>(lod), static_cast<float>(r));
    }
  return store;
}

TEST(BackboneOrder, PutsABredGroupOfHundredsOfMarkersBackInItsOrder) {
  testing::BredGroupPlan plan;
  plan.population_type = 3;  // doubled haploids
  plan.positions_cm = testing::EvenPositions(400, 0.4);
  plan.individuals = 200;
  plan.missing = 0.05;
  plan.error_rate = 0.005;
  const testing::BredGroup group = testing::BreedGroup(plan);
  const testing::MemoryStore store = DoubledHaploidPairs(group, 400, plan.individuals);
  std::vector<int32_t> markers(400);
  std::iota(markers.begin(), markers.end(), 1);
  std::shuffle(markers.begin(), markers.end(), std::mt19937_64(3));
  ASSERT_GE(static_cast<int32_t>(markers.size()), kBackboneFrom);
  UniformStream random;
  const std::vector<int32_t> start = StartOrder(store.Table(), StartOrderOptions{}, markers,
                                                std::vector<int32_t>(400, 1), random, nullptr);
  std::vector<int32_t> placed;
  for (const int32_t k : start) placed.push_back(markers[static_cast<size_t>(k)] - 1);
  EXPECT_GT(std::abs(testing::RankCorrelation(placed)), 0.99);
}

}  // namespace
}  // namespace gae
