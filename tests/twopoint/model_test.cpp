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
  if (tc.type == 1 || tc.type == 9) return {1, 2, 4, 5};
  if (tc.type == 2 || tc.type == 10) return {5, 6, 8, 9};
  if (!testing::MultiCodeType(tc.type)) return {1, 3, 7, 9};
  switch (tc.code) {
    case 11: return {1, 2, 3, 4, 5, 6, 7, 8, 9};
    case 112: case 121: return {2, 3, 5, 6, 8, 9};
    case 110: case 101: return {1, 2, 4, 5, 7, 8};
    case 1212: return {5, 6, 8, 9};
    case 1210: case 1012: return {4, 5, 7, 8};
    default: return {1, 2, 4, 5};
  }
}

double LnL(const TypeCode& tc, const float cells[9], double r) {
  double p[9];
  testing::Probabilities(tc, r, p);
  double sum = 0;
  for (int k = 0; k < 9; ++k)
    if (p[k] > 0) sum += cells[k] * std::log(p[k]);  // the code's cells
  return sum;
}

// First and second derivatives by five-point central differences, accurate to O(d^4).
template <class F>
std::pair<double, double> Differentiate(F f, double r) {
  const double d = 1e-3;
  const double m2 = f(r - 2 * d), m1 = f(r - d), z = f(r), p1 = f(r + d), p2 = f(r + 2 * d);
  return {(m2 - 8 * m1 + 8 * p1 - p2) / (12 * d),
          (-m2 + 16 * m1 - 30 * z + 16 * p1 - p2) / (12 * d * d)};
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
        if (used.count(k)) sum += p[k - 1];
        else EXPECT_EQ(p[k - 1], -7.0f) << Name(tc) << " cell " << k << " written";
      }
      EXPECT_NEAR(sum, 1.0f, 2e-7f) << Name(tc) << " r " << r;
    }
    // The iteration may visit any r in 0..1: no probability may turn negative there.
    for (int step = 0; step <= 20; ++step) {
      double p[9];
      testing::Probabilities(tc, step / 20.0, p);
      for (double v : p) EXPECT_GE(v, -1e-15) << Name(tc) << " r " << step / 20.0;
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

TEST(TwoPointModel, DerivativesMatchNumericalDerivativesOfLnL) {
  for (const TypeCode& tc : AllTypeCodes()) {
    // Counts that no model would predict, so that every term of g and h works.
    const std::set<int> used = CellsInUse(tc);
    float cells[9];
    for (int k = 1; k <= 9; ++k) cells[k - 1] = used.count(k) ? 5.0f + (7 * k) % 13 : 0.0f;
    for (double r : {0.07, 0.23, 0.41, 0.62}) {
      double g = 0, h = 0;
      TwoPointModel<double>(tc.type, tc.code, cells, r, nullptr, &g, &h);
      const auto [g_num, h_num] = Differentiate([&](double x) { return LnL(tc, cells, x); }, r);
      EXPECT_NEAR(g, g_num, 1e-6 * (1 + std::fabs(g_num))) << Name(tc) << " r " << r;
      if (!StatedH(tc)) {
        EXPECT_NEAR(h, h_num, 1e-5 * (1 + std::fabs(h_num))) << Name(tc) << " r " << r;
      } else {
        // Not the exact derivative: a "correction" would change the standard errors.
        EXPECT_GT(std::fabs(h - h_num), 1e-4 * std::fabs(h_num)) << Name(tc) << " r " << r;
      }
      // The float routine gives the same values to single precision.
      float gf = 0, hf = 0;
      TwoPointModel<float>(tc.type, tc.code, cells, static_cast<float>(r), nullptr, &gf, &hf);
      EXPECT_NEAR(gf, g, 1e-3 * (1 + std::fabs(g))) << Name(tc);
      EXPECT_NEAR(hf, h, 1e-3 * (1 + std::fabs(h))) << Name(tc);
    }
  }
}

TEST(TwoPointModel, StatedSecondDerivativesOfTheThreeExceptions) {
  const float cells[9] = {11, 7, 13, 6, 17, 9, 8, 5, 19};
  const double n[10] = {0, 11, 7, 13, 6, 17, 9, 8, 5, 19};  // 1-based copy
  auto sq = [](double x) { return x * x; };
  for (double r : {0.06, 0.2, 0.37}) {
    const double c = 1 - r, w = 1 + 2 * r;

    // F3 with a dominant and a recessive marker: the first power of Q' where the exact
    // derivative has its square; the cell-7 term exact.
    const double q = r + r * r - 2 * r * r * r + r * r * r * r;
    const double q1 = 1 + 2 * r - 6 * r * r + 4 * r * r * r;
    const double q2 = 2 - 12 * r + 12 * r * r;
    auto ln_f = [](double x) { return std::log(x / 4 + x * x * (1 - x) * (1 - x) / 4); };
    const double f3_h = (n[4] + n[8]) * (-q1 - q2 * (1.5 - q)) / sq(1.5 - q) +
                        n[5] * (q2 * (1 + q) - q1) / sq(1 + q) +
                        n[7] * Differentiate(ln_f, r).second;
    for (int code : {1210, 1012}) {
      double h = 0;
      TwoPointModel<double>(8, code, cells, r, nullptr, nullptr, &h);
      EXPECT_NEAR(h, f3_h, 1e-5 * std::fabs(f3_h)) << "F3 r " << r;
    }

    // Second backcross to P2: type 9's expression in u = c^2 with N5 and N9 in place of N1, N5.
    const double u = c * c, n68 = n[6] + n[8];
    const double bc2_h = 4 * u * (-n[5] / sq(u + 2) - n68 / sq(u - 1) - n[9] / sq(u)) +
                         2 * (n[5] / (u + 2) + n68 / (u - 1) + n[9] / u);
    double h10 = 0;
    TwoPointModel<double>(10, 11, cells, r, nullptr, nullptr, &h10);
    EXPECT_NEAR(h10, bc2_h, 1e-9 * std::fabs(bc2_h)) << "P2BC2F1 r " << r;

    // Lines from a second backcross: y = c^2 / W with the factors of R = 2r / W.
    const double y = c * c / w, n37 = n[3] + n[7];
    for (int type : {11, 12}) {
      const double a = type == 11 ? n[1] : n[9], b = type == 11 ? n[9] : n[1];
      const double expected =
          (4 / std::pow(w, 4)) * (-a / sq(y + 6) - n37 / sq(y - 1) - b / sq(y)) -
          (8 / std::pow(w, 3)) * (a / (y + 6) + n37 / (y - 1) + b / y);
      double h = 0;
      TwoPointModel<double>(type, 11, cells, r, nullptr, nullptr, &h);
      EXPECT_NEAR(h, expected, 1e-9 * std::fabs(expected)) << "type " << type << " r " << r;
    }
  }
}

TEST(TwoPointModel, BackcrossToP2IsTheMirrorOfTheBackcrossToP1) {
  // Exchanging the parents turns cell i into cell 10 - i and a dominant marker into a
  // recessive one; a dominant-recessive pair has no mirror image in its cells, and there
  // cells 4 and 8 change places.
  const int pairs[][2] = {{1, 2},   {9, 10},  {5, 6},   {11, 12},
                          {17, 18}, {19, 20}, {13, 14}, {15, 16}};
  const int crossed[][2] = {{11, 11},     {112, 110},   {110, 112},
                            {1212, 1010}, {1010, 1212}, {1210, 1210}};
  for (const auto& pair : pairs) {
    for (const auto& codes : crossed) {
      if (!testing::MultiCodeType(pair[0]) && codes[0] != 11) continue;
      double p1[9], p2[9];
      testing::Probabilities({pair[0], codes[0]}, 0.17, p1);
      testing::Probabilities({pair[1], codes[1]}, 0.17, p2);
      for (int i = 1; i <= 9; ++i) {
        const int partner = codes[0] != 1210 ? 10 - i : i == 4 ? 8 : i == 8 ? 4 : i;
        EXPECT_DOUBLE_EQ(p2[i - 1], p1[partner - 1]) << pair[1] << " cell " << i;
      }
    }
  }
}

}  // namespace
}  // namespace gae
