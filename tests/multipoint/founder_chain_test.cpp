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
    const int f = Founders(type);
    ASSERT_EQ(d.num_states, f);
    for (double r : {0.0, 0.03, 0.2, 0.5}) {
      SCOPED_TRACE(::testing::Message() << "type " << type << " r " << r);
      double t[kMatrixSize];
      TransitionMatrix(d, r, t);
      for (int a = 0; a < f; ++a) {
        double row = 0;
        for (int b = 0; b < f; ++b) {
          row += t[a * kMaxChainStates + b];
          EXPECT_NEAR(d.initial[a] * t[a * kMaxChainStates + b], CellChance(type, TableFrequency(type, r), a, b), 1e-12);
        }
        EXPECT_NEAR(row, 1.0, 1e-12);
      }
    }
  }
  EXPECT_EQ(MakeFounderDesign(5).num_states, 0);
}

// Likelihood of lines' letters summed over every founder path, with the chances read from the
// breeding tables and a call's chance from the letter its founder shows.
double SumOverPaths(int type, const std::vector<int32_t>& patterns, const std::vector<std::string>& letters,
                    const std::vector<double>& rf, double e) {
  const int f = Founders(type), m = static_cast<int>(patterns.size());
  double total = 0;
  for (std::size_t i = 0; i < letters[0].size(); ++i) {
    double z = 0;
    for (int path = 0, paths = static_cast<int>(std::pow(f, m)); path < paths; ++path) {
      double p = 1;
      for (int k = 0, rest = path, prev = -1; k < m; ++k, rest /= f) {
        const int founder = rest % f;
        p *= prev < 0 ? 1.0 / f : f * CellChance(type, TableFrequency(type, rf[k - 1]), prev, founder);
        std::string shown;
        for (int g = 0; g < f; ++g)
          if (shown.find(testing::ObservedLetter(f, patterns[k], g)) == std::string::npos)
            shown += testing::ObservedLetter(f, patterns[k], g);
        const char call = letters[k][i];
        if (call != 'X')
          p *= call == testing::ObservedLetter(f, patterns[k], founder) ? 1 - e : e / (shown.size() - 1);
        prev = founder;
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
