// The founder chain of pure lines against computations written from the breeding tables:
// the two-locus founder tables and a sum over every hidden founder path.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "multipoint/chain_fit.h"
#include "multipoint/founder_calls.h"
#include "multipoint/founder_design.h"
#include "support/bred_data_sets.h"
#include "support/pure_line_likelihood.h"

namespace gae {
namespace {

using testing::CellChance;
using testing::Founders;

// The breeding tables give inbred lines on their own frequency scale.
double TableFrequency(int type, double r) { return type == 2 ? 2 * r / (1 + 2 * r) : r; }

TEST(FounderChain, TransitionsReproduceTheFunnelsTwoLocusTables) {
  for (int type = 1; type <= 4; ++type) {
    const HmmDesign d = MakeFounderDesign(type);
    const int f = Founders(type), n = d.num_states;
    for (double r : {0.0, 0.03, 0.2, 0.5}) {
      SCOPED_TRACE(::testing::Message() << "type " << type << " r " << r);
      double t[kMatrixSize];
      TransitionMatrix(d, r, t);
      // The chain's two-locus chances of founders, summed over the states that carry them.
      std::vector<double> cells(static_cast<std::size_t>(f * f), 0.0);
      for (int s = 0; s < n; ++s) {
        double row = 0;
        for (int u = 0; u < n; ++u) {
          row += t[s * kMaxChainStates + u];
          cells[static_cast<std::size_t>(FounderOfState(d, s) * f + FounderOfState(d, u))] += d.initial[s] * t[s * kMaxChainStates + u];
        }
        EXPECT_NEAR(row, 1.0, 1e-12);
      }
      for (int a = 0; a < f; ++a)
        for (int b = 0; b < f; ++b)
          EXPECT_NEAR(cells[static_cast<std::size_t>(a * f + b)], CellChance(type, TableFrequency(type, r), a, b), 1e-12);
    }
  }
  EXPECT_EQ(MakeFounderDesign(5).num_states, 0);
}

// Likelihood of lines' letters summed over every hidden path, with a call's chance from the
// letter its founder shows. The path is of founders with the chances read from the breeding
// tables, except in four-way inbred lines: there it is of the four-way plant's chromosome the
// line carries (A x B's or C x D's, which selfing exchanges as in two-way inbred lines) and the
// founder on each of those two chromosomes.
double SumOverPaths(int type, const std::vector<int32_t>& patterns, const std::vector<std::string>& letters,
                    const std::vector<double>& rf, double e) {
  const int f = Founders(type), m = static_cast<int>(patterns.size());
  const bool plant_chromosomes = type == 2;
  const int states = plant_chromosomes ? 8 : f;
  double total = 0;
  for (std::size_t i = 0; i < letters[0].size(); ++i) {
    double z = 0;
    for (int path = 0, paths = static_cast<int>(std::pow(states, m)); path < paths; ++path) {
      double p = 1;
      for (int k = 0, rest = path, prev = -1; k < m; ++k, rest /= states) {
        const int state = rest % states;
        int founder = state;
        if (plant_chromosomes) {
          const int carried = state / 4, first = state / 2 % 2, second = state % 2;
          founder = carried == 0 ? first : 2 + second;
          if (prev < 0) {
            p *= 1.0 / 8;
          } else {
            const double r = rf[k - 1], moves = 2 * r / (1 + 2 * r);
            p *= (carried == prev / 4 ? 1 - moves : moves) * (first == prev / 2 % 2 ? 1 - r : r) *
                 (second == prev % 2 ? 1 - r : r);
          }
        } else {
          p *= prev < 0 ? 1.0 / f : f * CellChance(type, TableFrequency(type, rf[k - 1]), prev, founder);
        }
        std::string shown;
        for (int g = 0; g < f; ++g)
          if (shown.find(testing::ObservedLetter(f, patterns[k], g)) == std::string::npos)
            shown += testing::ObservedLetter(f, patterns[k], g);
        const char call = letters[k][i];
        if (call != 'X')
          p *= call == testing::ObservedLetter(f, patterns[k], founder) ? 1 - e : e / (shown.size() - 1);
        prev = state;
      }
      z += p;
    }
    total += std::log(z);
  }
  return total;
}

TEST(FounderChain, ForwardPassEqualsTheSumOverAllFounderPaths) {
  std::mt19937_64 rng(5);
  for (int type = 1; type <= 4; ++type) {
    SCOPED_TRACE(type);
    const int f = Founders(type), lines = 5;
    std::vector<int32_t> patterns;
    std::vector<std::string> letters;
    std::vector<char> flat;
    for (int m = 0; m < 3; ++m) {
      patterns.push_back(testing::RandomPattern(f, rng));
      std::string row;
      for (int i = 0; i < lines; ++i)
        row += rng() % 6 == 0 ? 'X' : testing::ObservedLetter(f, patterns.back(), static_cast<uint8_t>(rng() % f));
      letters.push_back(row);
      flat.insert(flat.end(), row.begin(), row.end());
    }
    const GroupCalls calls = MakeFounderCalls(type, lines, flat, patterns);
    ChainState st;
    st.order = {0, 1, 2};
    st.rf = {0.07, 0.31};
    st.error_rate = 0.04;
    EXPECT_NEAR(EvaluateChain(calls, st, nullptr), SumOverPaths(type, patterns, letters, st.rf, st.error_rate), 1e-10);
  }
}

}  // namespace
}  // namespace gae
