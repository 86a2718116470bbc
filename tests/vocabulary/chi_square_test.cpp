// The chi-square distribution function against its closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "vocabulary/chi_square.h"

namespace gae {
namespace {

// Closed forms: 1 degree of freedom is erf(sqrt(x/2)); each further two degrees subtract
// (x/2)^(k/2) e^(-x/2) / Gamma(k/2 + 1), starting from 1 - e^(-x/2) for 2 degrees.
double Reference(double x, int df) {
  const double h = x / 2;
  double cdf = df % 2 == 1 ? std::erf(std::sqrt(h)) : 1 - std::exp(-h);
  for (int k = df % 2 == 1 ? 1 : 2; k < df; k += 2)
    cdf -= std::exp(k / 2.0 * std::log(h) - h - std::lgamma(k / 2.0 + 1));
  return cdf;
}

TEST(ChiSquare, SixDigitsOverTheWholeRange) {
  for (int df = 1; df <= 10; ++df) {
    for (double x = 0.001; x <= 100.0; x *= 1.37) {
      const float f = CHIDF(static_cast<float>(x), static_cast<float>(df));
      EXPECT_NEAR(f, Reference(static_cast<float>(x), df), 1e-6) << "x " << x << " df " << df;
    }
  }
}

TEST(ChiSquare, OutsideTheSupport) {
  // No mass below 0: a negative statistic (a negative LOD) has probability 0 below it.
  EXPECT_EQ(CHIDF(-2.5f, 1.0f), 0.0f);
  EXPECT_EQ(CHIDF(0.0f, 1.0f), 0.0f);
  EXPECT_EQ(CHIDF(std::numeric_limits<float>::infinity(), 3.0f), 1.0f);
  EXPECT_TRUE(std::isnan(CHIDF(std::numeric_limits<float>::quiet_NaN(), 1.0f)));
  EXPECT_TRUE(std::isnan(CHIDF(1.0f, 0.0f)));
  EXPECT_TRUE(std::isnan(CHIDF(1.0f, -1.0f)));
}

}  // namespace
}  // namespace gae
