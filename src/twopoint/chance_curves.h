// The chances of a phase's pooled classes as polynomials in r. In F2, F3 and backcross-F2
// designs every class probability is a polynomial of low degree in r, so the score and the
// curvature of the likelihood come from a few Horner steps instead of the model's nine
// quotients, and each log-likelihood takes one logarithm per chance.
#pragma once

#include <array>

#include "twopoint/exact_search.h"
#include "twopoint/pooled_exact_pairs.h"

namespace gae {

inline constexpr int kChanceDegree = 6;

struct ChanceCurves {
  bool polynomial = false;  // every chance fits a polynomial of degree kChanceDegree at most
  int chances = 0;
  std::array<std::array<double, kChanceDegree + 1>, 9> coefficients{};  // constant term first
  std::array<int, 9> degree{};
  std::array<ExactGrid, 9> log_grid{};   // ln of each chance at the grid points
  std::array<double, 9> log_half{};      // and at r = 1/2 (0 where it cannot occur)
};
ChanceCurves CurvesOf(int population_type, const ClassPooling& pooling);

// One phase of a pair from its counts by chance (entry c for chance c).
struct ChancePhase {
  const ChanceCurves* curves;
  float counts[9];
  ExactGrid Grid() const;
  void Derivatives(double r, double& g, double& h) const;
  double LogLik(double r) const;
  double HalfLogLik() const;
};

}  // namespace gae
