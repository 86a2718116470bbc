#include "report/segregation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace gae {
namespace {

std::string Letters(int a, int h, int b, int d, int r, int x) {
  return std::string(a, 'A') + std::string(h, 'H') + std::string(b, 'B') + std::string(d, 'D') +
         std::string(r, 'R') + std::string(x, 'X');
}

// The upper tail of the chi-square distribution in closed form: exp(-x/2) for two degrees of
// freedom, erfc(sqrt(x/2)) for one.
double UpperTail(double x, int df) { return df == 2 ? std::exp(-x / 2) : std::erfc(std::sqrt(x / 2)); }

TEST(Segregation, PartialScoresFoldByPopulation) {
  const std::string g = Letters(1, 2, 3, 4, 5, 6);
  SegregationCounts c = CountSegregation(1, g.data(), g.size());  // R is the heterozygote
  EXPECT_EQ(c.n2, 1 + 4);
  EXPECT_EQ(c.n1, 2 + 5);
  EXPECT_EQ(c.n0, 3);
  EXPECT_EQ(c.nx, 6);
  c = CountSegregation(10, g.data(), g.size());  // D is the heterozygote
  EXPECT_EQ(c.n2, 1);
  EXPECT_EQ(c.n1, 2 + 4);
  EXPECT_EQ(c.n0, 3 + 5);
  c = CountSegregation(7, g.data(), g.size());
  EXPECT_EQ(c.n2, 1 + 4);
  EXPECT_EQ(c.n1, 2);
  EXPECT_EQ(c.n0, 3 + 5);
}

struct Case {
  int type, marker_class, a, h, b, d, r, x;
  double chi;  // worked out by hand from the classes the population tests
  int df;
};

TEST(Segregation, ChiSquareAndItsProbabilityByPopulationAndMarkerClass) {
  const Case cases[] = {
      // Backcross to P1: A against H, 1:1. (6-5)^2/5 twice.
      {1, 1, 6, 4, 0, 0, 0, 3, 0.4, 1},
      // Backcross to P2: H against B.
      {2, 1, 0, 7, 13, 0, 0, 0, (7 - 10.0) * (7 - 10.0) / 10 * 2, 1},
      // Doubled haploids: A against B, the heterozygote never counts.
      {3, 1, 30, 5, 10, 0, 0, 0, 2 * 100.0 / 20, 1},
      // P1BC1RIL: 3:1.
      {5, 1, 15, 0, 5, 0, 0, 0, 0.0, 1},
      // F2 co-dominant 1:2:1 with two degrees of freedom: 25 / 25 + 25 / 50 + 0.
      {7, 1, 30, 45, 25, 0, 0, 4, 25.0 / 25 + 25.0 / 50, 2},
      // F2 dominant: D and H together against B, 3:1; here 66 vs 34 of 100.
      {7, 12, 0, 0, 34, 66, 0, 0, 81.0 / 75 + 81.0 / 25, 1},
      // F2 recessive: A against R and H together, 1:3; 20 vs 80 of 100.
      {7, 10, 20, 0, 0, 0, 80, 0, 25.0 / 25 + 25.0 / 75, 1},
      // F3 co-dominant 3:2:3 over 8 individuals.
      {8, 1, 3, 2, 3, 0, 0, 0, 0.0, 2},
      // P1BC2F2 co-dominant 13:2:1 over 16: observed 10, 4, 2.
      {15, 1, 10, 4, 2, 0, 0, 0, 9.0 / 13 + 4.0 / 2 + 1.0 / 1, 2},
      // P2BC2DH: 1:7.
      {20, 1, 2, 0, 14, 0, 0, 0, 0.0, 1},
      {4, 1, 12, 0, 8, 0, 0, 2, 0.4 + 0.4, 1},                 // RIL 1:1
      {6, 1, 5, 0, 15, 0, 0, 0, 0.0, 1},                       // P2BC1RIL 1:3
      {9, 1, 28, 12, 0, 0, 0, 0, 4.0 / 30 + 4.0 / 10, 1},      // P1BC2F1 A:H 3:1
      {10, 1, 0, 10, 30, 0, 0, 0, 0.0, 1},                     // P2BC2F1 H:B 1:3
      {11, 1, 14, 0, 2, 0, 0, 0, 0.0, 1},                      // P1BC2RIL 7:1
      {12, 1, 4, 0, 12, 0, 0, 0, 4.0 / 2 + 4.0 / 14, 1},       // P2BC2RIL 1:7
      {13, 1, 10, 4, 2, 0, 0, 0, 0.0, 2},                      // P1BC1F2 5:2:1
      {13, 12, 0, 0, 4, 12, 0, 0, 4.0 / 14 + 4.0 / 2, 1},      // D against B, 7:1
      {13, 10, 10, 0, 0, 0, 6, 0, 0.0, 1},                     // A against R, 5:3
      {14, 1, 2, 4, 10, 0, 0, 0, 0.0, 2},                      // P2BC1F2 1:2:5
      {16, 1, 1, 2, 13, 0, 0, 0, 0.0, 2},                      // P2BC2F2 1:2:13
      {17, 1, 15, 0, 5, 0, 0, 0, 0.0, 1},                      // P1BC1DH 3:1
      {18, 1, 6, 0, 14, 0, 0, 0, 1.0 / 5 + 1.0 / 15, 1},       // P2BC1DH 1:3
      {19, 1, 16, 0, 0, 0, 0, 0, 4.0 / 14 + 4.0 / 2, 1},       // P1BC2DH 7:1
  };
  for (const Case& c : cases) {
    const std::string g = Letters(c.a, c.h, c.b, c.d, c.r, c.x);
    const SegregationTest t = SegregationChiSquare(c.type, c.marker_class, g.data(), g.size());
    ASSERT_TRUE(t.tested);
    EXPECT_NEAR(t.chi_square, c.chi, 1e-4) << c.type << "/" << c.marker_class;
    EXPECT_NEAR(t.probability, UpperTail(c.chi, c.df), 1e-5) << c.type << "/" << c.marker_class;
  }
}

TEST(Segregation, EmptyClassesGiveNotANumberAndAZeroProbability) {
  // A backcross marker with neither the P1 class nor the heterozygote: nothing to test.
  const std::string g = Letters(0, 0, 0, 0, 0, 5);
  const SegregationTest t = SegregationChiSquare(1, 1, g.data(), g.size());
  EXPECT_TRUE(std::isnan(t.chi_square));
  EXPECT_EQ(t.probability, 0.0f);
  // A strongly distorted marker has a probability that prints as 0.0000.
  const std::string skewed = Letters(500, 0, 20, 0, 0, 0);
  EXPECT_LT(SegregationChiSquare(4, 1, skewed.data(), skewed.size()).probability, 0.00005f);
  // A class the population cannot test leaves the test undone.
  EXPECT_FALSE(SegregationChiSquare(7, 3, skewed.data(), skewed.size()).tested);
}

}  // namespace
}  // namespace gae
