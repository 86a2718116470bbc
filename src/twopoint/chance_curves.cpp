#include "twopoint/chance_curves.h"

#include <cmath>
#include <limits>

#include "twopoint/two_point_model.h"

namespace gae {

namespace {

constexpr float kImpossible = -1e30f;
constexpr int kFitPoints = kChanceDegree + 1;

// The class probability of `cell` at r.
double ChanceAt(int type, int code, int cell, double r) {
  const float none[9] = {};
  double p[9] = {};
  TwoPointModel<double>(type, code, none, r, p, nullptr, nullptr);
  return p[cell];
}

// The interpolating polynomial through (x_t, y_t) by Newton's divided differences, expanded
// to coefficients.
std::array<double, kFitPoints> Interpolate(const double (&x)[kFitPoints], const double (&y)[kFitPoints]) {
  double d[kFitPoints];
  for (int t = 0; t < kFitPoints; ++t) d[t] = y[t];
  for (int level = 1; level < kFitPoints; ++level)
    for (int t = kFitPoints - 1; t >= level; --t) d[t] = (d[t] - d[t - 1]) / (x[t] - x[t - level]);
  std::array<double, kFitPoints> c{};
  for (int t = kFitPoints - 1; t >= 0; --t) {
    // c <- c * (r - x_t) + d_t
    for (int k = kFitPoints - 1; k >= 1; --k) c[k] = c[k - 1] - x[t] * c[k];
    c[0] = d[t] - x[t] * c[0];
  }
  return c;
}

double Horner(const std::array<double, kFitPoints>& c, int degree, double r) {
  double v = 0.0;
  for (int k = degree; k >= 0; --k) v = v * r + c[k];
  return v;
}

}  // namespace

ChanceCurves CurvesOf(int type, const ClassPooling& pooling) {
  ChanceCurves curves;
  curves.chances = pooling.chances;
  curves.polynomial = true;
  for (int c = 0; c < pooling.chances; ++c) {
    const int cell = pooling.stands_for[c];
    double x[kFitPoints], y[kFitPoints];
    for (int t = 0; t < kFitPoints; ++t) {
      x[t] = 0.5 * t / kChanceDegree;
      y[t] = ChanceAt(type, pooling.pair_code, cell, x[t]);
    }
    curves.coefficients[c] = Interpolate(x, y);
    // Terms that vanish but for rounding are dropped: F2 chances are quadratics.
    int degree = kChanceDegree;
    while (degree > 0 && std::fabs(curves.coefficients[c][degree]) < 1e-11) curves.coefficients[c][degree--] = 0.0;
    curves.degree[c] = degree;
    for (int j = 0; j < kExactGridPoints; ++j) {
      const double r = ExactGridPoint(j), p = ChanceAt(type, pooling.pair_code, cell, r);
      if (std::fabs(Horner(curves.coefficients[c], curves.degree[c], r) - p) > 1e-12) curves.polynomial = false;
      curves.log_grid[c][j] = p > 0.0 ? static_cast<float>(std::log(p)) : kImpossible;
    }
    const double half = ChanceAt(type, pooling.pair_code, cell, 0.5);
    curves.log_half[c] = half > 0.0 ? std::log(half) : 0.0;
  }
  return curves;
}

ExactGrid ChancePhase::Grid() const {
  ExactGrid sum{};
  for (int c = 0; c < curves->chances; ++c) {
    if (counts[c] == 0.0f) continue;
    const float n = counts[c];
    for (int j = 0; j < kExactGridPoints; ++j) sum[j] += n * curves->log_grid[c][j];
  }
  return sum;
}

void ChancePhase::Derivatives(double r, double& g, double& h) const {
  g = h = 0.0;
  for (int c = 0; c < curves->chances; ++c) {
    if (counts[c] == 0.0f) continue;
    const auto& k = curves->coefficients[c];
    double p = 0.0, d1 = 0.0, d2 = 0.0;
    for (int e = curves->degree[c]; e >= 0; --e) {
      d2 = d2 * r + 2.0 * d1;
      d1 = d1 * r + p;
      p = p * r + k[e];
    }
    const double t = d1 / p;
    g += counts[c] * t;
    h += counts[c] * (d2 / p - t * t);
  }
}

double ChancePhase::LogLik(double r) const {
  double sum = 0.0;
  for (int c = 0; c < curves->chances; ++c) {
    if (counts[c] == 0.0f) continue;
    const double p = Horner(curves->coefficients[c], curves->degree[c], r);
    if (!(p > 0.0)) return -std::numeric_limits<double>::infinity();
    sum += counts[c] * std::log(p);
  }
  return sum;
}

double ChancePhase::HalfLogLik() const {
  double sum = 0.0;
  for (int c = 0; c < curves->chances; ++c)
    if (counts[c] != 0.0f) sum += counts[c] * curves->log_half[c];
  return sum;
}

}  // namespace gae
