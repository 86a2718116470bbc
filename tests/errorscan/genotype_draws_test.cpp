// Drawing states, reading observations, and filling gaps from the flanking markers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "errorscan/genotype_draws.h"
#include "errorscan/imputation.h"
#include "errorscan/population_states.h"
#include "errorscan/three_locus_probabilities.h"
#include "twopoint/mapping_function.h"

namespace gae {
namespace {

::testing::AssertionResult NearShare(double count, double n, double p) {
  const double se = std::sqrt(p * (1 - p) / n);
  if (std::fabs(count / n - p) <= 5 * se + 1e-4) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "share " << count / n << " vs " << p;
}

ChromosomeRecord Chromosome(std::vector<float> positions) {
  ChromosomeRecord c;
  c.positions = positions;
  c.marker_names.assign(positions.size(), std::string(35, ' '));
  return c;
}

// One chromosome, `n` individuals who all show `row` (one letter per marker); returns the
// filled matrix.
std::string Impute(const PopulationModel& model, std::vector<float> positions, std::vector<int32_t> classes,
                   const std::string& row, int n, UniformStream& random) {
  std::string matrix;
  for (char g : row) matrix += std::string(n, g);
  const std::vector<ChromosomeRecord> chroms{Chromosome(positions)};
  ImputeGenotypes(model, n, chroms, classes, std::span<char>(matrix.data(), matrix.size()), random);
  return matrix;
}

std::size_t Count(std::string_view s, char c) { return static_cast<std::size_t>(std::count(s.begin(), s.end(), c)); }

TEST(DrawGenotype, WalksTheNormalisedCumulativeSums) {
  UniformStream random;
  std::vector<int> hits(3);
  const std::vector<float> weights{2.0f, 5.0f, 3.0f};  // not normalised on purpose
  for (int k = 0; k < 100000; ++k) ++hits[DrawGenotype(kBiparentalDesign, weights, random)];
  EXPECT_TRUE(NearShare(hits[0], 100000, 0.2));
  EXPECT_TRUE(NearShare(hits[1], 100000, 0.5));
  // A table of zeros or with a not-a-number ends in the last state.
  EXPECT_EQ(DrawGenotype(kBiparentalDesign, std::vector<float>{0, 0, 0}, random), 2);
  EXPECT_EQ(DrawGenotype(kClonalDesign, std::vector<float>{NAN, 1, 1, 1}, random), 3);
  // A cumulative sum equal to u stops the walk, except for eight-way lines.
  UniformStream probe;
  float u = 0.0f;
  UniformStream at_u;
  do {
    at_u = probe;
    u = probe.Next();
  } while (u < 0.5f);  // then 1 - u is exact and the two weights sum to exactly 1
  const std::vector<float> split{u, 1.0f - u};
  UniformStream copy = at_u;
  EXPECT_EQ(DrawGenotype(kBiparentalDesign, split, copy), 0);
  copy = at_u;
  EXPECT_EQ(DrawGenotype(kEightWayDesign, split, copy), 1);
}

TEST(Observations, WhatEachLetterTellsAboutTheState) {
  // A letter informs when it narrows the state; the states it leaves open ("" for none).
  const struct {
    int design;
    int32_t marker_class;
    char letter;
    bool informative;
    const char* allowed;  // nullptr: not checked
  } cases[] = {
      // Bi-parental: dominant markers only at B, recessive only at A, X never.
      {kBiparentalDesign, 1, 'H', true, nullptr},     {kBiparentalDesign, 1, 'X', false, ""},
      {kBiparentalDesign, 12, 'B', true, nullptr},    {kBiparentalDesign, 12, 'D', false, "AH"},
      {kBiparentalDesign, 10, 'A', true, nullptr},    {kBiparentalDesign, 10, 'R', false, "HB"},
      // Clonal: the unseen parent's allele leaves two states open.
      {kClonalDesign, 1, 'C', true, nullptr},         {kClonalDesign, 2, 'E', false, "AC"},
      {kClonalDesign, 2, 'F', false, "BD"},           {kClonalDesign, 3, 'G', false, "AB"},
      {kClonalDesign, 3, 'H', false, "CD"},           {kClonalDesign, 4, 'J', false, "BC"},
      {kClonalDesign, 5, 'J', false, "AD"},           {kClonalDesign, 4, 'D', true, nullptr},
      {kClonalDesign, 4, 'B', false, nullptr},        {kClonalDesign, 5, 'C', true, nullptr},
      // Pure lines: founders A and B share an allele in 1123, C and D have their own.
      {kFourWayDesign, 1123, 'A', false, "AB"},       {kFourWayDesign, 1123, 'C', true, nullptr},
      {kEightWayDesign, 12131415, 'A', false, "ACEG"}, {kEightWayDesign, 12131415, 'H', true, nullptr},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(IsInformative(c.design, c.marker_class, c.letter), c.informative) << c.marker_class << c.letter;
    if (c.allowed != nullptr) {
      EXPECT_EQ(AllowedStates(c.design, c.marker_class, c.letter), c.allowed);
    }
  }
  // AA and BB of the two symmetric categories, phase-fixed.
  std::string cells = "IJKX" "IJKX";
  const std::vector<int32_t> classes{4, 5};
  RewritePartialCodes(kClonalDesign, classes, 4, std::span<char>(cells.data(), cells.size()));
  EXPECT_EQ(cells, "AJDX" "BJCX");
}

TEST(ImputeGenotypes, AllMissingChromosomeFollowsTheMarginalThenTheLeftNeighbour) {
  UniformStream random;
  // Five coincident markers in P1BC1 inbred lines: marker 1 from the 3:1 ratio, each next one
  // from its left neighbour, which at r = 0 it always equals.
  const int n = 20000;
  const std::string m = Impute({kBiparentalDesign, 5, 2}, {3, 3, 3, 3, 3}, {1, 1, 1, 1, 1}, "XXXXX", n, random);
  EXPECT_EQ(Count(m, 'X'), 0u);
  EXPECT_EQ(Count(m, 'H'), 0u);
  for (int k = 1; k < 5; ++k) EXPECT_EQ(m.substr(k * n, n), m.substr(0, n));
  EXPECT_TRUE(NearShare(Count(m.substr(0, n), 'A'), n, 0.75));
}

TEST(ImputeGenotypes, DrawsAreConditionedOnTheInformativeFlanks) {
  UniformStream random;
  const int n = 40000;
  const float r = MapDistanceToRec(2, 5.0f);
  // Doubled haploids: a first marker left open takes the state of the informative marker to
  // its right except with chance r; so does a marker with nothing informative to its right,
  // from its left neighbour.
  std::string m = Impute({kBiparentalDesign, 3, 2}, {0, 5}, {1, 1}, "XB", n, random);
  EXPECT_TRUE(NearShare(Count(m.substr(0, n), 'A'), n, r));
  m = Impute({kBiparentalDesign, 3, 2}, {0, 5}, {1, 1}, "AX", n, random);
  EXPECT_TRUE(NearShare(Count(m.substr(n, n), 'B'), n, r));
  // Between two informative flanks the three-locus table decides.
  m = Impute({kBiparentalDesign, 3, 2}, {0, 5, 15}, {1, 1, 1}, "AXB", n, random);
  const ThreeLocusTable t = ThreeLocusProbabilities(kBiparentalDesign, 3, 2, 0, 5, 15);
  EXPECT_TRUE(NearShare(Count(m.substr(n, n), 'A'), n, t.At(1, 0)));
}

TEST(ImputeGenotypes, PartialObservationsNarrowTheDraw) {
  UniformStream random;
  const int n = 40000;
  const PopulationModel f2{kBiparentalDesign, 7, 2};
  const ThreeLocusTable t = ThreeLocusProbabilities(kBiparentalDesign, 7, 2, 0, 20, 40);
  // A dominant D between A and B becomes A or H, in the ratio of their table entries.
  std::string m = Impute(f2, {0, 20, 40}, {1, 12, 1}, "ADB", n, random);
  const std::string middle = m.substr(n, n);
  EXPECT_EQ(Count(middle, 'B'), 0u);
  const int ab = 0 * 3 + 2;
  EXPECT_TRUE(NearShare(Count(middle, 'A'), n, t.At(ab, 0) / (t.At(ab, 0) + t.At(ab, 1))));
  // A recessive R between A and A becomes H or B; a dominant marker seen as B stays B.
  m = Impute(f2, {0, 20, 40}, {1, 10, 12}, "ARB", n, random);
  EXPECT_EQ(Count(m.substr(n, n), 'A'), 0u);
  EXPECT_EQ(m.substr(2 * n, n), std::string(n, 'B'));
  // Clonal: E keeps A or C, and J of an AB=CD marker keeps B or C.
  m = Impute({kClonalDesign, 1, 2}, {0, 10, 20}, {1, 2, 4}, "AEJ", 2000, random);
  EXPECT_EQ(Count(m.substr(2000, 2000), 'A') + Count(m.substr(2000, 2000), 'C'), 2000u);
  EXPECT_EQ(Count(m.substr(4000, 2000), 'B') + Count(m.substr(4000, 2000), 'C'), 2000u);
  // Four-way lines: A of a marker where A and B share an allele stays within A, B.
  m = Impute({kFourWayDesign, 1, 2}, {0, 10}, {1234, 1123}, "CA", 2000, random);
  EXPECT_EQ(Count(m.substr(2000), 'A') + Count(m.substr(2000), 'B'), 2000u);
  EXPECT_GT(Count(m.substr(2000), 'B'), 0u);
}

}  // namespace
}  // namespace gae
