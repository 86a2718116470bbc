// The exact clonal and double-cross estimates: the class model against the probability tables
// written out by hand, and the searches against brute-force maxima of its likelihood.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <tuple>

#include "support/brute_force.h"
#include "twopoint/exact_clonal.h"

namespace gae {
namespace {

using testing::BruteForceMaximum;

double Chance(const ClonalCellModel& m, int cell, double a, double b) {
  const auto& k = m.k[cell];
  return (k[0] * (1 - a) * (1 - b) + k[1] * (1 - a) * b + k[2] * a * (1 - b) + k[3] * a * b) / 4;
}

// Hand tables, cells 1-based: an ABCD marker against one with both parents' alleles alike
// (categories 1 and 4; 1 and 5, where the second parent's frequency enters reversed), and the
// mixtures of two such markers (alike, 4 4; or opposite, 4 5).
double HandTable(int first, int second, int cell, double a, double b) {
  const double a1 = 1 - a, b1 = 1 - b;
  if (first == 1) {
    const double bb = second == 5 ? b1 : b, bn = second == 5 ? b : b1;
    const double p[16] = {a1 * bn, a1 * bb + a * bn, a1 * bb, a1 * bn + a * bb, 0, a * bb, 0, a * bn,
                          a * bn, a * bb + a1 * bn, a * bb, a * bn + a1 * bb, 0, a1 * bb, 0, a1 * bn};
    return p[cell - 1] / 4;
  }
  const bool opposite = second == 5;
  const double ends = opposite ? a1 * b : a1 * b1, mixed = opposite ? a1 * b1 + a * b : a1 * b + a * b1;
  const double middle = 2 * (opposite ? a1 * b + a * b1 : a1 * b1 + a * b), cross = opposite ? a * b1 : a * b;
  const double p[16] = {ends, mixed, mixed, middle, 0, cross, 0, mixed, 0, 0, cross, mixed, 0, 0, 0, ends};
  return p[cell - 1] / 4;
}

TEST(ExactClonal, ClassModelMatchesTheHandTables) {
  const std::tuple<bool, int, int> cases[] = {{true, 1, 4}, {false, 1, 4}, {false, 1, 5},
                                              {false, 4, 4}, {false, 4, 5}, {true, 4, 4}};
  for (const auto& [clonal, first, second] : cases) {
    const ClonalCellModel m = BuildClonalCellModel(clonal, first, second);
    ASSERT_TRUE(m.known);
    for (int cell = 1; cell <= 16; ++cell)
      EXPECT_NEAR(Chance(m, cell - 1, 0.1, 0.45), HandTable(first, second, cell, 0.1, 0.45), 1e-12)
          << first << second << " cell " << cell;
  }
  // Two ABCD markers: one binomial for each parent, rows 2, 3 the first's recombinants and
  // columns 2, 3 the second's.
  const ClonalCellModel both = BuildClonalCellModel(true, 1, 1);
  for (int cell = 0; cell < 16; ++cell) {
    const bool rec_a = cell / 4 == 1 || cell / 4 == 2, rec_b = cell % 4 == 1 || cell % 4 == 2;
    EXPECT_NEAR(Chance(both, cell, 0.3, 0.1), (rec_a ? 0.15 : 0.35) * (rec_b ? 0.05 : 0.45), 1e-12);
  }
  EXPECT_FALSE(BuildClonalCellModel(true, 1, 5).known);  // no A=DB=C marker in a clonal F1
  EXPECT_FALSE(BuildClonalCellModel(false, 3, 2).known);  // the lower category comes first
}

// Against brute force: the shared frequency over r and the phases, the joint maximum over
// both parents (a profile over one of them, exact since ln L is concave in the other) and each
// parent's LOD against the best with its frequency at 1/2.
void CheckAgainstBruteForce(bool clonal, int first, int second, const float cells[16]) {
  const ClonalCellModel m = BuildClonalCellModel(clonal, first, second);
  const auto ll = [&](double a, double b) { return ClonalLogLikelihood(m, cells, a, b); };
  const double ln10 = std::log(10.0), base = ll(0.5, 0.5);
  double shared = -INFINITY;
  for (int pa = 0; pa < 2; ++pa)
    for (int pb = 0; pb < 2; ++pb)
      shared = std::max(shared, BruteForceMaximum([&](double r) { return ll(pa ? 1 - r : r, pb ? 1 - r : r); }, 0, 0.5).value);
  const ClonalPairResult e = ExactClonalPair(clonal, first, second, cells);
  EXPECT_NEAR(e.lod_c, std::max(0.0, (shared - base) / ln10), 0.01);
  if (first >= 4) {  // the parents cannot be told apart: both take the shared frequency
    EXPECT_EQ(e.lod_a, e.lod_c);
    EXPECT_NEAR(std::fmin(e.rec_a, 1 - e.rec_a), e.rec_c, 1e-6);
    if (e.lod_c > 0.0f) {
      EXPECT_NEAR(ll(e.rec_a, e.rec_b), shared, 1e-5 * (1 + std::fabs(shared)));
    }
    return;
  }
  const auto best_b = [&](double a) { return BruteForceMaximum([&](double b) { return ll(a, b); }, 0, 1, 200).value; };
  const double joint = BruteForceMaximum(best_b, 0, 1, 200).value;
  EXPECT_GE(ll(e.rec_a, e.rec_b), joint - 1e-5 * (1 + std::fabs(joint)));
  EXPECT_NEAR(e.lod_a, std::max(0.0, (joint - best_b(0.5)) / ln10), 0.01);
  const double without_b = BruteForceMaximum([&](double a) { return ll(a, 0.5); }, 0, 1, 200).value;
  EXPECT_NEAR(e.lod_b, std::max(0.0, (joint - without_b) / ln10), 0.01);
  EXPECT_EQ(e.phase, ClonalPhase(e.rec_a, e.rec_b));
}

TEST(ExactClonal, EqualsTheBruteForceMaximaOnRandomAndEdgeTables) {
  std::mt19937_64 rng(270);
  std::uniform_real_distribution<double> unit(0, 1);
  for (const bool clonal : {true, false}) {
    for (int first = 1; first <= (clonal ? 4 : 5); ++first) {
      for (int second = first; second <= (clonal ? 4 : 5); ++second) {
        const ClonalCellModel m = BuildClonalCellModel(clonal, first, second);
        for (int trial = 0; trial < 8; ++trial) {
          const double a = unit(rng), b = trial % 2 ? a : unit(rng);
          double p[16];
          for (int c = 0; c < 16; ++c) p[c] = Chance(m, c, a, b);
          float cells[16] = {};
          if (trial == 7) {  // every progeny in one class
            cells[std::discrete_distribution<int>(p, p + 16)(rng)] = 40;
          } else {
            std::discrete_distribution<int> draw(p, p + 16);
            for (int i = static_cast<int>(unit(rng) * 250); i >= 0; --i) cells[draw(rng)] += 1;
          }
          SCOPED_TRACE(std::string(clonal ? "clonal " : "double cross ") + std::to_string(first * 10 + second) +
                       " trial " + std::to_string(trial));
          CheckAgainstBruteForce(clonal, first, second, cells);
        }
      }
    }
  }
  const float empty[16] = {};
  EXPECT_EQ(ExactClonalPair(true, 1, 1, empty).phase, 0);
  // Markers that inform different parents: nothing to estimate whatever the counts.
  float any[16];
  for (int c = 0; c < 16; ++c) any[c] = static_cast<float>(c % 5);
  const ClonalPairResult apart = ExactClonalPair(true, 2, 3, any);
  EXPECT_EQ(apart.rec_c + apart.rec_a + apart.rec_b + apart.lod_c, 1.5f);
}

}  // namespace
}  // namespace gae
