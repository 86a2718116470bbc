// The exact bi-parental estimates against a brute-force maximum of the observed likelihood over
// both phases, on random tables of every population type and pair code and on edge tables.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "support/brute_force.h"
#include "twopoint/exact_two_point.h"
#include "twopoint/two_point.h"
#include "two_point_cases.h"

namespace gae {
namespace {

using testing::TypeCode;

// ln L written out from the class probabilities; the code's classes are those with a chance
// at r = 1/4.
double LogLik(const TypeCode& tc, const float cells[9], double r) {
  double p[9], inside[9], sum = 0;
  testing::Probabilities(tc, r, p);
  testing::Probabilities(tc, 0.25, inside);
  for (int k = 0; k < 9; ++k) {
    if (cells[k] == 0 || inside[k] <= 0) continue;
    if (p[k] <= 0) return -INFINITY;
    sum += cells[k] * std::log(p[k]);
  }
  return sum;
}

// The estimate's likelihood is the brute-force maximum over both phases, its frequency the
// maximiser (unless the likelihood is flat there), its LOD the ratio against the better phase
// at 1/2 (where the two readings of the alleles segregate differently, as in backcrosses).
void CheckAgainstBruteForce(const TypeCode& tc, const float cells[9]) {
  std::ostringstream trace;
  trace << testing::Name(tc) << " cells";
  for (int k = 0; k < 9; ++k) trace << ' ' << cells[k];
  SCOPED_TRACE(trace.str());
  float swapped[9];
  const TypeCode tc2{tc.type, TwoPointExchangedPhase(tc.type, tc.code, cells, swapped)};
  const auto given = testing::BruteForceMaximum([&](double r) { return LogLik(tc, cells, r); }, 0, 0.5);
  const auto other = testing::BruteForceMaximum([&](double r) { return LogLik(tc2, swapped, r); }, 0, 0.5);
  const double half = std::max(LogLik(tc, cells, 0.5), LogLik(tc2, swapped, 0.5));
  const double best = std::max(given.value, other.value);
  const ExactTwoPoint e = ExactTwoPointEstimate(tc.type, tc.code, cells);
  EXPECT_NEAR(e.lod, std::max(0.0, (best - half) / std::log(10.0)), 0.01);
  if (e.lod == 0.0f) {
    EXPECT_EQ(e.rec_freq, 0.5f);
    return;
  }
  const bool flipped = e.rec_freq > 0.5f;
  const double r = flipped ? 1.0 - e.rec_freq : e.rec_freq;
  const double at_estimate = flipped ? LogLik(tc2, swapped, r) : LogLik(tc, cells, r);
  const double tolerance = 1e-6 * (1 + std::fabs(best));
  EXPECT_GE(at_estimate, best - tolerance);
  if (std::fabs(r - (flipped ? other : given).x) > 1e-4) {
    EXPECT_NEAR(at_estimate, best, tolerance);
  }
}

TEST(ExactTwoPoint, EqualsTheBruteForceMaximumOnRandomTables) {
  std::mt19937_64 rng(27);
  std::uniform_real_distribution<double> unit(0, 1);
  for (const TypeCode& tc : testing::AllTypeCodes()) {
    for (int trial = 0; trial < 30; ++trial) {
      // Drawn from the model at r anywhere in 0..1 (beyond 1/2 the other phase); every fifth
      // table with counts that follow no r at all.
      double p[9];
      testing::Probabilities(tc, unit(rng), p);
      float cells[9] = {};
      if (trial % 5 == 4) {
        for (int k = 0; k < 9; ++k) cells[k] = p[k] > 0 ? static_cast<float>(std::floor(unit(rng) * 40)) : 0.0f;
      } else {
        std::discrete_distribution<int> draw(p, p + 9);
        for (int i = static_cast<int>(unit(rng) * 300); i >= 0; --i) cells[draw(rng)] += 1;
      }
      CheckAgainstBruteForce(tc, cells);
    }
  }
}

TEST(ExactTwoPoint, EdgeTables) {
  for (const TypeCode& tc : testing::AllTypeCodes()) {
    SCOPED_TRACE(testing::Name(tc));
    const float empty[9] = {};
    EXPECT_EQ(ExactTwoPointEstimate(tc.type, tc.code, empty).rec_freq, 0.5f);
    // Counts in the proportions of free recombination, in either phase: nothing beats 1/2.
    double p[9];
    testing::Probabilities(tc, 0.5, p);
    float unlinked[9], swapped[9];
    for (int k = 0; k < 9; ++k) unlinked[k] = static_cast<float>(256 * p[k]);
    const int code2 = TwoPointExchangedPhase(tc.type, tc.code, unlinked, swapped);
    for (const ExactTwoPoint e : {ExactTwoPointEstimate(tc.type, tc.code, unlinked),
                                  ExactTwoPointEstimate(tc.type, code2, swapped)}) {
      EXPECT_EQ(e.rec_freq, 0.5f);
      EXPECT_EQ(e.lod, 0.0f);
    }
    // Every individual in one class, each class in turn.
    for (int k = 0; k < 9; ++k) {
      float one[9] = {};
      one[k] = 60;
      if (p[k] > 0) CheckAgainstBruteForce(tc, one);
    }
  }
  const float cells[9] = {10, 0, 0, 0, 10, 0, 0, 0, 10};
  EXPECT_TRUE(std::isnan(ExactTwoPointEstimate(7, kUnknownPairCode, cells).rec_freq));
}

}  // namespace
}  // namespace gae
