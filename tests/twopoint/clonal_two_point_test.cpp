#include "twopoint/clonal_two_point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "twopoint/clonal_planes.h"

namespace gae {
namespace {

// Expected progeny tables, bred from the parents' homologues: the first parent carries
// homologues 0 (named A) and 1 (B), the second 2 (C) and 3 (D). `rec_first` is the chance that
// the first parent's gamete takes marker 1 from homologue A and marker 2 from B (or the
// reverse); a value above 1/2 puts marker 2 in the exchanged phase.
struct Parents {
  double rec_first, rec_second;
};

// The class of a progeny's type as the table layout defines it, and the cell of two classes.
int TestClass(const std::string& type) {
  const int by_type[] = {1, 2, 3, 4, 1, 2, 1, 3, 1, 2, 4};
  return by_type[std::string("AC AD BC BD XC XD AX BX AA AB BB").find(type) / 3];
}
int TestCell(int first_class, int second_class) {
  const int table[4][4] = {{1, 2, 5, 6}, {3, 4, 7, 8}, {9, 10, 13, 14}, {11, 12, 15, 16}};
  return table[first_class - 1][second_class - 1];
}

std::vector<double> BredTable(int c1, int c2, Parents p) {
  const testing::SimulatedClonalMarker m1{"", 0, c1}, m2{"", 0, c2};
  std::vector<double> cells(16, 0.0);
  for (int f1 = 0; f1 < 2; ++f1)
    for (int f2 = 0; f2 < 2; ++f2)
      for (int s1 = 0; s1 < 2; ++s1)
        for (int s2 = 0; s2 < 2; ++s2) {
          const double pf = 0.5 * (f1 == f2 ? 1 - p.rec_first : p.rec_first);
          const double ps = 0.5 * (s1 == s2 ? 1 - p.rec_second : p.rec_second);
          const int first = TestClass(testing::ClonalType(m1, f1, s1));
          cells[TestCell(first, TestClass(testing::ClonalType(m2, f2, s2))) - 1] += pf * ps;
        }
  return cells;
}

std::vector<float> Cells(const std::vector<double>& probs, double n) {
  std::vector<float> cells;
  for (double p : probs) cells.push_back(static_cast<float>(p * n));
  return cells;
}

bool InformsFirst(int c) { return c != 2; }
bool InformsSecond(int c) { return c != 3; }

// Every pair of categories, every phase: the parents' frequencies come back where the pair
// informs them and stay at 1/2 where it does not.
TEST(ClonalEstimates, RecoverParentalFrequenciesAndPhasesOfEveryCategoryPair) {
  UniformStream random;
  for (bool clonal : {true, false}) {
    const int top = clonal ? 4 : 5;
    for (int c1 = 1; c1 <= top; ++c1)
      for (int c2 = c1; c2 <= top; ++c2)
        for (double ra : {0.15, 0.85})
          for (double rb : {0.15, 0.85}) {
            const bool mixture = c1 >= 4;  // both markers show only AA, AB, BB
            // The double cross knows its parents' phases: its markers of two alleles are in
            // coupling with one another.
            if (!clonal && mixture && (ra > 0.5 || rb > 0.5)) continue;
            if (!clonal && c1 == 5 && c2 == 5) continue;  // its own estimator, below
            const std::vector<float> cells = Cells(BredTable(c1, c2, {ra, rb}), 1000.0);
            const ClonalPairResult r = clonal ? CDMPairClonal(c1, c2, cells.data(), random)
                                              : CDMPairDoubleCross(c1, c2, cells.data());
            const std::string what = std::to_string(clonal) + " " + std::to_string(c1) + "," +
                                     std::to_string(c2) + " " + std::to_string(ra) + " " + std::to_string(rb);
            if (mixture && c1 == 4 && c2 == 4 && clonal && (ra > 0.5) != (rb > 0.5)) {
              // Opposite phases in the two parents: which parent is which is left to the draw.
              EXPECT_NEAR(std::min(r.rec_a, r.rec_b), 0.15f, 1e-4) << what;
              EXPECT_NEAR(std::max(r.rec_a, r.rec_b), 0.85f, 1e-4) << what;
              EXPECT_TRUE(r.phase == 2 || r.phase == 3) << what;
            } else if (c1 == 2 && c2 == 3) {
              EXPECT_EQ(r.rec_a, 0.5f);
              EXPECT_EQ(r.rec_b, 0.5f);
              EXPECT_EQ(r.rec_c, 0.5f);
              EXPECT_EQ(r.phase, 1);
            } else {
              const bool first = InformsFirst(c1) && InformsFirst(c2);
              const bool second = InformsSecond(c1) && InformsSecond(c2);
              if (first) EXPECT_NEAR(r.rec_a, ra, 1e-4) << what; else EXPECT_EQ(r.rec_a, 0.5f) << what;
              if (second) EXPECT_NEAR(r.rec_b, rb, 1e-4) << what; else EXPECT_EQ(r.rec_b, 0.5f) << what;
              const int phase = (r.rec_a <= 0.5f ? 1 : 3) + (r.rec_b <= 0.5f ? 0 : 1);
              EXPECT_EQ(r.phase, phase) << what;
              EXPECT_GT(r.lod_c, 10.0f) << what;
            }
            // The combined frequency is the folded one, whichever way the clonal phases go; the
            // double cross solves its ABCD against AB=CD pairs in coupling only.
            const bool coupling = ra < 0.5 && rb < 0.5;
            if (!(c1 == 2 && c2 == 3) && (clonal || coupling || c1 != 1 || c2 < 4)) {
              EXPECT_NEAR(r.rec_c, 0.15f, 1e-3) << what;
            }
          }
  }
}

TEST(ClonalEstimates, HandComputedValuesAndTheEdgesOfTheFrame) {
  UniformStream random;
  // Two ABCD markers, 10 of 40 recombinant in the first parent and 20 of 40 in the second.
  // Cells 1 and 4 (row 1) hold 15 each, cells 5 and 6 (row 2) 5 each: 10 of 40 recombinant in
  // the first parent (rows 2, 3), 5 of 40 in the second (cell 6 is the only one in columns 2, 3).
  std::vector<float> cells(16, 0.0f);
  cells[0] = 15; cells[3] = 15;
  cells[4] = 5; cells[5] = 5;
  const float n = 40.0f;
  ClonalPairResult r = CDMPairDoubleCross(1, 1, cells.data());
  const float ra = 10.0f / 40.0f, rb = 5.0f / 40.0f;
  EXPECT_FLOAT_EQ(r.rec_a, ra);
  EXPECT_FLOAT_EQ(r.rec_b, rb);
  EXPECT_FLOAT_EQ(r.rec_c, 0.5f * (ra + rb));
  EXPECT_FLOAT_EQ(r.se_a, std::sqrt(ra * (1 - ra) / n));
  EXPECT_FLOAT_EQ(r.se_c, std::sqrt(r.rec_c * (1 - r.rec_c) * 0.5f / n));
  const float lod_a = 30 * std::log10(1 - ra) + 10 * std::log10(ra) - 40 * std::log10(0.5f);
  EXPECT_NEAR(r.lod_a, lod_a, 1e-5);
  EXPECT_NEAR(r.lod_c, r.lod_a + r.lod_b, 1e-5);

  // The other way round: no estimate, and the phase of two halves.
  r = CDMPairDoubleCross(3, 1, cells.data());
  EXPECT_EQ(r.rec_a, 0.5f);
  EXPECT_EQ(r.lod_c, 0.0f);
  EXPECT_EQ(r.se_c, -100.0f);
  EXPECT_EQ(r.phase, 1);

  // No common individual: everything at its start and the phase unset.
  std::vector<float> empty(16, 0.0f);
  r = CDMPairClonal(1, 4, empty.data(), random);
  EXPECT_EQ(r.rec_c, 0.5f);
  EXPECT_EQ(r.se_a, -100.0f);
  EXPECT_EQ(r.phase, 0);

  // Two AB=CD markers of a double cross in opposite phases with more than half the progeny in
  // the cells of r (1 - r): no root, r stays 1/2 without a standard error.
  std::vector<float> wide(16, 0.0f);
  wide[0] = 30; wide[1] = 10;
  r = CDMPairDoubleCross(4, 5, wide.data());
  EXPECT_EQ(r.rec_c, 0.5f);
  EXPECT_EQ(r.se_c, -100.0f);
  EXPECT_EQ(r.lod_c, 0.0f);

  // The phase border: 1/2 exactly counts as coupling.
  EXPECT_EQ(ClonalPhase(0.5f, 0.5f), 1);
  EXPECT_EQ(ClonalPhase(0.5f, std::nanf("")), 2);
  EXPECT_EQ(ClonalPhase(0.6f, 0.2f), 3);
}

TEST(ClonalEstimates, OppositePhasesOfAClonalAbCdPairFollowTheRandomStream) {
  const std::vector<float> cells = Cells(BredTable(4, 4, {0.1, 0.9}), 500.0);
  std::vector<float> rec_a;
  for (int32_t seed : {1, 2, 3, 4, 5, 6, 7, 8}) {
    UniformStream random;
    random.SetSeed({seed * 7919, seed * 104729});
    const ClonalPairResult r = CDMPairClonal(4, 4, cells.data(), random);
    EXPECT_NEAR(r.rec_c, 0.1f, 1e-4);
    rec_a.push_back(r.rec_a);
  }
  EXPECT_NE(*std::min_element(rec_a.begin(), rec_a.end()), *std::max_element(rec_a.begin(), rec_a.end()));
  // The same phases in both parents owe a draw too: it is taken and has no effect.
  UniformStream a, b;
  const std::vector<float> same = Cells(BredTable(4, 4, {0.1, 0.1}), 500.0);
  const ClonalPairResult r = CDMPairClonal(4, 4, same.data(), a);
  EXPECT_NEAR(r.rec_a, 0.1f, 1e-4);
  b.Next();
  EXPECT_EQ(a.GetSeed(), b.GetSeed());
}

// Newton's iteration on a score whose root is A / (A + B) when C is 0.
TEST(ClonalEstimates, TheIterationFindsTheRootAndKeepsItsClamps) {
  EXPECT_NEAR(ClonalIteration(0.5f, 30.0f, 70.0f, 0.0f, false), 0.3f, 1e-4);
  // A first step below 0 restarts at 0.0001, where the steps are at once shorter than the
  // tolerance: the result stays just above 0.
  const float low = ClonalIteration(0.1f, 1.0f, 100.0f, 0.0f, false);
  EXPECT_GT(low, 0.0001f);
  EXPECT_LT(low, 0.0003f);
  // A first step beyond 1: kept below 1 for two AB=CD markers, else the next step leaves the
  // range and the result is 1/2.
  const float kept = ClonalIteration(0.9f, 100.0f, 1.0f, 0.0f, true);
  EXPECT_GT(kept, 0.99f);  // from 0.9999 the steps are shorter than the tolerance at once
  EXPECT_LT(kept, 1.0f);
  EXPECT_EQ(ClonalIteration(0.9f, 100.0f, 1.0f, 0.0f, false), 0.5f);
  // No information at all: NaN, and the result is 1/2.
  EXPECT_EQ(ClonalIteration(0.3f, 0.0f, 0.0f, 0.0f, false), 0.5f);
}

TEST(ClonalPlaneCounts, EqualTheLiteralCountOverIndividuals) {
  std::mt19937 rng(11);
  const std::string letters = "ABCDEFGHIJKX?";
  for (int n : {1, 64, 65, 300}) {
    const int m = 5;
    std::string types(static_cast<size_t>(n) * m, 'X');
    for (char& c : types) c = letters[rng() % letters.size()];
    const ClonalPlanes planes(types.data(), m, n);
    for (int i = 1; i <= m; ++i)
      for (int j = 1; j <= m; ++j) {
        float literal[16], fast[16];
        CDMPairCounts(n, types.data() + (i - 1) * n, types.data() + (j - 1) * n, literal);
        planes.Count(i, j, fast);
        for (int k = 0; k < 16; ++k) ASSERT_EQ(fast[k], literal[k]) << n << " " << i << " " << j;
      }
  }
}

}  // namespace
}  // namespace gae
