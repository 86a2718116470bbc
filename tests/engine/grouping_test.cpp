// Grouping by threshold and to a count against literal transcriptions of their rules (every
// comparison a store read, every merge a full recomputation), on random stores with ties and
// NaN values; and the anchors a user writes.
#include "engine/grouping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include "engine/engine_test_support.h"
#include "support/alloc_counter.h"

namespace gae {
namespace {

using ::testing::ElementsAre;
using testing::MemoryStore;

constexpr float kInf = std::numeric_limits<float>::infinity();

// ---- Literal transcriptions ----------------------------------------------------------------

std::vector<int32_t> LiteralThreshold(const PairTable& t, int by, int32_t n, float threshold,
                                      const std::vector<int32_t>& anchor) {
  std::vector<int32_t> g(anchor);  // g[i-1] for marker i
  int64_t sum = 0;
  for (int32_t v : g) sum += v;
  if (sum == 0) {
    float best = kInf;
    int32_t bi = 0, bj = 0;
    for (int32_t i = 2; i <= n; ++i)
      for (int32_t j = 1; j <= i - 1; ++j)
        if (t.Value(by, i, j) < best) best = t.Value(by, i, j), bi = i, bj = j;
    if (!(best < threshold)) {
      for (int32_t i = 1; i <= n; ++i) g[i - 1] = i;
      return g;
    }
    g[bi - 1] = 1;
    g[bj - 1] = 1;
  }
  for (int32_t i = 1; i <= n; ++i)
    if (g[i - 1] != 0)
      for (int32_t j = 1; j <= n; ++j)
        if (g[j - 1] == 0 && t.Second(i, j) < 0.01f) g[j - 1] = g[i - 1];
  while (std::count(g.begin(), g.end(), 0) > 0) {
    const int32_t G = *std::max_element(g.begin(), g.end());
    float best = kInf;
    int32_t ci = 0, cg = 0;
    for (int32_t i = 1; i <= n; ++i) {
      if (g[i - 1] != 0) continue;
      for (int32_t gg = 1; gg <= G; ++gg)
        for (int32_t j = 1; j <= n; ++j)
          if (g[j - 1] == gg && t.Value(by, i, j) < best) best = t.Value(by, i, j), ci = i, cg = gg;
    }
    if (ci == 0) ci = static_cast<int32_t>(std::find(g.begin(), g.end(), 0) - g.begin()) + 1;
    g[ci - 1] = best < threshold ? cg : G + 1;
  }
  return g;
}

std::vector<int32_t> LiteralCount(const PairTable& t, int by, int32_t n, int32_t count,
                                  const std::vector<int32_t>& anchor) {
  const int32_t A = std::max(0, *std::max_element(anchor.begin(), anchor.end()));
  const int32_t T = std::max(1, std::min(n, std::max(count, A)));
  std::vector<int32_t> g(n, 1);
  if (T == 1) return g;
  int32_t G = A;
  for (int32_t i = 1; i <= n; ++i) g[i - 1] = anchor[i - 1] >= 1 ? anchor[i - 1] : ++G;
  auto members = [&](int32_t c) {
    std::vector<int32_t> m;
    for (int32_t i = 1; i <= n; ++i)
      if (g[i - 1] == c) m.push_back(i);
    return m;
  };
  while (G > T) {
    float best = kInf;
    int32_t ca = 0, cb = 0;
    for (int32_t a = 2; a <= G; ++a) {
      for (int32_t b = 1; b <= a - 1; ++b) {
        const std::vector<int32_t> ma = members(a), mb = members(b);
        float sum = 0.0f;
        for (int32_t x : ma)
          for (int32_t y : mb) sum += t.Value(by, x, y);
        const float mean = sum / static_cast<float>(ma.size() * mb.size());
        if (mean < best) best = mean, ca = a, cb = b;
      }
    }
    if (ca == 0) {  // no mean compares: the first pair with an empty cluster, else (2, 1)
      ca = 2, cb = 1;
      bool done = false;
      for (int32_t a = 2; a <= G && !done; ++a)
        for (int32_t b = 1; b < a && !done; ++b)
          if (members(a).empty() || members(b).empty()) ca = a, cb = b, done = true;
    }
    for (int32_t& v : g)
      if (v == ca) v = cb;
    for (int32_t& v : g)
      if (v > ca) --v;
    --G;
  }
  return g;
}

std::vector<int32_t> RandomAnchors(int32_t n, std::mt19937& rng) {
  std::vector<int32_t> anchor(n, 0);
  if (rng() % 3 == 0) {
    std::uniform_int_distribution<int32_t> which(1, n), group(1, 4);
    for (int k = 0; k < n / 5; ++k) anchor[which(rng) - 1] = group(rng);
  }
  return anchor;
}

TEST(GroupingByThreshold, EqualsTheLiteralRuleOnRandomStores) {
  std::mt19937 rng(42);
  int trials_with_groups = 0;
  for (int trial = 0; trial < 600; ++trial) {
    const int32_t n = 1 + static_cast<int32_t>(rng() % 45);
    const MemoryStore store = testing::RandomStore(n, rng, trial % 3 == 0 ? 0.15 : 0.0);
    const PairTable table = store.Table(1 + trial % 3);
    const int by = 1 + trial % 3;
    // thresholds that link some pairs and not others, in each value's units
    const float threshold = by == 1 ? -6.0f : by == 2 ? 0.1f : 12.0f;
    const std::vector<int32_t> anchor = RandomAnchors(n, rng);
    std::vector<int32_t> ours(n, -99);
    GroupByThreshold(table, by, n, threshold, anchor.data(), ours.data());
    ASSERT_EQ(ours, LiteralThreshold(table, by, n, threshold, AnchorRanks(n, anchor.data()))) << "trial " << trial;
    const int32_t groups = *std::max_element(ours.begin(), ours.end());
    trials_with_groups += groups > 1 && groups < n;
  }
  EXPECT_GT(trials_with_groups, 200);
}

TEST(GroupingToCount, EqualsTheLiteralRuleOnRandomStores) {
  // Three kinds of store: small random ones with ties and NaN; large linked ones with fractional
  // frequencies, whose 32-bit cluster sums round, so that a merged cluster's sum is known only
  // within a bound until it is recomputed; and huge values of both signs among small ones, where
  // a 32-bit sum depends heavily on the order of its terms.
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> noise(0.0f, 0.05f), small(0.0f, 4.0f);
  for (int trial = 0; trial < 460; ++trial) {
    const int kind = trial < 300 ? 0 : trial < 310 ? 1 : 2;
    int32_t n = 0;
    int by = 1 + trial % 3;
    MemoryStore store;
    if (kind == 0) {
      n = 1 + static_cast<int32_t>(rng() % 32);
      store = testing::RandomStore(n, rng, trial % 4 == 0 ? 0.1 : 0.0);
    } else if (kind == 1) {
      n = 60 + static_cast<int32_t>(rng() % 30);
      store = testing::LinkedStore(n, 3 + trial % 3, rng);
      for (std::size_t k = 1; k < store.records.size(); k += 2) store.records[k] += noise(rng);
      by = 2 + trial % 2;
    } else {
      n = 8 + static_cast<int32_t>(rng() % 30);
      store = testing::RandomStore(n, rng);
      for (std::size_t k = 0; k < store.records.size(); k += 2) {
        const int c = static_cast<int>(rng() % 6);
        store.records[k] = c == 0 ? 3.0e7f : c == 1 ? -3.0e7f : small(rng);
      }
      by = kByFirstValue;
    }
    const PairTable table = store.Table(1 + trial % 3);
    const std::vector<int32_t> anchor = kind == 1 ? std::vector<int32_t>(n, 0) : RandomAnchors(n, rng);
    const int32_t count = kind == 0 ? static_cast<int32_t>(rng() % 8) - 1 : 1 + static_cast<int32_t>(rng() % 5);
    std::vector<int32_t> ours(n, -99);
    GroupToCount(table, by, n, count, anchor.data(), ours.data());
    ASSERT_EQ(ours, LiteralCount(table, by, n, count, AnchorRanks(n, anchor.data()))) << "trial " << trial << " n " << n;
  }
}

TEST(GroupingByThreshold, FindsTheChromosomesOfALinkedStore) {
  // Markers on four chromosomes: at LOD 3 every chromosome is one group and no two share one.
  std::mt19937 rng(5);
  const int32_t n = 120;
  const MemoryStore store = testing::LinkedStore(n, 4, rng);
  const PairTable table = store.Table();
  std::vector<int32_t> anchor(n, 0), group(n);
  GroupByThreshold(table, kByFirstValue, n, -3.0f, anchor.data(), group.data());
  for (int32_t i = 2; i <= n; ++i)
    for (int32_t j = 1; j < i; ++j)
      EXPECT_EQ(table.Second(i, j) < 0.5f, group[i - 1] == group[j - 1]) << i << " " << j;
}

TEST(Grouping, OnlyTheOrderOfAnchorNumbersCounts) {
  // Found by fuzzing: an anchor of 2147483647 overflowed the next group number (the free
  // markers came out deleted), and one of 20,000 on two markers made 20,000 clusters. Large
  // numbers must give what their ranks give, in bounded time and memory.
  std::mt19937 rng(11);
  const MemoryStore store = testing::RandomStore(6, rng);
  const std::vector<int32_t> huge = {0, std::numeric_limits<int32_t>::max(), 0, 20000, 0, 0};
  const std::vector<int32_t> ranks = {0, 2, 0, 1, 0, 0};
  std::vector<int32_t> big(6), small(6);
  GroupByThreshold(store.Table(), kByFirstValue, 6, -1e9f, huge.data(), big.data());
  GroupByThreshold(store.Table(), kByFirstValue, 6, -1e9f, ranks.data(), small.data());
  EXPECT_GE(*std::min_element(big.begin(), big.end()), 1);  // no free marker comes out deleted
  EXPECT_EQ(big[3], 1);
  EXPECT_EQ(big[1], 2);
  EXPECT_EQ(big, small);
  testing::AllocationScope scope;
  GroupToCount(store.Table(), kByRecFreq, 6, 3, huge.data(), big.data());
  EXPECT_LT(scope.PeakBytes(), 16 * 1024);
  GroupToCount(store.Table(), kByRecFreq, 6, 3, ranks.data(), small.data());
  EXPECT_EQ(big, small);
  const std::vector<int32_t> pair = {20000, 20000};
  GroupToCount(store.Table(), kByRecFreq, 2, 1, pair.data(), big.data());
  EXPECT_THAT(std::vector<int32_t>(big.begin(), big.begin() + 2), ElementsAre(1, 1));
}

TEST(GroupingByAnchors, ClosesUpAnchorNumbersAndLeavesTheFreeUnlinked) {
  std::vector<int32_t> group(4, 9);
  const std::vector<int32_t> anchor = {2, 2, 5, 0};
  GroupByAnchors(4, anchor.data(), group.data());
  EXPECT_THAT(group, ElementsAre(1, 1, 2, 0));
  const std::vector<int32_t> none = {0, 0, 0};
  GroupByAnchors(3, none.data(), group.data());
  EXPECT_THAT(std::vector<int32_t>(group.begin(), group.begin() + 3), ElementsAre(0, 0, 0));
}

}  // namespace
}  // namespace gae
