// The estimator frame: pair codes, tables, the two phases, the guard, Newton and the score.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "gaengine.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

struct Estimate {
  float rec = -1, lod = -1, se = -1;
};
Estimate Both(int type, int code, const std::vector<float>& cells) {
  Estimate e;
  TwoPointEstimate(type, code, cells.data(), e.rec, e.lod, e.se);
  return e;
}

TEST(TwoPointPairs, CountsSkipIndividualsMissingAtEitherMarker) {
  //                 individual: 1    2    3    4    5    6    7    8    9   10   11
  const std::string first = "AAHDRBBXAa-";
  const std::string second = "ABHBAHXAADH";
  float cells[9];
  for (float& c : cells) c = 99;  // zeroed first
  PairCounts(static_cast<int>(first.size()), first.data(), second.data(), cells);
  // A-A twice (1, 9), A-B, H-H, D-B (row 2), R-A (row 2), B-H; X, a and - are missing.
  const float expected[9] = {2, 0, 1, 1, 1, 1, 0, 1, 0};
  for (int k = 0; k < 9; ++k) EXPECT_EQ(cells[k], expected[k]) << "cell " << k + 1;
}

TEST(TwoPointFrame, EmptyAndNotANumberTables) {
  const float empty[9] = {};
  float rec = -1, lod = -1;
  TwoPointGuarded(3, 11, empty, rec, lod);
  EXPECT_EQ(rec, 0.5f);
  EXPECT_EQ(lod, 0.0f);
  // A NaN sum is not "not above 0" by the guard's test: the estimate goes on and gives NaN,
  // which the store's writer keeps as unlinked.
  const float broken[9] = {kNaN, 0, 5, 0, 0, 0, 5, 0, 10};
  TwoPointGuarded(3, 11, broken, rec, lod);
  EXPECT_TRUE(std::isnan(rec));
}

TEST(TwoPointFrame, EstimatesScoresAndErrorsByHand) {
  const float kAny = kNaN;  // not checked
  const float lod_dh = 40 * std::log10(2.0f);
  const struct {
    int type;
    std::vector<float> cells;
    float rec, lod, se;
  } cases[] = {
      // Doubled haploids without a recombinant: r = 0, the empty recombinant classes drop out
      // of the likelihood, so LOD = 40 (log10 0.5 - log10 0.25); h is not finite, the error 0.
      {3, {20, 0, 0, 0, 0, 0, 0, 0, 20}, 0.0f, lod_dh, 0.0f},
      // All recombinant: the first phase gives 1, the exchanged table 0, which is smaller.
      {3, {0, 0, 20, 0, 0, 0, 20, 0, 0}, 1.0f, lod_dh, 0.0f},
      // RIL, R = 0.8: r = 2 as it stands; exchanged, R' = 0.2 and r' = 0.1 / 0.8 = 0.125. The LOD
      // from the exchanged table at r' (P = 0.4, 0.1): 80 log10 0.4 + 20 log10 0.1 - 100 log10
      // 0.25. W = 1.25, R' = 1.28, R'' = -4.096: h = 80 x 2.56 - 20 x 61.44 = -1024, error 1/32.
      {4, {10, 0, 40, 0, 0, 0, 40, 0, 10}, 0.875f, 80 * std::log10(0.4f) - 20 + 100 * std::log10(4.0f), 0.03125f},
      // Every line recombinant: infinite in the first phase, 0 exchanged, so 1.
      {4, {0, 0, 50, 0, 0, 0, 50, 0, 0}, 1.0f, kAny, kAny},
      // Backcross, r = 20/100: LOD = 80 log10 0.8 + 20 log10 0.2 - 100 log10 0.5 = 8.370799,
      // h = -80/0.64 - 20/0.04 = -625, error 0.04; in repulsion (rows 1 and 2 exchanged) 0.8.
      {1, {40, 10, 0, 10, 40, 0, 0, 0, 0}, 0.2f, 8.370799f, 0.04f},
      {1, {10, 40, 0, 40, 10, 0, 0, 0, 0}, 0.8f, 8.370799f, 0.04f},
      // F2 without recombinants: the iteration ends below 0.0001 and returns exactly 0; the
      // likelihood keeps cells 1, 5, 9: LOD = 50 log10(0.25 / 0.0625) + 50 log10(0.5 / 0.25).
      {7, {25, 0, 0, 0, 50, 0, 0, 0, 25}, 0.0f, 50 * std::log10(4.0f) + 50 * std::log10(2.0f), 0.0f},
      // Only double recombinants: 1 exactly, from either phase.
      {7, {0, 0, 10, 0, 0, 0, 10, 0, 0}, 1.0f, kAny, kAny},
  };
  for (const auto& c : cases) {
    const Estimate e = Both(c.type, 11, c.cells);
    const std::string what = "type " + std::to_string(c.type) + " N1 " + std::to_string(c.cells[0]);
    if (c.rec == 0.0f || c.rec == 1.0f) {
      EXPECT_EQ(e.rec, c.rec) << what;  // exactly
    } else {
      EXPECT_FLOAT_EQ(e.rec, c.rec) << what;
    }
    EXPECT_TRUE(std::isnan(c.lod) || std::fabs(e.lod - c.lod) <= 3e-5f * (1 + std::fabs(c.lod))) << what << " LOD " << e.lod;
    EXPECT_TRUE(std::isnan(c.se) || std::fabs(e.se - c.se) <= 1e-6f) << what << " error " << e.se;
  }
  EXPECT_EQ(TwoPointNewton(7, 11, std::vector<float>{0, 0, 10, 0, 0, 0, 10, 0, 0}.data(), 20), 1.0f);
}

TEST(TwoPointFrame, NotANumberRunsThroughAndKeepsTheFirstPhase) {
  // Only double heterozygotes: the start is 0 / 0 and NaN runs out the 101 rounds.
  const std::vector<float> hets = {0, 0, 0, 0, 50, 0, 0, 0, 0};
  EXPECT_TRUE(std::isnan(TwoPointNewton(7, 11, hets.data(), 50)));
  const Estimate e = Both(7, 11, hets);
  EXPECT_TRUE(std::isnan(e.rec));
  EXPECT_EQ(e.se, 0.0f);
  // At r = NaN no probability is above 0, so only the null term remains: -50 log10 0.25.
  EXPECT_NEAR(e.lod, 50 * std::log10(4.0f), 1e-4f);
  // Found by fuzzing (the calculator's answer: tool_two_point_test): NaN from both phases,
  // with a LOD of about 149 that once chained unrelated chromosomes into one group.
  const Estimate degenerate = Both(7, 11, {0, 0, 0, 54, 99, 45, 0, 0, 0});
  EXPECT_TRUE(std::isnan(degenerate.rec));
  EXPECT_GT(degenerate.lod, 100.0f);

  // An unknown type or code has no estimate at all.
  for (auto [type, code] : {std::pair{0, 11}, std::pair{21, 11}, std::pair{7, 2020}}) {
    const Estimate u = Both(type, code, {5, 1, 1, 1, 5, 1, 1, 1, 5});
    EXPECT_TRUE(std::isnan(u.rec)) << type << " " << code;
    EXPECT_EQ(u.lod, 0.0f);
    EXPECT_EQ(u.se, 0.0f);
  }
}

TEST(TwoPointFrame, TheStoreClampsANegativeLodAndTheCalculatorKeepsIt) {
  // An F3 dominant pair whose start value lies below 0: the iteration stops next to 0, where
  // the likelihood is far below that of free recombination.
  const float cells[9] = {0, 0, 0, 0, 56, 7, 0, 7, 30};
  float rec = 0, lod = 0, se = 0;
  TwoPointEstimate(8, 1212, cells, rec, lod, se);
  ASSERT_LT(lod, 0.0f);
  float guarded_rec = 0, guarded_lod = -1;
  TwoPointGuarded(8, 1212, cells, guarded_rec, guarded_lod);
  EXPECT_EQ(guarded_rec, rec);
  EXPECT_EQ(guarded_lod, 0.0f);
  float tool_rec = 0, tool_lod = 0, p = 0;
  ToolTwoPointREC(1212, 8, cells, &tool_rec, nullptr, &tool_lod, &p, nullptr, nullptr);
  EXPECT_EQ(tool_lod, lod);
  EXPECT_EQ(p, 1.0f);
}

TEST(TwoPointNewtonStart, StartValuesByHand) {
  // Code 11: (N3 + N7 + (N2 + N4 + N6 + N8) / 2) / (n - N5) = (1 + 1 + 10) / 60.
  const float f2[9] = {20, 5, 1, 5, 40, 5, 1, 5, 18};
  EXPECT_FLOAT_EQ(TwoPointStart(7, 11, f2, 100), 0.2f);
  // Code 112: (N3 + N6 / 2) / (n - N2 - N5 - N8) = (1 + 2.5) / (100 - 5 - 40 - 5).
  EXPECT_FLOAT_EQ(TwoPointStart(8, 112, f2, 100), 3.5f / 50);
  // Code 110: (N4 / 2 + N7) / (n - N2 - N5 - N8) = (2.5 + 1) / 50.
  EXPECT_FLOAT_EQ(TwoPointStart(8, 101, f2, 100), 3.5f / 50);
  // P1BC1F2 and P2BC1F2 code 1212: 1 - cbrt(4 (N5 + N9) / n - 3) = 1 - cbrt(0.6).
  const float dom[9] = {0, 0, 0, 0, 70, 5, 0, 5, 20};
  EXPECT_NEAR(TwoPointStart(13, 1212, dom, 100), 1 - 0.8434327f, 1e-6f);
  EXPECT_EQ(TwoPointStart(14, 1212, dom, 100), TwoPointStart(13, 1212, dom, 100));
  // A negative argument has a real cube root: 1 - cbrt(-0.6) is above 1, so 0.9999.
  const float low[9] = {0, 0, 0, 0, 40, 20, 0, 20, 20};
  EXPECT_EQ(TwoPointStart(13, 1212, low, 100), 0.9999f);
  // P2BC2F2 code 1010: the mean of 1 - 2 (0.16)^(1/4) = -0.2649111 and 2 (0.84)^(1/4) = 1.9146959.
  const float rec[9] = {16, 10, 0, 10, 64, 0, 0, 0, 0};
  EXPECT_NEAR(TwoPointStart(16, 1010, rec, 100), 0.8248924f, 1e-6f);
  // P1BC2F2 code 1010 with both candidates roots of negative numbers: 0.00001.
  const float none[9] = {2, 14, 0, 14, 10, 0, 0, 0, 0};
  EXPECT_EQ(TwoPointStart(15, 1010, none, 40), 0.00001f);
  // F3 code 1210: 4 N7 / n, here 1.2, so 0.9999; a code with no formula starts at 0.0001.
  const float mixed[9] = {0, 0, 0, 10, 50, 0, 30, 10, 0};
  EXPECT_EQ(TwoPointStart(8, 1210, mixed, 100), 0.9999f);
  EXPECT_EQ(TwoPointStart(8, 2020, mixed, 100), 0.0001f);
  // NaN passes the clamps.
  const float hets[9] = {0, 0, 0, 0, 50, 0, 0, 0, 0};
  EXPECT_TRUE(std::isnan(TwoPointStart(7, 11, hets, 50)));
}

}  // namespace
}  // namespace gae
