// The exact bi-parental estimates against a brute-force maximum of the observed likelihood over
// both phases, on random tables of every population type and pair code and on edge tables.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <vector>

#include "support/brute_force.h"
#include "twopoint/exact_two_point.h"
#include "twopoint/two_point.h"
#include "two_point_cases.h"

namespace gae {
namespace {

using testing::AllTypeCodes;
using testing::BruteForceMaximum;
using testing::Name;
using testing::TypeCode;

// ln L written out from the class probabilities; the code's classes are those with a chance
// at r = 1/4.
double LogLik(const TypeCode& tc, const float cells[9], double r) {
  double p[9], inside[9];
  testing::Probabilities(tc, r, p);
  testing::Probabilities(tc, 0.25, inside);
  double sum = 0;
  for (int k = 0; k < 9; ++k) {
    if (cells[k] == 0 || inside[k] <= 0) continue;
    if (p[k] <= 0) return -INFINITY;
    sum += cells[k] * std::log(p[k]);
  }
  return sum;
}

struct Reference {
  double lod = 0;       // of the better phase, against r = 1/2
  double best = 0;      // its ln L
};

// Checks one table: the estimate's likelihood equals the brute-force maximum over the two
// phases, its frequency the maximiser (unless the likelihood is flat there), its LOD the ratio.
void CheckAgainstBruteForce(const TypeCode& tc, const float cells[9]) {
  float swapped[9];
  const int code2 = TwoPointExchangedPhase(tc.type, tc.code, cells, swapped);
  const TypeCode tc2{tc.type, code2};
  const auto as_given = BruteForceMaximum([&](double r) { return LogLik(tc, cells, r); }, 0, 0.5);
  const auto exchanged = BruteForceMaximum([&](double r) { return LogLik(tc2, swapped, r); }, 0, 0.5);
  // The baseline lets the phase free as well: the better reading of the alleles at r = 1/2.
  const double half = std::max(LogLik(tc, cells, 0.5), LogLik(tc2, swapped, 0.5));
  const double best = std::max(as_given.value, exchanged.value);
  const double lod = std::max(0.0, (best - half) / std::log(10.0));
  const ExactTwoPoint e = ExactTwoPointEstimate(tc.type, tc.code, cells);
  ASSERT_FALSE(std::isnan(e.rec_freq));
  EXPECT_NEAR(e.lod, lod, 0.01);
  if (e.lod == 0.0f) {
    EXPECT_EQ(e.rec_freq, 0.5f);
    return;
  }
  const bool flipped = e.rec_freq > 0.5f;
  const double r = flipped ? 1.0 - e.rec_freq : e.rec_freq;
  const double at_estimate = flipped ? LogLik(tc2, swapped, r) : LogLik(tc, cells, r);
  const double tolerance = 1e-6 * (1 + std::fabs(best));
  EXPECT_GE(at_estimate, best - tolerance);
  const double r_ref = (flipped ? exchanged : as_given).x;
  if (std::fabs(r - r_ref) > 1e-4) {
    // Only a flat stretch of the likelihood may hold two maximisers this far apart.
    EXPECT_NEAR(at_estimate, (flipped ? exchanged : as_given).value, tolerance);
  }
}

std::string Describe(const TypeCode& tc, const float cells[9]) {
  std::ostringstream s;
  s << Name(tc) << " cells";
  for (int k = 0; k < 9; ++k) s << ' ' << cells[k];
  return s.str();
}

TEST(ExactTwoPoint, EqualsTheBruteForceMaximumOnRandomTables) {
  std::mt19937_64 rng(27);
  std::uniform_real_distribution<double> unit(0, 1);
  for (const TypeCode& tc : AllTypeCodes()) {
    for (int trial = 0; trial < 30; ++trial) {
      // Tables drawn from the model at r anywhere in 0..1 (beyond 1/2 the other phase), and
      // every fifth one with counts that follow no r at all.
      double p[9];
      testing::Probabilities(tc, unit(rng), p);
      const int n = static_cast<int>(unit(rng) * 300) + 1;
      float cells[9] = {};
      if (trial % 5 == 4) {
        for (int k = 0; k < 9; ++k)
          if (p[k] > 0) cells[k] = static_cast<float>(std::floor(unit(rng) * 40));
      } else {
        std::discrete_distribution<int> draw(p, p + 9);
        for (int i = 0; i < n; ++i) cells[draw(rng)] += 1;
      }
      SCOPED_TRACE(Describe(tc, cells));
      CheckAgainstBruteForce(tc, cells);
    }
  }
}

TEST(ExactTwoPoint, EdgeTables) {
  for (const TypeCode& tc : AllTypeCodes()) {
    SCOPED_TRACE(Name(tc));
    const float empty[9] = {};
    const ExactTwoPoint none = ExactTwoPointEstimate(tc.type, tc.code, empty);
    EXPECT_EQ(none.rec_freq, 0.5f);
    EXPECT_EQ(none.lod, 0.0f);
    double p[9];
    testing::Probabilities(tc, 0.5, p);
    // Counts in the proportions of free recombination: nothing beats 1/2.
    float unlinked[9];
    for (int k = 0; k < 9; ++k) unlinked[k] = static_cast<float>(256 * p[k]);
    const ExactTwoPoint flat = ExactTwoPointEstimate(tc.type, tc.code, unlinked);
    EXPECT_EQ(flat.rec_freq, 0.5f);
    EXPECT_EQ(flat.lod, 0.0f);
    // In the other phase's proportions as well.
    float swapped[9];
    const int code2 = TwoPointExchangedPhase(tc.type, tc.code, unlinked, swapped);
    const ExactTwoPoint other = ExactTwoPointEstimate(tc.type, code2, swapped);
    EXPECT_EQ(other.rec_freq, 0.5f);
    EXPECT_EQ(other.lod, 0.0f);
    // Every individual in one class, each class in turn.
    for (int k = 0; k < 9; ++k) {
      if (p[k] <= 0) continue;
      float one[9] = {};
      one[k] = 60;
      SCOPED_TRACE(Describe(tc, one));
      CheckAgainstBruteForce(tc, one);
    }
  }
}

TEST(ExactTwoPoint, UnknownCodeGivesNoEstimate) {
  const float cells[9] = {10, 0, 0, 0, 10, 0, 0, 0, 10};
  EXPECT_TRUE(std::isnan(ExactTwoPointEstimate(7, kUnknownPairCode, cells).rec_freq));
  EXPECT_TRUE(std::isnan(ExactTwoPointEstimate(21, 11, cells).rec_freq));
}

}  // namespace
}  // namespace gae
