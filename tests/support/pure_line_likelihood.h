// The likelihood of pure lines written out from the breeding tables, for the tests of the
// pure-line estimators: founder-cell chances, the observed classes of two marker columns,
// a direct maximisation and lines drawn at a given frequency.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/bred_data_sets.h"

namespace gae::testing {

inline int Founders(int type) { return type <= 2 ? 4 : 8; }

// The chance of founder cell (a, b), 0-based, written out from the breeding tables in double
// precision. For type 2, r is the inbred line's frequency.
inline double CellChance(int type, double r, int a, int b) {
  const double c = 1.0 - r, w = 1.0 + 2.0 * r;
  const bool same = a == b, sisters = !same && a / 2 == b / 2;
  const bool half = !same && !sisters && Founders(type) == 8 && a / 4 == b / 4;
  switch (type) {
    case 1: return same ? c * c / 4 : sisters ? r * c / 4 : r / 8;
    case 2: return same ? 0.25 - 3 * r / 8 : r / 8;
    case 3: return same ? c * c * c / 8 : sisters ? r * c * c / 8 : half ? r * c / 16 : r / 32;
    default: return same ? c * c / (8 * w) : sisters ? r * c / (8 * w) : r / (16 * w);
  }
}

// log L of the observed letters: each observed pair of letters sums the founder cells that
// show them.
inline double ObservedLogLik(int type, double r, int32_t p1, int32_t p2, const std::string& x,
                      const std::string& y) {
  const int f = Founders(type);
  std::map<std::pair<char, char>, int> seen;
  for (std::size_t i = 0; i < x.size(); ++i) ++seen[{x[i], y[i]}];
  double ll = 0;
  for (const auto& [letters, count] : seen) {
    double p = 0;
    for (int a = 0; a < f; ++a)
      for (int b = 0; b < f; ++b)
        if (ObservedLetter(f, p1, a) == letters.first && ObservedLetter(f, p2, b) == letters.second)
          p += CellChance(type, r, a, b);
    ll += count * std::log(p);
  }
  return ll;
}

// Golden-section search over r in [0, 0.5] after a coarse scan that brackets the maximum.
inline double DirectMaximum(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y) {
  auto ll = [&](double r) { return ObservedLogLik(type, r, p1, p2, x, y); };
  int best = 0;
  double best_ll = -1e300;
  for (int k = 0; k <= 100; ++k) {
    const double v = ll(k * 0.005);
    if (v > best_ll) best_ll = v, best = k;
  }
  double lo = std::max(0.0, (best - 1) * 0.005), hi = std::min(0.5, (best + 1) * 0.005);
  const double g = (std::sqrt(5.0) - 1) / 2;
  for (int it = 0; it < 60; ++it) {
    const double m1 = hi - g * (hi - lo), m2 = lo + g * (hi - lo);
    if (ll(m1) < ll(m2)) lo = m1;
    else hi = m2;
  }
  return (lo + hi) / 2;
}

// Lines drawn from the founder-cell table at r, shown through the two patterns.
inline void DrawLines(int type, double r, int n, int32_t p1, int32_t p2, std::mt19937_64& rng,
               std::string& x, std::string& y) {
  const int f = Founders(type);
  std::vector<double> chances;
  for (int a = 0; a < f; ++a)
    for (int b = 0; b < f; ++b) chances.push_back(CellChance(type, r, a, b));
  std::discrete_distribution<int> cell(chances.begin(), chances.end());
  x.clear();
  y.clear();
  for (int i = 0; i < n; ++i) {
    const int k = cell(rng);
    x += ObservedLetter(f, p1, static_cast<uint8_t>(k / f));
    y += ObservedLetter(f, p2, static_cast<uint8_t>(k % f));
  }
}

}  // namespace gae::testing
