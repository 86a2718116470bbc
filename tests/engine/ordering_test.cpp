// Ordering a group: sorting and sampling, tour primitives, insertion and rippling against literal
// transcriptions of their rules, and the options' documented effects on stores with a known true
// order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <random>
#include <set>

#include "engine/engine_test_support.h"
#include "engine/local_search.h"
#include "engine/order_group.h"
#include "engine/ordering_methods.h"
#include "engine/rippling.h"
#include "engine/sort_sample.h"
#include "engine/tour_primitives.h"
#include "support/alloc_counter.h"
#include "twopoint/mapping_function.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::MemoryStore;

TEST(SortWithPermutation, StableAscendingWithNaNLast) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float values[] = {3.0f, nan, -1.0f, 3.0f, 0.5f, nan, -1.0f};
  float sorted[7];
  int32_t perm[7];
  SVRGP(7, values, sorted, perm);
  EXPECT_THAT(perm, ElementsAre(3, 7, 5, 1, 4, 2, 6));
  for (int k = 0; k < 7; ++k) {
    if (std::isnan(values[perm[k] - 1])) EXPECT_TRUE(std::isnan(sorted[k]));
    else EXPECT_EQ(sorted[k], values[perm[k] - 1]);
  }
  const int32_t ints[] = {5, 2, 9, 2, 1};
  int32_t isorted[5], iperm[5];
  SVIGP(5, ints, isorted, iperm);
  EXPECT_THAT(isorted, ElementsAre(1, 2, 2, 5, 9));
  EXPECT_THAT(iperm, ElementsAre(5, 2, 4, 1, 3));
}

TEST(RandomSample, DistinctNumbersEachEquallyLikely) {
  UniformStream random;
  int32_t sample[10];
  RNSRI(12, 10, random, sample);  // more than the population: all of it
  std::set<int32_t> all(sample, sample + 10);
  EXPECT_EQ(all.size(), 10u);
  EXPECT_EQ(*all.begin(), 1);
  EXPECT_EQ(*all.rbegin(), 10);
  // 3 of 8 many times: each number is drawn 3/8 of the time, and the first draw is uniform too.
  const int draws = 40000;
  std::vector<int> hits(9, 0), first(9, 0);
  for (int d = 0; d < draws; ++d) {
    int32_t s[3];
    RNSRI(3, 8, random, s);
    ASSERT_NE(s[0], s[1]);
    ASSERT_NE(s[0], s[2]);
    ASSERT_NE(s[1], s[2]);
    for (int32_t v : s) {
      ASSERT_GE(v, 1);
      ASSERT_LE(v, 8);
      ++hits[v];
    }
    ++first[s[0]];
  }
  for (int v = 1; v <= 8; ++v) {
    EXPECT_NEAR(hits[v] / static_cast<double>(draws), 3.0 / 8.0, 0.015) << v;
    EXPECT_NEAR(first[v] / static_cast<double>(draws), 1.0 / 8.0, 0.01) << v;
  }
  // The same seed draws the same sample.
  UniformStream a, b;
  int32_t sa[5], sb[5];
  RNSRI(5, 100, a, sa);
  RNSRI(5, 100, b, sb);
  EXPECT_TRUE(std::equal(sa, sa + 5, sb));
}

// A matrix from points on a line: d(i, j) = |x_i - x_j|.
TourMatrix Line(const std::vector<float>& x) {
  const int32_t n = static_cast<int32_t>(x.size());
  TourMatrix d(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) d.Set(i, j, std::fabs(x[i - 1] - x[j - 1]));
  return d;
}

TEST(TourPrimitives, NearestNeighbourTakesTheLaterOfEqualCandidates) {
  // From city 2 at 0, cities 1 and 3 both lie at distance 1: the later in the working array
  // (after the swap of entries 1 and 2 the array reads 2 1 3 4) is 3.
  const TourMatrix d = Line({-1, 0, 1, 5});
  Tour tour;
  NearestNeighbourTour(d, 2, tour);
  EXPECT_THAT(tour, ElementsAre(2, 3, 1, 4));
  NearestNeighbourTour(d, 4, tour);
  EXPECT_THAT(tour, ElementsAre(4, 3, 2, 1));
}

TEST(TourPrimitives, LengthsByHand) {
  const TourMatrix d = Line({0, 1, 3, 7});
  const Tour tour = {1, 3, 2, 4};
  float total = 0, longest = 0, closing = 0;
  ClosedLength(d, tour, &total, &longest);
  EXPECT_EQ(total, 7.0f + 3.0f + 2.0f + 6.0f);
  EXPECT_EQ(longest, 7.0f);
  OpenLength(d, tour, &total, &closing);
  EXPECT_EQ(total, 3.0f + 2.0f + 6.0f);
  EXPECT_EQ(closing, 7.0f);
  // pairs (i>j) over (i-j)^2: d(3,1)/1 + d(2,1)/4 + d(2,3)/1 + d(4,1)/9 + d(4,3)/4 + d(4,2)/1
  EXPECT_FLOAT_EQ(PairWeightedSum(d, tour), 3.0f + 1.0f / 4 + 2.0f + 7.0f / 9 + 4.0f / 4 + 6.0f);
}

// Fixes the clock seed of the random starts for one test.
class FixedSeed : public ::testing::Test {
 protected:
  void SetUp() override { setenv("GAENGINE_SEED", "4711", 1); }
  void TearDown() override { unsetenv("GAENGINE_SEED"); }
};

// Insertion as its rule reads, every step measuring every candidate against the frame.
void LiteralInsertion(int32_t n, int32_t K, const TourMatrix& d, std::vector<int32_t>& perm) {
  std::vector<int32_t> rest;
  for (int32_t c = K + 1; c <= n; ++c) rest.push_back(c);
  while (!rest.empty()) {
    const int32_t L = n - static_cast<int32_t>(rest.size());
    float path = 0.0f;
    for (int32_t i = 1; i <= L - 1; ++i) path += d(perm[i - 1], perm[i]);
    float closest = 1e10f;
    std::size_t chosen = 0;
    for (std::size_t r = 0; r < rest.size(); ++r) {
      float smallest = std::numeric_limits<float>::infinity();
      for (int32_t f = 1; f <= K; ++f) smallest = std::min(smallest, d(rest[r], f));
      if (smallest < closest) closest = smallest, chosen = r;
    }
    const int32_t c = rest[chosen];
    float best = std::numeric_limits<float>::infinity();
    int32_t gap = L;
    for (int32_t p = 0; p <= L; ++p) {
      float cost;
      if (p == 0) cost = path + d(c, perm[0]);
      else if (p == L) cost = path + d(perm[L - 1], c);
      else cost = path - d(perm[p - 1], perm[p]) + d(perm[p - 1], c) + d(c, perm[p]);
      if (cost < best) best = cost, gap = p;
    }
    perm.insert(perm.begin() + gap, c);
    perm.pop_back();
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(chosen));
  }
}

TEST(OrderByInsertion, EqualsTheLiteralRuleOnRandomMatrices) {
  std::mt19937 rng(17);
  UniformStream random;
  for (int trial = 0; trial < 400; ++trial) {
    const int32_t n = 3 + static_cast<int32_t>(rng() % 30);
    const int32_t K = 3 + static_cast<int32_t>(rng() % (n - 2));
    const TourMatrix d = testing::ToTourMatrix(n, testing::RandomPacked(n, rng, -10, 10, trial % 2 == 1));
    std::vector<int32_t> ours(n, 0), literal(n, 0);
    std::iota(ours.begin(), ours.begin() + K, 1);
    literal = ours;
    OrderByInsertion(d, random, ours, nullptr);
    LiteralInsertion(n, K, d, literal);
    ASSERT_EQ(ours, literal) << "trial " << trial;
  }
}

TEST(OrderByInsertion, BrokenFrameFallsBackToTheIdentity) {
  UniformStream random;
  const TourMatrix d(5);
  std::vector<int32_t> perm = {1, 3, 2, 0, 0};
  OrderByInsertion(d, random, perm, nullptr);
  EXPECT_THAT(perm, ElementsAre(1, 2, 3, 4, 5));
}

TEST(OrderByInsertion, SmallFrameOverValuesThatAreNotNumbersGivesAFullOrder) {
  // Found by fuzzing: with fewer than three anchored markers the insertion hands the group to
  // the multi-start search, which never replaced the frame-and-zeros vector when no tour
  // compared; the zeros then indexed before the order.
  testing::MemoryStore store;
  store.markers = 6;
  store.records.assign(2 * 15, std::numeric_limits<float>::quiet_NaN());
  const PairTable table = store.Table(1);
  UniformStream random;
  for (const int32_t anchored : {0, 1, 2}) {
    std::vector<int32_t> order = {6, 2, 5, 1, 4, 3}, anchor(6, 0);
    for (int32_t k = 0; k < anchored; ++k) anchor[k] = 1;
    std::vector<float> position(6, -1.0f);
    OrderGroup(table, {3, kByRecFreq, 1, 5, 3}, 6, anchor.data(), order.data(), position.data(),
               random, nullptr);
    std::vector<int32_t> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_THAT(sorted, ElementsAre(1, 2, 3, 4, 5, 6)) << anchored;
  }
}

// One chromosome: markers 1..n in a shuffled input order with known positions.
struct Chromosome {
  MemoryStore store;
  std::vector<int32_t> truth;  // marker numbers from one end to the other
};

Chromosome LineStore(int32_t n, std::mt19937& rng) {
  Chromosome c;
  c.store = testing::LinkedStore(n, 1, rng);
  std::vector<float> pos(n + 1);
  // the positions are implied by the frequencies; recover the order by distance from the marker
  // farthest from marker 1 (one end)
  int32_t end = 2;
  for (int32_t j = 2; j <= n; ++j)
    if (c.store.Second(1, j) > c.store.Second(1, end)) end = j;
  c.truth.resize(n);
  std::iota(c.truth.begin(), c.truth.end(), 1);
  std::sort(c.truth.begin(), c.truth.end(), [&](int32_t a, int32_t b) {
    const float da = a == end ? 0.0f : c.store.Second(a, end);
    const float db = b == end ? 0.0f : c.store.Second(b, end);
    return da < db;
  });
  return c;
}

bool SameUpToReversal(std::vector<int32_t> a, const std::vector<int32_t>& b) {
  if (a == b) return true;
  std::reverse(a.begin(), a.end());
  return a == b;
}

class OrderGroupOnALine : public FixedSeed {};

TEST_F(OrderGroupOnALine, EverySearchRecoversTheTrueOrder) {
  std::mt19937 rng(23);
  const Chromosome c = LineStore(40, rng);
  const PairTable table = c.store.Table(2);
  UniformStream random;
  for (int search = 1; search <= 4; ++search) {
    for (int option = 1; option <= 3; ++option) {
      std::vector<int32_t> order(40), anchor(40, 0);
      std::iota(order.begin(), order.end(), 1);
      std::shuffle(order.begin(), order.end(), rng);
      std::vector<float> position(40, -1.0f);
      OrderGroup(table, {2, kByRecFreq, option, 5, search}, 40, anchor.data(), order.data(),
                 position.data(), random, nullptr);
      if (option == 2) continue;  // improving a shuffled order need not reach the optimum
      EXPECT_TRUE(SameUpToReversal(order, c.truth)) << "search " << search << " option " << option;
    }
  }
  std::vector<int32_t> order(40), anchor(40, 0);
  std::iota(order.begin(), order.end(), 1);
  std::vector<float> position(40);
  OrderGroup(table, {1, kByFirstValue, 1, 5, 3}, 40, anchor.data(), order.data(), position.data(), random, nullptr);
  EXPECT_TRUE(SameUpToReversal(order, c.truth)) << "nearest neighbour";
}

TEST_F(OrderGroupOnALine, PositionsAreCumulativeMapDistances) {
  std::mt19937 rng(29);
  const Chromosome c = LineStore(12, rng);
  UniformStream random;
  for (int mapping = 1; mapping <= 3; ++mapping) {
    const PairTable table = c.store.Table(mapping);
    std::vector<int32_t> order = c.truth, anchor(12, 0);
    std::vector<float> position(12, -1.0f);
    OrderGroup(table, {2, kByFirstValue, 2, 5, 3}, 12, anchor.data(), order.data(), position.data(), random, nullptr);
    float expected = 0.0f;
    EXPECT_EQ(position[0], 0.0f);
    for (int i = 1; i < 12; ++i) {
      expected += MapRecToDistance(mapping, c.store.Second(order[i - 1], order[i]));
      EXPECT_EQ(position[i], expected) << mapping << " " << i;
    }
  }
}

TEST_F(OrderGroupOnALine, OptionsAndMethodsThatKeepOrSortTheOrder) {
  std::mt19937 rng(31);
  const Chromosome c = LineStore(10, rng);
  const PairTable table = c.store.Table();
  UniformStream random;
  std::vector<int32_t> anchor(10, 0), order = {4, 9, 1, 7, 2, 10, 3, 8, 5, 6};
  std::vector<float> position(10);
  const std::vector<int32_t> shuffled = order;
  // an option outside 1..3 keeps the order, positions are still computed
  OrderGroup(table, {2, kByRecFreq, 4, 5, 3}, 10, anchor.data(), order.data(), position.data(), random, nullptr);
  EXPECT_EQ(order, shuffled);
  EXPECT_GT(position[9], 0.0f);
  // method 3 with every marker in the frame keeps the order
  std::vector<int32_t> all_anchored(10, 1);
  OrderGroup(table, {3, kByRecFreq, 1, 5, 3}, 10, all_anchored.data(), order.data(), position.data(), random, nullptr);
  EXPECT_EQ(order, shuffled);
  // method 4 sorts by marker number, anchored markers or not
  all_anchored[3] = 0;
  OrderGroup(table, {4, kByRecFreq, 1, 5, 3}, 10, all_anchored.data(), order.data(), position.data(), random, nullptr);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(OrderGroupOnALine, SmallFrameSearchesTheWholeGroupLikeMultiStart) {
  std::mt19937 rng(37);
  const Chromosome c = LineStore(15, rng);
  const PairTable table = c.store.Table();
  UniformStream random;
  std::vector<int32_t> anchor(15, 0), by_frame(15), by_search(15);
  anchor[0] = anchor[1] = 1;  // two anchored: too small a frame
  std::iota(by_frame.begin(), by_frame.end(), 1);
  by_search = by_frame;
  std::vector<float> position(15);
  OrderGroup(table, {3, kByRecFreq, 1, 99, 1}, 15, anchor.data(), by_frame.data(), position.data(), random, nullptr);
  OrderGroup(table, {2, kByRecFreq, 1, 5, 3}, 15, anchor.data(), by_search.data(), position.data(), random, nullptr);
  EXPECT_EQ(by_frame, by_search);
}

TEST_F(OrderGroupOnALine, StartsRunSideBySideButTheEarliestDrawWinsTies) {
  // 300 markers on a coarse grid of positions: many starts end at the same open length, so
  // the choice among equals shows whether the results are judged in the order of the draw.
  const int32_t n = 300;
  std::mt19937 rng(8);
  std::uniform_int_distribution<int> slot(0, 40);
  std::vector<int> x(n + 1);
  for (int& v : x) v = slot(rng);
  TourMatrix d(n);
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j) d.Set(i, j, 0.01f * static_cast<float>(std::abs(x[i] - x[j])));
  for (const int32_t search : {1, 3}) {
    UniformStream random;
    random.Next();
    const UniformStream::Seed before = random.GetSeed();
    std::vector<StartRecord> records;
    std::vector<int32_t> perm(n);
    std::iota(perm.begin(), perm.end(), 1);
    OrderMultiStart(d, 8, search, random, perm, [&](const StartRecord& r) { records.push_back(r); });
    EXPECT_EQ(random.GetSeed(), before);  // the starts draw from a stream of their own
    // The same draw, then the starts one after another.
    UniformStream draw;
    draw.SeedFromClock();
    std::vector<int32_t> starts(8);
    RNSRI(8, n, draw, starts.data());
    float best = std::numeric_limits<float>::infinity();
    std::vector<int32_t> expected;
    ASSERT_EQ(records.size(), 8u);
    for (int k = 0; k < 8; ++k) {
      Tour tour;
      NearestNeighbourTour(d, starts[k], tour);
      RunLocalSearch(search, d, tour);
      float open = 0.0f;
      OpenLength(d, tour, &open, nullptr);
      EXPECT_EQ(records[k].counter, k + 1);
      EXPECT_EQ(records[k].open_after, open) << "start " << k + 1;
      EXPECT_GE(records[k].closed_after, records[k].open_after);
      if (open < best) best = open, expected = tour;
    }
    EXPECT_EQ(perm, expected) << "search " << search;
  }
  // More starts than cities: each city starts once.
  std::vector<StartRecord> few;
  std::vector<int32_t> six = {1, 2, 3, 4, 5, 6};
  UniformStream random;
  OrderMultiStart(TourMatrix(6), 50, 3, random, six, [&](const StartRecord& r) { few.push_back(r); });
  EXPECT_EQ(few.size(), 6u);
  EXPECT_EQ(StartLine({6, 2, 12.0f, 10.5f, 9.25f, 1234567.0f}),
            "           6           2       12.00       10.50        9.25  1234567.00");
}

TEST_F(OrderGroupOnALine, ConsensusOrdersSharedMarkersFirstThenInsertsTheRest) {
  std::mt19937 rng(43);
  const Chromosome c = LineStore(20, rng);
  const PairTable table = c.store.Table(3);
  UniformStream random;
  for (int method = 1; method <= 2; ++method) {
    std::vector<int32_t> order(20), maps(20, 1);
    std::iota(order.begin(), order.end(), 1);
    std::shuffle(order.begin(), order.end(), rng);
    for (int k = 0; k < 20; k += 3) maps[k] = 2;  // shared markers, by position
    std::vector<float> position(20);
    OrderConsensus(table, method, 20, maps.data(), order.data(), position.data(), random, nullptr);
    EXPECT_TRUE(SameUpToReversal(order, c.truth)) << "method " << method;
    EXPECT_EQ(position[0], 0.0f);
  }
  std::vector<int32_t> two = {5, 3}, maps = {2, 2};
  std::vector<float> position(2);
  OrderConsensus(table, 2, 2, maps.data(), two.data(), position.data(), random, nullptr);
  EXPECT_THAT(two, ElementsAre(5, 3));
  EXPECT_EQ(position[1], MapRecToDistance(3, c.store.Second(5, 3)));
}

// One sliding pass as its rule reads, every row's cost looked up in the matrix.
void LiteralRipple(int32_t window_size, const TourMatrix& d, std::vector<int32_t>& perm) {
  const int32_t n = static_cast<int32_t>(perm.size());
  const int32_t W = std::min(window_size, n);
  for (int32_t s = 1; s <= n - W + 1; ++s) {
    const std::vector<int32_t> w(perm.begin() + (s - 1), perm.begin() + (s - 1 + W));
    std::vector<int32_t> row(W), chosen(W);
    std::iota(row.begin(), row.end(), 1);
    chosen = row;
    float best = std::numeric_limits<float>::infinity();
    do {
      float cost = s >= 2 ? d(perm[s - 2], w[row[0] - 1]) : 0.0f;
      for (int32_t k = 1; k <= W - 1; ++k) cost += d(w[row[k - 1] - 1], w[row[k] - 1]);
      if (s <= n - W) cost += d(w[row[W - 1] - 1], perm[s + W - 1]);
      if (cost < best) best = cost, chosen = row;
    } while (std::next_permutation(row.begin(), row.end()));
    for (int32_t k = 0; k < W; ++k) perm[s - 1 + k] = w[chosen[k] - 1];
  }
}

TEST(RippleWindows, AWideWindowNeedsNoTableOfItsPermutations) {
  // Found by fuzzing: consensus windows of 10 to 12 built a table of every permutation first
  // (145 MB at 10, 1.7 GB at 11). The walk must hold no more than a few small vectors, and
  // still find the cheapest order of a whole group in one window.
  std::mt19937 rng(61);
  const int32_t n = 10;
  const TourMatrix d = testing::ToTourMatrix(n, testing::RandomPacked(n, rng, 0, 1000, true));
  std::vector<int32_t> perm(n);
  std::iota(perm.begin(), perm.end(), 1);
  std::shuffle(perm.begin(), perm.end(), rng);
  std::vector<int32_t> literal = perm;
  {
    testing::AllocationScope scope;
    RippleWindows(n, d, perm);
    EXPECT_LT(scope.PeakBytes(), 64 * 1024);
  }
  LiteralRipple(n, d, literal);
  EXPECT_EQ(perm, literal);
}

TEST(RippleWindows, EqualsTheLiteralRuleOnRandomMatrices) {
  std::mt19937 rng(53);
  int changed = 0;
  for (int trial = 0; trial < 300; ++trial) {
    const int32_t n = 1 + static_cast<int32_t>(rng() % 25);
    const int32_t window = 2 + static_cast<int32_t>(rng() % 5);
    const TourMatrix d = testing::ToTourMatrix(n, testing::RandomPacked(n, rng, -8, 8, trial % 2 == 1));
    std::vector<int32_t> ours(n);
    std::iota(ours.begin(), ours.end(), 1);
    std::shuffle(ours.begin(), ours.end(), rng);
    std::vector<int32_t> literal = ours;
    const std::vector<int32_t> start = ours;
    RippleWindows(window, d, ours);
    LiteralRipple(window, d, literal);
    ASSERT_EQ(ours, literal) << "trial " << trial;
    changed += ours != start;
  }
  EXPECT_GT(changed, 150);
}

}  // namespace
}  // namespace gae
