// Each closed-form estimator against the arithmetic done by hand on one small table.
#include <gtest/gtest.h>

#include <cmath>

#include "twopoint/closed_forms.h"
#include "twopoint/two_point.h"

namespace gae {
namespace {

float Closed(int type, int code, const float (&cells)[9]) {
  float n = 0;
  for (float v : cells) n += v;
  float r = -1;
  EXPECT_TRUE(TwoPointClosedForm(type, code, cells, n, r)) << "type " << type << " code " << code;
  return r;
}

TEST(TwoPointClosedForm, RatiosOfRecombinantClasses) {
  // Backcross to P1: recombinants are N2 and N4; 10 of 60.
  EXPECT_FLOAT_EQ(Closed(1, 11, {30, 6, 0, 4, 20, 0, 0, 0, 0}), 10.0f / 60);
  // Backcross to P2: N6 and N8; 8 of 60.
  EXPECT_FLOAT_EQ(Closed(2, 11, {0, 0, 0, 0, 25, 5, 0, 3, 27}), 8.0f / 60);
  // Doubled haploids: N3 and N7; 10 of 100.
  EXPECT_FLOAT_EQ(Closed(3, 11, {40, 0, 7, 0, 0, 0, 3, 0, 50}), 0.1f);
  // RIL: R = 20/100 = 0.2 recombinant lines, r = 0.5 x 0.2 / 0.8 = 0.125.
  EXPECT_FLOAT_EQ(Closed(4, 11, {40, 0, 10, 0, 0, 0, 10, 0, 40}), 0.125f);
}

TEST(TwoPointClosedForm, QuadraticsOfLinesFromBackcrosses) {
  // P1BC1RIL, N1 70, N3 5, N7 5, N9 20: b = 10 + 10 - 70 + 20 = -30,
  // x = (30 + sqrt(900 + 16000)) / 200 = (30 + 130) / 200 = 0.8, r = 0.2 / 2.6.
  EXPECT_NEAR(Closed(5, 11, {70, 0, 5, 0, 0, 0, 5, 0, 20}), 0.0769231f, 1e-6f);
  EXPECT_NEAR(Closed(6, 11, {20, 0, 5, 0, 0, 0, 5, 0, 70}), 0.0769231f, 1e-6f);
  // P1BC1DH on the same table: r = 1 - sqrt(0.8).
  EXPECT_NEAR(Closed(17, 11, {70, 0, 5, 0, 0, 0, 5, 0, 20}), 0.1055728f, 1e-6f);
  EXPECT_NEAR(Closed(18, 11, {20, 0, 5, 0, 0, 0, 5, 0, 70}), 0.1055728f, 1e-6f);
  // P1BC2RIL, N1 80, N3 5, N7 5, N9 10: b = 30 + 30 - 80 + 50 = 30,
  // x = (-30 + sqrt(900 + 24000)) / 200 = 0.6389867, r = 1.6389867 - sqrt(x^2 + 3x) = 0.1141050.
  EXPECT_NEAR(Closed(11, 11, {80, 0, 5, 0, 0, 0, 5, 0, 10}), 0.1141050f, 2e-6f);
  EXPECT_NEAR(Closed(12, 11, {10, 0, 5, 0, 0, 0, 5, 0, 80}), 0.1141050f, 2e-6f);
  // P1BC2DH on the same table: r = 1 - x^(1/3) = 0.1386812.
  EXPECT_NEAR(Closed(19, 11, {80, 0, 5, 0, 0, 0, 5, 0, 10}), 0.1386812f, 2e-6f);
  EXPECT_NEAR(Closed(20, 11, {10, 0, 5, 0, 0, 0, 5, 0, 80}), 0.1386812f, 2e-6f);
}

TEST(TwoPointClosedForm, SecondBackcrosses) {
  // P1BC2F1, N1 60, N2 10, N4 10, N5 20: b = 20 + 20 + 20 - 60 = 0,
  // x = sqrt(8 x 100 x 20) / 200 = 0.6324555, r = 1 - sqrt(x) = 0.2047293.
  EXPECT_NEAR(Closed(9, 11, {60, 10, 0, 10, 20, 0, 0, 0, 0}), 0.2047293f, 2e-6f);
  // P2BC2F1 pairs N8 with N6 and puts N9 where P1BC2F1 has N1.
  EXPECT_NEAR(Closed(10, 11, {0, 0, 0, 0, 20, 10, 0, 10, 60}), 0.2047293f, 2e-6f);
}

TEST(TwoPointClosedForm, F2WithDominantAndRecessiveMarkers) {
  // 1212, N5 60, N6 8, N8 7, N9 25: b = 200 - 180 - 25 = -5,
  // u = (5 + sqrt(25 + 20000)) / 200 = 0.7325486, r = 1 - sqrt(u) = 0.1441095.
  EXPECT_NEAR(Closed(7, 1212, {0, 0, 0, 0, 60, 8, 0, 7, 25}), 0.1441095f, 2e-6f);
  // 1010 is its mirror: N1 in place of N9.
  EXPECT_NEAR(Closed(7, 1010, {25, 8, 0, 7, 60, 0, 0, 0, 0}), 0.1441095f, 2e-6f);
  // 1210, N4 24, N5 50, N7 2, N8 24: b = 100 - 24 - 24 - 100 = -48,
  // s = (-48 + sqrt(2304 + 1600)) / 200 = 0.0724100, r = sqrt(s) = 0.2690910.
  EXPECT_NEAR(Closed(7, 1210, {0, 0, 0, 24, 50, 0, 2, 24, 0}), 0.2690910f, 2e-6f);
  EXPECT_NEAR(Closed(7, 1012, {0, 0, 0, 24, 50, 0, 2, 24, 0}), 0.2690910f, 2e-6f);
}

TEST(TwoPointClosedForm, OnlyTheIteratedPairsAreLeftOut) {
  const float cells[9] = {5, 5, 5, 5, 5, 5, 5, 5, 5};
  float r = 0;
  for (int code : {11, 112, 121, 110, 101})
    EXPECT_FALSE(TwoPointClosedForm(7, code, cells, 45, r)) << code;
  for (int type : {8, 13, 14, 15, 16})
    EXPECT_FALSE(TwoPointClosedForm(type, 1212, cells, 45, r)) << type;
  EXPECT_FALSE(TwoPointClosedForm(0, 11, cells, 45, r));
  EXPECT_FALSE(TwoPointClosedForm(21, 11, cells, 45, r));
}

TEST(TwoPointClosedForm, NothingIsClamped) {
  // A RIL table with R = 0.8 gives r = 0.4 / 0.2 = 2 in one phase.
  EXPECT_FLOAT_EQ(Closed(4, 11, {10, 0, 40, 0, 0, 0, 40, 0, 10}), 2.0f);
  // All recombinant: exactly 1.
  EXPECT_FLOAT_EQ(Closed(3, 11, {0, 0, 20, 0, 0, 0, 20, 0, 0}), 1.0f);
  // Every line recombinant: R = 1, r = 0.5 / 0, infinite.
  EXPECT_TRUE(std::isinf(Closed(4, 11, {0, 0, 50, 0, 0, 0, 50, 0, 0})));
}

}  // namespace
}  // namespace gae
