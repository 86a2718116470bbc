#include "engine/sort_sample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>

namespace gae {
namespace {

using ::testing::ElementsAre;

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

}  // namespace
}  // namespace gae
