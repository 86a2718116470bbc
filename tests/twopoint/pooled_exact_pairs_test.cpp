// The pair file's estimator (class counts pooled by chance, two-class designs answered from an
// (n, k) table) against the single-pair exact estimate it stands in for, alone and in a whole
// pair file.
#include <gtest/gtest.h>

#include <random>

#include "support/bred_data_sets.h"
#include "support/temp_dir.h"
#include "twopoint/exact_two_point.h"
#include "twopoint/genotype_planes.h"
#include "twopoint/map_pairwise_file.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/two_point.h"
#include "twopoint/pooled_exact_pairs.h"
#include "two_point_cases.h"

namespace gae {
namespace {

using testing::TypeCode;

// The same maximum: a phase picked on a near tie may differ, so the frequency is compared
// only where the LOD says which phase wins.
void ExpectSameEstimate(const ExactTwoPoint& fast, const ExactTwoPoint& single) {
  EXPECT_NEAR(fast.lod, single.lod, 1e-4 * (1.0 + single.lod));
  if (single.lod > 1e-3f) {
    EXPECT_NEAR(fast.rec_freq, single.rec_freq, 2e-5);
  }
}

TEST(PooledExactPairs, EqualsTheSingleEstimateOnRandomTablesOfEveryCode) {
  std::mt19937_64 rng(36);
  std::uniform_real_distribution<double> unit(0, 1);
  for (const TypeCode& tc : testing::AllTypeCodes()) {
    SCOPED_TRACE(testing::Name(tc));
    const PooledExactPairs pooled(tc.type, 300, {tc.code});
    for (int trial = 0; trial < 40; ++trial) {
      double p[9];
      testing::Probabilities(tc, unit(rng), p);
      float cells[9] = {};
      std::discrete_distribution<int> draw(p, p + 9);
      for (int i = static_cast<int>(unit(rng) * 300); i >= 0; --i) cells[draw(rng)] += 1;
      // Every fourth table has a stray count in a class the code cannot show.
      if (trial % 4 == 3)
        for (int k = 0; k < 9; ++k)
          if (p[k] == 0.0) cells[k] += 1;
      ExpectSameEstimate(pooled.Estimate(tc.code, cells), ExactTwoPointEstimate(tc.type, tc.code, cells));
    }
  }
}

// Two-class designs: every (n, k) up to 40 individuals, the counts of each chance split over
// its classes at random, read from the table.
TEST(PooledExactPairs, TableAnswersEveryCountOfTwoClassDesigns) {
  std::mt19937_64 rng(7);
  for (const int type : {1, 3, 4}) {
    SCOPED_TRACE(type);
    const PooledExactPairs pooled(type, 40, {11});
    ASSERT_TRUE(pooled.Tabled(11));
    const ClassPooling pooling = PoolingOf(type, 11);
    ASSERT_EQ(pooling.chances, 2);
    for (int n = 0; n <= 40; ++n) {
      for (int k = 0; k <= n; ++k) {
        float cells[9] = {};
        const int of_chance[2] = {n - k, k};
        for (int c = 0; c < 2; ++c) {
          std::vector<int> classes;
          for (int cell = 0; cell < 9; ++cell)
            if (pooling.chance_of[cell] == c) classes.push_back(cell);
          for (int i = 0; i < of_chance[c]; ++i) cells[classes[rng() % classes.size()]] += 1;
        }
        ExpectSameEstimate(pooled.Estimate(11, cells), ExactTwoPointEstimate(type, 11, cells));
      }
    }
  }
  EXPECT_FALSE(PooledExactPairs(7, 40, {11}).Tabled(11));  // an F2 has four chances
}

// F2 co-dominant pairs pool to four chances: both homozygous parental combinations, both
// double recombinant ones, the four single recombinants and the double heterozygote.
TEST(PooledExactPairs, F2ClassesPoolByChance) {
  const ClassPooling pooling = PoolingOf(7, 11);
  EXPECT_EQ(pooling.chances, 4);
  EXPECT_EQ(pooling.chance_of[0], pooling.chance_of[8]);
  EXPECT_EQ(pooling.chance_of[2], pooling.chance_of[6]);
  EXPECT_EQ(pooling.chance_of[1], pooling.chance_of[3]);
  EXPECT_EQ(pooling.chance_of[1], pooling.chance_of[7]);
  EXPECT_NE(pooling.chance_of[0], pooling.chance_of[2]);
  EXPECT_NE(pooling.chance_of[4], pooling.chance_of[1]);
}

class ExactPairFile : public testing::InTempDir {};

// The exact pair file, written on two threads, read back record by record against the
// single-pair estimate of the classes counted afresh: doubled haploids (the table) and an F2
// (pooled chances).
TEST_F(ExactPairFile, HoldsTheSingleEstimateOfEveryPair) {
  for (const int type : {3, 7}) {
    SCOPED_TRACE(type);
    const testing::BiparentalData data = testing::SimulateBiparentalData(type, 2, 30, 4.0, 120, 0.02, 0.05, 11);
    std::string letters;
    for (const std::string& m : data.letters) letters += m;
    const std::vector<int32_t> kinds(data.letters.size(), 1);
    BiparentalMarkers markers;
    markers.population_type = type;
    markers.num_markers = static_cast<int64_t>(data.letters.size());
    markers.num_individuals = 120;
    markers.kinds = kinds.data();
    markers.types = letters.data();
    const std::string lrd = "exact" + std::to_string(type) + ".LRD";
    ASSERT_TRUE(MAPPairwiseFile(lrd, markers, 2, PairEstimator::kExact));
    PairStoreFile store;
    ASSERT_TRUE(store.Open(lrd, kMapRecordLength, 1));
    const GenotypePlanes planes(letters.data(), markers.num_markers, 120);
    for (int64_t i = 2; i <= markers.num_markers; ++i) {
      for (int64_t j = 1; j < i; ++j) {
        float cells[9];
        planes.Count(i, j, cells);
        const ExactTwoPoint single = ExactTwoPointEstimate(type, PairCode(1, 1), cells);
        ExpectSameEstimate({store.Table().Second(i, j), -store.Table().First(i, j)}, single);
      }
    }
  }
}

}  // namespace
}  // namespace gae
