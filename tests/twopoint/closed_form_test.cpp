// The closed forms leave the iterated pairs to Newton and clamp nothing. Their values are
// checked by the recovery of expected tables of every population type (recovery_test).
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
