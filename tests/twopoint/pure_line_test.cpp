// The pure-line estimator against an independent maximisation of the same likelihood, against
// lines bred meiosis by meiosis, and at the edges where a fault would hide.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "twopoint/pure_line.h"

namespace gae {
namespace {

using testing::ObservedLetter;

int Founders(int type) { return type <= 2 ? 4 : 8; }

// The chance of founder cell (a, b), 0-based, written out from the breeding tables in double
// precision. For type 2, r is the inbred line's frequency.
double CellChance(int type, double r, int a, int b) {
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
double ObservedLogLik(int type, double r, int32_t p1, int32_t p2, const std::string& x,
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
double DirectMaximum(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y) {
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

// A founder pattern as the reader accepts it: each founder has its own digit or repeats an
// earlier founder's, and not all founders are alike.
int32_t RandomPattern(int founders, std::mt19937_64& rng) {
  for (;;) {
    std::vector<int> digit(founders);
    int32_t pattern = 0;
    bool all_alike = true;
    for (int k = 0; k < founders; ++k) {
      digit[k] = (k == 0 || rng() % 2 == 0) ? k + 1 : digit[rng() % k];
      all_alike = all_alike && digit[k] == 1;
      pattern = pattern * 10 + digit[k];
    }
    if (!all_alike) return pattern;
  }
}

// Lines drawn from the founder-cell table at r, shown through the two patterns.
void DrawLines(int type, double r, int n, int32_t p1, int32_t p2, std::mt19937_64& rng,
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

PureLineEstimate Estimate(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y) {
  const auto n = static_cast<int64_t>(x.size());
  return type <= 2 ? PLMPairFourWay(type, n, p1, p2, x.data(), y.data())
                   : PLMPairEightWay(type, n, p1, p2, x.data(), y.data());
}

// The iteration written cell by cell: classes by the merge of columns then rows, every cell's
// split in 32 bits, no shortcut. The estimator works by class composition and stops early once
// the frequency rises past 1/2; both must report the same.
PureLineEstimate LiteralEm(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y) {
  const int f = Founders(type);
  std::vector<float> n(f * f, 0.0f);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const int a = x[i] - 'A', b = y[i] - 'A';
    if (a >= 0 && a < f && b >= 0 && b < f) n[a * f + b] += 1.0f;
  }
  auto digit = [&](int32_t p, int k) { int d = 1; for (int j = k + 1; j < f; ++j) d *= 10; return p / d % 10; };
  std::vector<int> cls(f * f);
  for (int c = 0; c < f * f; ++c) cls[c] = c;
  for (int j = 0; j < f; ++j)
    for (int k = j + 1; k < f; ++k)
      if (digit(p2, j) == digit(p2, k))
        for (int a = 0; a < f; ++a) cls[a * f + k] = cls[a * f + j];
  for (int j = 0; j < f; ++j)
    for (int k = j + 1; k < f; ++k)
      if (digit(p1, j) == digit(p1, k))
        for (int b = 0; b < f; ++b) cls[k * f + b] = cls[j * f + b];
  int num_classes = 0;
  for (int c = 0; c < f * f; ++c) num_classes += cls[c] == c;
  auto kind = [&](int c) { return PureLineCellKind(f, c / f + 1, c % f + 1); };
  std::vector<float> q(f * f);
  float next = 0.25f, old = 0.0f;
  int rounds = 0;
  bool flat_stop = false;
  while (std::fabs(next - old) > 0.0001f && rounds < 1001) {
    old = next;
    ++rounds;
    const auto p = PureLineKindChances(type, old);
    bool flat = true;
    for (int h = 0; h < f * f; ++h) {
      if (cls[h] != h) continue;
      float sum = 0.0f;
      int cells = 0;
      for (int c = 0; c < f * f; ++c) if (cls[c] == h) sum += p[kind(c)], ++cells;
      if (std::fabs(sum - 1.0f / num_classes) > 0.0001f) flat = false;
      for (int c = 0; c < f * f; ++c)
        if (cls[c] == h) q[c] = cells == 1 ? n[c] : (n[h] == 0.0f ? 0.0f : n[h] * p[kind(c)] / sum);
    }
    if (flat) { flat_stop = true; break; }
    float all = 0, d[4] = {0, 0, 0, 0};
    for (int c = 0; c < f * f; ++c) all += q[c], d[kind(c)] += q[c];
    if (type == 1) next = (all - d[0]) / ((all - d[0]) + 2 * d[0] + d[1]);
    if (type == 2) next = (2.0f / 3.0f) * (all - d[0]) / all;
    if (type == 3) next = (all - d[0]) / ((all - d[0]) + 3 * d[0] + 2 * d[1] + d[2]);
    if (type == 4) {
      const double s1 = all - d[0], s2 = 2 * d[0] + d[1], s3 = all;
      const double qa = 2 * s3 - 2 * s1 - 2 * s2, qb = s1 - s2 - 2 * s3, qc = s1;
      double best = 0.5;
      if (qa == 0) best = qb == 0 ? 0.5 : -qc / qb;
      else if (qb * qb - 4 * qa * qc >= 0)
        for (double sign : {-1.0, 1.0}) {
          const double root = (-qb + sign * std::sqrt(qb * qb - 4 * qa * qc)) / (2 * qa);
          if (root >= 0 && root <= 0.5 && root < best) best = root;
        }
      next = static_cast<float>(best);
    }
  }
  float r = (flat_stop || rounds >= 1001) ? 0.5f : next;
  float all = 0, d[4] = {0, 0, 0, 0};
  for (int c = 0; c < f * f; ++c) all += q[c], d[kind(c)] += q[c];
  auto term = [](double count, double w) { return w > 0 ? count * std::log10(w) : 0.0; };
  double lod = 0;
  if (type == 1 || type == 3) {
    const double s1 = all - d[0], s2 = type == 1 ? 2 * d[0] + d[1] : 3 * d[0] + 2 * d[1] + d[2];
    lod = term(s1, r) + term(s2, 1 - r) - term(s1 + s2, 0.5);
  } else if (type == 2) {
    lod = term(d[0], 2 - 3.0 * r) + term(all - d[0], r) - term(all, 0.5);
  } else {
    const double s1 = all - d[0], s2 = 2 * d[0] + d[1];
    lod = term(s1, r) + term(s2, 1 - r) + term(all, 1 / (1 + 2.0 * r)) - term(s1 + s2 + all, 0.5);
  }
  if (r > 0.5f) r = 0.5f, lod = 0;
  if (lod < 0) lod = 0;
  if (type == 2 && r > 0) r = r / (2 * (1 - r));
  return {r, static_cast<float>(lod)};
}

TEST(PureLineEstimator, EqualsTheCellByCellIteration) {
  std::mt19937_64 rng(7);
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    for (int trial = 0; trial < 60; ++trial) {
      const int32_t p1 = RandomPattern(f, rng), p2 = RandomPattern(f, rng);
      // Linked, loosely linked and unlinked pairs: many of the last pass 1/2.
      const double r_true = std::array<double, 3>{0.05, 0.3, 0.5}[trial % 3];
      std::string x, y;
      DrawLines(type, r_true, 40 + trial * 5, p1, p2, rng, x, y);
      const PureLineEstimate fast = Estimate(type, p1, p2, x, y);
      const PureLineEstimate literal = LiteralEm(type, p1, p2, x, y);
      SCOPED_TRACE("type " + std::to_string(type) + " patterns " + std::to_string(p1) + " " +
                   std::to_string(p2) + " trial " + std::to_string(trial));
      // Sums in another order may end the iteration one round apart.
      EXPECT_NEAR(fast.rec_freq, literal.rec_freq, 2e-4);
      EXPECT_NEAR(fast.lod, literal.lod, 2e-3 * literal.lod + 1e-3);
    }
  }
}

TEST(PureLineEstimator, EmReachesTheMaximumOfTheObservedLikelihood) {
  std::mt19937_64 rng(20261123);
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    for (int trial = 0; trial < 25; ++trial) {
      // Every fifth table tells all founders apart, so that its LOD is the observed one.
      const bool distinct = trial % 5 == 0;
      const int32_t p1 = distinct ? (f == 4 ? 1234 : 12345678) : RandomPattern(f, rng);
      const int32_t p2 = distinct ? (f == 4 ? 1234 : 12345678) : RandomPattern(f, rng);
      const double r_true = 0.03 + 0.3 * (rng() % 1000) / 1000.0;
      std::string x, y;
      DrawLines(type, r_true, 300, p1, p2, rng, x, y);
      const double best = DirectMaximum(type, p1, p2, x, y);
      const PureLineEstimate e = Estimate(type, p1, p2, x, y);
      const double expected = type == 2 ? best / (2 * (1 - best)) : best;
      SCOPED_TRACE("type " + std::to_string(type) + " patterns " + std::to_string(p1) + " " +
                   std::to_string(p2) + " r " + std::to_string(r_true));
      // The EM stops on a step below 1e-4, so it may stand a little short of the maximum.
      EXPECT_NEAR(e.rec_freq, expected, 0.004);
      if (distinct) {
        const double lod = (ObservedLogLik(type, best, p1, p2, x, y) -
                            ObservedLogLik(type, 0.5, p1, p2, x, y)) / std::log(10.0);
        EXPECT_NEAR(e.lod, lod, 0.01 * lod + 0.01);
      }
    }
  }
}

TEST(PureLineEstimator, RecoversTheFrequencyOfBredLines) {
  // Two markers 12 cM apart (r = 0.107 per meiosis), 1500 lines of each population type,
  // scored once with every founder told apart and once through shared alleles.
  const double r = testing::HaldaneFrequency(12.0);
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    testing::Breeder breeder = testing::Breeder::AtPositions({0.0, 12.0}, 77 + type);
    std::vector<std::vector<uint8_t>> lines;
    for (int l = 0; l < 1500; ++l) lines.push_back(breeder.PureLine(type));
    const int32_t shared[2][2] = {{1234, 1213}, {12345678, 12314156}};
    const int32_t distinct = f == 4 ? 1234 : 12345678;
    for (const int32_t p2 : {distinct, shared[f == 8][1]}) {
      std::string x, y;
      for (const auto& line : lines) {
        x += ObservedLetter(f, distinct, line[0]);
        y += ObservedLetter(f, p2, line[1]);
      }
      const PureLineEstimate e = Estimate(type, distinct, p2, x, y);
      // Binomial sampling error of r over 1500 lines is about 0.008; inbred lines see the
      // expanded frequency, which costs them precision.
      const double tolerance = (type == 2 || type == 4) ? 0.03 : 0.02;
      EXPECT_NEAR(e.rec_freq, r, tolerance) << "type " << type << " pattern " << p2;
      EXPECT_GT(e.lod, 30.0f);
    }
  }
}

TEST(PureLineEstimator, EdgesOfTheIteration) {
  auto repeat = [](const char* text, int times) {
    std::string s;
    for (int i = 0; i < times; ++i) s += text;
    return s;
  };
  // One allele at a marker: every class is equally likely whatever r, so 0.5 at once.
  const std::string x = repeat("AAAA", 10), y = repeat("ABCD", 10);
  PureLineEstimate e = PLMPairFourWay(1, 40, 1111, 1234, x.data(), y.data());
  EXPECT_EQ(e.rec_freq, 0.5f);
  EXPECT_EQ(e.lod, 0.0f);

  // Every line in a same-founder cell of a 4PDH: r = 0 and LOD = 2n log10 2.
  const std::string d = repeat("ABCD", 10);
  e = PLMPairFourWay(1, 40, 1234, 1234, d.data(), d.data());
  EXPECT_EQ(e.rec_freq, 0.0f);
  EXPECT_NEAR(e.lod, 80 * std::log10(2.0), 1e-3);

  // Every line recombinant: the estimate is 1, reported as 0.5 with LOD 0 however strong.
  const std::string far = repeat("CDAB", 10);
  for (int type : {1, 3, 4}) {
    e = type == 1 ? PLMPairFourWay(type, 40, 1234, 1234, d.data(), far.data())
                  : PLMPairEightWay(type, 40, 12345678, 12345678, d.data(), far.data());
    EXPECT_EQ(e.rec_freq, 0.5f) << type;
    EXPECT_EQ(e.lod, 0.0f) << type;
  }

  // 4PRIL: 20 lines on the diagonal and 12 off it give R = (2/3)(12/32) = 0.25 on the inbred
  // line's scale, which is 0.25 / 1.5 per meiosis.
  const std::string a = repeat("ABCD", 8), b = repeat("ABCD", 5) + repeat("BADC", 3);
  e = PLMPairFourWay(2, 32, 1234, 1234, a.data(), b.data());
  EXPECT_NEAR(e.rec_freq, 0.25f / 1.5f, 1e-6);

  // Letters of a founder beyond the population, and X, count nowhere.
  const std::string noisy = d + "XEXH", plain = d + "AAAA";
  const PureLineEstimate clean = PLMPairFourWay(1, 40, 1234, 1234, d.data(), d.data());
  e = PLMPairFourWay(1, 44, 1234, 1234, noisy.data(), plain.data());
  EXPECT_EQ(e.rec_freq, clean.rec_freq);
  EXPECT_EQ(e.lod, clean.lod);

  // An unknown population type estimates nothing.
  e = PLMPairFourWay(5, 40, 1234, 1234, d.data(), d.data());
  EXPECT_EQ(e.rec_freq, 0.5f);
  EXPECT_EQ(e.lod, 0.0f);
}

TEST(PureLineEstimator, FounderCellChancesSumToOne) {
  // The chances of every founder cell sum to 1 for every type and r.
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    for (float r : {0.0f, 0.1f, 0.37f, 0.5f}) {
      const auto p = PureLineKindChances(type, r);
      double sum = 0;
      for (int a = 1; a <= f; ++a)
        for (int b = 1; b <= f; ++b) sum += p[PureLineCellKind(f, a, b)];
      EXPECT_NEAR(sum, 1.0, 1e-6) << type << " " << r;
    }
  }
}

}  // namespace
}  // namespace gae
