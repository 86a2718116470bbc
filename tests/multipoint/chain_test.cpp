// The chain against independent computations: sums over every hidden genotype path, the
// two-locus tables of the error scan, and a whole-chromosome pass for every windowed score.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "errorscan/two_locus_probabilities.h"
#include "multipoint/chain_fit.h"
#include "multipoint/block_moves.h"
#include "multipoint/window_moves.h"
#include "support/bred_groups.h"
#include "vocabulary/population.h"

namespace gae {
namespace {

// Random calls a marker of its category can show in this type (with misses).
GroupCalls RandomCalls(int type, int markers, int individuals, std::mt19937& rng) {
  const HmmDesign d = MakeHmmDesign(type);
  std::vector<int32_t> categories(markers, 1);
  std::vector<char> types;
  for (int m = 0; m < markers; ++m) {
    if (d.num_classes == 3 && m % 3 != 0) categories[m] = m % 3 == 1 ? 12 : 10;
    std::string letters = categories[m] == 12 ? "DBX" : categories[m] == 10 ? "ARX" : "X";
    if (categories[m] == 1)
      for (int s = 0; s < d.num_states; ++s) letters += "AHB"[d.state_class[s]];
    for (int i = 0; i < individuals; ++i) types.push_back(letters[rng() % letters.size()]);
  }
  return MakeGroupCalls(type, individuals, types, categories);
}

// Sum over all hidden paths of every individual, one path at a time; also each state's
// posterior at each marker.
double EnumeratedLogLikelihood(const GroupCalls& g, const ChainState& st, std::vector<double>& posterior) {
  const int s = g.design.num_states, m = static_cast<int>(st.order.size());
  posterior.assign(static_cast<std::size_t>(g.num_individuals) * m * s, 0.0);
  double total = 0;
  int paths = 1;
  for (int k = 0; k < m; ++k) paths *= s;
  for (int i = 0; i < g.num_individuals; ++i) {
    double z = 0;
    std::vector<double> weight(paths);
    for (int path = 0; path < paths; ++path) {
      double p = 1;
      int prev = -1;
      for (int k = 0, rest = path; k < m; ++k, rest /= s) {
        const int state = rest % s;
        const int32_t marker = st.order[k];
        p *= prev < 0 ? g.design.initial[state] : st.transitions[(k - 1) * kMatrixSize + prev * kMaxChainStates + state];
        p *= st.emissions[marker][g.codes[marker * g.num_individuals + i] * kMaxChainStates + state];
        prev = state;
      }
      weight[path] = p;
      z += p;
    }
    for (int path = 0; path < paths; ++path)
      for (int k = 0, rest = path; k < m; ++k, rest /= s)
        posterior[(static_cast<std::size_t>(i) * m + k) * s + rest % s] += weight[path] / z;
    total += std::log(z);
  }
  return total;
}

TEST(MultipointChain, ForwardBackwardEqualsTheSumOverAllHiddenPaths) {
  std::mt19937 rng(11);
  for (int type : {1, 2, 3, 4, 7, 8, 11, 13, 16, 19}) {
    SCOPED_TRACE(type);
    const GroupCalls g = RandomCalls(type, 5, 6, rng);
    ChainState st;
    st.order = {3, 0, 4, 1, 2};
    st.rf = {0.02, 0.3, 0.11, 0.0};
    st.error_rate = 0.03;
    const double fast = EvaluateChain(g, st, nullptr);
    std::vector<double> enumerated_posterior;
    EXPECT_NEAR(fast, EnumeratedLogLikelihood(g, st, enumerated_posterior), 1e-10);
    const std::vector<double> post = Posteriors(g, st);
    ASSERT_EQ(post.size(), enumerated_posterior.size());
    for (std::size_t c = 0; c < post.size(); ++c) EXPECT_NEAR(post[c], enumerated_posterior[c], 1e-10);
  }
}

// Summed over the phase-known F2 states, pi(s) T(s, t) must give the design's two-locus
// table; the F3 table of the error scan keeps its double-heterozygote entry off the true
// (1 - 2r + 2r^2)^2 / 4 on purpose, so that one entry is checked against the formula.
TEST(MultipointChain, TransitionsReproduceTheTwoLocusDistributionOfEveryDesign) {
  for (int type = 1; type <= 20; ++type) {
    const HmmDesign d = MakeHmmDesign(type);
    ASSERT_GT(d.num_states, 0);
    for (double r : {0.0, 0.04, 0.2, 0.45}) {
      SCOPED_TRACE(::testing::Message() << "type " << type << " r " << r);
      double t[kMatrixSize];
      TransitionMatrix(d, r, t);
      const std::vector<float> table = TwoLocusFromRec(kBiparentalDesign, type, static_cast<float>(r));
      const int classes = type == 7 ? 3 : d.num_states;
      ASSERT_EQ(table.size(), static_cast<std::size_t>(classes * classes));
      // Column of each state in the table: its class among the table's (A, H, B or two of them).
      auto column = [&](int s) { return type == 7 ? d.state_class[s] : s; };
      std::vector<double> joint(table.size(), 0.0);
      for (int s = 0; s < d.num_states; ++s) {
        double row = 0;
        for (int u = 0; u < d.num_states; ++u) {
          row += t[s * kMaxChainStates + u];
          joint[column(s) * classes + column(u)] += d.initial[s] * t[s * kMaxChainStates + u];
        }
        EXPECT_NEAR(row, 1.0, 1e-12);
      }
      for (std::size_t c = 0; c < table.size(); ++c) {
        const double q = 1 - 2 * r + 2 * r * r;
        const double expected = type == 8 && c == 4 ? q * q / 4 : table[c];
        EXPECT_NEAR(joint[c], expected, 2e-7);
      }
    }
  }
}

// Chains followed meiosis by meiosis have no interference: two intervals in a row act as one
// of frequency r1 + r2 - 2 r1 r2.
TEST(MultipointChain, MeiosisChainsComposeIntervalsWithoutInterference) {
  for (int type : {1, 2, 3, 7}) {
    const HmmDesign d = MakeHmmDesign(type);
    const int s = d.num_states;
    double a[kMatrixSize], b[kMatrixSize], ab[kMatrixSize];
    TransitionMatrix(d, 0.1, a);
    TransitionMatrix(d, 0.23, b);
    TransitionMatrix(d, 0.1 + 0.23 - 2 * 0.1 * 0.23, ab);
    for (int x = 0; x < s; ++x)
      for (int y = 0; y < s; ++y) {
        double p = 0;
        for (int z = 0; z < s; ++z) p += a[x * kMaxChainStates + z] * b[z * kMaxChainStates + y];
        EXPECT_NEAR(p, ab[x * kMaxChainStates + y], 1e-12) << type;
      }
  }
}

TEST(MultipointChain, EmRoundsNeverLowerTheLikelihood) {
  for (int type : {1, 4, 7, 13, 19}) {
    SCOPED_TRACE(type);
    testing::BredGroupPlan plan;
    plan.population_type = type;
    plan.positions_cm = testing::EvenPositions(12, 4.0);
    plan.individuals = 150;
    plan.error_rate = 0.02;
    plan.missing = 0.1;
    plan.dominant_share = MakeHmmDesign(type).num_classes == 3 ? 0.3 : 0.0;
    const testing::BredGroup bred = testing::BreedGroup(plan);
    const GroupCalls g = MakeGroupCalls(type, plan.individuals, bred.types, bred.categories);
    ChainState st;
    for (int k = 0; k < 12; ++k) st.order.push_back(k);
    st.rf.assign(11, 0.25);
    st.error_rate = 0.1;
    RunSums sums;
    double previous = EvaluateChain(g, st, &sums);
    for (int round = 0; round < 15; ++round) {
      MaximiseChain(g, sums, FitSettings{}, st.rf, st.error_rate);
      const double now = EvaluateChain(g, st, &sums);
      EXPECT_GE(now, previous - 1e-9 * std::fabs(previous)) << "round " << round;
      previous = now;
    }
  }
}

// Every kind of window (at either end, inside, emptied) scores what a whole pass over the
// changed chromosome gives.
TEST(MultipointChain, WindowScoreEqualsTheWholeChromosomeRecomputed) {
  testing::BredGroupPlan plan;
  plan.positions_cm = testing::EvenPositions(9, 3.0);
  plan.individuals = 80;
  plan.error_rate = 0.02;
  plan.missing = 0.1;
  plan.dominant_share = 0.2;
  plan.recessive_share = 0.2;
  const testing::BredGroup bred = testing::BreedGroup(plan);
  const GroupCalls g = MakeGroupCalls(7, plan.individuals, bred.types, bred.categories);
  ChainState st;
  st.order = {0, 1, 2, 3, 4, 5, 6, 7, 8};
  st.rf.assign(8, 0.05);
  st.error_rate = 0.02;
  FitChain(g, st, FitSettings{});
  const std::vector<int> position_of = {0, 1, 2, 3, 4, 5, 6, 7, 8};
  struct Case {
    int first, last;
    std::vector<int32_t> markers;
  };
  const std::vector<Case> cases = {{0, 2, {2, 0, 1}}, {3, 5, {5, 3, 4}}, {6, 8, {8, 7, 6}},
                                   {1, 6, {2, 3, 4, 5, 6, 1}}, {0, 8, {8, 0, 1, 2, 3, 4, 5, 6, 7}}};
  WindowScratch scratch;
  for (const Case& c : cases) {
    WindowMove mv;
    mv.first = c.first;
    mv.last = c.last;
    mv.markers = c.markers;
    ScoreWindow(g, st, position_of, 2, 0.499, mv, scratch);
    ChainState whole = st;
    std::copy(c.markers.begin(), c.markers.end(), whole.order.begin() + c.first);
    std::copy(mv.rf.begin(), mv.rf.end(), whole.rf.begin() + (c.first > 0 ? c.first - 1 : 0));
    EXPECT_NEAR(mv.log_likelihood, EvaluateChain(g, whole, nullptr), 1e-8) << c.first << "-" << c.last;
    // The move applied in place leaves the cached vectors those of the whole pass.
    ChainState applied = st;
    ApplyWindow(g, applied, mv);
    EXPECT_NEAR(applied.log_likelihood, whole.log_likelihood, 1e-8);
  }
  // Taking out a marker from the inside scores the chromosome without its calls.
  WindowMove removal;
  removal.first = removal.last = 4;
  ScoreWindow(g, st, position_of, 2, 0.499, removal, scratch);
  ChainState without;
  without.order = {0, 1, 2, 3, 5, 6, 7, 8};
  without.rf = {st.rf[0], st.rf[1], st.rf[2], removal.rf[0], st.rf[5], st.rf[6], st.rf[7]};
  without.error_rate = st.error_rate;
  EXPECT_NEAR(removal.log_likelihood, EvaluateChain(g, without, nullptr), 1e-8);
}

// Block moves carry their own frequencies and are scored by a forward pass through the window
// alone: each must equal a pass over the whole changed chromosome at those frequencies, and
// fitting the window afterwards can only gain.
TEST(MultipointChain, BlockMoveScoresEqualTheWholeChromosomeRecomputed) {
  std::mt19937 rng(41);
  for (int type : {7, 2, 4}) {
    SCOPED_TRACE(type);
    const int m = 12;
    const GroupCalls g = RandomCalls(type, m, 40, rng);
    ChainState st;
    for (int k = 0; k < m; ++k) st.order.push_back(k);
    std::uniform_real_distribution<double> r(0.0, 0.3);
    for (int k = 0; k + 1 < m; ++k) st.rf.push_back(r(rng));
    st.error_rate = 0.03;
    EvaluateChain(g, st, nullptr);
    std::vector<int> position_of(m);
    for (int k = 0; k < m; ++k) position_of[k] = k;
    const std::vector<WindowMove> moves = {
        ReversalMove(st, 0, 4),          ReversalMove(st, 3, 8),           ReversalMove(st, 7, 11),
        ReversalMove(st, 0, 11),         ShiftMove(st, 2, 4, 7, false),    ShiftMove(st, 2, 4, 11, true),
        ShiftMove(st, 0, 1, 3, true),    ShiftMove(st, 6, 8, 2, false),    ShiftMove(st, 9, 11, -1, true),
        ShiftMove(st, 5, 6, 3, true)};
    WindowScratch scratch;
    for (WindowMove mv : moves) {
      SCOPED_TRACE(::testing::Message() << mv.first << "-" << mv.last);
      ASSERT_EQ(static_cast<int>(mv.rf.size()), WindowIntervals(mv.first, mv.last, mv.last - mv.first + 1, m));
      std::vector<int32_t> sorted = mv.markers;
      std::sort(sorted.begin(), sorted.end());
      for (int k = mv.first; k <= mv.last; ++k) EXPECT_EQ(sorted[k - mv.first], k);
      ScoreWindow(g, st, position_of, 0, 0.499, mv, scratch, /*start_given=*/true);
      ChainState whole = st;
      std::copy(mv.markers.begin(), mv.markers.end(), whole.order.begin() + mv.first);
      std::copy(mv.rf.begin(), mv.rf.end(), whole.rf.begin() + (mv.first > 0 ? mv.first - 1 : 0));
      EXPECT_NEAR(mv.log_likelihood, EvaluateChain(g, whole, nullptr), 1e-8);
      WindowMove fitted = mv;
      ScoreWindow(g, st, position_of, 2, 0.499, fitted, scratch, /*start_given=*/true);
      EXPECT_GE(fitted.log_likelihood, mv.log_likelihood - 1e-9);
    }
    // Carries scored through the block alone, from the passed markers' shared vectors.
    CarryScorer carries;
    for (const auto& [first, last] : std::vector<std::pair<int, int>>{{0, 1}, {2, 4}, {5, 7}, {9, 11}})
      for (bool rightward : {true, false})
        carries.Score(g, st, first, last, 20, rightward, [&](WindowMove&& mv) {
          ChainState whole = st;
          std::copy(mv.markers.begin(), mv.markers.end(), whole.order.begin() + mv.first);
          std::copy(mv.rf.begin(), mv.rf.end(), whole.rf.begin() + (mv.first > 0 ? mv.first - 1 : 0));
          EXPECT_NEAR(mv.log_likelihood, EvaluateChain(g, whole, nullptr), 1e-8)
              << first << "-" << last << " to " << mv.first << "-" << mv.last;
        });
  }
}

}  // namespace
}  // namespace gae
