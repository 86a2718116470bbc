// The front end's two-point estimator: pair codes, tables, the two phases, the guard, Newton and
// the score, by hand; expected tables of every population type estimated back to their frequency;
// the exported single-table calculator; map distance and recombination frequency.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "gaengine.h"
#include "support/temp_dir.h"
#include "twopoint/closed_forms.h"
#include "twopoint/mapping_function.h"
#include "twopoint/two_point.h"
#include "twopoint/two_point_cases.h"

namespace gae {
namespace {

using testing::AllTypeCodes;
using testing::Name;
using testing::TypeCode;

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
  using Cells = std::array<float, 9>;
  const Cells f2 = {20, 5, 1, 5, 40, 5, 1, 5, 18}, dom = {0, 0, 0, 0, 70, 5, 0, 5, 20},
              mixed = {0, 0, 0, 10, 50, 0, 30, 10, 0};
  const struct {
    int type, code;
    Cells cells;
    float n, start, tolerance;
  } cases[] = {
      {7, 11, f2, 100, 0.2f, 1e-7f},        // (N3 + N7 + (N2 + N4 + N6 + N8) / 2) / (n - N5) = 12 / 60
      {8, 112, f2, 100, 3.5f / 50, 1e-7f},  // (N3 + N6 / 2) / (n - N2 - N5 - N8)
      {8, 101, f2, 100, 3.5f / 50, 1e-7f},  // (N4 / 2 + N7) / (n - N2 - N5 - N8)
      {13, 1212, dom, 100, 1 - 0.8434327f, 1e-6f},  // 1 - cbrt(4 (N5 + N9) / n - 3) = 1 - cbrt(0.6)
      {14, 1212, dom, 100, 1 - 0.8434327f, 1e-6f},
      {13, 1212, {0, 0, 0, 0, 40, 20, 0, 20, 20}, 100, 0.9999f, 0},  // 1 - cbrt(-0.6) is above 1
      // The mean of 1 - 2 (0.16)^(1/4) and 2 (0.84)^(1/4).
      {16, 1010, {16, 10, 0, 10, 64, 0, 0, 0, 0}, 100, 0.8248924f, 1e-6f},
      {15, 1010, {2, 14, 0, 14, 10, 0, 0, 0, 0}, 40, 0.00001f, 0},  // both roots of negative numbers
      {8, 1210, mixed, 100, 0.9999f, 0},  // 4 N7 / n is 1.2
      {8, 2020, mixed, 100, 0.0001f, 0},  // no formula
  };
  for (const auto& c : cases) EXPECT_NEAR(TwoPointStart(c.type, c.code, c.cells.data(), c.n), c.start, c.tolerance) << c.type << "/" << c.code;
  const float hets[9] = {0, 0, 0, 0, 50, 0, 0, 0, 0};  // NaN passes the clamps
  EXPECT_TRUE(std::isnan(TwoPointStart(7, 11, hets, 50)));
}

float Closed(int type, int code, const float (&cells)[9]) {
  float n = 0;
  for (float v : cells) n += v;
  float r = -1;
  EXPECT_TRUE(TwoPointClosedForm(type, code, cells, n, r)) << "type " << type << " code " << code;
  return r;
}

TEST(TwoPointClosedForm, NothingIsClamped) {
  // A RIL table with R = 0.8 gives r = 0.4 / 0.2 = 2 in one phase.
  EXPECT_FLOAT_EQ(Closed(4, 11, {10, 0, 40, 0, 0, 0, 40, 0, 10}), 2.0f);
  // All recombinant: exactly 1.
  EXPECT_FLOAT_EQ(Closed(3, 11, {0, 0, 20, 0, 0, 0, 20, 0, 0}), 1.0f);
  // Every line recombinant: R = 1, r = 0.5 / 0, infinite.
  EXPECT_TRUE(std::isinf(Closed(4, 11, {0, 0, 50, 0, 0, 0, 50, 0, 0})));
}

// The start values of some dominant and recessive pairs lie far from the estimate: for F3
// codes 1212 and 1010, 1 - 4 N9/n is negative below r of about 0.2 and the start is clamped to
// 0.0001, where the first step is shorter than the convergence test; for P1BC1F2 and P2BC1F2
// codes 1210/1012, P5 - P7 is 1/4 at every r, so the start is always 0.9999; for P1BC2F2 code
// 1212 the start is 1 - r. From there, at small r, the guarded iteration stops at or next to
// 0 instead of at r. These are the (type, code, r) tables, in coupling, that do not come back.
struct Case {
  int type, code;
  double r;
};
bool Listed(const std::vector<Case>& list, const TypeCode& tc, double r) {
  for (const Case& c : list)
    if (c.type == tc.type && c.code == tc.code && c.r == r) return true;
  return false;
}
const std::vector<Case> kStopsAtTheBorder = {
    {8, 1212, 0.02}, {8, 1212, 0.1}, {8, 1010, 0.02}, {8, 1010, 0.1},   {13, 1210, 0.02},
    {13, 1012, 0.02}, {14, 1210, 0.02}, {14, 1012, 0.02}, {15, 1212, 0.02}, {16, 1212, 0.02},
    {16, 1010, 0.02}};

TEST(TwoPointRecovery, ExpectedTablesOfTenThousandGiveTheirFrequencyBack) {
  for (const TypeCode& tc : AllTypeCodes()) {
    for (double r : {0.02, 0.1, 0.3}) {
      float cells[9];
      testing::ExpectedTable(tc, r, 10000, cells);
      float rec = -1, lod = -1, se = -1;
      TwoPointEstimate(tc.type, tc.code, cells, rec, lod, se);
      if (Listed(kStopsAtTheBorder, tc, r)) {
        EXPECT_LT(rec, 0.00021f) << Name(tc) << " r " << r;
        continue;
      }
      EXPECT_NEAR(rec, r, 0.002) << Name(tc) << " r " << r;
      EXPECT_GT(lod, 0.0f) << Name(tc) << " r " << r;
      EXPECT_GT(se, 0.0f) << Name(tc) << " r " << r;
    }
  }
}

// Markers linked in the other phase: the table is the exchanged one, and the estimate is 1 - r.
// It comes from the exchanged table, so the cases above recur under the exchanged code; and
// P1BC2F2 code 1010 read in repulsion ends its first phase at 0, which no second phase beats.
const std::vector<Case> kRepulsionMissed = {
    {8, 1210, 0.02}, {8, 1210, 0.1},  {8, 1012, 0.02}, {8, 1012, 0.1},  {13, 1212, 0.02},
    {13, 1010, 0.02}, {14, 1212, 0.02}, {14, 1010, 0.02}, {15, 1210, 0.02}, {15, 1012, 0.02},
    {15, 1010, 0.02}, {15, 1010, 0.1}, {15, 1010, 0.3}, {16, 1210, 0.02}, {16, 1012, 0.02}};

TEST(TwoPointRecovery, RepulsionTablesGiveOneMinusTheFrequency) {
  // The exchange of one marker's alleles, as a permutation of the cells (an involution).
  auto exchanged = [](const TypeCode& tc, int& code) -> std::array<int, 9> {
    code = tc.code;
    if (tc.type == 1 || tc.type == 9) return {4, 5, 6, 1, 2, 3, 7, 8, 9};
    if (tc.type == 2 || tc.type == 10) return {1, 2, 3, 7, 8, 9, 4, 5, 6};
    if (testing::MultiCodeType(tc.type)) {
      if (tc.code == 1212) code = 1210;
      if (tc.code == 1210 || tc.code == 1012) code = 1212;
      if (tc.code == 1010) code = 1210;
      if (tc.code == 1212 || tc.code == 1210 || tc.code == 1012) return {3, 2, 1, 6, 5, 4, 9, 8, 7};
    }
    return {7, 8, 9, 4, 5, 6, 1, 2, 3};
  };
  for (const TypeCode& tc : AllTypeCodes()) {
    int other_code = 0;
    const std::array<int, 9> perm = exchanged(tc, other_code);
    for (double r : {0.02, 0.1, 0.3}) {
      float in_phase[9], cells[9];
      testing::ExpectedTable({tc.type, other_code}, r, 10000, in_phase);
      for (int k = 0; k < 9; ++k) cells[k] = in_phase[perm[k] - 1];
      float rec = -1, lod = -1, se = -1;
      TwoPointEstimate(tc.type, tc.code, cells, rec, lod, se);
      if (Listed(kRepulsionMissed, tc, r)) {
        EXPECT_GT(std::fabs(rec - (1 - r)), 0.002) << Name(tc) << " r " << r;
        continue;
      }
      EXPECT_NEAR(rec, 1 - r, 0.002) << Name(tc) << " r " << r;
      EXPECT_GT(lod, 0.0f) << Name(tc) << " r " << r;
    }
  }
}

struct Outputs {
  float rec = -1, se = -1, lod = -1, p = -1, haldane = -1, kosambi = -1;
};
Outputs Call(int code, int type, const float* cells) {
  Outputs o;
  ToolTwoPointREC(code, type, cells, &o.rec, &o.se, &o.lod, &o.p, &o.haldane, &o.kosambi);
  return o;
}

using ToolTwoPoint = testing::InTempDir;

TEST_F(ToolTwoPoint, BackcrossTableByHand) {
  // r = 8/20 = 0.4; LOD = 12 log10 0.6 + 8 log10 0.4 - 20 log10 0.5 = 0.174895;
  // x = 2 ln(10) LOD = 0.805422 and, for one degree of freedom, p = erfc(sqrt(x / 2)).
  const float cells[9] = {6, 4, 0, 4, 6, 0, 0, 0, 0};
  const Outputs o = Call(11, 1, cells);
  EXPECT_FLOAT_EQ(o.rec, 0.4f);
  EXPECT_NEAR(o.lod, 0.174895f, 2e-6f);
  // h = -12 / 0.36 - 8 / 0.16 = -83.3333, error sqrt(0.012).
  EXPECT_NEAR(o.se, std::sqrt(0.012f), 1e-6f);
  EXPECT_NEAR(o.p, std::erfc(std::sqrt(0.805422 / 2)), 2e-6);
  // Haldane -50 ln 0.2 = 80.471896, Kosambi 25 ln 9 = 54.930614.
  EXPECT_NEAR(o.haldane, 80.471896f, 1e-4f);
  EXPECT_NEAR(o.kosambi, 54.930614f, 1e-4f);
  // No log is opened.
  EXPECT_FALSE(testing::FileExists("MAP.log"));
}

TEST_F(ToolTwoPoint, TablesWithoutAnEstimateAnswerAsUnlinked) {
  // An empty F2 table, and one found by fuzzing: the second marker is H wherever the first is
  // typed, and the first has as many H as A and B together, so both phases give r = NaN with
  // a LOD of about 149. The calculator answers as the store keeps such a pair.
  const float empty[9] = {}, degenerate[9] = {0, 0, 0, 54, 99, 45, 0, 0, 0};
  for (const float* cells : {empty, degenerate}) {
    const Outputs o = Call(11, 7, cells);
    EXPECT_EQ(std::vector<float>({o.rec, o.lod, o.se, o.p, o.haldane, o.kosambi}),
              std::vector<float>({0.5f, 0.0f, 0.0f, 1.0f, 1000.0f, 1000.0f}));
  }
  // Missing pointers: the cells count as empty, absent outputs are skipped.
  float rec = -1;
  ToolTwoPointREC(11, 7, nullptr, &rec, nullptr, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(rec, 0.5f);
}

TEST_F(ToolTwoPoint, TablesComeWithTheFirstMarkerAsRows) {
  // An F2 pair of a recessive and a co-dominant marker (code 101), typed with the recessive
  // marker as rows: rows 1 and 2 hold it, all three columns the co-dominant one. The engine
  // knows this layout as code 110 (co-dominant first), so the calculator transposes it.
  const float as_typed[9] = {30, 10, 1, 12, 50, 11, 0, 0, 0};
  const float transposed[9] = {30, 12, 0, 10, 50, 0, 1, 11, 0};
  float rec = 0, lod = 0, se = 0;
  TwoPointEstimate(7, 110, transposed, rec, lod, se);
  const Outputs o = Call(101, 7, as_typed);
  EXPECT_EQ(std::vector<float>({o.rec, o.lod, o.se}), std::vector<float>({rec, lod, se}));
  EXPECT_GT(o.rec, 0.0f);
  EXPECT_LT(o.rec, 0.5f);
  // Code 110 itself is taken as it stands.
  const Outputs same = Call(110, 7, transposed);
  EXPECT_EQ(same.rec, rec);
}

constexpr int kKosambi = 1, kHaldane = 2, kMorgan = 3;

TEST(MappingFunction, DistancesByHand) {
  // r = 0.1: Kosambi 25 ln(1.2 / 0.8), Haldane -50 ln 0.8, Morgan 10. d = 20 cM: Kosambi
  // 0.5 (e^0.8 - 1) / (e^0.8 + 1), Haldane 0.5 (1 - e^-0.4); Morgan's 30 cM is 0.3.
  const std::tuple<int, float, float, float> to_distance[] = {
      {kKosambi, 0.1f, 10.136628f, 2e-5f}, {kHaldane, 0.1f, 11.157178f, 2e-5f}, {kMorgan, 0.1f, 10.0f, 1e-5f}};
  for (const auto& [code, r, d, tolerance] : to_distance) EXPECT_NEAR(MapRecToDistance(code, r), d, tolerance) << code;
  const std::tuple<int, float, float> to_rec[] = {
      {kKosambi, 20.0f, 0.1899745f}, {kHaldane, 20.0f, 0.1648400f}, {kMorgan, 30.0f, 0.3f}};
  for (const auto& [code, d, r] : to_rec) EXPECT_NEAR(MapDistanceToRec(code, d), r, 1e-6f) << code;
}

TEST(MappingFunction, TheTwoDirectionsAreInverse) {
  for (int code : {kKosambi, kHaldane, kMorgan}) {
    for (float d : {0.5f, 3.0f, 17.0f, 42.0f}) {
      EXPECT_NEAR(MapRecToDistance(code, MapDistanceToRec(code, d)), d, 2e-4f * d) << code;
    }
  }
}

TEST(MappingFunction, FrequencyAndDistanceEdges) {
  // No recombination is a plain zero, never -0; free recombination, what 32 bits cannot tell
  // from it, values outside 0..1 and NaN are unlinked; above 1/2 the pair is linked in the other
  // phase. Distances below 0 are no recombination, past 999 cM free recombination.
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (int code : {kKosambi, kHaldane, kMorgan}) {
    SCOPED_TRACE(code);
    EXPECT_FALSE(std::signbit(MapRecToDistance(code, 0.0f)));
    for (const auto& [r, d] : {std::pair{0.0f, 0.0f}, {0.5f, kUnlinkedDistance}, {0.50000001f, kUnlinkedDistance},
                               {1.0f, 0.0f}, {0.75f, MapRecToDistance(code, 0.25f)}, {-0.01f, kUnlinkedDistance},
                               {1.01f, kUnlinkedDistance}, {nan, kUnlinkedDistance}})
      EXPECT_EQ(MapRecToDistance(code, r), d) << r;
    for (const auto& [d, r] : {std::pair{-1.0f, 0.0f}, {999.0f, 0.5f}, {kUnlinkedDistance, 0.5f}})
      EXPECT_EQ(MapDistanceToRec(code, d), r) << d;
  }
  EXPECT_EQ(MapRecToDistance(4, 0.1f), kUnlinkedDistance);
  // Morgan's line passes 1/2 at 50 cM and is capped there; the other two approach 1/2 without
  // reaching it before 999 cM.
  EXPECT_EQ(MapDistanceToRec(kMorgan, 60.0f), 0.5f);
  EXPECT_LT(MapDistanceToRec(kHaldane, 900.0f), 0.5f + 1e-7f);
  EXPECT_LE(MapDistanceToRec(kKosambi, 998.0f), 0.5f);
  EXPECT_EQ(MapDistanceToRec(0, 10.0f), 0.5f);
}

}  // namespace
}  // namespace gae
