// A brute-force maximum of a function of one variable, for checking the estimators' searches:
// a scan on a fine even grid, then golden-section search between the neighbours of the best
// grid point. Slow and simple on purpose.
#pragma once

#include <cmath>
#include <functional>

namespace gae::testing {

struct BruteMaximum {
  double x = 0.0;
  double value = -INFINITY;
};

inline BruteMaximum BruteForceMaximum(const std::function<double(double)>& f, double lo, double hi,
                                      int steps = 2000) {
  BruteMaximum best;
  int best_k = 0;
  for (int k = 0; k <= steps; ++k) {
    const double x = lo + (hi - lo) * k / steps;
    const double v = f(x);
    if (v > best.value) best = {x, v}, best_k = k;
  }
  double a = lo + (hi - lo) * std::max(0, best_k - 1) / steps;
  double b = lo + (hi - lo) * std::min(steps, best_k + 1) / steps;
  const double g = (std::sqrt(5.0) - 1) / 2;
  for (int it = 0; it < 80; ++it) {
    const double m1 = b - g * (b - a), m2 = a + g * (b - a);
    if (f(m1) < f(m2)) a = m1;
    else b = m2;
  }
  const double x = (a + b) / 2, v = f(x);
  if (v > best.value) best = {x, v};
  return best;
}

}  // namespace gae::testing
