// The likelihood models: class probabilities, and analytic derivatives against numerical ones.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "twopoint/two_point_cases.h"
#include "twopoint/two_point_model.h"

namespace gae {
namespace {

using testing::AllTypeCodes;
using testing::Name;
using testing::TypeCode;

// The cells each code occupies: a dominant marker fills rows (columns) 2 and 3, a recessive
// one rows 1 and 2; lines show the four homozygous corners, backcrosses one quarter.
std::set<int> CellsInUse(const TypeCode& tc) {
  switch (tc.type) {
    case 1:
    case 9: return {1, 2, 4, 5};
    case 2:
    case 10: return {5, 6, 8, 9};
    case 7:
    case 8:
    case 13:
    case 14:
    case 15:
    case 16: break;
    default: return {1, 3, 7, 9};
  }
  switch (tc.code) {
    case 11: return {1, 2, 3, 4, 5, 6, 7, 8, 9};
    case 112:
    case 121: return {2, 3, 5, 6, 8, 9};
    case 110:
    case 101: return {1, 2, 4, 5, 7, 8};
    case 1212: return {5, 6, 8, 9};
    case 1210:
    case 1012: return {4, 5, 7, 8};
    default: return {1, 2, 4, 5};
  }
}

// Counts on the code's cells that no model would predict, so that every term of g and h works.
void UnevenCells(const TypeCode& tc, float cells[9]) {
  const std::set<int> used = CellsInUse(tc);
  for (int k = 1; k <= 9; ++k) cells[k - 1] = used.count(k) ? static_cast<float>(5 + (7 * k) % 13) : 0.0f;
}

double LnL(const TypeCode& tc, const float cells[9], double r) {
  double p[9];
  testing::Probabilities(tc, r, p);
  double sum = 0;
  for (int k = 0; k < 9; ++k)
    if (p[k] > 0) sum += cells[k] * std::log(p[k]);  // the code's cells
  return sum;
}

// The three types whose h is defined by its own expression rather than the exact derivative.
bool StatedH(const TypeCode& tc) {
  return (tc.type == 8 && (tc.code == 1210 || tc.code == 1012)) || tc.type == 10 ||
         tc.type == 11 || tc.type == 12;
}

TEST(TwoPointModel, ProbabilitiesSumToOneOnTheCodesCellsOnly) {
  for (const TypeCode& tc : AllTypeCodes()) {
    const std::set<int> used = CellsInUse(tc);
    for (float r : {0.0f, 0.05f, 0.25f, 0.5f}) {
      float p[9];
      for (float& v : p) v = -7.0f;  // untouched cells keep this
      const float cells[9] = {};
      TwoPointModel<float>(tc.type, tc.code, cells, r, p, nullptr, nullptr);
      float sum = 0;
      for (int k = 1; k <= 9; ++k) {
        if (used.count(k)) {
          EXPECT_GE(p[k - 1], 0.0f) << Name(tc) << " cell " << k << " r " << r;
          sum += p[k - 1];
        } else {
          EXPECT_EQ(p[k - 1], -7.0f) << Name(tc) << " cell " << k << " written";
        }
      }
      EXPECT_NEAR(sum, 1.0f, 2e-7f) << Name(tc) << " r " << r;
    }
    // Free recombination has no preferred phase: at r = 1/2 the table is the product of the
    // two markers' own segregation ratios.
    double p[9];
    testing::Probabilities(tc, 0.5, p);
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        const double row = p[3 * i] + p[3 * i + 1] + p[3 * i + 2];
        const double col = p[j] + p[3 + j] + p[6 + j];
        EXPECT_NEAR(p[3 * i + j], row * col, 1e-12) << Name(tc) << " cell " << 3 * i + j + 1;
      }
  }
}

TEST(TwoPointModel, ProbabilitiesStayValidOverTheWholeRange) {
  // The iteration may visit any r in 0..1.
  for (const TypeCode& tc : AllTypeCodes()) {
    for (int step = 0; step <= 100; ++step) {
      double p[9];
      testing::Probabilities(tc, step / 100.0, p);
      double sum = 0;
      for (double v : p) {
        EXPECT_GE(v, -1e-15) << Name(tc) << " r " << step / 100.0;
        sum += v;
      }
      EXPECT_NEAR(sum, 1.0, 1e-12) << Name(tc);
    }
  }
}

// First and second derivatives by five-point central differences, accurate to O(d^4).
struct Numerical {
  double first, second;
};
template <class F>
Numerical Differentiate(F f, double r) {
  const double d = 1e-3;
  const double m2 = f(r - 2 * d), m1 = f(r - d), z = f(r), p1 = f(r + d), p2 = f(r + 2 * d);
  return {(m2 - 8 * m1 + 8 * p1 - p2) / (12 * d), (-m2 + 16 * m1 - 30 * z + 16 * p1 - p2) / (12 * d * d)};
}

TEST(TwoPointModel, DerivativesMatchNumericalDerivativesOfLnL) {
  for (const TypeCode& tc : AllTypeCodes()) {
    float cells[9];
    UnevenCells(tc, cells);
    for (double r : {0.07, 0.23, 0.41, 0.62}) {
      double g = 0, h = 0;
      TwoPointModel<double>(tc.type, tc.code, cells, r, nullptr, &g, &h);
      const Numerical num = Differentiate([&](double x) { return LnL(tc, cells, x); }, r);
      const double g_num = num.first, h_num = num.second;
      EXPECT_NEAR(g, g_num, 1e-6 * (1 + std::fabs(g_num))) << Name(tc) << " r " << r;
      if (!StatedH(tc)) {
        EXPECT_NEAR(h, h_num, 1e-5 * (1 + std::fabs(h_num))) << Name(tc) << " r " << r;
      }

      // The float routine gives the same values to single precision.
      float gf = 0, hf = 0;
      TwoPointModel<float>(tc.type, tc.code, cells, static_cast<float>(r), nullptr, &gf, &hf);
      EXPECT_NEAR(gf, g, 1e-3 * (1 + std::fabs(g))) << Name(tc);
      EXPECT_NEAR(hf, h, 1e-3 * (1 + std::fabs(h))) << Name(tc);
    }
  }
}

template <class F>
double LnSecond(F f, double r) {
  return Differentiate([&](double x) { return std::log(f(x)); }, r).second;
}

TEST(TwoPointModel, StatedSecondDerivativesOfTheThreeExceptions) {
  const float cells[9] = {11, 7, 13, 6, 17, 9, 8, 5, 19};
  const double n[10] = {0, 11, 7, 13, 6, 17, 9, 8, 5, 19};  // 1-based copy
  for (double r : {0.06, 0.2, 0.37}) {
    const double c = 1 - r, w = 1 + 2 * r;

    // F3 with a dominant and a recessive marker: the first power of Q' where the exact
    // derivative has its square; the cell-7 term exact.
    const double q = r + r * r - 2 * r * r * r + r * r * r * r;
    const double q1 = 1 + 2 * r - 6 * r * r + 4 * r * r * r;
    const double q2 = 2 - 12 * r + 12 * r * r;
    const double f3_term7 = n[7] * LnSecond([](double x) { return x / 4 + x * x * (1 - x) * (1 - x) / 4; }, r);
    const double f3_h = (n[4] + n[8]) * (-q1 - q2 * (1.5 - q)) / ((1.5 - q) * (1.5 - q)) +
                        n[5] * (q2 * (1 + q) - q1) / ((1 + q) * (1 + q)) + f3_term7;
    for (int code : {1210, 1012}) {
      double h = 0;
      TwoPointModel<double>(8, code, cells, r, nullptr, nullptr, &h);
      EXPECT_NEAR(h, f3_h, 1e-5 * std::fabs(f3_h)) << "F3 r " << r;
    }

    // Second backcross to P2: type 9's expression in u = c^2 with N5 and N9 in place of N1, N5.
    const double u = c * c;
    const double bc2_h = 4 * u * (-n[5] / ((u + 2) * (u + 2)) - (n[6] + n[8]) / ((u - 1) * (u - 1)) - n[9] / (u * u)) +
                         2 * (n[5] / (u + 2) + (n[6] + n[8]) / (u - 1) + n[9] / u);
    double h10 = 0;
    TwoPointModel<double>(10, 11, cells, r, nullptr, nullptr, &h10);
    EXPECT_NEAR(h10, bc2_h, 1e-9 * std::fabs(bc2_h)) << "P2BC2F1 r " << r;

    // Lines from a second backcross: y = c^2 / W with the factors of R = 2r / W.
    const double y = c * c / w;
    for (int type : {11, 12}) {
      const double big_u = type == 11 ? n[1] : n[9], big_v = type == 11 ? n[9] : n[1];
      const double n37 = n[3] + n[7];
      const double expected = (4 / std::pow(w, 4)) * (-big_u / ((y + 6) * (y + 6)) - n37 / ((y - 1) * (y - 1)) - big_v / (y * y)) -
                              (8 / std::pow(w, 3)) * (big_u / (y + 6) + n37 / (y - 1) + big_v / y);
      double h = 0;
      TwoPointModel<double>(type, 11, cells, r, nullptr, nullptr, &h);
      EXPECT_NEAR(h, expected, 1e-9 * std::fabs(expected)) << "type " << type << " r " << r;
    }
  }
  // They are not the exact second derivatives: a "correction" would change standard errors.
  const TypeCode cases[] = {{8, 1210}, {10, 11}, {11, 11}, {12, 11}};
  for (const TypeCode& tc : cases) {
    const double r = 0.2;
    double h = 0;
    TwoPointModel<double>(tc.type, tc.code, cells, r, nullptr, nullptr, &h);
    const double h_num = Differentiate([&](double x) { return LnL(tc, cells, x); }, r).second;
    EXPECT_GT(std::fabs(h - h_num), 1e-3 * std::fabs(h_num)) << Name(tc);
  }
}

TEST(TwoPointModel, BordersAndUnknownInputs) {
  // At r = 0 a recombinant cell has probability 0: h is not finite even when its count is 0.
  const float cells[9] = {20, 0, 0, 0, 0, 0, 0, 0, 20};
  float h = 0;
  TwoPointModel<float>(3, 11, cells, 0.0f, nullptr, nullptr, &h);
  EXPECT_FALSE(std::isfinite(h));

  // A type or code no model knows: probabilities untouched, derivatives NaN.
  for (const TypeCode tc : {TypeCode{21, 11}, TypeCode{0, 11}, TypeCode{7, 2020}, TypeCode{15, 1111}}) {
    float p[9] = {};
    float g = 0;
    TwoPointModel<float>(tc.type, tc.code, cells, 0.2f, p, &g, &h);
    for (float v : p) EXPECT_EQ(v, 0.0f) << Name(tc);
    EXPECT_TRUE(std::isnan(g)) << Name(tc);
    EXPECT_TRUE(std::isnan(h)) << Name(tc);
  }
}

TEST(TwoPointModel, BackcrossToP2IsTheMirrorOfTheBackcrossToP1) {
  // Exchanging the parents turns cell i into cell 10 - i and a dominant marker into a
  // recessive one.
  const int pairs[][2] = {{1, 2}, {9, 10}, {5, 6}, {11, 12}, {17, 18}, {19, 20}, {13, 14}, {15, 16}};
  const int crossed[][2] = {{11, 11}, {112, 110}, {110, 112}, {1212, 1010}, {1010, 1212}};
  for (const auto& pair : pairs) {
    for (const auto& codes : crossed) {
      if (!testing::MultiCodeType(pair[0]) && codes[0] != 11) continue;
      double p1[9], p2[9];
      testing::Probabilities({pair[0], codes[0]}, 0.17, p1);
      testing::Probabilities({pair[1], codes[1]}, 0.17, p2);
      for (int i = 1; i <= 9; ++i) EXPECT_DOUBLE_EQ(p2[i - 1], p1[9 - i]) << pair[1] << " cell " << i;
    }
  }
  // A dominant-recessive pair has no mirror image in its cells: 4 and 8 change places.
  for (const auto& pair : {std::pair{13, 14}, std::pair{15, 16}}) {
    double p1[9], p2[9];
    testing::Probabilities({pair.first, 1210}, 0.17, p1);
    testing::Probabilities({pair.second, 1210}, 0.17, p2);
    EXPECT_DOUBLE_EQ(p2[3], p1[7]);
    EXPECT_DOUBLE_EQ(p2[7], p1[3]);
    EXPECT_DOUBLE_EQ(p2[4], p1[4]);
    EXPECT_DOUBLE_EQ(p2[6], p1[6]);
  }
}

}  // namespace
}  // namespace gae
