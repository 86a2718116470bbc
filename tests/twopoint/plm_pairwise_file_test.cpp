// The pure-line pairwise file: bit-plane counts, shared class tables and the engine's EM give
// exactly, bit for bit, what the literal count and iteration of every pair give, whatever the
// number of threads.
#include "twopoint/plm_pairwise_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <random>
#include <vector>

#include "vocabulary/pair_index.h"
#include "support/bred_data_sets.h"
#include "support/literal_pure_line.h"
#include "support/temp_dir.h"
#include "twopoint/pure_line.h"

namespace gae {
namespace {

class PlmPairwiseFile : public testing::InTempDir {};

std::vector<float> ReadRecords(const std::string& path) {
  const std::string bytes = testing::ReadText(path);
  std::vector<float> words(bytes.size() / 4);
  std::memcpy(words.data(), bytes.data(), words.size() * 4);
  return words;
}

// A data set of `markers` markers whose patterns come from a pool of `distinct` random ones,
// letters drawn from each marker's alleles with a few missing and a few foreign letters.
struct RandomSet {
  std::vector<int32_t> patterns;
  std::vector<char> types;
  PureLineMarkers markers;
};
RandomSet MakeSet(int type, int markers, int lines, int distinct, uint64_t seed) {
  const int founders = type <= 2 ? 4 : 8;
  std::mt19937_64 rng(seed);
  std::vector<int32_t> pool;
  while (static_cast<int>(pool.size()) < distinct) pool.push_back(testing::RandomPattern(founders, rng));
  RandomSet set;
  for (int m = 0; m < markers; ++m) {
    const int32_t p = pool[rng() % pool.size()];
    set.patterns.push_back(p);
    for (int l = 0; l < lines; ++l) {
      const uint64_t u = rng() % 100;
      const char foreign = static_cast<char>('A' + founders);  // a founder the population lacks
      set.types.push_back(u < 5   ? 'X'
                          : u < 7 ? foreign
                                  : testing::ObservedLetter(founders, p, static_cast<uint8_t>(rng() % founders)));
    }
  }
  set.markers = {type, markers, lines, set.patterns.data(), set.types.data()};
  return set;
}

TEST_F(PlmPairwiseFile, RecordsEqualTheLiteralEstimateOfEveryPair) {
  struct Case {
    int type, markers, lines, distinct;
  };
  // Four founders (14 patterns in all): tables built up front. Eight founders with a pool of 400
  // patterns: too many pattern pairs to keep, tables built pair by pair.
  for (const Case c : {Case{1, 60, 90, 14}, Case{2, 60, 90, 14}, Case{3, 45, 70, 6}, Case{4, 420, 40, 400}}) {
    const RandomSet set = MakeSet(c.type, c.markers, c.lines, c.distinct, 100 + c.type);
    const std::string path = "set" + std::to_string(c.type) + ".LRD";
    ASSERT_TRUE(PLMPairwiseFile(path, set.markers, 2));
    const std::vector<float> words = ReadRecords(path);
    ASSERT_EQ(words.size(), 2u * PairCount(c.markers));
    for (int i = 2; i <= c.markers; ++i) {
      for (int j = 1; j < i; ++j) {
        const char* x = set.types.data() + (i - 1) * c.lines;
        const char* y = set.types.data() + (j - 1) * c.lines;
        const PureLineEstimate e =
            testing::LiteralPureLinePair(c.type, c.lines, set.patterns[i - 1], set.patterns[j - 1], x, y);
        const int64_t k = GroupPairIndex(i, j);
        ASSERT_EQ(std::bit_cast<uint32_t>(words[2 * (k - 1)]), std::bit_cast<uint32_t>(-e.lod)) << c.type << ": " << i << " " << j;
        ASSERT_EQ(std::bit_cast<uint32_t>(words[2 * (k - 1) + 1]), std::bit_cast<uint32_t>(e.rec_freq)) << c.type << ": " << i << " " << j;
      }
    }
  }
}

TEST_F(PlmPairwiseFile, SameBytesAtAnyThreadCountAndReusedWhenComplete) {
  // 760 markers: 288,420 records, more than one block of the writer.
  const RandomSet set = MakeSet(1, 760, 24, 14, 9);
  ASSERT_TRUE(PLMPairwiseFile("a.LRD", set.markers, 1));
  ASSERT_TRUE(PLMPairwiseFile("b.LRD", set.markers, 3));
  const std::string one = testing::ReadText("a.LRD");
  EXPECT_EQ(one.size(), 8u * PairCount(760));
  EXPECT_TRUE(one == testing::ReadText("b.LRD"));

  // A file of exactly the right size is taken as it stands.
  testing::WriteText("a.LRD", std::string(one.size(), '\0'));
  ASSERT_TRUE(PLMPairwiseFile("a.LRD", set.markers, 1));
  EXPECT_EQ(testing::ReadText("a.LRD"), std::string(one.size(), '\0'));
}

}  // namespace
}  // namespace gae
