// The linkage rule of the command: groups by LOD above a threshold and frequency below a cap,
// agreeing with the LOD tree's rows at every threshold, and the tree's automatic threshold.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <set>

#include "engine/linkage_rule.h"
#include "support/pair_store.h"

namespace gae {
namespace {

using testing::MemoryStore;

int Groups(const std::vector<int32_t>& group) { return static_cast<int>(std::set<int32_t>(group.begin(), group.end()).size()); }

// Three blocks of ten markers, tight inside; between blocks chance pairs of LOD up to 6 and
// any frequency, some beyond 1/2.
MemoryStore RandomBlocks(uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::uniform_real_distribution<float> unit(0, 1);
  MemoryStore s(30);
  for (int i = 2; i <= 30; ++i)
    for (int j = 1; j < i; ++j) {
      if ((i - 1) / 10 == (j - 1) / 10) s.Set(i, j, 4 + 12 * unit(rng), 0.3f * unit(rng));
      else s.Set(i, j, 6 * unit(rng) * unit(rng), unit(rng));
    }
  return s;
}

TEST(LinkageRule, GroupsAgreeWithTheTreeAtEveryThresholdAndCap) {
  for (uint64_t seed = 1; seed <= 20; ++seed) {
    const MemoryStore s = RandomBlocks(seed);
    for (float cap : {0.3f, 0.5f, 0.8f}) {
      for (const LodTreeRow& row : LinkageTree(s.Table(), 30, cap, 2, 15, 1)) {
        const std::vector<int32_t> group = LinkageGroups(s.Table(), 30, LinkageRule{row.threshold, cap});
        EXPECT_EQ(Groups(group), row.groups) << "seed " << seed << " cap " << cap << " LOD " << row.threshold;
        for (int i = 2; i <= 30; ++i)
          for (int j = 1; j < i; ++j)
            if (-s.First(i, j) > row.threshold && s.Second(i, j) < cap) {
              EXPECT_EQ(group[i - 1], group[j - 1]);
            }
      }
    }
  }
  // The automatic threshold finds the blocks however the chance pairs fall.
  AutoLod chosen;
  const LinkageRule rule = ResolveLinkageRule(RandomBlocks(7).Table(), 30, NAN, 0.5f, &chosen);
  EXPECT_EQ(chosen.groups, 3);
  EXPECT_EQ(rule.min_lod, chosen.threshold);
  EXPECT_EQ(Groups(LinkageGroups(RandomBlocks(7).Table(), 30, rule)), 3);
  EXPECT_EQ(ResolveLinkageRule(RandomBlocks(7).Table(), 30, 7.5f, 0.4f).min_lod, 7.5f);
}

TEST(LinkageRule, TheCapAndTheThresholdEachKeepABridgeOut) {
  MemoryStore s(4);
  for (int i = 2; i <= 4; ++i)
    for (int j = 1; j < i; ++j) s.Set(i, j, 0, 0.5f);
  s.Set(2, 1, 10, 0.05f);
  s.Set(4, 3, 10, 0.05f);
  s.Set(3, 2, 12, 0.6f);  // the only bridge: strong, but its likelihood peaks beyond 1/2
  EXPECT_EQ(Groups(LinkageGroups(s.Table(), 4, LinkageRule{3, 0.5f})), 2);
  EXPECT_EQ(Groups(LinkageGroups(s.Table(), 4, LinkageRule{3, 0.7f})), 1);
  s.Set(3, 2, 3, 0.2f);  // exactly at the threshold: not above it
  EXPECT_EQ(Groups(LinkageGroups(s.Table(), 4, LinkageRule{3, 0.5f})), 2);
  EXPECT_EQ(Groups(LinkageGroups(s.Table(), 4, LinkageRule{2.9f, 0.5f})), 1);
  // No group of a few markers at any threshold: nothing to choose by, LOD 3.
  AutoLod none;
  EXPECT_EQ(ResolveLinkageRule(s.Table(), 4, NAN, 0.5f, &none).min_lod, 3.0f);
  EXPECT_FALSE(none.Usable());
}

}  // namespace
}  // namespace gae
