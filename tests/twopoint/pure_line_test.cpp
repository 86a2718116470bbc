// The pure-line estimator against an independent maximisation of the same likelihood, against
// lines bred meiosis by meiosis, and at the edges where a fault would hide.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/bred_data_sets.h"
#include "support/literal_pure_line.h"
#include "support/pure_line_likelihood.h"
#include "twopoint/pure_line.h"

namespace gae {
namespace {

using testing::CellChance;
using testing::DirectMaximum;
using testing::DrawLines;
using testing::Founders;
using testing::ObservedLetter;
using testing::ObservedLogLik;

PureLineEstimate Estimate(int type, int32_t p1, int32_t p2, const std::string& x, const std::string& y) {
  const auto n = static_cast<int64_t>(x.size());
  return type <= 2 ? PLMPairFourWay(type, n, p1, p2, x.data(), y.data())
                   : PLMPairEightWay(type, n, p1, p2, x.data(), y.data());
}

TEST(PureLineEstimator, EmReachesTheMaximumOfTheObservedLikelihood) {
  std::mt19937_64 rng(20261123);
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    for (int trial = 0; trial < 25; ++trial) {
      // Every fifth table tells all founders apart, so that its LOD is the observed one.
      const bool distinct = trial % 5 == 0;
      const int32_t p1 = distinct ? (f == 4 ? 1234 : 12345678) : testing::RandomPattern(f, rng);
      const int32_t p2 = distinct ? (f == 4 ? 1234 : 12345678) : testing::RandomPattern(f, rng);
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

// The engine's EM against the literal iteration, bit for bit, on random tables: lines drawn at
// any r up to past 1/2, tables of a few lines, lines all in one kind of cell, and letters thrown
// at random (which also fill cells that the reader never fills).
TEST(PureLineEstimator, EmEqualsTheLiteralIterationBitForBit) {
  std::mt19937_64 rng(30);
  int differ = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    const int type = 1 + static_cast<int>(rng() % 4), f = Founders(type);
    const int32_t p1 = rng() % 8 == 0 ? (f == 4 ? 1234 : 12345678) : testing::RandomPattern(f, rng);
    const int32_t p2 = rng() % 8 == 0 ? (f == 4 ? 1234 : 12345678) : testing::RandomPattern(f, rng);
    const int lines = rng() % 6 == 0 ? static_cast<int>(rng() % 6) : 20 + static_cast<int>(rng() % 300);
    std::string x, y;
    switch (rng() % 4) {
      case 0:  // letters at random
        for (int i = 0; i < lines; ++i) {
          x += static_cast<char>('A' + rng() % (f + 1));
          y += static_cast<char>('A' + rng() % (f + 1));
        }
        break;
      case 1:  // every line in a same-founder cell, or every line in another
        for (int i = 0; i < lines; ++i) {
          const auto a = static_cast<uint8_t>(rng() % f);
          const auto b = static_cast<uint8_t>(trial % 2 == 0 ? a : (a + f / 2) % f);
          x += testing::ObservedLetter(f, p1, a);
          y += testing::ObservedLetter(f, p2, b);
        }
        break;
      default:
        DrawLines(type, (type == 2 ? 0.6 : 0.75) * static_cast<double>(rng() % 1000) / 1000.0, lines, p1, p2, rng, x, y);
    }
    const PureLineEstimate fast = Estimate(type, p1, p2, x, y);
    const PureLineEstimate literal = testing::LiteralPureLinePair(type, lines, p1, p2, x.data(), y.data());
    if (std::bit_cast<uint32_t>(fast.rec_freq) != std::bit_cast<uint32_t>(literal.rec_freq) ||
        std::bit_cast<uint32_t>(fast.lod) != std::bit_cast<uint32_t>(literal.lod)) {
      if (++differ <= 5)
        ADD_FAILURE() << "type " << type << " patterns " << p1 << " " << p2 << " lines " << x << " / " << y << ": r "
                      << fast.rec_freq << " vs " << literal.rec_freq << ", LOD " << fast.lod << " vs " << literal.lod;
    }
  }
  EXPECT_EQ(differ, 0);
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
  auto repeat = [](const std::string& text, int times) {
    std::string s;
    while (times-- > 0) s += text;
    return s;
  };
  const std::string d = repeat("ABCD", 10), far = repeat("CDAB", 10);
  const float kParental = 80 * std::log10(2.0f), kAnyLod = -1.0f;
  struct Edge {
    const char* why;
    int type;
    int32_t p1, p2;
    std::string x, y;
    float rec_freq, lod;
  };
  const Edge edges[] = {
      // Every class is equally likely whatever r, so 1/2 at once.
      {"one allele at a marker", 1, 1111, 1234, repeat("AAAA", 10), d, 0.5f, 0.0f},
      // r = 0 and LOD = 2n log10 2.
      {"every line in a same-founder cell of a 4PDH", 1, 1234, 1234, d, d, 0.0f, kParental},
      // The estimate is 1, reported as 1/2 with LOD 0 however strong.
      {"every line recombinant, 4PDH", 1, 1234, 1234, d, far, 0.5f, 0.0f},
      {"every line recombinant, 8PDH", 3, 12345678, 12345678, d, far, 0.5f, 0.0f},
      {"every line recombinant, 8PRIL", 4, 12345678, 12345678, d, far, 0.5f, 0.0f},
      // 20 lines on the diagonal and 12 off it give R = (2/3)(12/32) = 0.25 on the inbred
      // line's scale, which is 0.25 / 1.5 per meiosis.
      {"4PRIL by hand", 2, 1234, 1234, repeat("ABCD", 8), repeat("ABCD", 5) + repeat("BADC", 3), 0.25f / 1.5f, kAnyLod},
      {"letters of a founder beyond the population, and X, count nowhere", 1, 1234, 1234, d + "XEXH", d + "AAAA",
       0.0f, kParental},
      // Founders 1 and 2 alike at the first marker: the empty class of cells (1, 1) and (2, 1)
      // is impossible at r = 1, where the iteration goes, and its split reads 0 x 0 / 0.
      {"every line recombinant beside an empty class impossible at r = 1", 1, 1123, 1234,
       repeat("AACD", 10), repeat("CDAB", 10), 0.5f, 0.0f},
      // Founders 3 and 4 alike: the empty classes of cells (1, 3) and (1, 4), and so on, are
      // impossible at r = 0.
      {"every line in a same-founder cell beside empty classes impossible at r = 0", 1, 1233, 1233,
       repeat("AB", 20), repeat("AB", 20), 0.0f, kParental},
  };
  for (const Edge& e : edges) {
    const PureLineEstimate got = Estimate(e.type, e.p1, e.p2, e.x, e.y);
    EXPECT_NEAR(got.rec_freq, e.rec_freq, 1e-6) << e.why;
    if (e.lod != kAnyLod) {
      EXPECT_NEAR(got.lod, e.lod, 1e-3) << e.why;
    }
  }
  // An unknown population type estimates nothing.
  const PureLineEstimate unknown = PLMPairFourWay(5, 40, 1234, 1234, d.data(), d.data());
  EXPECT_EQ(unknown.rec_freq, 0.5f);
  EXPECT_EQ(unknown.lod, 0.0f);
}

TEST(PureLineEstimator, CellChancesFollowTheBreedingTablesAndSumToOne) {
  for (int type = 1; type <= 4; ++type) {
    const int f = Founders(type);
    for (float r : {0.0f, 0.1f, 0.37f, 0.5f}) {
      const auto p = PureLineKindChances(type, r);
      double sum = 0;
      for (int a = 0; a < f; ++a)
        for (int b = 0; b < f; ++b) {
          sum += p[PureLineCellKind(f, a + 1, b + 1)];
          EXPECT_NEAR(p[PureLineCellKind(f, a + 1, b + 1)], CellChance(type, r, a, b), 1e-7) << type << " " << r;
        }
      EXPECT_NEAR(sum, 1.0, 1e-6) << type << " " << r;
    }
  }
}

}  // namespace
}  // namespace gae
