#include "engine/rippling.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>

#include "engine/engine_test_support.h"
#include "support/alloc_counter.h"

namespace gae {
namespace {

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
