// The last step of every exact two-point estimate: from a bracket known to hold a maximum of
// a smooth log-likelihood, the maximum itself. Newton's step on the score is taken while it
// stays inside the bracket and the curvature says maximum; otherwise the bracket is halved on
// the sign of the score, so the search can neither leave the bracket nor stall.
#pragma once

#include <array>
#include <cmath>

namespace gae {

// Every exact search first scans r in [0, 1/2] on the grid r_j = 1/2 (j / J)^2, j = 0..J,
// dense near 0 where the likelihood is sharpest.
inline constexpr int kExactGridSteps = 32;
inline constexpr int kExactGridPoints = kExactGridSteps + 1;
double ExactGridPoint(int j);
using ExactGrid = std::array<float, kExactGridPoints>;

// The true maximum can sit a little above its nearest grid point, by at most about n / (4 J^2)
// in natural log for n individuals on this grid; grid points within this margin of the best of
// all are refined as well.
float ExactGridMargin(double individuals);

// The grid points worth refining, into `out`: the best, and the best other strict local
// maximum away from it, each only when within the margin of `overall_best` (the best of all
// grids that compete, such as the two phases of a pair). Returns how many.
int ExactGridCandidates(const ExactGrid& grid, float overall_best, float margin, int out[2]);

// The maximum near grid point j: its neighbours bracket it.
template <class Derivatives>
double RefineMaximum(const Derivatives& derivatives, double lo, double hi, double x0,
                     bool lo_is_end, bool hi_is_end);
template <class Derivatives>
double RefineGridPoint(const Derivatives& derivatives, int j) {
  const double lo = ExactGridPoint(j > 0 ? j - 1 : 0);
  const double hi = ExactGridPoint(j < kExactGridSteps ? j + 1 : kExactGridSteps);
  return RefineMaximum(derivatives, lo, hi, ExactGridPoint(j), j <= 1, j >= kExactGridSteps - 1);
}

// `derivatives(r, g, h)` gives the first and second derivative of the log-likelihood at r.
// [lo, hi] brackets a maximum and x0 lies inside it. An end of the bracket that is the end of
// the whole range is the answer when the score points out of the range there.
template <class Derivatives>
double RefineMaximum(const Derivatives& derivatives, double lo, double hi, double x0,
                     bool lo_is_end, bool hi_is_end) {
  constexpr double kEdge = 1e-9;
  double g = 0.0, h = 0.0;
  if (lo_is_end) {
    derivatives(lo + kEdge, g, h);
    if (!(g > 0.0)) return lo;
  }
  if (hi_is_end) {
    derivatives(hi, g, h);
    if (g >= 0.0) return hi;
  }
  double a = lo, b = hi, x = x0 > lo && x0 < hi ? x0 : 0.5 * (lo + hi);
  for (int round = 0; round < 60; ++round) {
    derivatives(x, g, h);
    if (std::isnan(g)) return x;
    if (g > 0.0) a = x;
    else b = x;
    double next = h < 0.0 ? x - g / h : 0.5 * (a + b);
    if (!(next > a && next < b)) next = 0.5 * (a + b);
    if (std::fabs(next - x) < 1e-9 || b - a < 1e-9) return next;
    x = next;
  }
  return x;
}

}  // namespace gae
