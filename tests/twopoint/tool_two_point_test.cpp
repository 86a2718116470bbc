// The exported single-table calculator.
#include <gtest/gtest.h>

#include <cmath>

#include "gaengine.h"
#include "support/temp_dir.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

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
    EXPECT_EQ(o.rec, 0.5f);
    EXPECT_EQ(o.lod, 0.0f);
    EXPECT_EQ(o.se, 0.0f);
    EXPECT_EQ(o.p, 1.0f);
    EXPECT_EQ(o.haldane, 1000.0f);
    EXPECT_EQ(o.kosambi, 1000.0f);
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
  EXPECT_EQ(o.rec, rec);
  EXPECT_EQ(o.lod, lod);
  EXPECT_EQ(o.se, se);
  EXPECT_GT(o.rec, 0.0f);
  EXPECT_LT(o.rec, 0.5f);
  // Code 110 itself is taken as it stands.
  const Outputs same = Call(110, 7, transposed);
  EXPECT_EQ(same.rec, rec);
}

}  // namespace
}  // namespace gae
