#include "vocabulary/fixed_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace gae::fmt {
namespace {

TEST(FixedFormat, IntegerFieldsJustifyAndOverflowToAsterisks) {
  EXPECT_EQ(I(21, 8), "      21");
  EXPECT_EQ(I(-7, 4), "  -7");
  EXPECT_EQ(I(12345678, 8), "12345678");
  EXPECT_EQ(I(123456789, 8), "********");
  EXPECT_EQ(I(-1234567, 8), "-1234567");
  EXPECT_EQ(I(-12345678, 8), "********");
  // Message values: I8, left-adjusted, trailing blanks dropped.
  EXPECT_EQ(IntValue(21), "21");
  EXPECT_EQ(IntValue(-3), "-3");
  EXPECT_EQ(IntValue(123456789), "********");
}

TEST(FixedFormat, RealFieldsRoundHalfAwayFromZeroAndDropTheOptionalZero) {
  EXPECT_EQ(F(0.5, 8, 4), "  0.5000");
  EXPECT_EQ(F(1000.0, 12, 4), "   1000.0000");
  EXPECT_EQ(F(-12.34567, 10, 2), "    -12.35");
  EXPECT_EQ(F(0.125, 5, 2), " 0.13");   // 0.125 is exact in binary: a true tie
  EXPECT_EQ(F(-0.125, 6, 2), " -0.13");
  EXPECT_EQ(F(9.9996, 7, 3), " 10.000");
  EXPECT_EQ(F(0.5, 5, 4), ".5000");     // no room for the leading zero
  EXPECT_EQ(F(-0.5, 6, 4), "-.5000");
  EXPECT_EQ(F(0.5, 4, 4), "****");
  EXPECT_EQ(F(12345.678, 8, 2), "12345.68");
  EXPECT_EQ(F(123456.7, 8, 2), "********");
  EXPECT_EQ(F(-0.00001, 8, 4), "  0.0000");
  EXPECT_EQ(F(2.5, 4, 0), "  3.");
  // 0.15f lies slightly above 0.15: the apparent tie is decided on the true binary value.
  EXPECT_EQ(F(static_cast<double>(0.15f), 6, 1), "   0.2");
}

TEST(FixedFormat, NonFiniteValuesAsARuntimeWritesThem) {
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(F(std::nan(""), 8, 4), "     NaN");
  EXPECT_EQ(F(std::nan(""), 2, 1), "**");
  EXPECT_EQ(F(inf, 12, 4), "    Infinity");
  EXPECT_EQ(F(-inf, 12, 4), "   -Infinity");
  EXPECT_EQ(F(inf, 6, 2), "   Inf");
  EXPECT_EQ(F(-inf, 8, 2), "    -Inf");
  EXPECT_EQ(F(-inf, 3, 1), "***");
}

TEST(FixedFormat, RealFieldIsWithinHalfAUnitOfTheValue) {
  std::mt19937 rng(5);
  std::uniform_real_distribution<double> value(-5000.0, 5000.0);
  for (int k = 0; k < 2000; ++k) {
    const double v = value(rng);
    const int d = k % 5;
    const std::string field = F(v, 14, d);
    ASSERT_EQ(field.size(), 14u);
    const double back = std::strtod(field.c_str(), nullptr);
    EXPECT_LE(std::fabs(back - v), 0.5 * std::pow(10.0, -d) + 1e-9) << field << " for " << v;
  }
}

}  // namespace
}  // namespace gae::fmt
