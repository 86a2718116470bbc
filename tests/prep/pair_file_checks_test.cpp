// The checks of a pair file on pairs made from a known truth: markers on chromosomes at known
// places, some with switched alleles (their frequencies turned to 1 - r) or anchored to the
// wrong chromosome (alone or beside each other). The checks must name exactly the markers made
// wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "prep/pair_file_checks.h"
#include "vocabulary/pair_index.h"

namespace gae {
namespace {

// Pairs of `chromosomes` x `per` markers 8 cM apart (Haldane), as a backcross of 200 would
// estimate them; markers in `switched` show 1 - r with the others.
struct Pairs {
  std::vector<float> records;
  PairTable table;
  int n = 0;
  Pairs(int chromosomes, int per, const std::set<int>& switched) : n(chromosomes * per) {
    records.assign(static_cast<std::size_t>(n) * (n - 1), 0.0f);
    for (int i = 2; i <= n; ++i)
      for (int j = 1; j < i; ++j) {
        const bool same = (i - 1) / per == (j - 1) / per;
        double r = same ? 0.5 * (1.0 - std::exp(-2.0 * 0.08 * std::abs(i - j))) : 0.5;
        if (switched.count(i) != switched.count(j)) r = 1.0 - r;
        const double q = std::clamp(r, 1e-4, 1.0 - 1e-4);
        const double lod = 200.0 * (q * std::log10(q) + (1.0 - q) * std::log10(1.0 - q) + std::log10(2.0));
        const auto k = static_cast<std::size_t>(GroupPairIndex(i, j) - 1);
        records[2 * k] = static_cast<float>(-lod);
        records[2 * k + 1] = static_cast<float>(r);
      }
    table.records = records.data();
    table.num_records = static_cast<int64_t>(n) * (n - 1) / 2;
  }
};

TEST(PairFileChecks, SwitchedAllelesNameExactlyTheSwitchedMarkers) {
  std::mt19937_64 rng(5);
  for (int trial = 0; trial < 20; ++trial) {
    std::set<int> switched;
    const int count = static_cast<int>(rng() % 4);
    while (static_cast<int>(switched.size()) < count) switched.insert(1 + static_cast<int>(rng() % 30));
    const Pairs pairs(3, 10, switched);
    const std::vector<int> named = SwitchedAlleleMarkers(pairs.table, pairs.n, 3.0f);
    EXPECT_EQ(std::set<int>(named.begin(), named.end()), switched) << "trial " << trial;
    EXPECT_EQ(named.size(), switched.size());
  }
}

TEST(PairFileChecks, AnchorConflictsNameExactlyTheMisplacedMarkersWithBothGroups) {
  std::mt19937_64 rng(7);
  for (int trial = 0; trial < 20; ++trial) {
    const Pairs pairs(3, 10, {});
    std::vector<int32_t> anchors(30);
    for (int m = 0; m < 30; ++m) anchors[static_cast<std::size_t>(m)] = 1 + m / 10;
    std::set<int> moved;
    const int count = static_cast<int>(rng() % 3);
    while (static_cast<int>(moved.size()) < count) moved.insert(1 + static_cast<int>(rng() % 30));
    for (const int m : moved) anchors[static_cast<std::size_t>(m - 1)] = 1 + (anchors[static_cast<std::size_t>(m - 1)] % 3);
    const std::vector<AnchorConflict> found = AnchorConflicts(pairs.table, anchors, 3.0f);
    std::set<int> named;
    for (const AnchorConflict& c : found) {
      named.insert(c.marker);
      EXPECT_EQ(c.own, anchors[static_cast<std::size_t>(c.marker - 1)]);
      EXPECT_EQ(c.other, 1 + (c.marker - 1) / 10);  // the chromosome it was bred on
      EXPECT_GT(c.links_other, c.links_own);
      EXPECT_EQ(1 + (c.partner_other - 1) / 10, c.other);
    }
    EXPECT_EQ(named, moved) << "trial " << trial;
  }
}

}  // namespace
}  // namespace gae
