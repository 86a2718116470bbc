// The exact clonal and double-cross estimates: the class model against the probability tables
// written out by hand, and the searches against brute-force maxima of its likelihood.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "support/brute_force.h"
#include "twopoint/exact_clonal.h"

namespace gae {
namespace {

using testing::BruteForceMaximum;

double Chance(const ClonalCellModel& m, int cell, double a, double b) {
  const auto& k = m.k[cell];
  return (k[0] * (1 - a) * (1 - b) + k[1] * (1 - a) * b + k[2] * a * (1 - b) + k[3] * a * b) / 4;
}

// Hand tables, cells 1-based: the ABCD marker against one with both parents' alleles alike
// (categories 1 and 4, and 1 and 5 where the second parent's frequency enters reversed), and
// the two mixtures of a pair of such markers (same or opposite allele pairing).
double HandTable(int first, int second, int cell, double a, double b) {
  const double a1 = 1 - a, b1 = 1 - b;
  if (first == 1 && (second == 4 || second == 5)) {
    const double bb = second == 5 ? b1 : b, bn = second == 5 ? b : b1;
    switch (cell) {
      case 1: case 16: return a1 * bn / 4;
      case 2: return (a1 * bb + a * bn) / 4;
      case 3: case 14: return a1 * bb / 4;
      case 4: return (a1 * bn + a * bb) / 4;
      case 6: case 11: return a * bb / 4;
      case 8: case 9: return a * bn / 4;
      case 10: return (a * bb + a1 * bn) / 4;
      case 12: return (a * bn + a1 * bb) / 4;
      default: return 0;
    }
  }
  const bool opposite = first == 4 && second == 5;
  const double ends = opposite ? a1 * b / 4 : a1 * b1 / 4, mixed = opposite ? (a1 * b1 + a * b) / 4 : (a1 * b + a * b1) / 4;
  const double middle = opposite ? (a1 * b + a * b1) / 2 : (a1 * b1 + a * b) / 2, cross = opposite ? a * b1 / 4 : a * b / 4;
  switch (cell) {
    case 1: case 16: return ends;
    case 2: case 3: case 8: case 12: return mixed;
    case 4: return middle;
    case 6: case 11: return cross;
    default: return 0;
  }
}

TEST(ExactClonal, ClassModelMatchesTheHandTables) {
  struct Case {
    bool clonal;
    int first, second;
  };
  for (const Case c : {Case{true, 1, 4}, Case{false, 1, 4}, Case{false, 1, 5}, Case{false, 4, 4},
                       Case{false, 5, 5}, Case{false, 4, 5}, Case{true, 4, 4}}) {
    const ClonalCellModel m = BuildClonalCellModel(c.clonal, c.first, c.second);
    ASSERT_TRUE(m.known);
    for (double a : {0.1, 0.35}) {
      for (double b : {0.2, 0.45}) {
        for (int cell = 1; cell <= 16; ++cell)
          EXPECT_NEAR(Chance(m, cell - 1, a, b), HandTable(c.first, c.second, cell, a, b), 1e-12)
              << c.first << c.second << " cell " << cell;
      }
    }
  }
  // Two ABCD markers: a product of one binomial for each parent, rows the first parent's
  // recombinants (2, 3) and columns the second's.
  const ClonalCellModel both = BuildClonalCellModel(true, 1, 1);
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 4; ++col) {
      const double a = 0.3, b = 0.1;
      const double pa = (row == 1 || row == 2) ? a / 2 : (1 - a) / 2;
      const double pb = (col == 1 || col == 2) ? b / 2 : (1 - b) / 2;
      EXPECT_NEAR(Chance(both, 4 * row + col, a, b), pa * pb, 1e-12);
    }
  EXPECT_FALSE(BuildClonalCellModel(true, 1, 5).known);  // no A=DB=C marker in a clonal F1
  EXPECT_FALSE(BuildClonalCellModel(false, 3, 2).known);  // the lower category comes first
}

// Brute-force maxima of the model's likelihood.
struct Reference {
  double shared_r = 0.5, shared_top = 0, base = 0;
  double joint_top = 0, without_a = 0, without_b = 0;
};

Reference BruteForce(const ClonalCellModel& m, const float cells[16]) {
  const auto ll = [&](double a, double b) { return ClonalLogLikelihood(m, cells, a, b); };
  Reference ref;
  ref.base = ll(0.5, 0.5);
  ref.shared_top = -INFINITY;
  for (int pa = 0; pa < 2; ++pa)
    for (int pb = 0; pb < 2; ++pb) {
      const auto best = BruteForceMaximum([&](double r) { return ll(pa ? 1 - r : r, pb ? 1 - r : r); }, 0, 0.5);
      if (best.value > ref.shared_top) ref.shared_top = best.value, ref.shared_r = best.x;
    }
  // Each parent's frequency alone is concave, so a profile over one of them is exact.
  const auto profile_b = [&](double a) { return BruteForceMaximum([&](double b) { return ll(a, b); }, 0, 1, 200).value; };
  ref.joint_top = BruteForceMaximum(profile_b, 0, 1, 200).value;
  ref.without_a = profile_b(0.5);
  ref.without_b = BruteForceMaximum([&](double a) { return ll(a, 0.5); }, 0, 1, 200).value;
  return ref;
}

TEST(ExactClonal, EqualsTheBruteForceMaximaOnRandomTables) {
  std::mt19937_64 rng(270);
  std::uniform_real_distribution<double> unit(0, 1);
  for (const bool clonal : {true, false}) {
    for (int first = 1; first <= (clonal ? 4 : 5); ++first) {
      for (int second = first; second <= (clonal ? 4 : 5); ++second) {
        const ClonalCellModel m = BuildClonalCellModel(clonal, first, second);
        for (int trial = 0; trial < 6; ++trial) {
          const double a = unit(rng), b = trial % 2 ? a : unit(rng);
          double p[16];
          for (int c = 0; c < 16; ++c) p[c] = Chance(m, c, a, b);
          std::discrete_distribution<int> draw(p, p + 16);
          float cells[16] = {};
          const int n = 1 + static_cast<int>(unit(rng) * 250);
          for (int i = 0; i < n; ++i) cells[draw(rng)] += 1;
          SCOPED_TRACE(std::string(clonal ? "clonal " : "double cross ") + std::to_string(first) +
                       std::to_string(second) + " a " + std::to_string(a) + " b " + std::to_string(b) +
                       " n " + std::to_string(n));
          const Reference ref = BruteForce(m, cells);
          const ClonalPairResult e = ExactClonalPair(clonal, first, second, cells);
          const double ln10 = std::log(10.0);
          EXPECT_NEAR(e.lod_c, std::max(0.0, (ref.shared_top - ref.base) / ln10), 0.01);
          if (e.lod_c > 0.0f && std::fabs(e.rec_c - ref.shared_r) > 1e-4) {
            // Only a flat likelihood may put its maximum elsewhere.
            double at = -INFINITY;
            for (int pa = 0; pa < 2; ++pa)
              for (int pb = 0; pb < 2; ++pb)
                at = std::max(at, ClonalLogLikelihood(m, cells, pa ? 1 - e.rec_c : e.rec_c, pb ? 1 - e.rec_c : e.rec_c));
            EXPECT_NEAR(at, ref.shared_top, 1e-5 * (1 + std::fabs(at)));
          }
          if (first >= 4) {
            // The parents cannot be told apart: both take the shared frequency in its phases.
            EXPECT_EQ(e.lod_a, e.lod_c);
            EXPECT_EQ(e.lod_b, e.lod_c);
            EXPECT_NEAR(std::fmin(e.rec_a, 1 - e.rec_a), std::fmin(e.rec_c, 1 - e.rec_c), 1e-6);
            continue;
          }
          const double top = ClonalLogLikelihood(m, cells, e.rec_a, e.rec_b);
          EXPECT_GE(top, ref.joint_top - 1e-5 * (1 + std::fabs(top)));
          EXPECT_NEAR(e.lod_a, std::max(0.0, (ref.joint_top - ref.without_a) / ln10), 0.01);
          EXPECT_NEAR(e.lod_b, std::max(0.0, (ref.joint_top - ref.without_b) / ln10), 0.01);
          EXPECT_EQ(e.phase, ClonalPhase(e.rec_a, e.rec_b));
        }
      }
    }
  }
}

TEST(ExactClonal, EdgeTables) {
  const float empty[16] = {};
  const ClonalPairResult none = ExactClonalPair(true, 1, 1, empty);
  EXPECT_EQ(none.rec_c, 0.5f);
  EXPECT_EQ(none.phase, 0);
  // Markers that inform different parents: nothing to estimate whatever the counts.
  float any[16];
  for (int c = 0; c < 16; ++c) any[c] = static_cast<float>(c % 5);
  const ClonalPairResult apart = ExactClonalPair(true, 2, 3, any);
  EXPECT_EQ(apart.rec_a, 0.5f);
  EXPECT_EQ(apart.rec_b, 0.5f);
  EXPECT_EQ(apart.rec_c, 0.5f);
  EXPECT_EQ(apart.lod_c, 0.0f);
  EXPECT_EQ(apart.phase, 1);
  // Two ABCD markers fully linked, the second parent in repulsion: rA 0, rB 1, rC 0, and the
  // LOD of each parent is n log10 2.
  float linked[16] = {};
  linked[1] = linked[2] = linked[13] = linked[14] = 25;  // second parent's recombinant columns
  const ClonalPairResult tight = ExactClonalPair(true, 1, 1, linked);
  EXPECT_NEAR(tight.rec_a, 0.0f, 1e-6);
  EXPECT_NEAR(tight.rec_b, 1.0f, 1e-6);
  EXPECT_NEAR(tight.rec_c, 0.0f, 1e-6);
  EXPECT_NEAR(tight.lod_a, 100 * std::log10(2.0), 1e-3);
  EXPECT_NEAR(tight.lod_c, 200 * std::log10(2.0), 1e-3);
  EXPECT_EQ(tight.phase, 2);
  // All progeny in one cell, each cell in turn, for a pair with a mixture in its classes.
  const ClonalCellModel m = BuildClonalCellModel(false, 1, 4);
  for (int c = 0; c < 16; ++c) {
    if (m.k[c][0] + m.k[c][1] + m.k[c][2] + m.k[c][3] == 0) continue;
    float one[16] = {};
    one[c] = 40;
    const Reference ref = BruteForce(m, one);
    const ClonalPairResult e = ExactClonalPair(false, 1, 4, one);
    EXPECT_NEAR(e.lod_c, std::max(0.0, (ref.shared_top - ref.base) / std::log(10.0)), 0.01) << c;
    EXPECT_NEAR(e.lod_a, std::max(0.0, (ref.joint_top - ref.without_a) / std::log(10.0)), 0.01) << c;
  }
}

}  // namespace
}  // namespace gae
