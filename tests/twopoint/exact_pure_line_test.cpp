// The exact pure-line estimates against a direct maximisation of the observed lines'
// likelihood written out from the breeding tables, on random founder patterns and at the edges.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>

#include "support/pure_line_likelihood.h"
#include "twopoint/exact_pure_line.h"

namespace gae {
namespace {

using testing::Founders;
using testing::ObservedLogLik;

// The estimate from two columns of letters, counted as the pair file counts them.
PureLineEstimate Exact(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y,
                       const PureLineLogGrid* grid = nullptr) {
  const int f = Founders(type);
  const PureLinePairClasses classes = BuildPairClasses(f, p1, p2);
  float cells[64] = {}, counts[64] = {};
  for (std::size_t i = 0; i < x.size(); ++i)
    if (x[i] - 'A' < f && y[i] - 'A' < f) cells[(x[i] - 'A') * f + (y[i] - 'A')] += 1;
  for (int c = 0; c < classes.num_classes; ++c) counts[c] = cells[classes.classes[c].head];
  return ExactPureLinePair(type, classes, counts, grid);
}

// The estimate's LOD is the direct maximum's ratio against 1/2, and its frequency the maximiser
// (unless the likelihood is flat there).
void CheckAgainstDirect(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y,
                        const PureLineLogGrid* grid = nullptr) {
  const double best = testing::DirectMaximum(type, p1, p2, x, y);
  const double top = ObservedLogLik(type, best, p1, p2, x, y);
  const double lod = (top - ObservedLogLik(type, 0.5, p1, p2, x, y)) / std::log(10.0);
  const PureLineEstimate e = Exact(type, p1, p2, x, y, grid);
  EXPECT_NEAR(e.lod, std::max(0.0, lod), 0.01);
  if (e.lod == 0.0f) {
    EXPECT_EQ(e.rec_freq, 0.5f);
    return;
  }
  // Back on the scale of the search (the inbred line's R for 4PRIL).
  const double r = type == 2 ? 2 * e.rec_freq / (1 + 2 * e.rec_freq) : e.rec_freq;
  const double at_estimate = ObservedLogLik(type, r, p1, p2, x, y), tolerance = 1e-6 * (1 + std::fabs(top));
  EXPECT_GE(at_estimate, top - tolerance);
  if (std::fabs(r - best) > 1e-4) {
    EXPECT_NEAR(at_estimate, top, tolerance);
  }
}

TEST(ExactPureLine, EqualsTheDirectMaximumOnRandomPatterns) {
  std::mt19937_64 rng(2727);
  for (int type = 1; type <= 4; ++type) {
    PureLineLogGrid grid(type);
    for (int trial = 0; trial < 60; ++trial) {
      const int f = Founders(type);
      const int32_t p1 = testing::RandomPattern(f, rng), p2 = testing::RandomPattern(f, rng);
      const double r_true = 0.5 * (rng() % 1000) / 1000.0;
      const int n = 1 + static_cast<int>(rng() % 300);
      std::string x, y;
      testing::DrawLines(type, r_true, n, p1, p2, rng, x, y);
      std::ostringstream trace;
      trace << "type " << type << " patterns " << p1 << ' ' << p2 << " lines " << n << " r " << r_true;
      SCOPED_TRACE(trace.str());
      // Half the pairs use the data set's table of log-chances, half compute their own.
      if (trial % 2 == 0) grid.Add(BuildPairClasses(f, p1, p2));
      CheckAgainstDirect(type, p1, p2, x, y, trial % 2 == 0 ? &grid : nullptr);
    }
  }
}

TEST(ExactPureLine, EdgeTables) {
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    const int32_t distinct = f == 4 ? 1234 : 12345678;
    SCOPED_TRACE(type);
    EXPECT_EQ(Exact(type, distinct, distinct, "", "").rec_freq, 0.5f);
    // A pattern that tells no founder apart: one class, nothing to estimate.
    const PureLineEstimate flat = Exact(type, f == 4 ? 1111 : 11111111, distinct, std::string(40, 'A'),
                                        std::string(20, 'A') + std::string(20, 'B'));
    EXPECT_EQ(flat.rec_freq, 0.5f);
    EXPECT_EQ(flat.lod, 0.0f);
    // No recombinant at all: r = 0, and the LOD is each line's chance 1/F against 1/F^2.
    std::string x;
    for (int k = 0; k < 12 * f; ++k) x += static_cast<char>('A' + k % f);
    const PureLineEstimate tight = Exact(type, distinct, distinct, x, x);
    EXPECT_NEAR(tight.rec_freq, 0.0f, 1e-6);
    EXPECT_NEAR(tight.lod, 12 * f * std::log10(f), 1e-3);
    // All lines in one class, each class in turn.
    for (char u = 'A'; u < 'A' + f; ++u)
      for (char v = 'A'; v < 'A' + f; v += 3) CheckAgainstDirect(type, distinct, distinct, std::string(30, u), std::string(30, v));
  }
}

}  // namespace
}  // namespace gae
